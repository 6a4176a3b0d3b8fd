#include "Line.h"

#include <QvXml10/binding/metadata/AttributeInfoKinds.h>
#include <QvXml10/binding/metadata/SequenceElementInfo.h>
#include <QvXml10/document/XmlDocument.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

CClassTables CLine::s_tables;

CLine::CLine() { SetElementName("line"); }

CLine::~CLine() = default;

const std::string& CLine::GetGiftNote() const {
    if (!m_giftNote) ThrowNoValue("Line", "giftNote");
    return *m_giftNote;
}

void CLine::SetGiftNote(const std::string& value) {
    m_giftNote = value;
    m_giftNoteIsNil = false;
}

void CLine::SetGiftNoteNil() {
    m_giftNote.reset();
    m_giftNoteIsNil = true;
}

void CLine::RemoveGiftNote() {
    m_giftNote.reset();
    m_giftNoteIsNil = false;
}

void CLine::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Property_sku:
        AccessValue(read, value, m_sku);
        break;
    case Property_description:
        AccessValue(read, value, m_description);
        break;
    case Property_quantity:
        AccessValue(read, value, m_quantity);
        break;
    case Property_unitPriceCents:
        AccessValue(read, value, m_unitPriceCents);
        break;
    case Property_unitPrice:
        AccessOptional(read, value, m_unitPrice, &QvVariant::SetDecimal, &QvVariant::GetDecimal);
        break;
    case Property_giftNote:
        if (read) {
            if (m_giftNoteIsNil)
                value.SetNil();
            else
                AccessValue(true, value, m_giftNote);
        } else {
            m_giftNoteIsNil = value.IsNil();
            AccessValue(false, value, m_giftNote);
        }
        break;
    case Property_number:
        AccessValue(read, value, m_number);
        break;
    default:
        ThrowNoProperty("Line", propertyIndex);
    }
}

void CLine::Init() {
    m_number = 0;
    m_sku.clear();
    m_description.clear();
    m_quantity = 0;
    m_unitPriceCents = 0;
    m_unitPrice.reset();
    RemoveGiftNote();
}

void CLine::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, "Line", TARGET_NAMESPACE,
                                    true, false, -1, ItemType_Invalid, nullptr, false);
    elements = MakeTable<CElementInfo>({
        new CElementInfoSeqPrimMnd(
            "sku", TARGET_NAMESPACE, Property_sku, false, ItemType_string, nullptr,
            CWhitespaceUtils::WhitespaceRule_Preserve,
            CPrimitiveRestrictions("[A-Z]{2}-\\d{4}", -1, -1, nullptr, nullptr, nullptr, nullptr, -1)),
        new CElementInfoSeqPrimMnd("description", TARGET_NAMESPACE, Property_description, false, ItemType_string,
                                   nullptr, CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimMnd("quantity", TARGET_NAMESPACE, Property_quantity, false, ItemType_i4, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Collapse,
                                   CPrimitiveRestrictions(nullptr, -1, -1, "1", "9999", nullptr, nullptr, -1)),
        new CElementInfoSeqPrimMnd("unitPriceCents", TARGET_NAMESPACE, Property_unitPriceCents, false, ItemType_i8,
                                   nullptr, CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions()),
        new CElementInfoSeqPrimOpt("unitPrice", TARGET_NAMESPACE, Property_unitPrice, false, ItemType_decimal, "2",
                                   CWhitespaceUtils::WhitespaceRule_Collapse,
                                   CPrimitiveRestrictions(nullptr, -1, -1, nullptr, "1000000", "0", nullptr, -1)),
        new CElementInfoSeqPrimOpt("giftNote", TARGET_NAMESPACE, Property_giftNote, true, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions()),
    });
    attributes = MakeTable<CAttributeInfo>({
        new CAttributeInfoPrimitive("number", "", Property_number, false, ItemType_i4, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), nullptr),
    });
}

// ---------------------------------------------------------------------------------------------

CLineCol::CLineCol() : CXmlCollection("line", TARGET_NAMESPACE, 1, -1) {}

CLineCol::~CLineCol() = default;

void CLineCol::Add(CLine* line) {
    // Held from the start, so that a new line is released when it is refused.
    const CSmartPtr<CLine> hold(line);
    Throw_IfPropertyIsNull(line, "line");
    Throw_IfElementNameDiffers(line, "line");
    AppendItem(line);
}

void CLineCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* namespaceUri,
                         const CXmlSerializationContext& context, bool /*isChoiceMember*/) const {
    for (const CNode* node = m_pFirst; node != nullptr; node = node->m_pNext)
        CXmlObjectBase::ToXml_Int(node->m_pItem, writer, false, namespaceUri, context, false);
}

CXmlElement* CLineCol::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* first, const CXmlSerializationContext& context,
                                   bool /*isChoiceMember*/) {
    CXmlElement* element = first;
    while (element != nullptr && DoesElementNameMatch(context, element, m_elementName.c_str(), m_namespace.c_str())) {
        const CSmartPtr<CLine> line(new CLine());
        CXmlObjectBase::FromXml_Int(line.Get(), element, element->GetFirstElement(), context);
        AppendItem(line.Get());
        element = element->GetNextSiblingElement();
    }
    return element;
}

} // namespace PurchaseOrders
