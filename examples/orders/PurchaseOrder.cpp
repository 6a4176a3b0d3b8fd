#include "PurchaseOrder.h"

#include "ClassFactory.h"
#include <QvXml10/binding/metadata/AttributeInfoKinds.h>
#include <QvXml10/binding/metadata/ChoiceElementInfo.h>
#include <QvXml10/binding/metadata/SequenceElementInfo.h>
#include <QvXml10/collections/Element.h>
#include <QvXml10/foundation/QvException.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

namespace {

const char SHIP_TO[] = "shipTo";
const char PICKUP_POINT[] = "pickupPoint";

// The object a variant holds, as T; throws when it is of another class.
template <typename T> T* ObjectAs(const QvVariant& value, const char* propertyName) {
    CXmlObjectBase* const object = value.GetXmlObject().Get();
    T* const typed = dynamic_cast<T*>(object);
    if (object != nullptr && typed == nullptr)
        throw CQvInvalidParamException(FormatString("The Property [%s] takes no object of this class", propertyName));
    return typed;
}

} // namespace

// ---------------------------------------------------------------------------------------------

CClassTables CPurchaseOrderChoice::s_tables;

CPurchaseOrderChoice::CPurchaseOrderChoice() { SetElementName("PurchaseOrderChoice"); }

CPurchaseOrderChoice::~CPurchaseOrderChoice() = default;

void CPurchaseOrderChoice::SetShipTo(CAddress* value) {
    // Held from the start, so that a new object is released when it is refused.
    const CSmartPtr<CAddress> hold(value);
    Throw_IfElementNameDiffers(value, SHIP_TO);
    // Clearing a member that is not the chosen one changes nothing.
    if (value != nullptr || m_selected == SHIP_TO) Choice_SelectElement(SHIP_TO, value, m_selected);
    m_shipTo = value;
}

const std::string& CPurchaseOrderChoice::GetPickupPoint() const {
    if (!m_pickupPoint) ThrowNoValue("PurchaseOrderChoice", PICKUP_POINT);
    return *m_pickupPoint;
}

void CPurchaseOrderChoice::SetPickupPoint(const std::string& value) {
    if (m_selected.empty())
        m_selected = PICKUP_POINT;
    else
        Choice_SetElementValid(true, PICKUP_POINT, m_selected); // throws unless it is this member
    m_pickupPoint = value;
}

void CPurchaseOrderChoice::RemovePickupPoint() {
    if (m_selected == PICKUP_POINT) Choice_SetElementValid(false, PICKUP_POINT, m_selected);
    m_pickupPoint.reset();
}

void CPurchaseOrderChoice::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Property_shipTo:
        if (read)
            value.SetXmlObject(m_shipTo.Get());
        else
            SetShipTo(ObjectAs<CAddress>(value, SHIP_TO));
        break;
    case Property_pickupPoint:
        if (read) {
            if (m_pickupPoint) value.SetString(*m_pickupPoint);
        } else if (value.IsValid() && !value.IsNil()) {
            SetPickupPoint(value.GetString());
        } else {
            RemovePickupPoint();
        }
        break;
    default:
        ThrowNoProperty("PurchaseOrderChoice", propertyIndex);
    }
}

void CPurchaseOrderChoice::Init() {
    m_selected.clear();
    m_shipTo = nullptr;
    m_pickupPoint.reset();
}

void CPurchaseOrderChoice::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements,
                                         CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Choice, XmlElementType_Pseudo, "PurchaseOrderChoice",
                                    TARGET_NAMESPACE, false, false, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        new CElementInfoChoiceClsOpt(SHIP_TO, TARGET_NAMESPACE, Property_shipTo, XmlElementType_Element,
                                     CClassFactory::CreateObject, CClassFactory::ClassId_Address),
        new CElementInfoChoicePrimOpt(PICKUP_POINT, TARGET_NAMESPACE, Property_pickupPoint, false, ItemType_string,
                                      nullptr, CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
    });
    attributes = MakeTable<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CClassTables CPurchaseOrder::s_tables;

