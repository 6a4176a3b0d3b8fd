#include "Customer.h"

#include <QvXml10/binding/metadata/AllElementInfo.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

CClassTables CCustomer::s_tables;

CCustomer::CCustomer() { SetElementName("customer"); }

CCustomer::~CCustomer() = default;

bool CCustomer::GetVip() const {
    if (!m_vip) ThrowNoValue("Customer", "vip");
    return *m_vip;
}

void CCustomer::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Property_name:
        AccessValue(read, value, m_name);
        break;
    case Property_account:
        AccessValue(read, value, m_account);
        break;
    case Property_vip:
        AccessValue(read, value, m_vip);
        break;
    default:
        ThrowNoProperty("Customer", propertyIndex);
    }
}

void CCustomer::Init() {
    m_name.clear();
    m_account = 0;
    m_vip.reset();
}

void CCustomer::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_All, XmlElementType_Element, "Customer", TARGET_NAMESPACE, true,
                                    false, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        new CElementInfoAllPrimMnd("name", TARGET_NAMESPACE, Property_name, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoAllPrimMnd("account", TARGET_NAMESPACE, Property_account, false, ItemType_i8, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
        new CElementInfoAllPrimOpt("vip", TARGET_NAMESPACE, Property_vip, false, ItemType_boolean, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
    });
    attributes = MakeTable<CAttributeInfo>({});
}

} // namespace PurchaseOrders
