#include "support/TestClasses.h"

#include <cstring>

#include "binding/ClassfactoryBase.h"
#include "binding/metadata/AllElementInfo.h"
#include "binding/metadata/AttributeInfoKinds.h"
#include "binding/metadata/ChoiceElementInfo.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "validation/XmlObjectHelper.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace QvXmlTest {

const char* const kNs = "urn:t";

CParentElementInfo* MakeParent(XmlElementGroupType group, const char* name, XmlElementType type,
                               bool reportUnknownAttributes, bool writeTypeForOtherName, int textIndex,
                               ItemType textType) {
    return new CParentElementInfo(group, type, name, kNs, reportUnknownAttributes, writeTypeForOtherName, textIndex,
                                  textType, nullptr, false);
}

namespace {

const char* const kColors[] = {"red", "green", "blue"};

// Value members of kNs, collapsed unless said otherwise.
template <class Member>
Member* Value(const char* name, int index, ItemType type = ItemType_string, bool nillable = false,
              const CPrimitiveRestrictions& facets = kNoFacets, CWhitespaceUtils::WhitespaceRule rule = kCollapse) {
    return new Member(name, kNs, index, nillable, type, nullptr, rule, facets);
}

CAttributeInfo* Attribute(const char* name, int index, bool optional, ItemType type) {
    return new CAttributeInfoPrimitive(name, "", index, optional, type, nullptr, kCollapse, kNoFacets, nullptr);
}

// A choice member that is not optional, so that a choice of them must choose one;
// reading and writing are those of the library's primitive choice member.
class CStrictChoicePrim : public CElementInfo {
public:
    CStrictChoicePrim(const char* name, int propertyIndex, ItemType itemType)
        : CElementInfo(name, kNs, propertyIndex, false, itemType, nullptr, kCollapse, kNoFacets),
          m_member(name, kNs, propertyIndex, false, itemType, nullptr, kCollapse, kNoFacets) {}

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override {
        return m_member.ElementToXml(context, object, writer);
    }
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                        CXmlElement** cursor, const char* namespaceUri, XmlElementType type) override {
        return m_member.ElementFromXml(context, object, parent, cursor, namespaceUri, type);
    }
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* object, bool found,
                  bool check) const override {
        return m_member.Validate(context, object, found, check);
    }

private:
    CElementInfoChoicePrimOpt m_member;
};

} // namespace

// Each definition: its element name, its tables, then what the constructor creates and
// what Init clears beyond the values.
#define QVXML_TABLES(NAME, ELEMENT)                                                                                    \
    const char* const NAME##Tables::kName = ELEMENT;                                                                   \
    void NAME##Tables::Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes)
#define QVXML_CONSTRUCT(NAME) void NAME##Tables::Construct(QvVariant* properties)
#define QVXML_RESET(NAME) void NAME##Tables::Reset(QvVariant* properties)
#define QVXML_NOTHING_TO_CONSTRUCT(NAME)                                                                               \
    QVXML_CONSTRUCT(NAME) { (void)properties; }
#define QVXML_NOTHING_TO_RESET(NAME)                                                                                   \
    QVXML_RESET(NAME) { (void)properties; }
#define QVXML_PLAIN(NAME) QVXML_NOTHING_TO_CONSTRUCT(NAME) QVXML_NOTHING_TO_RESET(NAME)

QVXML_TABLES(SeqAB, "SeqAB") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>(
        {Value<CElementInfoSeqPrimMnd>("a", P_a), Value<CElementInfoSeqPrimMnd>("b", P_b, ItemType_i4, true)});
    attributes = MakeTable<CAttributeInfo>({Attribute("id", P_id, true, ItemType_i4)});
}
QVXML_PLAIN(SeqAB)

