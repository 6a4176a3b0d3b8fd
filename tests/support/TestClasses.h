#pragma once

// Classes that follow the contract of generated code, each built from a small table
// definition: the constructor sets the element name and creates the mandatory children
// and the collections, AccessProperty reads and writes the properties by number, Init
// resets the object, and the metadata tables are built once per class under m_csInit
// and given back through CleanMetaData. Also the collection doubles, and offering a
// member the children of an element as a walk does. All elements are in kNs.

#include <atomic>
#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "binding/SmartPtr.h"
#include "binding/XmlGeneratedClass.h"
#include "binding/metadata/ElementInfo.h"
#include "collections/XmlCollection.h"
#include "support/TestSupport.h"
#include "values/QvVariant.h"

namespace QvXmlTest {

extern const char* const kNs; // "urn:t"

// Short names of what most metadata in the tests is built with.
const QvXmlLib10Data::XmlElementType kElement = QvXmlLib10Data::XmlElementType_Element;
const QvXmlLib10Data::XmlElementType kPseudo = QvXmlLib10Data::XmlElementType_Pseudo;
const QvXmlLib10::CPrimitiveRestrictions kNoFacets;
const QvXmlLib10::CWhitespaceUtils::WhitespaceRule kCollapse = QvXmlLib10::CWhitespaceUtils::WhitespaceRule_Collapse;

// Output with kNs as default namespace, so that elements need no prefix.
inline QvXmlLib10::CXmlSerializationContext InT() { return Context(false, false, false, kNs); }

// Fills a null-terminated table from a list of entries.
template <typename Entry> Entry** MakeTable(std::initializer_list<Entry*> entries) {
    Entry** table = new Entry*[entries.size() + 1];
    size_t i = 0;
    for (Entry* entry : entries)
        table[i++] = entry;
    table[i] = nullptr;
    return table;
}

// The header of a class in kNs. A class with pseudo children leaves unknown attributes
// unreported: its children's attributes stand on its element.
QvXmlLib10Data::CParentElementInfo*
MakeParent(QvXmlLib10Data::XmlElementGroupType group, const char* name,
           QvXmlLib10Data::XmlElementType type = QvXmlLib10Data::XmlElementType_Element,
           bool reportUnknownAttributes = true, bool writeTypeForOtherName = false, int textIndex = -1,
           QvXmlLib10::ItemType textType = QvXmlLib10::ItemType_Invalid);

// Defaults of a table definition: nothing to create in the constructor, nothing to reset
// beyond the values.
struct CTableDefaults {
    static void Construct(QvXmlLib10::QvVariant* /*properties*/) {}
    static void Reset(QvXmlLib10::QvVariant* /*properties*/) {}
};

template <typename T> T* ObjectIn(const QvXmlLib10::QvVariant& value) {
    return static_cast<T*>(value.GetXmlObject().Get());
}
template <typename T> T* CollectionIn(const QvXmlLib10::QvVariant& value) {
    return static_cast<T*>(value.GetXmlCollection().Get());
}

// A generated class described by `Definition`, which supplies the property numbers,
// kName, kProperties, Build (the tables), Construct (mandatory children and collections)
// and Reset (what Init clears beyond the values, such as optional children).
template <class Definition> class CTableClass : public QvXmlLib10::CXmlGeneratedClass, public Definition {
public:
    CTableClass() {
        ++s_live;
        SetElementName(Definition::kName);
        Definition::Construct(m_properties);
    }
    CTableClass(const CTableClass&) = delete;
    CTableClass& operator=(const CTableClass&) = delete;
    ~CTableClass() override { --s_live; }

    QvXmlLib10::CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return kNs; }
    std::string GetNamespace() const override { return kNs; }
    void Init() override {
        // Every value property is cleared; collections are emptied, child objects kept.
        for (QvXmlLib10::QvVariant& property : m_properties) {
            if (property.GetItemType() == QvXmlLib10::ItemType_XmlCollection)
                property.GetXmlCollection()->Clear();
            else if (property.GetItemType() != QvXmlLib10::ItemType_XmlObject)
                property.SetInvalid();
        }
        Definition::Reset(m_properties);
    }
    void AccessProperty(int propertyIndex, bool read, QvXmlLib10::QvVariant& value) override {
        if (propertyIndex < 0 || propertyIndex >= Definition::kProperties)
            throw QvXmlLib10::CQvInvalidParamException("No such property");
        if (read)
            value = m_properties[propertyIndex];
        else
            m_properties[propertyIndex] = value;
    }
    QvXmlLib10Data::CParentElementInfo* GetParentElementInfo() override { return Tables().parent; }
    QvXmlLib10Data::CElementInfo** GetClassElementInfo() override { return Tables().elements; }
    QvXmlLib10Data::CAttributeInfo** GetClassAttributeInfo() override { return Tables().attributes; }

