#pragma once

// Helpers of the Fast Infoset tests: bytes as text, exception texts, a small script of
// writer events, and the independent Java reader.

#include "document/XmlWriter.h"
#include "foundation/BinaryData.h"
#include "foundation/QvException.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <typeinfo>
#include <unistd.h>
#include <vector>

namespace FiTest {

// "E0 00 00 01": upper case hexadecimal octets separated by blanks.
inline std::string Hex(const std::string& bytes) {
    std::string text;
    char octet[4];
    for (size_t i = 0; i < bytes.size(); ++i) {
        std::snprintf(octet, sizeof octet, i ? " %02X" : "%02X", static_cast<unsigned char>(bytes[i]));
        text += octet;
    }
    return text;
}

inline std::string Bytes(const QvXmlLib10::CBinaryData& data) {
    return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

inline std::string Hex(const QvXmlLib10::CBinaryData& data) { return Hex(Bytes(data)); }

// "ClassName: full message" of the exception that `call` throws, or "no exception".
template <typename Call> std::string Failure(Call call) {
    try {
        call();
    } catch (const QvXmlLib10::CQvException& e) {
        std::string name = typeid(e).name();
        name = name.substr(name.find("CQv"));
        if (name.back() == 'E') name.pop_back(); // end of a mangled nested name
        return name + ": " + e.GetFullMessage();
    }
    return "no exception";
}

// Plays writer events given as blank-separated tokens: "<name" or "<{uri}name" starts
// an element, "@name=value" or "@{uri}name=value" writes an attribute, "'text" writes
// text, ">" ends an element. Values and text have the given type.
inline void Play(QvXmlLib10::CXmlWriter& w, const std::string& script,
                 QvXmlLib10::ItemType type = QvXmlLib10::ItemType_string) {
    std::istringstream tokens(script);
    std::string token;
    while (tokens >> token) {
        std::string uri, body = token.substr(1);
        if (token[0] != '\'' && body.size() > 1 && body[0] == '{') {
            uri = body.substr(1, body.find('}') - 1);
            body = body.substr(body.find('}') + 1);
        }
        if (token[0] == '<') w.WriteStartElement(body, uri);
        if (token[0] == '>') w.WriteEndElement();
        if (token[0] == '\'') w.WriteString(body, type);
        if (token[0] == '@')
            w.WriteAttributeString(body.substr(0, body.find('=')), uri, body.substr(body.find('=') + 1), type);
    }
}

inline bool HaveJava() {
#if defined(QVXML_JAVA) && defined(QVXML_FI_CLASSPATH)
    return true;
#else
    return false;
#endif
}

inline const char* kNoJava = "*** SKIPPED: no Java or no Java Fast Infoset library (libfastinfoset-java) was found "
                             "when the tests were configured; the interoperability check did not run ***";

// Writes each (name, bytes) pair into a fresh folder and returns the dump of all of them
// by the Java reader (".xml" files by the platform's XML parser).
inline std::string JavaDump(const std::vector<std::pair<std::string, std::string>>& files) {
    std::string output;
#if defined(QVXML_JAVA) && defined(QVXML_FI_CLASSPATH)
    static int run = 0;
    const std::string folder =
        ::testing::TempDir() + "fidump_" + std::to_string(getpid()) + "_" + std::to_string(++run);
    if (std::system(("mkdir -p '" + folder + "'").c_str()) != 0) return "cannot make " + folder;
    std::string command = "'" QVXML_JAVA "' -cp '" QVXML_FI_CLASSPATH "' FiDump";
    for (const auto& file : files) {
        std::ofstream(folder + "/" + file.first, std::ios::binary) << file.second;
        command += " '" + folder + "/" + file.first + "'";
    }
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            output.append(buffer, n);
        pclose(pipe);
    }
    if (std::system(("rm -rf '" + folder + "'").c_str()) != 0) output += "cannot remove " + folder;
#else
    (void)files;
#endif
    return output;
}

} // namespace FiTest
