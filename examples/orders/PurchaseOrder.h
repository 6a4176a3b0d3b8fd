#pragma once

// xs:complexType PurchaseOrder, an extension of BusinessDocument, and the element
// purchaseOrder of that type: the document root of this schema.
//
// The base type's elements are the pseudo element CBusinessDocument, and the choice
// between shipTo and pickupPoint the pseudo element CPurchaseOrderChoice; both read
// from and write to the order's own element. The base's attribute version stands in
// the order's own attribute table, ahead of the wildcard, which would take any
// unqualified attribute otherwise; the base is therefore a pseudo group whose
// attributes the order does not collect a second time. Elements of other namespaces
// behind the payment are kept as untyped elements, and attributes of other namespaces
// as untyped attributes.

#include <optional>
#include <string>

#include "Address.h"
#include "BusinessDocument.h"
#include "Customer.h"
#include "Line.h"
#include "OrdersCommon.h"
#include "Payment.h"
#include <QvXml10/binding/SmartPtr.h>
#include <QvXml10/collections/AttributeCollections.h>
#include <QvXml10/collections/TypedCollections.h>
#include <QvXml10/values/DateTime.h>

namespace PurchaseOrders {

// The choice of xs:complexType PurchaseOrder: either shipTo or pickupPoint. Setting one
// while the other is set throws CQvInvalidStateException; clear the first one before.
class CPurchaseOrderChoice : public QvXmlLib10::CXmlGeneratedClass {
public:
    CPurchaseOrderChoice();
    ~CPurchaseOrderChoice() override;

    // The name of the member that is set ("shipTo" or "pickupPoint"), or empty.
    const std::string& GetSelected() const { return m_selected; }

    // Null unless shipTo is chosen. The address must stand under the element name
    // "shipTo" (a new CAddress does); null clears the member. Setters of objects take a
    // reference; a new object that is refused is released.
    CAddress* GetShipTo() const { return m_shipTo.Get(); }
    void SetShipTo(CAddress* value);

    bool HasPickupPoint() const { return m_pickupPoint.has_value(); }
    const std::string& GetPickupPoint() const;
    void SetPickupPoint(const std::string& value);
    void RemovePickupPoint();

    QvXmlLib10::CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return TARGET_NAMESPACE; }
    std::string GetNamespace() const override { return TARGET_NAMESPACE; }
    void AccessProperty(int propertyIndex, bool read, QvXmlLib10::QvVariant& value) override;
    QvXmlLib10Data::CParentElementInfo* GetParentElementInfo() override { return Tables().m_pParent; }
    QvXmlLib10Data::CElementInfo** GetClassElementInfo() override { return Tables().m_pElements; }
    QvXmlLib10Data::CAttributeInfo** GetClassAttributeInfo() override { return Tables().m_pAttributes; }
    void Init() override;

    static void CleanMetaData() { s_tables.Clean(); }

private:
    enum Property { Property_shipTo, Property_pickupPoint };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    std::string m_selected;
    QvXmlLib10::CSmartPtr<CAddress> m_shipTo;
    std::optional<std::string> m_pickupPoint;
};

class CPurchaseOrder : public QvXmlLib10::CXmlGeneratedClass {
public:
    // Element name "purchaseOrder".
    CPurchaseOrder();
    ~CPurchaseOrder() override;

    // Attributes.
    const std::string& GetId() const { return m_id; }
    void SetId(const std::string& value) { m_id = value; }
    // OrderStatus_open unless the document says otherwise.
    OrderStatus GetStatus() const { return m_status; }
    void SetStatus(OrderStatus value) { m_status = value; }
    // 3 unless the document says otherwise.
    long GetPriority() const { return m_priority; }
    void SetPriority(long value) { m_priority = value; }
    // False unless the document says otherwise.
    bool GetExpress() const { return m_express; }
    void SetExpress(bool value) { m_express = value; }
    // Attributes of namespaces other than this schema's.
    QvXmlLib10::CAttributeCol* GetAnyAttributes() const { return m_anyAttributes.Get(); }

    // The content of the base type BusinessDocument: issuedBy, reference, version.
    // GetVersion and SetVersion are the base's.
    CBusinessDocument* GetBusinessDocument() const { return m_businessDocument.Get(); }

    CCustomer* GetCustomer() const { return m_customer.Get(); }
    // Not null; the customer must stand under the element name "customer".
    void SetCustomer(CCustomer* value);

    // Either shipTo or pickupPoint.
    CPurchaseOrderChoice* GetPurchaseOrderChoice() const { return m_purchaseOrderChoice.Get(); }

    // One or more lines.
    CLineCol* GetLines() const { return m_lines.Get(); }

    // The comment is a text or nil.
    bool IsCommentNil() const { return m_commentIsNil; }
    const std::string& GetComment() const { return m_comment; }
    void SetComment(const std::string& value);
    void SetCommentNil();

