#pragma once

// xs:complexType BusinessDocument: issuedBy, an optional reference and the attribute
// version (default 1). A type that others extend: the extending class holds it as a
// pseudo element, whose elements come first among its own and whose attribute is
// written on its element.

#include <optional>
#include <string>

#include "OrdersCommon.h"

namespace PurchaseOrders {

class CBusinessDocument : public QvXmlLib10::CXmlGeneratedClass {
public:
    CBusinessDocument();
    ~CBusinessDocument() override;

    const std::string& GetIssuedBy() const { return m_issuedBy; }
    void SetIssuedBy(const std::string& value) { m_issuedBy = value; }

    bool HasReference() const { return m_reference.has_value(); }
    const std::string& GetReference() const;
    void SetReference(const std::string& value) { m_reference = value; }
    void RemoveReference() { m_reference.reset(); }

    // 1 unless the document says otherwise.
    long GetVersion() const { return m_version; }
    void SetVersion(long value) { m_version = value; }

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
    enum Property { Property_issuedBy, Property_reference, Property_version };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    std::string m_issuedBy;
    std::optional<std::string> m_reference;
    long m_version = 1;
};

} // namespace PurchaseOrders
