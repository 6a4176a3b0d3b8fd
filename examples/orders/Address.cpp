#include "Address.h"

#include "ClassFactory.h"
#include <QvXml10/binding/metadata/SequenceElementInfo.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

CClassTables CAddress::s_tables;

CAddress::CAddress() : m_contact(new CContact()) { SetElementName("shipTo"); }

CAddress::~CAddress() = default;

const std::string& CAddress::GetPostcode() const {
    if (!m_postcode) ThrowNoValue("Address", "postcode");
    return *m_postcode;
}

void CAddress::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Property_street:
        AccessValue(read, value, m_street);
        break;
    case Property_city:
        AccessValue(read, value, m_city);
        break;
    case Property_postcode:
        AccessValue(read, value, m_postcode);
        break;
    case Property_Contact:
        // The group is part of the address: it is read, never replaced.
        if (read) value.SetXmlObject(m_contact.Get());
        break;
    default:
        ThrowNoProperty("Address", propertyIndex);
    }
}

void CAddress::Init() {
    m_street.clear();
    m_city.clear();
    m_postcode.reset();
    m_contact->Init();
}

void CAddress::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, "Address", TARGET_NAMESPACE,
                                    true, false, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        new CElementInfoSeqPrimMnd("street", TARGET_NAMESPACE, Property_street, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimMnd("city", TARGET_NAMESPACE, Property_city, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimOpt("postcode", TARGET_NAMESPACE, Property_postcode, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqClsMnd("Contact", TARGET_NAMESPACE, Property_Contact, XmlElementType_Pseudo,
                                  CClassFactory::CreateObject, CClassFactory::ClassId_Contact, true),
    });
    attributes = MakeTable<CAttributeInfo>({});
}

} // namespace PurchaseOrders
