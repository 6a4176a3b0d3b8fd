#include "binding/metadata/ParentElementInfo.h"

namespace QvXmlLib10Data {

CParentElementInfo::CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType,
                                       const char* elementName, const char* namespaceUri, bool reportUnknownAttributes,
                                       bool writeTypeForOtherName, int textPropertyIndex,
                                       QvXmlLib10::ItemType textItemType, const char* textFormat, bool textIsRaw)
    : m_groupType(groupType), m_elementType(elementType), m_elementName(elementName ? elementName : ""),
      m_namespaceUri(namespaceUri ? namespaceUri : ""), m_reportUnknownAttributes(reportUnknownAttributes),
      m_writeTypeForOtherName(writeTypeForOtherName), m_textPropertyIndex(textPropertyIndex),
      m_textItemType(textItemType), m_textFormat(textFormat ? textFormat : ""), m_textIsRaw(textIsRaw) {}

CParentElementInfo::~CParentElementInfo() {}

} // namespace QvXmlLib10Data