    QvXmlLib10::QvVariant& Property(int index) { return m_properties[index]; }
    const QvXmlLib10::QvVariant& Property(int index) const { return m_properties[index]; }
    template <typename T> T* Object(int index) const { return ObjectIn<T>(m_properties[index]); }
    template <typename T> T* Collection(int index) const { return CollectionIn<T>(m_properties[index]); }

    // Gives the tables back; the next use builds them again.
    static void ReleaseMetaData() {
        m_csInit.Enter();
        CleanMetaData(s_tables.parent, s_tables.elements, s_tables.attributes);
        s_built.store(false, std::memory_order_release);
        m_csInit.Leave();
    }
    static int GetBuildCount() { return s_buildCount.load(); }
    // Objects of this class alive now.
    static int GetLiveCount() { return s_live.load(); }

protected:
    QvXmlLib10::QvVariant m_properties[Definition::kProperties];

private:
    struct CTables {
        QvXmlLib10Data::CParentElementInfo* parent = nullptr;
        QvXmlLib10Data::CElementInfo** elements = nullptr;
        QvXmlLib10Data::CAttributeInfo** attributes = nullptr;
        ~CTables() { CleanMetaData(parent, elements, attributes); }
    };

    static CTables& Tables() {
        if (!s_built.load(std::memory_order_acquire)) {
            m_csInit.Enter();
            if (!s_built.load(std::memory_order_relaxed)) {
                Definition::Build(s_tables.parent, s_tables.elements, s_tables.attributes);
                ++s_buildCount;
                s_built.store(true, std::memory_order_release);
            }
            m_csInit.Leave();
        }
        return s_tables;
    }

    inline static CTables s_tables;
    inline static std::atomic<bool> s_built{false};
    inline static std::atomic<int> s_buildCount{0};
    inline static std::atomic<int> s_live{0};
};

// Declares the definition NAME##Tables with the given property numbers and the class
// C##NAME built from it; extra members of the definition follow in the braces.
#define QVXML_TEST_CLASS(NAME, ...)                                                                                    \
    struct NAME##Tables : CTableDefaults {                                                                             \
        enum { __VA_ARGS__, kProperties };                                                                             \
        static const char* const kName;                                                                                \
        static void Build(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,                       \
                          QvXmlLib10Data::CAttributeInfo**&);                                                          \
        static void Construct(QvXmlLib10::QvVariant* properties);                                                      \
        static void Reset(QvXmlLib10::QvVariant* properties);                                                          \
    };                                                                                                                 \
    using C##NAME = CTableClass<NAME##Tables>

// SeqAB: sequence of a (string) and b (i4, nillable); optional attribute id (i4);
// unknown attributes reported.
QVXML_TEST_CLASS(SeqAB, P_a, P_b, P_id);
// AllABC: all group of a and b (mandatory strings) and c (optional string).
QVXML_TEST_CLASS(AllABC, P_a, P_b, P_c);
// ChoiceAB: strict choice of a (string) and b (i4).
QVXML_TEST_CLASS(ChoiceAB, P_a, P_b);
// Empty: a sequence with empty tables; unknown attributes reported.
QVXML_TEST_CLASS(Empty, P_unused);
// Three levels: L1 holds L2, which holds L3, which holds v (i4, at most 10).
QVXML_TEST_CLASS(Level3, P_v);
QVXML_TEST_CLASS(Level2, P_L3);
QVXML_TEST_CLASS(Level1, P_L2);
// NT: a nillable element with an optional child x (string) and i4 text.
QVXML_TEST_CLASS(NillableTextBase, P_x, P_text);
class CNillableText : public CNillableTextBase, public QvXmlLib10::INillable {
public:
    bool GetIsNil() override { return m_isNil; }
    void SetIsNil(bool isNil) override { m_isNil = isNil; }
    void Init() override {
        CNillableTextBase::Init();
        m_isNil = false;
    }

private:
    bool m_isNil = false;
};
// GroupXY: a pseudo element (a model group) of x (mandatory string), y (optional
// string) and the optional attribute ga, all on the enclosing element.
QVXML_TEST_CLASS(GroupXY, P_x, P_y, P_ga);
// G: optional a, the group GroupXY (not required), optional z; optional attribute g.
QVXML_TEST_CLASS(WithGroup, P_a, P_group, P_z, P_g);
// ChoiceGroupPQ: a pseudo element holding a choice of p and q (strings).
QVXML_TEST_CLASS(ChoiceGroupPQ, P_p, P_q);
// CG: the choice group ChoiceGroupPQ (not required), then an optional r.
QVXML_TEST_CLASS(WithChoiceGroup, P_group, P_r);
// Inner: a strict choice of p and q (strings), used as member of the choice Ch.
QVXML_TEST_CLASS(InnerChoice, P_p, P_q);
// Ch: a choice of Inner (an InnerChoice) and s (string).
QVXML_TEST_CLASS(Chooser, P_Inner, P_s);
// Item: label (string) and the required attribute n (i4). Under another element name
// it writes its type.
QVXML_TEST_CLASS(Item, P_label, P_n);
// Order: the required attribute code (string), name (string), the items (1 to 3 Item
// objects), an optional Item under the name Extra, and any number of tag strings.
QVXML_TEST_CLASS(Order, P_code, P_name, P_items, P_Extra, P_tags);
// Leaf: one mandatory string v, with a tag of its own.
QVXML_TEST_CLASS(Leaf, P_v);
// Pair: a pseudo sequence of x (mandatory string) and y (optional string), with the
// optional attribute pa that lands on the enclosing element.
QVXML_TEST_CLASS(Pair, P_x, P_y, P_pa);
// Circle: the one concrete class of the abstract Shape, with a mandatory i4 r. Under
// another element name it writes its type.
QVXML_TEST_CLASS(Circle, P_r);
// Host of one member under test: empty tables, element r, properties 0 and 1.
QVXML_TEST_CLASS(Host, P_0, P_1);

