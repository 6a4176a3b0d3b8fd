#pragma once

#include "QvExport.h"

#include <string>

namespace QvXmlLib10 {

// Replaces every occurrence of `find` in `text`, searching again from the start after
// each replacement, so that an occurrence formed by a replacement and its neighbours
// is replaced too. A search that could never end (an empty `find`, or a `replacement`
// that contains `find` while `text` does) throws CQvInvalidParamException instead,
// leaving `text` as it was.
QVXML_API void FindReplace(std::string& text, const std::string& find, const std::string& replacement);
QVXML_API void FindReplace(std::wstring& text, const std::wstring& find, const std::wstring& replacement);

// The decimal text of `value` in at least `width` digits, zero-padded; a minus sign
// counts towards the width.
QVXML_API std::string PadZero(int value, unsigned char width);

// `text` without its trailing zeros; text of zeros only keeps its first character.
QVXML_API std::string TrimTrainingZeros(std::string text);

// Upper-cases `text` in place with toupper and returns it; null gives null.
QVXML_API char* strupr(char* text);

} // namespace QvXmlLib10
