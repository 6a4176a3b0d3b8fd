#include "fastinfoset/FastInfosetBinaryData.h"

#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "internal/FixedWidthEncoding.h"
#include "values/Conversions.h"

#include <cstdint>
#include <cstring>

namespace QvXmlLib10 {

namespace {

constexpr CConversions::WhitespaceRule kNoRule = CWhitespaceUtils::WhitespaceRule_None;

// Stores the low `octets` bytes of value, most significant first.
void PutBigEndian(unsigned char* out, uint64_t value, unsigned octets) {
    for (unsigned i = 0; i < octets; ++i)
        out[i] = static_cast<unsigned char>(value >> (8 * (octets - 1 - i)));
}

uint64_t ReadBigEndian(const unsigned char* bytes, unsigned octets) {
    uint64_t value = 0;
    for (unsigned i = 0; i < octets; ++i)
        value = (value << 8) | bytes[i];
    return value;
}

// Calls toText on each group of `size` octets and joins the texts with one blank.
template <typename ToText>
std::string JoinGroups(const CBinaryData& data, unsigned size, const char* failure, ToText toText) {
    const unsigned long length = data.GetLength();
    if (length % size != 0) throw CQvException(failure);
    const unsigned char* bytes = data.GetData();
    std::string text;
    for (unsigned long at = 0; at < length; at += size) {
        if (at) text += ' ';
        text += toText(bytes + at);
    }
    return text;
}

// The boolean list: the high four bits of the first octet count the unused bits at
// the end; the values run from bit 3 of the first octet down to that point. Values of
// one octet stand side by side, a blank separates the octets.
std::string BooleansToString(const CBinaryData& data) {
    const unsigned char* bytes = data.GetData();
    const unsigned long length = data.GetLength();
    const unsigned unused = bytes[0] >> 4;
    std::string text;
    for (unsigned long i = 0; i < length; ++i) {
        if (i) text += ' ';
        const int high = i == 0 ? 3 : 7;
        const int low = i + 1 == length ? static_cast<int>(unused) : 0;
        for (int bit = high; bit >= low; --bit)
            text += CConversions::booleanToString((bytes[i] >> bit) & 1);
    }
    return text;
}

} // namespace

unsigned Internal::EncodeFixedWidth(unsigned long algorithm, const std::string& text, unsigned char* out) {
    switch (algorithm) {
    case 3:
        PutBigEndian(out, static_cast<uint16_t>(CConversions::i2FromString(text, kNoRule)), 2);
        return 2;
    case 4:
        PutBigEndian(out, static_cast<uint32_t>(CConversions::i4FromString(text, kNoRule)), 4);
        return 4;
    case 5:
        PutBigEndian(out, static_cast<uint64_t>(CConversions::i8FromString(text, kNoRule)), 8);
        return 8;
    case 6:
        // Three unused bits at the end (0x30), the value in bit 3.
        out[0] = CConversions::booleanFromString(text, kNoRule) ? 0x38 : 0x30;
        return 1;
    case 7: {
        const float number = CConversions::r4FromString(text, kNoRule);
        uint32_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        PutBigEndian(out, bits, 4);
        return 4;
    }
    case 8: {
        const double number = CConversions::r8FromString(text, kNoRule);
        uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        PutBigEndian(out, bits, 8);
        return 8;
    }
    default:
        return 0;
    }
}

void CFastInfosetBinaryData::SetAsEncodedString(unsigned long algorithm, const char* text) {
    Clear();
    const std::string value = text ? text : "";
    unsigned char octets[8];
    if (const unsigned length = Internal::EncodeFixedWidth(algorithm, value, octets)) {
        Append(octets, length);
        return;
    }
    switch (algorithm) {
    case 1:
    case 9:
        SetAsHexString(value.c_str());
        break;
    case 2:
        SetAsBase64(value.c_str());
        break;
    case 10:
        Append(CEncoder::LocalCodePageToUtf8Binary(value.c_str()));
        break;
    default:
        throw CQvException("Unknown byte encoding.");
    }
}

std::string CFastInfosetBinaryData::GetAsString(unsigned long algorithm) const {
    if (GetLength() == 0) return std::string();
    switch (algorithm) {
    case 1:
        return GetAsHexString();
    case 2:
        return GetAsBase64();
    case 3:
        return JoinGroups(*this, 2, "Invalid value for SHORT byte encoding.", [](const unsigned char* g) {
            return CConversions::i2ToString(static_cast<short>(ReadBigEndian(g, 2)));
        });
    case 4:
        // Read back without sign extension: -1 comes back as 4294967295.
        return JoinGroups(*this, 4, "Invalid value for INT byte encoding.", [](const unsigned char* g) {
            return CConversions::i4ToString(static_cast<long>(ReadBigEndian(g, 4)));
        });
    case 5:
        return JoinGroups(*this, 8, "Invalid value for LONG byte encoding.", [](const unsigned char* g) {
            return CConversions::i8ToString(static_cast<long long>(ReadBigEndian(g, 8)));
        });
    case 6:
        return BooleansToString(*this);
    case 7:
        // The pattern is the group's first octet four times over; the other three
        // octets are not read, so a float does not survive the round trip.
        return JoinGroups(*this, 4, "Invalid value for FLOAT byte encoding.", [](const unsigned char* g) {
            const uint32_t bits = 0x01010101u * g[0];
            float number;
            std::memcpy(&number, &bits, sizeof number);
            return CConversions::r4ToString(number, std::string());
        });
    case 8:
        return JoinGroups(*this, 8, "Invalid value for DOUBLE byte encoding.", [](const unsigned char* g) {
            const uint64_t bits = ReadBigEndian(g, 8);
            double number;
            std::memcpy(&number, &bits, sizeof number);
            return CConversions::r8ToString(number, std::string());
        });
    case 9:
        return JoinGroups(*this, 16, "Invalid value for UUID byte encoding.", [](const unsigned char* g) {
            return CBinaryData::GetAsHexString(const_cast<unsigned char*>(g), 16);
        });
    default:
        throw CQvException("Unknown byte encoding.");
    }
}

} // namespace QvXmlLib10
