#pragma once

// Support for the tests of the sequence, all and choice element metadata: a generated
// class whose tables a test describes in a small struct, table helpers, an
// enumeration, a collection of strings, and a few small classes to serve as children:
// a leaf with a tag of its own, its collection, a pseudo group, and an abstract shape
// whose class is found from xsi:type. All elements are in the namespace kNs.

#include <functional>
#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "binding/SmartPtr.h"
#include "binding/XmlGeneratedClass.h"
#include "binding/metadata/ParentElementInfo.h"
#include "collections/XmlCollection.h"
#include "support/TestClasses.h"
#include "values/QvVariant.h"

namespace QvXmlTest {

// Fills a null-terminated table from a list of entries.
template <typename Entry> Entry** MakeTable(std::initializer_list<Entry*> entries) {
    Entry** table = new Entry*[entries.size() + 1];
    size_t i = 0;
    for (Entry* entry : entries)
        table[i++] = entry;
    table[i] = nullptr;
    return table;
}

// The header of a class in kNs without text. A class with pseudo children leaves
// unknown attributes unreported: its children's attributes stand on its element.
QvXmlLib10Data::CParentElementInfo*
MakeParent(QvXmlLib10Data::XmlElementGroupType group, const char* name,
           QvXmlLib10Data::XmlElementType type = QvXmlLib10Data::XmlElementType_Element,
           bool reportUnknownAttributes = true, bool writeTypeForOtherName = false);

// Defaults of a table struct: nothing to create in the constructor, nothing to reset beyond
// the values (optional child objects, which Init drops, are named by the struct).
struct CTableDefaults {
    static void Construct(QvXmlLib10::QvVariant* /*properties*/) {}
    static void Reset(QvXmlLib10::QvVariant* /*properties*/) {}
};

// A generated class described by `Definition`, which supplies kName, kProperties, Build (the
// tables), Construct (mandatory children and collections) and Reset (what Init clears
// beyond the values).
template <class Definition>
class CTableClass : public CTestGenerated<CTableClass<Definition>, Definition::kProperties> {
public:
    CTableClass() {
        this->SetElementName(Definition::kName);
        Definition::Construct(this->m_properties);
    }
    void Init() override {
        this->ResetValues();
        Definition::Reset(this->m_properties);
    }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes) {
        Definition::Build(parent, elements, attributes);
    }
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

// The object held by a property, as T.
template <typename T> T* ObjectIn(const QvXmlLib10::QvVariant& value) {
    return static_cast<T*>(value.GetXmlObject().Get());
}
template <typename T> T* CollectionIn(const QvXmlLib10::QvVariant& value) {
    return static_cast<T*>(value.GetXmlCollection().Get());
}

// An enumeration of colours: red 0, green 1, blue 2; other texts give -1.
const char* ColorToText(int value);
int TextToColor(const char* text);

// Strings of one element name, read like the typed value collections but written
// without a count check of their own, so that only the metadata's check shows.
class CPlainStringCol : public QvXmlLib10::CXmlTypeCollection {
public:
    CPlainStringCol(const char* elementName, int minOccurs, int maxOccurs);

    int GetCount() const override { return static_cast<int>(m_values.size()); }
    void Clear() override { m_values.clear(); }
    void Remove(int index) override { m_values.erase(m_values.begin() + index); }
    void AddFromString(const std::string& text) override { m_values.push_back(text); }
    std::vector<std::string> m_values;

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext& context, bool isChoiceMember) const override;
};

// Leaf: one mandatory string v, with a tag of its own.
struct LeafTables : CTableDefaults {
    enum { P_v, kProperties };
    static constexpr const char* kName = "Leaf";
    static void Build(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                      QvXmlLib10Data::CAttributeInfo**&);
};
using CLeaf = CTableClass<LeafTables>;

// Pair: a pseudo sequence of x (mandatory string) and y (optional string), with the
// optional attribute pa that lands on the enclosing element.
struct PairTables : CTableDefaults {
    enum { P_x, P_y, P_pa, kProperties };
    static constexpr const char* kName = "Pair";
    static void Build(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                      QvXmlLib10Data::CAttributeInfo**&);
};
using CPair = CTableClass<PairTables>;

// Circle: the one concrete class of the abstract Shape, with a mandatory i4 r. Under
// another element name it writes its type.
struct CircleTables : CTableDefaults {
    enum { P_r, kProperties };
    static constexpr const char* kName = "Circle";
    static void Build(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                      QvXmlLib10Data::CAttributeInfo**&);
};
using CCircle = CTableClass<CircleTables>;

// Class numbers for CreateFamilyObject.
enum FamilyClassId { FamilyClass_Leaf = 1, FamilyClass_Pair = 2, FamilyClass_None = 99 };

// The creation function, in the form generated code has; FamilyClass_None gives null.
QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> CreateFamilyObject(int classId, const char* name);
// The creation function of the abstract Shape: a Circle for the xsi:type Circle, null
// for any other element.
QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> CreateShape(QvXmlLib10::CXmlElement* element);

// Objects in a collection: Leaf objects under the collection's element name, Shape
// objects made by CreateShape, or pseudo Pair objects read for as long as they take
// something.
class CObjectCol : public QvXmlLib10::CXmlCollection {
public:
    enum Kind { Kind_Leaf, Kind_Shape, Kind_Pair };
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

// A host for one member under test: a class with empty tables, element r, and
// properties 0 and 1 for the member to read and write.
struct HostTables : CTableDefaults {
    enum { kProperties = 2 };
    static constexpr const char* kName = "r";
    static void Build(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                      QvXmlLib10Data::CAttributeInfo**&);
};
using CHost = CTableClass<HostTables>;

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

// The whole message chain of what the call throws, or "no exception".
std::string FailureOf(const std::function<void()>& call);
// The same, checking that the outermost class is CQvValidationException, as the
// driver's wrapping makes it.
std::string WrappedFailureOf(const std::function<void()>& call);

// Contexts with one or two settings on.
QvXmlLib10::CXmlSerializationContext IgnoringUnknown();
QvXmlLib10::CXmlSerializationContext IgnoringMissing();
QvXmlLib10::CXmlSerializationContext IgnoringCounts();
// Output with kNs as default namespace, so that elements need no prefix.
QvXmlLib10::CXmlSerializationContext InT();

} // namespace QvXmlTest
