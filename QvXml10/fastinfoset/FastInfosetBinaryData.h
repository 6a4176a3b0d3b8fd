#pragma once

#include "../foundation/BinaryData.h"
#include "../foundation/QvExport.h"

#include <string>

namespace QvXmlLib10 {

// The bytes of a value written by one of the ten built-in Fast Infoset encoding
// algorithms (1 hexadecimal, 2 base64, 3 short, 4 int, 5 long, 6 boolean, 7 float,
// 8 double, 9 uuid, 10 cdata), converted from and to the value's text.
class QVXML_API CFastInfosetBinaryData : public CBinaryData {
public:
    CFastInfosetBinaryData() = default;
    CFastInfosetBinaryData(const char* text) : CBinaryData(text) {}
    CFastInfosetBinaryData(unsigned char* data, unsigned long length, bool takeOwnership)
        : CBinaryData(data, length, takeOwnership) {}
    CFastInfosetBinaryData(const CBinaryData& data) : CBinaryData(data) {}
    ~CFastInfosetBinaryData() override = default;

    // Replaces the bytes with the encoding of the one value in `text`.
    void SetAsEncodedString(unsigned long algorithm, const char* text);
    // The text of every value in the bytes, joined by one blank (booleans of one octet
    // are joined without one). Empty bytes give an empty text whatever the algorithm.
    // Algorithm 10 is not decoded here.
    std::string GetAsString(unsigned long algorithm) const;
};

} // namespace QvXmlLib10
