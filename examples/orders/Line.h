#pragma once

// xs:complexType Line: sku, description, quantity, unit price in cents and an optional,
// nillable gift note; the attribute number is required. CLineCol holds the lines of an
// order.

#include <optional>
#include <string>

#include "OrdersCommon.h"
#include <QvXml10/binding/SmartPtr.h>
#include <QvXml10/collections/XmlCollection.h>
#include <QvXml10/values/Decimal.h>

namespace PurchaseOrders {

class CLine : public QvXmlLib10::CXmlGeneratedClass {
public:
    // Element name "line".
    CLine();
    ~CLine() override;

    long GetNumber() const { return m_number; }
    void SetNumber(long value) { m_number = value; }

    // Two capital letters, a hyphen and four digits; checked on output.
    const std::string& GetSku() const { return m_sku; }
    void SetSku(const std::string& value) { m_sku = value; }

    const std::string& GetDescription() const { return m_description; }
    void SetDescription(const std::string& value) { m_description = value; }

    // 1 to 9999; checked on output.
    long GetQuantity() const { return m_quantity; }
    void SetQuantity(long value) { m_quantity = value; }

    long long GetUnitPriceCents() const { return m_unitPriceCents; }
    void SetUnitPriceCents(long long value) { m_unitPriceCents = value; }

    // The gift note is absent, nil, or a text.
    // The unit price as an exact decimal, above 0 and at most 1000000; optional.
    const std::optional<QvXmlLib10::CDecimal>& GetUnitPrice() const { return m_unitPrice; }
    void SetUnitPrice(const std::optional<QvXmlLib10::CDecimal>& value) { m_unitPrice = value; }

    bool HasGiftNote() const { return m_giftNoteIsNil || m_giftNote.has_value(); }
    bool IsGiftNoteNil() const { return m_giftNoteIsNil; }
    const std::string& GetGiftNote() const;
    void SetGiftNote(const std::string& value);
    void SetGiftNoteNil();
    void RemoveGiftNote();

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
        Property_sku,
        Property_description,
        Property_quantity,
        Property_unitPriceCents,
        Property_unitPrice,
        Property_giftNote,
        Property_number
    };

    static const CClassTables& Tables() { return s_tables.Ensure(BuildMetaData); }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes);
    static CClassTables s_tables;

    long m_number = 0;
    std::string m_sku;
    std::string m_description;
    long m_quantity = 0;
    long long m_unitPriceCents = 0;
    std::optional<QvXmlLib10::CDecimal> m_unitPrice;
    std::optional<std::string> m_giftNote;
    bool m_giftNoteIsNil = false;
};

// The lines of an order: one or more line elements.
class CLineCol : public QvXmlLib10::CXmlCollection {
public:
    CLineCol();
    ~CLineCol() override;

    CLine* Item(int index) const { return static_cast<CLine*>(GetNodeAtIndex(index)->m_pItem); }
    // Appends a line, taking a reference; it must stand under the element name "line".
    // A new line that is refused is released.
    void Add(CLine* line);

    typedef QvXmlLib10::CXmlCollection::CNode CNode;
    // Iteration over the lines in order.
    class iterator {
    public:
        explicit iterator(const CNode* node) : m_pNode(node) {}
        CLine* operator*() const { return static_cast<CLine*>(m_pNode->m_pItem); }
        iterator& operator++() {
            m_pNode = m_pNode->m_pNext;
            return *this;
        }
        bool operator!=(const iterator& other) const { return m_pNode != other.m_pNode; }

    private:
        const CNode* m_pNode;
    };
    iterator begin() const { return iterator(m_pFirst); }
    iterator end() const { return iterator(nullptr); }

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext& context, bool isChoiceMember) const override;
    QvXmlLib10::CXmlElement* FromXml_Int(QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement* first,
                                         const QvXmlLib10::CXmlSerializationContext& context,
                                         bool isChoiceMember) override;
};

} // namespace PurchaseOrders
