#include "support/TestClasses.h"

#include "binding/metadata/AllElementInfo.h"
#include "binding/metadata/AttributeInfoKinds.h"
#include "binding/metadata/ChoiceElementInfo.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "support/FamilyClasses.h"
#include "validation/XmlObjectHelper.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace QvXmlTest {

const char* const kNs = "urn:t";

namespace {

CParentElementInfo* Parent(XmlElementGroupType group, const char* name, bool reportUnknownAttributes,
                           XmlElementType type = XmlElementType_Element, int textIndex = -1,
                           ItemType textType = ItemType_Invalid, bool writeTypeForOtherName = false) {
    return new CParentElementInfo(group, type, name, kNs, reportUnknownAttributes, writeTypeForOtherName, textIndex,
                                  textType, nullptr, false);
}

const CPrimitiveRestrictions kNoFacets;
const CWhitespaceUtils::WhitespaceRule kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

CPrimitiveRestrictions AtMost(const char* bound) {
    return CPrimitiveRestrictions(nullptr, -1, -1, nullptr, bound, nullptr, nullptr, -1);
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

template <typename T> T* ObjectOf(const QvVariant& value) { return static_cast<T*>(value.GetXmlObject().Get()); }

template <typename T> T* CollectionOf(const QvVariant& value) {
    return static_cast<T*>(value.GetXmlCollection().Get());
}

} // namespace

CSmartPtr<CXmlObjectBase> CreateTestObject(int classId, const char* name) {
    CSmartPtr<CXmlObjectBase> object;
    switch (classId) {
    case ClassId_Item:
        object = new CItem();
        break;
    case ClassId_InnerChoice:
        object = new CInnerChoice();
        break;
    case ClassId_GroupXY:
        object = new CGroupXY();
        break;
    default:
        return object;
    }
    object->SetElementName(name);
    return object;
}

// ---------------------------------------------------------------------------------------------

CSeqAB::CSeqAB() { SetElementName("SeqAB"); }
void CSeqAB::Init() { ResetValues(); }
void CSeqAB::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "SeqAB", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimMnd("a", kNs, P_a, false, ItemType_string, nullptr, kCollapse, kNoFacets),
         new CElementInfoSeqPrimMnd("b", kNs, P_b, true, ItemType_i4, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>(
        {new CAttributeInfoPrimitive("id", "", P_id, true, ItemType_i4, nullptr, kCollapse, kNoFacets, nullptr)});
}

CAllABC::CAllABC() { SetElementName("AllABC"); }
void CAllABC::Init() { ResetValues(); }
void CAllABC::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_All, "AllABC", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoAllPrimMnd("a", kNs, P_a, false, ItemType_string, nullptr, kCollapse, kNoFacets),
         new CElementInfoAllPrimMnd("b", kNs, P_b, false, ItemType_string, nullptr, kCollapse, kNoFacets),
         new CElementInfoAllPrimOpt("c", kNs, P_c, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>({});
}

CChoiceAB::CChoiceAB() { SetElementName("ChoiceAB"); }
void CChoiceAB::Init() { ResetValues(); }
void CChoiceAB::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "ChoiceAB", true);
    elements = MakeTable<CElementInfo>(
        {new CStrictChoicePrim("a", P_a, ItemType_string), new CStrictChoicePrim("b", P_b, ItemType_i4)});
    attributes = MakeTable<CAttributeInfo>({});
}

CEmpty::CEmpty() { SetElementName("Empty"); }
void CEmpty::Init() { ResetValues(); }
void CEmpty::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "Empty", true);
    elements = MakeTable<CElementInfo>({});
    attributes = MakeTable<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CLevel3::CLevel3() { SetElementName("L3"); }
void CLevel3::Init() { ResetValues(); }
void CLevel3::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "L3", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimMnd("v", kNs, P_v, false, ItemType_i4, nullptr, kCollapse, AtMost("10"))});
    attributes = MakeTable<CAttributeInfo>({});
}

CLevel2::CLevel2() {
    SetElementName("L2");
    m_properties[P_L3].SetXmlObject(new CLevel3());
}
void CLevel2::Init() { ResetValues(); }
CLevel3* CLevel2::GetL3() const { return ObjectOf<CLevel3>(m_properties[P_L3]); }
void CLevel2::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "L2", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqClsMnd("L3", kNs, P_L3, XmlElementType_Element, nullptr, 0, false)});
    attributes = MakeTable<CAttributeInfo>({});
}

