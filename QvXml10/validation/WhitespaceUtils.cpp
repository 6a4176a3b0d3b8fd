#include "validation/WhitespaceUtils.h"

#include <cstring>

#include "foundation/QvException.h"

namespace QvXmlLib10 {

namespace {

// The result of a rule is read back as a terminated C string, so it stops at the
// first NUL that was written.
void CutAtNul(std::string& text) {
    const std::string::size_type nul = text.find('\0');
    if (nul != std::string::npos) text.resize(nul);
}

// CR LF and a lone CR both become one LF.
std::string PreserveBytes(const char* text, std::size_t length) {
    std::string result;
    result.reserve(length);
    for (std::size_t i = 0; i < length; ++i) {
        const char c = text[i];
        if (c == '\r') {
            result.push_back('\n');
            if (i + 1 < length && text[i + 1] == '\n') ++i;
        } else {
            result.push_back(c);
        }
    }
    CutAtNul(result);
    return result;
}

} // namespace

bool CWhitespaceUtils::IsWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string CWhitespaceUtils::ApplyRule(WhitespaceRule rule, const std::string& text) {
    switch (rule) {
    case WhitespaceRule_None:
        return text;
    case WhitespaceRule_Preserve:
        return Preserve(text);
    case WhitespaceRule_Replace:
        return Replace(text);
    case WhitespaceRule_Collapse:
        return Collapse(text);
    }
    throw CQvException("Unknown WhitespaceRule");
}

std::string CWhitespaceUtils::Preserve(const std::string& text) {
    if (text.find('\r') == std::string::npos) return text;
    return PreserveBytes(text.data(), text.size());
}

std::string CWhitespaceUtils::Preserve(const char* text, int length) {
    if (text == nullptr || length <= 0) return std::string();
    return PreserveBytes(text, static_cast<std::size_t>(length));
}

std::string CWhitespaceUtils::Replace(const std::string& text) {
    const std::size_t length = text.size();
    std::string result;
    result.reserve(length);
    bool replaced = false;
    for (std::size_t i = 0; i < length; ++i) {
        const char c = text[i];
        if (c == '\r') {
            // CR LF is one space, not two.
            result.push_back(' ');
            if (i + 1 < length && text[i + 1] == '\n') ++i;
            replaced = true;
        } else if (c == '\t' || c == '\n') {
            result.push_back(' ');
            replaced = true;
        } else {
            result.push_back(c);
        }
    }
    if (!replaced) return text;
    CutAtNul(result);
    return result;
}

std::string CWhitespaceUtils::Collapse(const std::string& text) {
    // Bytes behind the first NUL never reach the result; the trailing space is
    // dropped only when nothing (not even that NUL) was written after it.
    const char* const begin = text.data();
    const void* nul = std::memchr(begin, '\0', text.size());
    const std::size_t length = nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - begin) : text.size();

    std::string result;
    result.reserve(length);
    bool lastWasSpace = true;
    for (std::size_t i = 0; i < length; ++i) {
        const char c = begin[i];
        if (IsWhiteSpace(c)) {
            if (!lastWasSpace) {
                result.push_back(' ');
                lastWasSpace = true;
            }
        } else {
            result.push_back(c);
            lastWasSpace = false;
        }
    }
    if (nul == nullptr && !result.empty() && result.back() == ' ') result.pop_back();
    return result;
}

} // namespace QvXmlLib10
