#pragma once

// xs:complexType Payment (abstract) and its two extensions. An element of type Payment
// names its concrete type with xsi:type; CClassFactory::CreatePayment picks the class
// by that name, and each concrete class writes its type name back when it stands
// under the element name "payment". The extensions carry the base's elements ahead of
// their own in one table.

#include <string>

#include "OrdersCommon.h"

namespace PurchaseOrders {

class CPayment : public QvXmlLib10::CXmlGeneratedClass {
public:
    ~CPayment() override;

    long long GetAmountCents() const { return m_amountCents; }
    void SetAmountCents(long long value) { m_amountCents = value; }

    QvXmlLib10::CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return TARGET_NAMESPACE; }
    std::string GetNamespace() const override { return TARGET_NAMESPACE; }
    void AccessProperty(int propertyIndex, bool read, QvXmlLib10::QvVariant& value) override;
    void Init() override;

protected:
    // Element name "payment".
    CPayment();

    enum Property { Property_amountCents, Property_Derived };

    // The metadata of the base's elements, first in each extension's table.
    static QvXmlLib10Data::CElementInfo* NewAmountCentsInfo();

private:
    long long m_amountCents = 0;
};

// xs:complexType CardPayment: the base, cardHolder and last4.
class CCardPayment : public CPayment {
public:
    CCardPayment();
    ~CCardPayment() override;

    const std::string& GetCardHolder() const { return m_cardHolder; }
    void SetCardHolder(const std::string& value) { m_cardHolder = value; }

    const std::string& GetLast4() const { return m_last4; }
    void SetLast4(const std::string& value) { m_last4 = value; }

    void AccessProperty(int propertyIndex, bool read, QvXmlLib10::QvVariant& value) override;
    QvXmlLib10Data::CParentElementInfo* GetParentElementInfo() override { return Tables().m_pParent; }
    QvXmlLib10Data::CElementInfo** GetClassElementInfo() override { return Tables().m_pElements; }
    QvXmlLib10Data::CAttributeInfo** GetClassAttributeInfo() override { return Tables().m_pAttributes; }
    void Init() override;

    static void CleanMetaData() { s_tables.Clean(); }

private:
    enum Property { Property_cardHolder = Property_Derived, Property_last4 };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    std::string m_cardHolder;
    std::string m_last4;
};

// xs:complexType InvoicePayment: the base and dueDays.
class CInvoicePayment : public CPayment {
public:
    CInvoicePayment();
    ~CInvoicePayment() override;

    long GetDueDays() const { return m_dueDays; }
    void SetDueDays(long value) { m_dueDays = value; }

    void AccessProperty(int propertyIndex, bool read, QvXmlLib10::QvVariant& value) override;
    QvXmlLib10Data::CParentElementInfo* GetParentElementInfo() override { return Tables().m_pParent; }
    QvXmlLib10Data::CElementInfo** GetClassElementInfo() override { return Tables().m_pElements; }
    QvXmlLib10Data::CAttributeInfo** GetClassAttributeInfo() override { return Tables().m_pAttributes; }
    void Init() override;

    static void CleanMetaData() { s_tables.Clean(); }

private:
    enum Property { Property_dueDays = Property_Derived };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    long m_dueDays = 0;
};

} // namespace PurchaseOrders
