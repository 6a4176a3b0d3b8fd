#include "foundation/Base64.h"

#include <array>
#include <cstring>

namespace QvXmlLib10 {

const char CBase64::m_sBase64Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

const unsigned int CBase64::m_nMask[] = {0x00, 0x01, 0x03, 0x07, 0x0F, 0x1F, 0x3F, 0x7F, 0xFF};

namespace {

const signed char kInvalid = -1;
const signed char kSkip = -2;

// Character to 6-bit value, kInvalid or kSkip.
constexpr std::array<signed char, 256> MakeDecodeTable() {
    std::array<signed char, 256> table{};
    for (auto& entry : table)
        entry = kInvalid;
    constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int i = 0; i < 64; ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<signed char>(i);
    for (char c : {'=', ' ', '\t', '\r', '\n'})
        table[static_cast<unsigned char>(c)] = kSkip;
    return table;
}

constexpr std::array<signed char, 256> kDecodeTable = MakeDecodeTable();

} // namespace

CBase64::CBase64() : m_inputSize(0), m_bitsRemaining(0), m_bitStorage(0), m_pInput(nullptr) {}

CBase64::~CBase64() {}

unsigned int CBase64::Read(int bits, int* bitsRead, int& position) {
    while (m_bitsRemaining < bits && position < m_inputSize) {
        m_bitStorage = (m_bitStorage << 8) | m_pInput[position++];
        m_bitsRemaining += 8;
    }
    if (m_bitsRemaining >= bits) {
        m_bitsRemaining -= bits;
        *bitsRead = bits;
        return (m_bitStorage >> m_bitsRemaining) & m_nMask[bits];
    }
    // The input ran out: hand over what is left.
    *bitsRead = m_bitsRemaining;
    const unsigned int value = m_bitStorage & m_nMask[m_bitsRemaining];
    m_bitsRemaining = 0;
    return value;
}

void CBase64::Write(unsigned int value, int bits, unsigned char* out, int& position) {
    m_bitStorage = (m_bitStorage << bits) | (value & m_nMask[bits]);
    m_bitsRemaining += bits;
    if (m_bitsRemaining >= 8) {
        m_bitsRemaining -= 8;
        out[position++] = static_cast<unsigned char>((m_bitStorage >> m_bitsRemaining) & 0xFF);
    }
}

std::string CBase64::Encode(unsigned char* data, int length) {
    if (!data || length <= 0) return std::string();
    m_pInput = data;
    m_inputSize = length;
    m_bitsRemaining = 0;
    m_bitStorage = 0;

    const size_t groups = (static_cast<size_t>(length) * 8 + 5) / 6;
    std::string text((groups + 3) / 4 * 4, '=');
    size_t out = 0;
    int position = 0;
    for (;;) {
        int bitsRead = 0;
        unsigned int value = Read(6, &bitsRead, position);
        if (bitsRead == 0) break;
        value <<= 6 - bitsRead; // zero bits fill the last group
        text[out++] = m_sBase64Alphabet[value];
    }
    m_pInput = nullptr;
    return text;
}

int CBase64::Decode(const char* text, unsigned char* out) {
    if (!text || !out || !*text) return 0;
    const size_t length = std::strlen(text);
    std::memset(out, 0, length + 1);
    m_bitsRemaining = 0;
    m_bitStorage = 0;

    int position = 0;
    for (const char* p = text; *p; ++p) {
        const signed char value = kDecodeTable[static_cast<unsigned char>(*p) & 0x7F];
        if (value == kSkip) continue;
        if (value == kInvalid) return 0;
        Write(static_cast<unsigned int>(value), 6, out, position);
    }
    return position;
}

} // namespace QvXmlLib10