CPurchaseOrder::CPurchaseOrder()
    : m_anyAttributes(new CAttributeCol("", "##other", TARGET_NAMESPACE)), m_businessDocument(new CBusinessDocument()),
      m_customer(new CCustomer()), m_purchaseOrderChoice(new CPurchaseOrderChoice()), m_lines(new CLineCol()),
      m_tags(new CstringCol("tag", TARGET_NAMESPACE, 0, -1, nullptr, -1, -1, nullptr, nullptr, nullptr, nullptr, -1,
                            CWhitespaceUtils::WhitespaceRule_Collapse, nullptr)),
      m_batchQuantities(new Ci4Col("batchQuantity", TARGET_NAMESPACE, 0, -1, nullptr, -1, -1, "1", "9999", nullptr,
                                   nullptr, -1, CWhitespaceUtils::WhitespaceRule_Collapse, nullptr)),
      m_anyElements(new CElementCol("", "##other", TARGET_NAMESPACE, 0, -1)) {
    SetElementName("purchaseOrder");
}

CPurchaseOrder::~CPurchaseOrder() = default;

void CPurchaseOrder::SetCustomer(CCustomer* value) {
    const CSmartPtr<CCustomer> hold(value);
    Throw_IfPropertyIsNull(value, "customer");
    Throw_IfElementNameDiffers(value, "customer");
    m_customer = value;
}

void CPurchaseOrder::SetComment(const std::string& value) {
    m_comment = value;
    m_commentIsNil = false;
}

void CPurchaseOrder::SetCommentNil() {
    m_comment.clear();
    m_commentIsNil = true;
}

void CPurchaseOrder::SetPayment(CPayment* value) {
    const CSmartPtr<CPayment> hold(value);
    Throw_IfPropertyIsNull(value, "payment");
    Throw_IfElementNameDiffers(value, "payment");
    m_payment = value;
}

void CPurchaseOrder::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    // The groups and collections are parts of the order: they are read, never replaced.
    switch (propertyIndex) {
    case Property_BusinessDocument:
        if (read) value.SetXmlObject(m_businessDocument.Get());
        break;
    case Property_customer:
        if (read)
            value.SetXmlObject(m_customer.Get());
        else
            SetCustomer(ObjectAs<CCustomer>(value, "customer"));
        break;
    case Property_PurchaseOrderChoice:
        if (read) value.SetXmlObject(m_purchaseOrderChoice.Get());
        break;
    case Property_line:
        if (read) value.SetXmlCollection(m_lines.Get());
        break;
    case Property_comment:
        if (read) {
            if (m_commentIsNil)
                value.SetNil();
            else
                value.SetString(m_comment);
        } else if (value.IsNil()) {
            SetCommentNil();
        } else {
            SetComment(value.GetString());
        }
        break;
    case Property_payment:
        if (read)
            value.SetXmlObject(m_payment.Get());
        else
            SetPayment(ObjectAs<CPayment>(value, "payment"));
        break;
    case Property_orderDate:
        AccessOptional(read, value, m_orderDate, &QvVariant::SetDate, &QvVariant::GetDate);
        break;
    case Property_deliverFrom:
        AccessOptional(read, value, m_deliverFrom, &QvVariant::SetDateTime, &QvVariant::GetDateTime);
        break;
    case Property_deliverWithin:
        AccessOptional(read, value, m_deliverWithin, &QvVariant::SetDuration, &QvVariant::GetDuration);
        break;
    case Property_tag:
        if (read) value.SetXmlCollection(m_tags.Get());
        break;
    case Property_batchQuantity:
        if (read) value.SetXmlCollection(m_batchQuantities.Get());
        break;
    case Property_attachment:
        AccessOptional(read, value, m_attachment, &QvVariant::SetBase64Binary, &QvVariant::GetBase64Binary);
        break;
    case Property_checksum:
        AccessOptional(read, value, m_checksum, &QvVariant::SetHexBinary, &QvVariant::GetHexBinary);
        break;
    case Property_serialNumber:
        AccessOptional(read, value, m_serialNumber, &QvVariant::SetInteger, &QvVariant::GetInteger);
        break;
    case Property_AnyElement:
        if (read) value.SetXmlCollection(m_anyElements.Get());
        break;
    case Property_version:
        if (read)
            value.SetI4(m_businessDocument->GetVersion());
        else
            m_businessDocument->SetVersion(value.GetI4());
        break;
    case Property_id:
        AccessValue(read, value, m_id);
        break;
    case Property_status:
        if (read)
            value.SetI4(m_status);
        else
            m_status = static_cast<OrderStatus>(value.GetI4());
        break;
    case Property_priority:
        AccessValue(read, value, m_priority);
        break;
    case Property_express:
        AccessValue(read, value, m_express);
        break;
    case Property_AnyAttribute:
        if (read) value.SetXmlCollection(m_anyAttributes.Get());
        break;
    default:
        ThrowNoProperty("PurchaseOrder", propertyIndex);
    }
}