    // A CCardPayment or a CInvoicePayment; null until read or set.
    CPayment* GetPayment() const { return m_payment.Get(); }
    // Not null; the payment must stand under the element name "payment".
    void SetPayment(CPayment* value);

    // When the order was placed, and the delivery window: from a moment, within a span.
    const std::optional<QvXmlLib10::CDateTime>& GetOrderDate() const { return m_orderDate; }
    void SetOrderDate(const std::optional<QvXmlLib10::CDateTime>& value) { m_orderDate = value; }
    const std::optional<QvXmlLib10::CDateTime>& GetDeliverFrom() const { return m_deliverFrom; }
    void SetDeliverFrom(const std::optional<QvXmlLib10::CDateTime>& value) { m_deliverFrom = value; }
    const std::optional<QvXmlLib10::CDateTimeSpan>& GetDeliverWithin() const { return m_deliverWithin; }
    void SetDeliverWithin(const std::optional<QvXmlLib10::CDateTimeSpan>& value) { m_deliverWithin = value; }

    // Free tags, and the quantities of partial deliveries (each 1 to 9999).
    QvXmlLib10::CstringCol* GetTags() const { return m_tags.Get(); }
    QvXmlLib10::Ci4Col* GetBatchQuantities() const { return m_batchQuantities.Get(); }

    // A scanned order form, its CRC-32 in hexadecimal, and the order's serial number,
    // which needs more than 64 bits.
    const std::optional<QvXmlLib10::CBinaryData>& GetAttachment() const { return m_attachment; }
    void SetAttachment(const std::optional<QvXmlLib10::CBinaryData>& value) { m_attachment = value; }
    const std::optional<QvXmlLib10::CBinaryData>& GetChecksum() const { return m_checksum; }
    void SetChecksum(const std::optional<QvXmlLib10::CBinaryData>& value) { m_checksum = value; }
    const std::optional<QvXmlLib10::CBigInteger>& GetSerialNumber() const { return m_serialNumber; }
    void SetSerialNumber(const std::optional<QvXmlLib10::CBigInteger>& value) { m_serialNumber = value; }

    // Elements of other namespaces behind the payment.
    QvXmlLib10::CElementCol* GetAnyElements() const { return m_anyElements.Get(); }

    QvXmlLib10::CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return TARGET_NAMESPACE; }
    std::string GetNamespace() const override { return TARGET_NAMESPACE; }
    void AccessProperty(int propertyIndex, bool read, QvXmlLib10::QvVariant& value) override;
    QvXmlLib10Data::CParentElementInfo* GetParentElementInfo() override { return Tables().m_pParent; }
    QvXmlLib10Data::CElementInfo** GetClassElementInfo() override { return Tables().m_pElements; }
    QvXmlLib10Data::CAttributeInfo** GetClassAttributeInfo() override { return Tables().m_pAttributes; }
    void Init() override;

    static void CleanMetaData() { s_tables.Clean(); }

private:
    enum Property {
        Property_BusinessDocument,
        Property_customer,
        Property_PurchaseOrderChoice,
        Property_line,
        Property_comment,
        Property_payment,
        Property_orderDate,
        Property_deliverFrom,
        Property_deliverWithin,
        Property_tag,
        Property_batchQuantity,
        Property_attachment,
        Property_checksum,
        Property_serialNumber,
        Property_AnyElement,
        Property_version,
        Property_id,
        Property_status,
        Property_priority,
        Property_express,
        Property_AnyAttribute
    };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    std::string m_id;
    OrderStatus m_status = OrderStatus_open;
    long m_priority = 3;
    bool m_express = false;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CAttributeCol> m_anyAttributes;
    QvXmlLib10::CSmartPtr<CBusinessDocument> m_businessDocument;
    QvXmlLib10::CSmartPtr<CCustomer> m_customer;
    QvXmlLib10::CSmartPtr<CPurchaseOrderChoice> m_purchaseOrderChoice;
    QvXmlLib10::CSmartPtr<CLineCol> m_lines;
    std::string m_comment;
    bool m_commentIsNil = false;
    QvXmlLib10::CSmartPtr<CPayment> m_payment;
    std::optional<QvXmlLib10::CDateTime> m_orderDate;
    std::optional<QvXmlLib10::CDateTime> m_deliverFrom;
    std::optional<QvXmlLib10::CDateTimeSpan> m_deliverWithin;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CstringCol> m_tags;
    QvXmlLib10::CSmartPtr<QvXmlLib10::Ci4Col> m_batchQuantities;
    std::optional<QvXmlLib10::CBinaryData> m_attachment;
    std::optional<QvXmlLib10::CBinaryData> m_checksum;
    std::optional<QvXmlLib10::CBigInteger> m_serialNumber;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CElementCol> m_anyElements;
};

} // namespace PurchaseOrders