// Class numbers of the creation function.
enum TestClassId {
    ClassId_Item = 1,
    ClassId_InnerChoice,
    ClassId_GroupXY,
    ClassId_Leaf,
    ClassId_Pair,
    ClassId_None = 99
};

// The creation function, in the form generated code has; ClassId_None gives null.
QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> CreateTestObject(int classId, const char* name);
// The creation function of the abstract Shape: a Circle for the xsi:type Circle, null
// for any other element.
QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> CreateShape(QvXmlLib10::CXmlElement* element);

// An enumeration of colours: red 0, green 1, blue 2; other texts give -1.
const char* ColorToText(int value);
int TextToColor(const char* text);

// Strings of one element name, read like the typed value collections. Written with the
// count check of the typed collections, or without one (so that only the metadata's
// check shows); removal reports to the collection's listeners.
class CStringCol : public QvXmlLib10::CXmlTypeCollection {
public:
    CStringCol(const char* elementName, int minOccurs, int maxOccurs, bool checkCount = false,
               const char* namespaceUri = kNs);

    int GetCount() const override { return static_cast<int>(m_values.size()); }
    void Clear() override;
    void Remove(int index) override;
    void AddFromString(const std::string& text) override;
    const std::vector<std::string>& Values() const { return m_values; }
    std::vector<std::string> m_values;

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext& context, bool isChoiceMember) const override;

private:
    bool m_checkCount;
};

// Objects in a collection: Leaf or Item objects under the collection's element name,
// Shape objects made by CreateShape, or pseudo Pair objects read for as long as they
// take something.
class CObjectCol : public QvXmlLib10::CXmlCollection {
public:
    enum Kind { Kind_Leaf, Kind_Shape, Kind_Pair, Kind_Item };
    CObjectCol(const char* elementName, Kind kind, int minOccurs, int maxOccurs);
    QvXmlLib10::CXmlObjectBase* Item(int index) const { return GetNodeAtIndex(index)->m_pItem; }

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext& context, bool isChoiceMember) const override;
    QvXmlLib10::CXmlElement* FromXml_Int(QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement* first,
                                         const QvXmlLib10::CXmlSerializationContext& context,
                                         bool isChoiceMember) override;

private:
    Kind m_kind;
};

// The collection members of an all group leave Validate to generated code; this one
// lets the walk go on.
template <class Member> class CConcrete : public Member {
public:
    using Member::Member;
    bool Validate(const QvXmlLib10::CXmlSerializationContext&, const QvXmlLib10::CXmlGeneratedClass*, bool,
                  bool) const override {
        return true;
    }
};

// What one offer of the cursor gave: the answer, and the local name of the element
// the cursor then stands on ("null" at the end).
struct COffer {
    bool answer;
    std::string cursor;
    bool operator==(const COffer& other) const { return answer == other.answer && cursor == other.cursor; }
};
std::ostream& operator<<(std::ostream& out, const COffer& offer);

// Offers the children of <r> (XML text in kNs, with the prefix xsi declared) to the
// member, as a walk does, with the cursor on the first child.
COffer
Offer(QvXmlLib10Data::CElementInfo& info, CHost& host, const char* children, QvXmlLib10Data::XmlElementType type,
      const QvXmlLib10::CXmlSerializationContext& context = QvXmlLib10::CXmlSerializationContext::m_defaultContext);

// A property in short: "none", "nil", "<name>" for an object (its element name),
// "null" for a null object, "#n" for a collection of n items, else the value's text.
std::string Describe(const QvXmlLib10::QvVariant& value);

} // namespace QvXmlTest
