#pragma once

#include "../../foundation/QvExport.h"

#include <cstdint>
#include <string>

#include "../../foundation/QvTypes.h"

namespace QvXmlLib10Data {

// The compositor of a generated class, which selects the walk over its children.
enum XmlElementGroupType : int32_t {
    XmlElementGroupType_Sequence = 0,
    XmlElementGroupType_Choice = 1,
    XmlElementGroupType_All = 2
};

// Whether a generated class has an element of its own. A pseudo element (a model
// group or base type inside a class) shares the enclosing element: its children stand
// among the enclosing element's, and its attributes are written there.
enum XmlElementType : int32_t {
    XmlElementType_Element = 0,
    XmlElementType_Pseudo = 1,
    // A pseudo element whose attributes the enclosing element does not collect.
    XmlElementType_PseudoGroup = 2
};

// The header of one generated class: its walk, its own element and its text content.
// Built once per class and read-only after that.
class QVXML_API CParentElementInfo {
public:
    // Null texts count as empty.
    CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType, const char* elementName,
                       const char* namespaceUri, bool reportUnknownAttributes, bool writeTypeForOtherName,
                       int textPropertyIndex, QvXmlLib10::ItemType textItemType, const char* textFormat,
                       bool textIsRaw);
    virtual ~CParentElementInfo();

    XmlElementGroupType m_groupType;
    XmlElementType m_elementType;
    std::string m_elementName;  // the class's own element name, for the type attribute
    std::string m_namespaceUri; // its namespace
    bool m_reportUnknownAttributes;
    bool m_writeTypeForOtherName;        // write xsi:type when the object stands under another name
    int m_textPropertyIndex;             // -1 when the element has no text
    QvXmlLib10::ItemType m_textItemType; // ItemType_Invalid when the element has no text
    std::string m_textFormat;
    bool m_textIsRaw; // the text is stored as it stands, as a string
};

} // namespace QvXmlLib10Data
