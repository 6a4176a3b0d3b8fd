#pragma once

// xs:complexType Customer, an all group: name, account and an optional vip flag, in any
// order.

#include <optional>
#include <string>

#include "OrdersCommon.h"

namespace PurchaseOrders {

class CCustomer : public QvXmlLib10::CXmlGeneratedClass {
public:
    // Element name "customer".
    CCustomer();
    ~CCustomer() override;

    const std::string& GetName() const { return m_name; }
    void SetName(const std::string& value) { m_name = value; }

    long long GetAccount() const { return m_account; }
    void SetAccount(long long value) { m_account = value; }

    bool HasVip() const { return m_vip.has_value(); }
    bool GetVip() const;
    void SetVip(bool value) { m_vip = value; }
    void RemoveVip() { m_vip.reset(); }

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
    enum Property { Property_name, Property_account, Property_vip };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    std::string m_name;
    long long m_account = 0;
    std::optional<bool> m_vip;
};

} // namespace PurchaseOrders
