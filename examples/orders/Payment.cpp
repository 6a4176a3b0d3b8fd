#include "Payment.h"

#include <QvXml10/binding/metadata/SequenceElementInfo.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

CPayment::CPayment() { SetElementName("payment"); }

CPayment::~CPayment() = default;

void CPayment::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    if (propertyIndex != Property_amountCents) ThrowNoProperty("Payment", propertyIndex);
    AccessValue(read, value, m_amountCents);
}

void CPayment::Init() { m_amountCents = 0; }

CElementInfo* CPayment::NewAmountCentsInfo() {
    return new CElementInfoSeqPrimMnd("amountCents", TARGET_NAMESPACE, Property_amountCents, false, ItemType_i8,
                                      nullptr, CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions());
}

// ---------------------------------------------------------------------------------------------

CClassTables CCardPayment::s_tables;

CCardPayment::CCardPayment() = default;

CCardPayment::~CCardPayment() = default;

void CCardPayment::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Property_cardHolder:
        AccessValue(read, value, m_cardHolder);
        break;
    case Property_last4:
        AccessValue(read, value, m_last4);
        break;
    default:
        CPayment::AccessProperty(propertyIndex, read, value);
    }
}

void CCardPayment::Init() {
    CPayment::Init();
    m_cardHolder.clear();
    m_last4.clear();
}

void CCardPayment::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, "CardPayment",
                                    TARGET_NAMESPACE, true, true, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        NewAmountCentsInfo(),
        new CElementInfoSeqPrimMnd("cardHolder", TARGET_NAMESPACE, Property_cardHolder, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimMnd("last4", TARGET_NAMESPACE, Property_last4, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
    });
    attributes = MakeTable<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CClassTables CInvoicePayment::s_tables;

CInvoicePayment::CInvoicePayment() = default;

CInvoicePayment::~CInvoicePayment() = default;

void CInvoicePayment::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    if (propertyIndex == Property_dueDays)
        AccessValue(read, value, m_dueDays);
    else
        CPayment::AccessProperty(propertyIndex, read, value);
}

void CInvoicePayment::Init() {
    CPayment::Init();
    m_dueDays = 0;
}

void CInvoicePayment::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements,
                                    CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, "InvoicePayment",
                                    TARGET_NAMESPACE, true, true, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        NewAmountCentsInfo(),
        new CElementInfoSeqPrimMnd("dueDays", TARGET_NAMESPACE, Property_dueDays, false, ItemType_i4, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
    });
    attributes = MakeTable<CAttributeInfo>({});
}

} // namespace PurchaseOrders
