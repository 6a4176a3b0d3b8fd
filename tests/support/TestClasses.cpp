#include "support/TestClasses.h"

#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "validation/XmlObjectHelper.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace QvXmlTest {

const char* const kNs = "urn:t";

namespace {

// Fills a null-terminated table from a list of entries.
template <typename Entry> Entry** Table(std::initializer_list<Entry*> entries) {
    Entry** table = new Entry*[entries.size() + 1];
    size_t i = 0;
    for (Entry* entry : entries)
        table[i++] = entry;
    table[i] = nullptr;
    return table;
}

CParentElementInfo* Parent(XmlElementGroupType group, const char* name, bool reportUnknownAttributes,
                           XmlElementType type = XmlElementType_Element, int textIndex = -1,
                           ItemType textType = ItemType_Invalid, bool writeTypeForOtherName = false) {
    return new CParentElementInfo(group, type, name, kNs, reportUnknownAttributes, writeTypeForOtherName, textIndex,
                                  textType, nullptr, false);
}

CPrimitiveRestrictions AtMost(const char* bound) {
    return CPrimitiveRestrictions(nullptr, -1, -1, nullptr, bound, nullptr, nullptr, -1);
}

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
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Sequence, Occurs::Mandatory, "a", kNs, P_a, false, ItemType_string),
         new CTestPrimElement(Group::Sequence, Occurs::Mandatory, "b", kNs, P_b, true, ItemType_i4)});
    attributes = Table<CAttributeInfo>({new CTestAttribute("id", "", P_id, true, ItemType_i4)});
}

CAllABC::CAllABC() { SetElementName("AllABC"); }
void CAllABC::Init() { ResetValues(); }
void CAllABC::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_All, "AllABC", true);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::All, Occurs::Mandatory, "a", kNs, P_a, false, ItemType_string),
         new CTestPrimElement(Group::All, Occurs::Mandatory, "b", kNs, P_b, false, ItemType_string),
         new CTestPrimElement(Group::All, Occurs::Optional, "c", kNs, P_c, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({});
}

CChoiceAB::CChoiceAB() { SetElementName("ChoiceAB"); }
void CChoiceAB::Init() { ResetValues(); }
void CChoiceAB::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "ChoiceAB", true);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Choice, Occurs::Optional, "a", kNs, P_a, false, ItemType_string),
         new CTestPrimElement(Group::Choice, Occurs::Optional, "b", kNs, P_b, false, ItemType_i4)});
    attributes = Table<CAttributeInfo>({});
}

CEmpty::CEmpty() { SetElementName("Empty"); }
void CEmpty::Init() { ResetValues(); }
void CEmpty::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "Empty", true);
    elements = Table<CElementInfo>({});
    attributes = Table<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CLevel3::CLevel3() { SetElementName("L3"); }
void CLevel3::Init() { ResetValues(); }
void CLevel3::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "L3", true);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Sequence, Occurs::Mandatory, "v", kNs, P_v, false, ItemType_i4, AtMost("10"))});
    attributes = Table<CAttributeInfo>({});
}

CLevel2::CLevel2() {
    SetElementName("L2");
    m_properties[P_L3].SetXmlObject(new CLevel3());
}
void CLevel2::Init() { ResetValues(); }
CLevel3* CLevel2::GetL3() const { return ObjectOf<CLevel3>(m_properties[P_L3]); }
void CLevel2::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "L2", true);
    elements = Table<CElementInfo>(
        {new CTestClsElement(Group::Sequence, Occurs::Mandatory, "L3", kNs, P_L3, XmlElementType_Element, nullptr, 0)});
    attributes = Table<CAttributeInfo>({});
}

CLevel1::CLevel1() {
    SetElementName("L1");
    m_properties[P_L2].SetXmlObject(new CLevel2());
}
void CLevel1::Init() { ResetValues(); }
CLevel2* CLevel1::GetL2() const { return ObjectOf<CLevel2>(m_properties[P_L2]); }
void CLevel1::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "L1", true);
    elements = Table<CElementInfo>(
        {new CTestClsElement(Group::Sequence, Occurs::Mandatory, "L2", kNs, P_L2, XmlElementType_Element, nullptr, 0)});
    attributes = Table<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CNillableText::CNillableText() { SetElementName("NT"); }
