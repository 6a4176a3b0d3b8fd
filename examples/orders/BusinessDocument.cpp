#include "BusinessDocument.h"

#include <QvXml10/binding/metadata/AttributeInfoKinds.h>
#include <QvXml10/binding/metadata/SequenceElementInfo.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

CClassTables CBusinessDocument::s_tables;

CBusinessDocument::CBusinessDocument() { SetElementName("BusinessDocument"); }

CBusinessDocument::~CBusinessDocument() = default;

const std::string& CBusinessDocument::GetReference() const {
    if (!m_reference) ThrowNoValue("BusinessDocument", "reference");
    return *m_reference;
}

void CBusinessDocument::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Property_issuedBy:
        AccessValue(read, value, m_issuedBy);
        break;
    case Property_reference:
        AccessValue(read, value, m_reference);
        break;
    case Property_version:
        AccessValue(read, value, m_version);
        break;
    default:
        ThrowNoProperty("BusinessDocument", propertyIndex);
    }
}

void CBusinessDocument::Init() {
    m_issuedBy.clear();
    m_reference.reset();
    m_version = 1;
}

void CBusinessDocument::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements,
                                      CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Pseudo, "BusinessDocument",
                                    TARGET_NAMESPACE, false, false, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        new CElementInfoSeqPrimMnd("issuedBy", TARGET_NAMESPACE, Property_issuedBy, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimOpt("reference", TARGET_NAMESPACE, Property_reference, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
    });
    attributes = MakeTable<CAttributeInfo>({
        new CAttributeInfoPrimitive("version", "", Property_version, true, ItemType_i4, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), "1"),
    });
}

} // namespace PurchaseOrders