CLevel1::CLevel1() {
    SetElementName("L1");
    m_properties[P_L2].SetXmlObject(new CLevel2());
}
void CLevel1::Init() { ResetValues(); }
CLevel2* CLevel1::GetL2() const { return ObjectOf<CLevel2>(m_properties[P_L2]); }
void CLevel1::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "L1", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqClsMnd("L2", kNs, P_L2, XmlElementType_Element, nullptr, 0, false)});
    attributes = MakeTable<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CNillableText::CNillableText() { SetElementName("NT"); }
void CNillableText::Init() {
    ResetValues();
    m_isNil = false;
}
void CNillableText::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "NT", true, XmlElementType_Element, P_text, ItemType_i4);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimOpt("x", kNs, P_x, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>({});
}

CGroupXY::CGroupXY() { SetElementName("GroupXY"); }
void CGroupXY::Init() { ResetValues(); }
void CGroupXY::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "GroupXY", false, XmlElementType_Pseudo);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimMnd("x", kNs, P_x, false, ItemType_string, nullptr, kCollapse, kNoFacets),
         new CElementInfoSeqPrimOpt("y", kNs, P_y, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>(
        {new CAttributeInfoPrimitive("ga", "", P_ga, true, ItemType_string, nullptr, kCollapse, kNoFacets, nullptr)});
}

CWithGroup::CWithGroup() {
    SetElementName("G");
    m_properties[P_group].SetXmlObject(new CGroupXY());
}
void CWithGroup::Init() { ResetValues(); }
CGroupXY* CWithGroup::GetGroup() const { return ObjectOf<CGroupXY>(m_properties[P_group]); }
void CWithGroup::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "G", false);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimOpt("a", kNs, P_a, false, ItemType_string, nullptr, kCollapse, kNoFacets),
         new CElementInfoSeqClsMnd("GroupXY", kNs, P_group, XmlElementType_Pseudo, CreateTestObject, ClassId_GroupXY,
                                   false),
         new CElementInfoSeqPrimOpt("z", kNs, P_z, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>(
        {new CAttributeInfoPrimitive("g", "", P_g, true, ItemType_string, nullptr, kCollapse, kNoFacets, nullptr)});
}

CChoiceGroupPQ::CChoiceGroupPQ() { SetElementName("ChoiceGroupPQ"); }
void CChoiceGroupPQ::Init() { ResetValues(); }
void CChoiceGroupPQ::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements,
                                   CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "ChoiceGroupPQ", false, XmlElementType_Pseudo);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoChoicePrimOpt("p", kNs, P_p, false, ItemType_string, nullptr, kCollapse, kNoFacets),
         new CElementInfoChoicePrimOpt("q", kNs, P_q, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>({});
}

CWithChoiceGroup::CWithChoiceGroup() {
    SetElementName("CG");
    m_properties[P_group].SetXmlObject(new CChoiceGroupPQ());
}
void CWithChoiceGroup::Init() { ResetValues(); }
CChoiceGroupPQ* CWithChoiceGroup::GetGroup() const { return ObjectOf<CChoiceGroupPQ>(m_properties[P_group]); }
void CWithChoiceGroup::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements,
                                     CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "CG", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqClsMnd("ChoiceGroupPQ", kNs, P_group, XmlElementType_Pseudo, nullptr, 0, false),
         new CElementInfoSeqPrimOpt("r", kNs, P_r, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CInnerChoice::CInnerChoice() { SetElementName("Inner"); }
void CInnerChoice::Init() { ResetValues(); }
void CInnerChoice::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "Inner", true);
    elements = MakeTable<CElementInfo>(
        {new CStrictChoicePrim("p", P_p, ItemType_string), new CStrictChoicePrim("q", P_q, ItemType_string)});
    attributes = MakeTable<CAttributeInfo>({});
}

CChooser::CChooser() { SetElementName("Ch"); }
void CChooser::Init() {
    ResetValues();
    m_properties[P_Inner].SetInvalid();
}
void CChooser::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "Ch", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoChoiceClsOpt("Inner", kNs, P_Inner, XmlElementType_Element, CreateTestObject,
                                      ClassId_InnerChoice),
         new CElementInfoChoicePrimOpt("s", kNs, P_s, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CItem::CItem() { SetElementName("Item"); }
void CItem::Init() { ResetValues(); }
void CItem::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "Item", true, XmlElementType_Element, -1, ItemType_Invalid, true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimMnd("label", kNs, P_label, false, ItemType_string, nullptr, kCollapse, kNoFacets)});
    attributes = MakeTable<CAttributeInfo>(
        {new CAttributeInfoPrimitive("n", "", P_n, false, ItemType_i4, nullptr, kCollapse, kNoFacets, nullptr)});
}