void CNillableText::Init() {
    ResetValues();
    m_isNil = false;
}
void CNillableText::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "NT", true, XmlElementType_Element, P_text, ItemType_i4);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Sequence, Occurs::Optional, "x", kNs, P_x, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({});
}

CGroupXY::CGroupXY() { SetElementName("GroupXY"); }
void CGroupXY::Init() { ResetValues(); }
void CGroupXY::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "GroupXY", false, XmlElementType_Pseudo);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Sequence, Occurs::Mandatory, "x", kNs, P_x, false, ItemType_string),
         new CTestPrimElement(Group::Sequence, Occurs::Optional, "y", kNs, P_y, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({new CTestAttribute("ga", "", P_ga, true, ItemType_string)});
}

CWithGroup::CWithGroup() {
    SetElementName("G");
    m_properties[P_group].SetXmlObject(new CGroupXY());
}
void CWithGroup::Init() { ResetValues(); }
CGroupXY* CWithGroup::GetGroup() const { return ObjectOf<CGroupXY>(m_properties[P_group]); }
void CWithGroup::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "G", false);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Sequence, Occurs::Optional, "a", kNs, P_a, false, ItemType_string),
         new CTestClsElement(Group::Sequence, Occurs::Mandatory, "GroupXY", kNs, P_group, XmlElementType_Pseudo,
                             CreateTestObject, ClassId_GroupXY, false),
         new CTestPrimElement(Group::Sequence, Occurs::Optional, "z", kNs, P_z, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({new CTestAttribute("g", "", P_g, true, ItemType_string)});
}

CChoiceGroupPQ::CChoiceGroupPQ() { SetElementName("ChoiceGroupPQ"); }
void CChoiceGroupPQ::Init() { ResetValues(); }
void CChoiceGroupPQ::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements,
                                   CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "ChoiceGroupPQ", false, XmlElementType_Pseudo);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Choice, Occurs::Optional, "p", kNs, P_p, false, ItemType_string),
         new CTestPrimElement(Group::Choice, Occurs::Optional, "q", kNs, P_q, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({});
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
    elements = Table<CElementInfo>(
        {new CTestClsElement(Group::Sequence, Occurs::Mandatory, "ChoiceGroupPQ", kNs, P_group, XmlElementType_Pseudo,
                             nullptr, 0, false),
         new CTestPrimElement(Group::Sequence, Occurs::Optional, "r", kNs, P_r, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CInnerChoice::CInnerChoice() { SetElementName("Inner"); }
void CInnerChoice::Init() { ResetValues(); }
void CInnerChoice::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "Inner", true);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Choice, Occurs::Optional, "p", kNs, P_p, false, ItemType_string),
         new CTestPrimElement(Group::Choice, Occurs::Optional, "q", kNs, P_q, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({});
}

CChooser::CChooser() { SetElementName("Ch"); }
void CChooser::Init() {
    ResetValues();
    m_properties[P_Inner].SetInvalid();
}
void CChooser::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Choice, "Ch", true);
    elements = Table<CElementInfo>(
        {new CTestClsElement(Group::Choice, Occurs::Optional, "Inner", kNs, P_Inner, XmlElementType_Element,
                             CreateTestObject, ClassId_InnerChoice),
         new CTestPrimElement(Group::Choice, Occurs::Optional, "s", kNs, P_s, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({});
}

// ---------------------------------------------------------------------------------------------

CItem::CItem() { SetElementName("Item"); }
void CItem::Init() { ResetValues(); }
void CItem::BuildMetaData(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
    parent = Parent(XmlElementGroupType_Sequence, "Item", true, XmlElementType_Element, -1, ItemType_Invalid, true);
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Sequence, Occurs::Mandatory, "label", kNs, P_label, false, ItemType_string)});
    attributes = Table<CAttributeInfo>({new CTestAttribute("n", "", P_n, false, ItemType_i4)});
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
    elements = Table<CElementInfo>(
        {new CTestPrimElement(Group::Sequence, Occurs::Mandatory, "name", kNs, P_name, false, ItemType_string),
         new CTestColElement("Item", kNs, P_items),
         new CTestClsElement(Group::Sequence, Occurs::Optional, "Extra", kNs, P_Extra, XmlElementType_Element,
                             CreateTestObject, ClassId_Item),
         new CTestColElement("tag", kNs, P_tags)});
    attributes = Table<CAttributeInfo>({new CTestAttribute("code", "", P_code, false, ItemType_string)});
}

} // namespace QvXmlTest
