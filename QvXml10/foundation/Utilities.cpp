#include "foundation/Utilities.h"

#include <cctype>
#include <cstdio>

#include "foundation/QvException.h"

namespace QvXmlLib10 {

namespace {

template <typename String> void FindReplaceAll(String& text, const String& find, const String& replacement) {
    typename String::size_type position = text.find(find);
    if (position == String::npos) return;
    if (find.empty()) throw CQvInvalidParamException("FindReplace can not search for an empty text");
    if (replacement.find(find) != String::npos)
        throw CQvInvalidParamException("FindReplace can not replace a text by one that contains it");

    // Everything before `position` is unchanged and held no occurrence, so the next
    // first occurrence starts at the earliest where it can overlap the replacement.
    // A replacement can form the search text anew with the text around it, and that can
    // go on for ever or grow the text without end ("ab" by "baa" in "abbb..."): no more
    // replacements are made than the text had characters at the start, which is always
    // enough when the replacement is shorter than the search text, and for every
    // occurrence in the original text.
    const typename String::size_type overlap = find.size() - 1;
    typename String::size_type budget = text.size();
    while (position != String::npos) {
        if (budget-- == 0)
            throw CQvInvalidParamException("FindReplace can not finish: its replacements keep forming the search text");
        text.replace(position, find.size(), replacement);
        position = text.find(find, position > overlap ? position - overlap : 0);
    }
}

} // namespace

void FindReplace(std::string& text, const std::string& find, const std::string& replacement) {
    FindReplaceAll(text, find, replacement);
}

void FindReplace(std::wstring& text, const std::wstring& find, const std::wstring& replacement) {
    FindReplaceAll(text, find, replacement);
}

std::string PadZero(int value, unsigned char width) {
    // At most 255 characters: the widest width, with any sign inside it.
    char buffer[256];
    std::snprintf(buffer, sizeof buffer, "%0*d", static_cast<int>(width), value);
    return buffer;
}

std::string TrimTrainingZeros(std::string text) {
    const std::string::size_type last = text.find_last_not_of('0');
    if (last == std::string::npos)
        text.resize(text.empty() ? 0 : 1);
    else
        text.resize(last + 1);
    return text;
}

char* strupr(char* text) {
    if (text == nullptr) return nullptr;
    for (char* p = text; *p != '\0'; ++p)
        *p = static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
    return text;
}

} // namespace QvXmlLib10