void CPurchaseOrder::Init() {
    m_id.clear();
    m_status = OrderStatus_open;
    m_priority = 3;
    m_express = false;
    m_anyAttributes->Clear();
    m_businessDocument->Init();
    m_customer->Init();
    m_purchaseOrderChoice->Init();
    m_lines->Clear();
    m_comment.clear();
    m_commentIsNil = false;
    m_payment = nullptr;
    m_orderDate.reset();
    m_deliverFrom.reset();
    m_deliverWithin.reset();
    m_tags->Clear();
    m_batchQuantities->Clear();
    m_attachment.reset();
    m_checksum.reset();
    m_serialNumber.reset();
    m_anyElements->Clear();
}

void CPurchaseOrder::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements,
                                   CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, "PurchaseOrder",
                                    TARGET_NAMESPACE, true, false, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        new CElementInfoSeqClsMnd("BusinessDocument", TARGET_NAMESPACE, Property_BusinessDocument,
                                  XmlElementType_PseudoGroup, CClassFactory::CreateObject,
                                  CClassFactory::ClassId_BusinessDocument, true),
        new CElementInfoSeqClsMnd("customer", TARGET_NAMESPACE, Property_customer, XmlElementType_Element,
                                  CClassFactory::CreateObject, CClassFactory::ClassId_Customer, true),
        new CElementInfoSeqClsMnd("PurchaseOrderChoice", TARGET_NAMESPACE, Property_PurchaseOrderChoice,
                                  XmlElementType_Pseudo, CClassFactory::CreateObject,
                                  CClassFactory::ClassId_PurchaseOrderChoice, true),
        new CElementInfoSeqClsCol("line", TARGET_NAMESPACE, Property_line, XmlElementType_Element),
        new CElementInfoSeqPrimMnd("comment", TARGET_NAMESPACE, Property_comment, true, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqAbsClsMnd("payment", TARGET_NAMESPACE, Property_payment, XmlElementType_Element,
                                     CClassFactory::CreatePayment),
        new CElementInfoSeqPrimOpt("orderDate", TARGET_NAMESPACE, Property_orderDate, false, ItemType_date, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimOpt("deliverFrom", TARGET_NAMESPACE, Property_deliverFrom, false, ItemType_datetime,
                                   nullptr, CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimOpt("deliverWithin", TARGET_NAMESPACE, Property_deliverWithin, false, ItemType_duration,
                                   nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
                                   CPrimitiveRestrictions(nullptr, -1, -1, "P1D", nullptr, nullptr, nullptr, -1)),
        new CElementInfoSeqPrimCol("tag", TARGET_NAMESPACE, Property_tag),
        new CElementInfoSeqPrimCol("batchQuantity", TARGET_NAMESPACE, Property_batchQuantity),
        new CElementInfoSeqPrimOpt("attachment", TARGET_NAMESPACE, Property_attachment, false, ItemType_base64Binary,
                                   nullptr, CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimOpt("checksum", TARGET_NAMESPACE, Property_checksum, false, ItemType_hexBinary, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Collapse,
                                   CPrimitiveRestrictions(nullptr, -1, -1, nullptr, nullptr, nullptr, nullptr, 4)),
        new CElementInfoSeqPrimOpt("serialNumber", TARGET_NAMESPACE, Property_serialNumber, false, ItemType_integer,
                                   nullptr, CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
        new CElementInfoSeqUntpdCol("AnyElement", "", Property_AnyElement),
    });
    attributes = MakeTable<CAttributeInfo>({
        new CAttributeInfoPrimitive("version", "", Property_version, true, ItemType_i4, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), "1"),
        new CAttributeInfoPrimitive("id", "", Property_id, false, ItemType_string, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions(), nullptr),
        new CAttributeInfoEnum("status", "", Property_status, true, OrderStatusToText, TextToOrderStatus, "open"),
        new CAttributeInfoPrimitive("priority", "", Property_priority, true, ItemType_i4, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), "3"),
        new CAttributeInfoPrimitive("express", "", Property_express, true, ItemType_boolean, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), "false"),
        new CAttributeInfoAny("AnyAttribute", "", Property_AnyAttribute, true, "##other", TARGET_NAMESPACE, nullptr),
    });
}

} // namespace PurchaseOrders
