#pragma once

// Small helpers of the Fast Infoset tests: byte texts and exception texts.

#include "foundation/BinaryData.h"
#include "foundation/QvException.h"

#include <cstdio>
#include <functional>
#include <string>
#include <typeinfo>

namespace FiTest {

// "E0 00 00 01": upper case hexadecimal octets separated by blanks.
inline std::string Hex(const unsigned char* data, unsigned long length) {
    std::string text;
    char octet[4];
    for (unsigned long i = 0; i < length; ++i) {
        std::snprintf(octet, sizeof octet, i ? " %02X" : "%02X", data[i]);
        text += octet;
    }
    return text;
}

inline std::string Hex(const QvXmlLib10::CBinaryData& data) { return Hex(data.GetData(), data.GetLength()); }

// "ClassName: full message" of the exception that `call` throws, or "no exception".
template <typename Call> std::string Failure(Call call) {
    try {
        call();
    } catch (const QvXmlLib10::CQvException& e) {
        std::string name = typeid(e).name();
        const size_t at = name.find("CQv");
        name = name.substr(at == std::string::npos ? 0 : at);
        if (!name.empty() && name.back() == 'E') name.pop_back(); // end of a mangled nested name
        return name + ": " + e.GetFullMessage();
    }
    return "no exception";
}

} // namespace FiTest
