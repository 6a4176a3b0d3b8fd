#pragma once

#include "QvExport.h"

#include <string>

namespace QvXmlLib10 {

// Base64 codec (standard alphabet, "=" padding, no line breaks). An object
// holds the bit state of one Encode or Decode call.
class QVXML_API CBase64 {
public:
    CBase64();
    virtual ~CBase64();

    // Null data gives an empty text.
    std::string Encode(unsigned char* data, int length);
    // Returns the number of bytes written to out, which needs room for the
    // length of the text plus one. Blanks, tabs, line ends and "=" are passed
    // over; any other character outside the alphabet ends the decoding with 0.
    int Decode(const char* text, unsigned char* out);

    static const char m_sBase64Alphabet[];
    // Entry n has the low n bits set.
    static const unsigned int m_nMask[];

private:
    unsigned int Read(int bits, int* bitsRead, int& position);
    void Write(unsigned int value, int bits, unsigned char* out, int& position);

    int m_inputSize;
    int m_bitsRemaining;
    unsigned int m_bitStorage;
    unsigned char* m_pInput;
};

} // namespace QvXmlLib10
