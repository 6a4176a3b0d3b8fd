#include "support/FamilyClasses.h"

#include <cstring>
#include <typeinfo>

#include <gtest/gtest.h>

#include "binding/ClassfactoryBase.h"
#include "binding/metadata/AttributeInfoKinds.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "foundation/QvException.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace QvXmlTest {

CParentElementInfo* MakeParent(XmlElementGroupType group, const char* name, XmlElementType type,
                               bool reportUnknownAttributes, bool writeTypeForOtherName) {
    return new CParentElementInfo(group, type, name, kNs, reportUnknownAttributes, writeTypeForOtherName, -1,
                                  ItemType_Invalid, nullptr, false);
}

namespace {

const char* const kColors[] = {"red", "green", "blue"};

CElementInfoSeqPrimMnd* MandatoryString(const char* name, int propertyIndex) {
    return new CElementInfoSeqPrimMnd(name, kNs, propertyIndex, false, ItemType_string, nullptr,
                                      CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions());
}

} // namespace

const char* ColorToText(int value) { return value >= 0 && value < 3 ? kColors[value] : nullptr; }

int TextToColor(const char* text) {
    for (int i = 0; i < 3; ++i)
        if (std::strcmp(kColors[i], text) == 0) return i;
    return -1;
}

CPlainStringCol::CPlainStringCol(const char* elementName, int minOccurs, int maxOccurs)
    : CXmlTypeCollection(ItemType_string, elementName, kNs, minOccurs, maxOccurs, nullptr, -1, -1, nullptr, nullptr,
                         nullptr, nullptr, -1, CWhitespaceUtils::WhitespaceRule_None, nullptr) {}

void CPlainStringCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*namespaceUri*/,
                                const CXmlSerializationContext& /*context*/, bool /*isChoiceMember*/) const {
    for (const std::string& value : m_values) {
        writer->WriteStartElement(m_elementName, m_namespace);
        writer->WriteString(value, ItemType_string);
        writer->WriteEndElement();
    }
}

void LeafTables::Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({MandatoryString("v", P_v)});
    attributes = MakeTable<CAttributeInfo>({});
}

void PairTables::Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, XmlElementType_Pseudo, false);
    elements = MakeTable<CElementInfo>(
        {MandatoryString("x", P_x),
         new CElementInfoSeqPrimOpt("y", kNs, P_y, false, ItemType_string, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions())});
    attributes = MakeTable<CAttributeInfo>(
        {new CAttributeInfoPrimitive("pa", "", P_pa, true, ItemType_string, nullptr,
                                     CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), nullptr)});
}

void CircleTables::Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, XmlElementType_Element, true, true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimMnd("r", kNs, P_r, false, ItemType_i4, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions())});
    attributes = MakeTable<CAttributeInfo>({});
}

CSmartPtr<CXmlObjectBase> CreateFamilyObject(int classId, const char* name) {
    CSmartPtr<CXmlObjectBase> object;
    if (classId == FamilyClass_Leaf)
        object = new CLeaf();
    else if (classId == FamilyClass_Pair)
        object = new CPair();
    else
        return object;
    object->SetElementName(name);
    return object;
}

CSmartPtr<CXmlObjectBase> CreateShape(CXmlElement* element) {
    CSmartPtr<CXmlObjectBase> object;
    if (CClassfactoryBase::GetElementType(element) == "Circle") object = new CCircle();
    return object;
}

CObjectCol::CObjectCol(const char* elementName, Kind kind, int minOccurs, int maxOccurs)
    : CXmlCollection(elementName, kNs, minOccurs, maxOccurs), m_kind(kind) {}

void CObjectCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* namespaceUri,
                           const CXmlSerializationContext& context, bool /*isChoiceMember*/) const {
    for (const CNode* node = m_pFirst; node != nullptr; node = node->m_pNext)
        CXmlObjectBase::ToXml_Int(node->m_pItem, writer, false, namespaceUri, context, false);
}

CXmlElement* CObjectCol::FromXml_Int(CXmlElement* parent, CXmlElement* first, const CXmlSerializationContext& context,
                                     bool /*isChoiceMember*/) {
    CXmlElement* element = first;
    if (m_kind == Kind_Pair) {
        // Pseudo items read from the parent's element for as long as they take something.
        while (element != nullptr) {
            const CSmartPtr<CXmlObjectBase> item = CreateFamilyObject(FamilyClass_Pair, "Pair");
            CXmlElement* const next = CXmlObjectBase::FromXml_Int(item, parent, element, context);
            if (next == element) break;
            AppendItem(item);
            element = next;
        }
        return element;
    }
    while (element != nullptr && DoesElementNameMatch(context, element, m_elementName.c_str(), m_namespace.c_str())) {
        const CSmartPtr<CXmlObjectBase> item =
            m_kind == Kind_Shape ? CreateShape(element) : CreateFamilyObject(FamilyClass_Leaf, m_elementName.c_str());
        if (!item) break;
        CXmlObjectBase::FromXml_Int(item, element, element->GetFirstElement(), context);
        AppendItem(item);
        element = element->GetNextSiblingElement();
    }
    return element;
}

void HostTables::Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({});
    attributes = MakeTable<CAttributeInfo>({});
}

std::ostream& operator<<(std::ostream& out, const COffer& offer) {
    return out << (offer.answer ? "true" : "false") << " at " << offer.cursor;
}

COffer Offer(CElementInfo& info, CHost& host, const char* children, XmlElementType type,
             const CXmlSerializationContext& context) {
    CXmlDocument document;
    const std::string text =
        std::string("<r xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>") + children + "</r>";
    document.LoadXml(text.c_str());
    CXmlElement* const parent = document.GetDocumentElement();
    CXmlElement* cursor = parent->GetFirstElement();
    const bool answer = info.ElementFromXml(context, &host, parent, &cursor, kNs, type);
    return COffer{answer, cursor != nullptr ? cursor->GetLocalName() : "null"};
}

std::string Describe(const QvVariant& value) {
    if (!value.IsValid()) return "none";
    if (value.IsNil()) return "nil";
    if (value.GetItemType() == ItemType_XmlObject) {
        const CSmartPtr<CXmlObjectBase> object = value.GetXmlObject();
        return object ? "<" + object->GetElementName() + ">" : "null";
    }
    if (value.GetItemType() == ItemType_XmlCollection)
        return "#" + std::to_string(value.GetXmlCollection()->GetCount());
    return value.ToString();
}

std::string FailureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
    return "no exception";
}

std::string WrappedFailureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const CQvException& e) {
        EXPECT_EQ(typeid(CQvValidationException), typeid(e)) << e.GetFullMessage();
        return e.GetFullMessage();
    }
    return "no exception";
}

CXmlSerializationContext IgnoringUnknown() {
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    return context;
}

CXmlSerializationContext IgnoringMissing() {
    CXmlSerializationContext context;
    context.SetIgnoreMissingMandatoryElements(true);
    return context;
}

CXmlSerializationContext IgnoringCounts() {
    CXmlSerializationContext context;
    context.SetIgnoreInvalidCollectionCounts(true);
    return context;
}

CXmlSerializationContext InT() {
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(kNs);
    return context;
}

} // namespace QvXmlTest
