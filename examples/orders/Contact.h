#pragma once

// xs:group Contact: email and an optional phone. A model group has no element of its
// own: it is a pseudo element whose children stand among those of the element that
// refers to it.

#include <optional>
#include <string>

#include "OrdersCommon.h"

namespace PurchaseOrders {

class CContact : public QvXmlLib10::CXmlGeneratedClass {
public:
    CContact();
    ~CContact() override;

    const std::string& GetEmail() const { return m_email; }
    void SetEmail(const std::string& value) { m_email = value; }

    bool HasPhone() const { return m_phone.has_value(); }
    const std::string& GetPhone() const;
    void SetPhone(const std::string& value) { m_phone = value; }
    void RemovePhone() { m_phone.reset(); }

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
    enum Property { Property_email, Property_phone };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    std::string m_email;
    std::optional<std::string> m_phone;
};

} // namespace PurchaseOrders