CItemCol::CItemCol() : CXmlCollection("Item", kNs, 1, 3) {}

CItem* CItemCol::Item(int index) const { return static_cast<CItem*>(GetNodeAtIndex(index)->m_pItem); }

void CItemCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* namespaceUri,
                         const CXmlSerializationContext& context, bool /*isChoiceMember*/) const {
    for (const CNode* node = m_pFirst; node != nullptr; node = node->m_pNext)
        CXmlObjectBase::ToXml_Int(node->m_pItem, writer, false, namespaceUri, context, false);
}

CXmlElement* CItemCol::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* first, const CXmlSerializationContext& context,
                                   bool /*isChoiceMember*/) {
    CXmlElement* element = first;
    while (element != nullptr && DoesElementNameMatch(context, element, m_elementName.c_str(), m_namespace.c_str())) {
        CSmartPtr<CXmlObjectBase> item = CreateTestObject(ClassId_Item, m_elementName.c_str());
        CXmlObjectBase::FromXml_Int(item, element, element->GetFirstElement(), context);
        AppendItem(item);
        element = element->GetNextSiblingElement();
    }
    return element;
}

CTestStringCol::CTestStringCol(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs)
    : CXmlTypeCollection(ItemType_string, elementName, namespaceUri, minOccurs, maxOccurs, nullptr, -1, -1, nullptr,
                         nullptr, nullptr, nullptr, -1, CWhitespaceUtils::WhitespaceRule_None, nullptr) {}

void CTestStringCol::Clear() {
    while (GetCount() != 0)
        Remove(0);
}

void CTestStringCol::Remove(int index) {
    FireOnCollectionRemove(index);
    if (index < 0 || index >= GetCount())
        throw CQvInvalidParamException(FormatString("Index %d is out of range, use 0 - %d", index, GetCount()));
    m_values.erase(m_values.begin() + index);
    FireOnCollectionRemoveComplete(0);
    FireOnCollectionChange();
}

void CTestStringCol::AddFromString(const std::string& text) {
    std::string value = text;
    FireOnCollectionAdd(&value);
    m_values.push_back(value);
    FireOnCollectionAddComplete(&value);
    FireOnCollectionChange();
}

void CTestStringCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*namespaceUri*/,
                               const CXmlSerializationContext& context, bool /*isChoiceMember*/) const {
    ValidateCount(context);
    for (const std::string& value : m_values) {
        writer->WriteStartElement(m_elementName, m_namespace);
        writer->WriteString(value, ItemType_string);
        writer->WriteEndElement();
    }
}

COrder::COrder() {
    SetElementName("Order");
    m_properties[P_items].SetXmlCollection(new CItemCol());
    m_properties[P_tags].SetXmlCollection(new CTestStringCol("tag", kNs, 0, -1));
}
void COrder::Init() {
    ResetValues();
    m_properties[P_Extra].SetInvalid();
}
CItemCol* COrder::GetItems() const { return CollectionOf<CItemCol>(m_properties[P_items]); }
CTestStringCol* COrder::GetTags() const { return CollectionOf<CTestStringCol>(m_properties[P_tags]); }
void COrder::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "Order", true);
    elements = MakeTable<CElementInfo>(
        {new CElementInfoSeqPrimMnd("name", kNs, P_name, false, ItemType_string, nullptr, kCollapse, kNoFacets),
         new CElementInfoSeqClsCol("Item", kNs, P_items, XmlElementType_Element),
         new CElementInfoSeqClsOpt("Extra", kNs, P_Extra, XmlElementType_Element, CreateTestObject, ClassId_Item),
         new CElementInfoSeqPrimCol("tag", kNs, P_tags)});
    attributes = MakeTable<CAttributeInfo>({new CAttributeInfoPrimitive("code", "", P_code, false, ItemType_string,
                                                                        nullptr, kCollapse, kNoFacets, nullptr)});
}

} // namespace QvXmlTest
