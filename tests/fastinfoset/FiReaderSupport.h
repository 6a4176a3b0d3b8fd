#pragma once

// Helpers of the Fast Infoset reading tests: documents as bytes, and trees as one line.

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"

#include <cstdlib>
#include <string>

namespace FiTest {

// Bytes from hexadecimal octets separated by blanks: "E0 00 00 01".
inline std::string Bytes(const char* hex) {
    std::string bytes;
    for (const char* p = hex; *p;) {
        if (*p == ' ') {
            ++p;
            continue;
        }
        char* end;
        bytes += static_cast<char>(std::strtoul(std::string(p, 2).c_str(), &end, 16));
        p += 2;
    }
    return bytes;
}

// A name or string of 1 to 64 octets with its length octet (a literal name part).
inline std::string Lit(const std::string& text) { return std::string(1, static_cast<char>(text.size() - 1)) + text; }

// One line per tree: name, [attributes], 'text', (children); namespaces in braces.
inline std::string Dump(const QvXmlLib10::CXmlElement* element) {
    if (!element) return "(no tree)";
    auto name = [](const std::string& uri, const std::string& local) {
        return uri.empty() ? local : "{" + uri + "}" + local;
    };
    std::string text = name(element->GetNamespaceURI(), element->GetLocalName());
    for (const auto& attribute : element->GetAttributes())
        text += "[" + name(attribute->GetNamespaceURI(), attribute->GetLocalName()) + "=" + attribute->GetValue() + "]";
    if (!element->GetText().empty()) text += "'" + element->GetText() + "'";
    if (const QvXmlLib10::CXmlElement* child = element->GetFirstElement()) {
        text += "(";
        for (; child; child = child->GetNextSiblingElement())
            text += Dump(child) + (child->GetNextSiblingElement() ? "," : "");
        text += ")";
    }
    return text;
}

// The tree and the aliases of the prefixes named (a list ended by a null pointer).
inline std::string Describe(const QvXmlLib10::CXmlDocument& document, const char* const* prefixes) {
    std::string text = Dump(document.GetDocumentElement());
    for (; *prefixes; ++prefixes)
        text += std::string(" ") + *prefixes + "=" + document.LookupNamespaceFromAlias(*prefixes);
    return text;
}

// Loads the bytes through LoadXmlStream, the route that recognises Fast Infoset.
inline void LoadBytes(QvXmlLib10::CXmlDocument& document, const std::string& bytes) {
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data())),
                           static_cast<unsigned long>(bytes.size()));
}

inline std::string
LoadDump(const std::string& bytes,
         const QvXmlLib10::CXmlSerializationContext& context = QvXmlLib10::CXmlSerializationContext::m_defaultContext) {
    QvXmlLib10::CXmlDocument document(context);
    LoadBytes(document, bytes);
    return Dump(document.GetDocumentElement());
}

} // namespace FiTest
