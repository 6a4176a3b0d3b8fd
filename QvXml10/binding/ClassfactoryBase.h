#pragma once

#include "../foundation/QvExport.h"

#include <string>

namespace QvXmlLib10 {

class CXmlElement;

// Base of the class factory that generated code brings along. The library's part is
// reading an element's xsi:type attribute; which class answers to which type or
// element name is the generated factory's decision, handed to the metadata as
// creation functions.
class QVXML_API CClassfactoryBase {
public:
    CClassfactoryBase();
    virtual ~CClassfactoryBase();

    // The local part of the element's xsi:type; empty when there is none.
    static std::string GetElementType(CXmlElement* element);
    // The namespace of the element's xsi:type: the namespace its prefix is declared
    // for in the element's document, or else the element's own namespace.
    static std::string GetElementTypeNamespaceUri(CXmlElement* element);
};

} // namespace QvXmlLib10
