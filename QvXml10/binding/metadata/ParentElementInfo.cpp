#include "binding/metadata/ParentElementInfo.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10Data {

CParentElementInfo::CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType,
                                       const char* elementName, const char* namespaceUri, bool reportUnknownAttributes,
                                       bool writeTypeForOtherName, int textPropertyIndex,
                                       QvXmlLib10::ItemType textItemType, const char* textFormat, bool textIsRaw)
    : m_groupType(groupType), m_elementType(elementType), m_elementName(OrEmpty(elementName)),
      m_namespaceUri(OrEmpty(namespaceUri)), m_reportUnknownAttributes(reportUnknownAttributes),
      m_writeTypeForOtherName(writeTypeForOtherName), m_textPropertyIndex(textPropertyIndex),
      m_textItemType(textItemType), m_textFormat(OrEmpty(textFormat)), m_textIsRaw(textIsRaw) {}

CParentElementInfo::~CParentElementInfo() {}

} // namespace QvXmlLib10Data
