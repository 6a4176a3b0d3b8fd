#pragma once

#include <string>

namespace QvXmlLib10 {
namespace Internal {

// The fixed-width Fast Infoset encoding algorithms (3 short, 4 int, 5 long, 6 boolean,
// 7 float, 8 double): writes the octets of the one value in `text` into out, which
// holds at least 8, and returns their count; 0 for any other algorithm. Conversion
// failures throw as the text conversions do.
unsigned EncodeFixedWidth(unsigned long algorithm, const std::string& text, unsigned char* out);

} // namespace Internal
} // namespace QvXmlLib10