QVXML_TABLES(AllABC, "AllABC") {
    parent = MakeParent(XmlElementGroupType_All, kName);
    elements =
        MakeTable<CElementInfo>({Value<CElementInfoAllPrimMnd>("a", P_a), Value<CElementInfoAllPrimMnd>("b", P_b),
                                 Value<CElementInfoAllPrimOpt>("c", P_c)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(AllABC)

QVXML_TABLES(ChoiceAB, "ChoiceAB") {
    parent = MakeParent(XmlElementGroupType_Choice, kName);
    elements = MakeTable<CElementInfo>(
        {new CStrictChoicePrim("a", P_a, ItemType_string), new CStrictChoicePrim("b", P_b, ItemType_i4)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(ChoiceAB)

QVXML_TABLES(Empty, "Empty") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(Empty)

QVXML_TABLES(Level3, "L3") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({Value<CElementInfoSeqPrimMnd>(
        "v", P_v, ItemType_i4, false, CPrimitiveRestrictions(nullptr, -1, -1, nullptr, "10", nullptr, nullptr, -1))});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(Level3)

QVXML_TABLES(Level2, "L2") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({new CElementInfoSeqClsMnd("L3", kNs, P_L3, kElement, nullptr, 0, false)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_CONSTRUCT(Level2) { properties[P_L3].SetXmlObject(new CLevel3()); }
QVXML_NOTHING_TO_RESET(Level2)

QVXML_TABLES(Level1, "L1") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({new CElementInfoSeqClsMnd("L2", kNs, P_L2, kElement, nullptr, 0, false)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_CONSTRUCT(Level1) { properties[P_L2].SetXmlObject(new CLevel2()); }
QVXML_NOTHING_TO_RESET(Level1)

QVXML_TABLES(NillableTextBase, "NT") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, kElement, true, false, P_text, ItemType_i4);
    elements = MakeTable<CElementInfo>({Value<CElementInfoSeqPrimOpt>("x", P_x)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(NillableTextBase)

QVXML_TABLES(GroupXY, "GroupXY") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, kPseudo, false);
    elements =
        MakeTable<CElementInfo>({Value<CElementInfoSeqPrimMnd>("x", P_x), Value<CElementInfoSeqPrimOpt>("y", P_y)});
    attributes = MakeTable<CAttributeInfo>({Attribute("ga", P_ga, true, ItemType_string)});
}
QVXML_PLAIN(GroupXY)

QVXML_TABLES(WithGroup, "G") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, kElement, false);
    elements = MakeTable<CElementInfo>(
        {Value<CElementInfoSeqPrimOpt>("a", P_a),
         new CElementInfoSeqClsMnd("GroupXY", kNs, P_group, kPseudo, CreateTestObject, ClassId_GroupXY, false),
         Value<CElementInfoSeqPrimOpt>("z", P_z)});
    attributes = MakeTable<CAttributeInfo>({Attribute("g", P_g, true, ItemType_string)});
}
QVXML_CONSTRUCT(WithGroup) { properties[P_group].SetXmlObject(new CGroupXY()); }
QVXML_NOTHING_TO_RESET(WithGroup)

QVXML_TABLES(ChoiceGroupPQ, "ChoiceGroupPQ") {
    parent = MakeParent(XmlElementGroupType_Choice, kName, kPseudo, false);
    elements = MakeTable<CElementInfo>(
        {Value<CElementInfoChoicePrimOpt>("p", P_p), Value<CElementInfoChoicePrimOpt>("q", P_q)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(ChoiceGroupPQ)

QVXML_TABLES(WithChoiceGroup, "CG") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements =
        MakeTable<CElementInfo>({new CElementInfoSeqClsMnd("ChoiceGroupPQ", kNs, P_group, kPseudo, nullptr, 0, false),
                                 Value<CElementInfoSeqPrimOpt>("r", P_r)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_CONSTRUCT(WithChoiceGroup) { properties[P_group].SetXmlObject(new CChoiceGroupPQ()); }
QVXML_NOTHING_TO_RESET(WithChoiceGroup)

QVXML_TABLES(InnerChoice, "Inner") {
    parent = MakeParent(XmlElementGroupType_Choice, kName);
    elements = MakeTable<CElementInfo>(
        {new CStrictChoicePrim("p", P_p, ItemType_string), new CStrictChoicePrim("q", P_q, ItemType_string)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(InnerChoice)

QVXML_TABLES(Chooser, "Ch") {
    parent = MakeParent(XmlElementGroupType_Choice, kName);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoChoiceClsOpt("Inner", kNs, P_Inner, kElement, CreateTestObject, ClassId_InnerChoice),
         Value<CElementInfoChoicePrimOpt>("s", P_s)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_NOTHING_TO_CONSTRUCT(Chooser)
QVXML_RESET(Chooser) { properties[P_Inner].SetInvalid(); }

QVXML_TABLES(Item, "Item") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, kElement, true, true);
    elements = MakeTable<CElementInfo>({Value<CElementInfoSeqPrimMnd>("label", P_label)});
    attributes = MakeTable<CAttributeInfo>({Attribute("n", P_n, false, ItemType_i4)});
}
QVXML_PLAIN(Item)

QVXML_TABLES(Order, "Order") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>(
        {Value<CElementInfoSeqPrimMnd>("name", P_name), new CElementInfoSeqClsCol("Item", kNs, P_items, kElement),
         new CElementInfoSeqClsOpt("Extra", kNs, P_Extra, kElement, CreateTestObject, ClassId_Item),
         new CElementInfoSeqPrimCol("tag", kNs, P_tags)});
    attributes = MakeTable<CAttributeInfo>({Attribute("code", P_code, false, ItemType_string)});
}
QVXML_CONSTRUCT(Order) {
    properties[P_items].SetXmlCollection(new CObjectCol("Item", CObjectCol::Kind_Item, 1, 3));
    properties[P_tags].SetXmlCollection(new CStringCol("tag", 0, -1, true));
}
QVXML_RESET(Order) { properties[P_Extra].SetInvalid(); }

QVXML_TABLES(Leaf, "Leaf") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({Value<CElementInfoSeqPrimMnd>("v", P_v, ItemType_string, false, kNoFacets,
                                                                      CWhitespaceUtils::WhitespaceRule_Preserve)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(Leaf)

QVXML_TABLES(Pair, "Pair") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, kPseudo, false);
    elements = MakeTable<CElementInfo>({Value<CElementInfoSeqPrimMnd>("x", P_x, ItemType_string, false, kNoFacets,
                                                                      CWhitespaceUtils::WhitespaceRule_Preserve),
                                        Value<CElementInfoSeqPrimOpt>("y", P_y, ItemType_string, false, kNoFacets,
                                                                      CWhitespaceUtils::WhitespaceRule_Preserve)});
    attributes = MakeTable<CAttributeInfo>({Attribute("pa", P_pa, true, ItemType_string)});
}
QVXML_PLAIN(Pair)

QVXML_TABLES(Circle, "Circle") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName, kElement, true, true);
    elements = MakeTable<CElementInfo>({Value<CElementInfoSeqPrimMnd>("r", P_r, ItemType_i4)});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(Circle)

QVXML_TABLES(Host, "r") {
    parent = MakeParent(XmlElementGroupType_Sequence, kName);
    elements = MakeTable<CElementInfo>({});
    attributes = MakeTable<CAttributeInfo>({});
}
QVXML_PLAIN(Host)

CSmartPtr<CXmlObjectBase> CreateTestObject(int classId, const char* name) {
    CSmartPtr<CXmlObjectBase> object;
    if (classId == ClassId_Item) object = new CItem();
    if (classId == ClassId_InnerChoice) object = new CInnerChoice();
    if (classId == ClassId_GroupXY) object = new CGroupXY();
    if (classId == ClassId_Leaf) object = new CLeaf();
    if (classId == ClassId_Pair) object = new CPair();
    if (object) object->SetElementName(name);
    return object;
}

CSmartPtr<CXmlObjectBase> CreateShape(CXmlElement* element) {
    CSmartPtr<CXmlObjectBase> object;
    if (CClassfactoryBase::GetElementType(element) == "Circle") object = new CCircle();
    return object;
}

const char* ColorToText(int value) { return value >= 0 && value < 3 ? kColors[value] : nullptr; }

int TextToColor(const char* text) {
    for (int i = 0; i < 3; ++i)
        if (std::strcmp(kColors[i], text) == 0) return i;
    return -1;
}

CStringCol::CStringCol(const char* elementName, int minOccurs, int maxOccurs, bool checkCount, const char* namespaceUri)
    : CXmlTypeCollection(ItemType_string, elementName, namespaceUri, minOccurs, maxOccurs, nullptr, -1, -1, nullptr,
                         nullptr, nullptr, nullptr, -1, CWhitespaceUtils::WhitespaceRule_None, nullptr),
      m_checkCount(checkCount) {}

void CStringCol::Clear() {
    while (GetCount() != 0)
        Remove(0);
}

void CStringCol::Remove(int index) {
    FireOnCollectionRemove(index);
    if (index < 0 || index >= GetCount())
        throw CQvInvalidParamException(FormatString("Index %d is out of range, use 0 - %d", index, GetCount()));
    m_values.erase(m_values.begin() + index);
    FireOnCollectionRemoveComplete(0);
    FireOnCollectionChange();
}

void CStringCol::AddFromString(const std::string& text) {
    std::string value = text;
    FireOnCollectionAdd(&value);
    m_values.push_back(value);
    FireOnCollectionAddComplete(&value);
    FireOnCollectionChange();
}

void CStringCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*namespaceUri*/,
                           const CXmlSerializationContext& context, bool /*isChoiceMember*/) const {
    if (m_checkCount) ValidateCount(context);
    for (const std::string& value : m_values) {
        writer->WriteStartElement(m_elementName, m_namespace);
        writer->WriteString(value, ItemType_string);
        writer->WriteEndElement();
    }
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
            const CSmartPtr<CXmlObjectBase> item = CreateTestObject(ClassId_Pair, "Pair");
            CXmlElement* const next = CXmlObjectBase::FromXml_Int(item, parent, element, context);
            if (next == element) break;
            AppendItem(item);
            element = next;
        }
        return element;
    }
    while (element != nullptr && DoesElementNameMatch(context, element, m_elementName.c_str(), m_namespace.c_str())) {
        const CSmartPtr<CXmlObjectBase> item =
            m_kind == Kind_Shape
                ? CreateShape(element)
                : CreateTestObject(m_kind == Kind_Item ? ClassId_Item : ClassId_Leaf, m_elementName.c_str());
        if (!item) break;
        CXmlObjectBase::FromXml_Int(item, element, element->GetFirstElement(), context);
        AppendItem(item);
        element = element->GetNextSiblingElement();
    }
    return element;
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

} // namespace QvXmlTest
