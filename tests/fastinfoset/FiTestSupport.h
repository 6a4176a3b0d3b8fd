#pragma once

// Small helpers of the Fast Infoset tests: byte texts and exception texts.

#include "foundation/BinaryData.h"
#include "foundation/QvException.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
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

#include <fstream>
#include <unistd.h>
#include <vector>

namespace FiTest {

// True when the Java Fast Infoset library and the dump program were found at build time.
inline bool HaveJava() {
#if defined(QVXML_JAVA) && defined(QVXML_FI_CLASSPATH)
    return true;
#else
    return false;
#endif
}

inline const char* kNoJava = "*** SKIPPED: no Java or no Java Fast Infoset library (libfastinfoset-java) was found "
                             "when the tests were configured; the interoperability check did not run ***";

// Writes each (name, bytes) pair into a fresh folder and returns the Java dump of all of
// them, read by the independent Java reader (".xml" files by the platform's XML parser).
inline std::string JavaDump(const std::vector<std::pair<std::string, std::string>>& files) {
#if defined(QVXML_JAVA) && defined(QVXML_FI_CLASSPATH)
    static int run = 0;
    const std::string folder =
        ::testing::TempDir() + "fidump_" + std::to_string(getpid()) + "_" + std::to_string(++run);
    std::string command = "'" QVXML_JAVA "' -cp '" QVXML_FI_CLASSPATH "' FiDump";
    if (std::system(("mkdir -p '" + folder + "'").c_str()) != 0) return "cannot make " + folder;
    for (const auto& file : files) {
        const std::string path = folder + "/" + file.first;
        std::ofstream(path, std::ios::binary) << file.second;
        command += " '" + path + "'";
    }
    std::string output;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[4096];
        size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
            output.append(buffer, n);
        pclose(pipe);
    }
    std::system(("rm -rf '" + folder + "'").c_str());
    return output;
#else
    (void)files;
    return std::string();
#endif
}

inline std::string Bytes(const QvXmlLib10::CBinaryData& data) {
    return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

} // namespace FiTest
