#pragma once

// xs:complexType Address: street, city, an optional postcode and the group Contact.

#include <optional>
#include <string>

#include "Contact.h"
#include "OrdersCommon.h"
#include <QvXml10/binding/SmartPtr.h>

namespace PurchaseOrders {

class CAddress : public QvXmlLib10::CXmlGeneratedClass {
public:
    // Element name "shipTo".
    CAddress();
    ~CAddress() override;

    const std::string& GetStreet() const { return m_street; }
    void SetStreet(const std::string& value) { m_street = value; }

    const std::string& GetCity() const { return m_city; }
    void SetCity(const std::string& value) { m_city = value; }

    bool HasPostcode() const { return m_postcode.has_value(); }
    const std::string& GetPostcode() const;
    void SetPostcode(const std::string& value) { m_postcode = value; }
    void RemovePostcode() { m_postcode.reset(); }

    // The group Contact: email and phone.
    CContact* GetContact() const { return m_contact.Get(); }

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
    enum Property { Property_street, Property_city, Property_postcode, Property_Contact };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    std::string m_street;
    std::string m_city;
    std::optional<std::string> m_postcode;
    QvXmlLib10::CSmartPtr<CContact> m_contact;
};

} // namespace PurchaseOrders
