#include "Contact.h"

#include <QvXml10/binding/metadata/SequenceElementInfo.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

CClassTables CContact::s_tables;

CContact::CContact() { SetElementName("Contact"); }

CContact::~CContact() = default;

const std::string& CContact::GetPhone() const {
    if (!m_phone) ThrowNoValue("Contact", "phone");
    return *m_phone;
}

void CContact::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Property_email:
        AccessValue(read, value, m_email);
        break;
    case Property_phone:
        AccessValue(read, value, m_phone);
        break;
    default:
        ThrowNoProperty("Contact", propertyIndex);
    }
}

void CContact::Init() {
    m_email.clear();
    m_phone.reset();
}

void CContact::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Pseudo, "Contact", TARGET_NAMESPACE,
                                    false, false, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        new CElementInfoSeqPrimMnd("email", TARGET_NAMESPACE, Property_email, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimOpt("phone", TARGET_NAMESPACE, Property_phone, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
    });
    attributes = MakeTable<CAttributeInfo>({});
}

} // namespace PurchaseOrders
