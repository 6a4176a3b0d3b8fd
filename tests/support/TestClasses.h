#pragma once

// Hand-written classes that follow the contract of generated code: the constructor
// sets the element name and creates the mandatory children and the collections,
// AccessProperty reads and writes the properties by number, Init resets the object,
// and the metadata tables are built once per class under m_csInit and given back
// through CleanMetaData. All elements are in the namespace kNs.

#include <atomic>
#include <string>
#include <vector>

#include "binding/SmartPtr.h"
#include "binding/XmlGeneratedClass.h"
#include "collections/XmlCollection.h"
#include "foundation/QvException.h"
#include "support/TestVersion.h"
#include "values/QvVariant.h"

namespace QvXmlTest {

extern const char* const kNs; // "urn:t"

// Class numbers for CreateTestObject.
enum TestClassId { ClassId_Item = 1, ClassId_InnerChoice = 2, ClassId_GroupXY = 3 };

// The creation function of the test classes, in the form generated code has.
QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> CreateTestObject(int classId, const char* name);

// Properties held as variants, and the tables of class T, built on first use.
template <class T, int PropertyCount> class CTestGenerated : public QvXmlLib10::CXmlGeneratedClass {
public:
    CTestGenerated() { ++s_live; }
    CTestGenerated(const CTestGenerated&) = delete;
    CTestGenerated& operator=(const CTestGenerated&) = delete;
    ~CTestGenerated() override { --s_live; }

    QvXmlLib10::CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return kNs; }
    std::string GetNamespace() const override { return kNs; }

    void AccessProperty(int propertyIndex, bool read, QvXmlLib10::QvVariant& value) override {
        if (propertyIndex < 0 || propertyIndex >= PropertyCount)
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

    // Gives the tables back; the next use builds them again.
    static void ReleaseMetaData() {
        QvXmlLib10::CXmlGeneratedClass::m_csInit.Enter();
        CleanMetaData(s_tables.parent, s_tables.elements, s_tables.attributes);
        s_built.store(false, std::memory_order_release);
        QvXmlLib10::CXmlGeneratedClass::m_csInit.Leave();
    }
    static int GetBuildCount() { return s_buildCount.load(); }
    // Objects of class T alive now.
    static int GetLiveCount() { return s_live.load(); }

protected:
    // Clears every value property; collections are emptied, child objects kept.
    void ResetValues() {
        for (QvXmlLib10::QvVariant& property : m_properties) {
            if (property.GetItemType() == QvXmlLib10::ItemType_XmlCollection)
                property.GetXmlCollection()->Clear();
            else if (property.GetItemType() != QvXmlLib10::ItemType_XmlObject)
                property.SetInvalid();
        }
    }

    QvXmlLib10::QvVariant m_properties[PropertyCount];

private:
    struct CTables {
        QvXmlLib10Data::CParentElementInfo* parent = nullptr;
        QvXmlLib10Data::CElementInfo** elements = nullptr;
        QvXmlLib10Data::CAttributeInfo** attributes = nullptr;
        ~CTables() { CleanMetaData(parent, elements, attributes); }
    };

    static CTables& Tables() {
        if (!s_built.load(std::memory_order_acquire)) {
            QvXmlLib10::CXmlGeneratedClass::m_csInit.Enter();
            if (!s_built.load(std::memory_order_relaxed)) {
                T::BuildMetaData(s_tables.parent, s_tables.elements, s_tables.attributes);
                ++s_buildCount;
                s_built.store(true, std::memory_order_release);
            }
            QvXmlLib10::CXmlGeneratedClass::m_csInit.Leave();
        }
        return s_tables;
    }

    inline static CTables s_tables;
    inline static std::atomic<bool> s_built{false};
    inline static std::atomic<int> s_buildCount{0};
    inline static std::atomic<int> s_live{0};
};

// Sequence a (string), b (i4, nillable); optional attribute id (i4); unknown
// attributes reported.
class CSeqAB : public CTestGenerated<CSeqAB, 3> {
public:
    enum { P_a, P_b, P_id };
    CSeqAB();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// All group of a and b (mandatory strings) and c (optional string).
class CAllABC : public CTestGenerated<CAllABC, 3> {
public:
    enum { P_a, P_b, P_c };
    CAllABC();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// Choice of a (string) and b (i4).
class CChoiceAB : public CTestGenerated<CChoiceAB, 2> {
public:
    enum { P_a, P_b };
    CChoiceAB();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// A sequence with empty tables; unknown attributes reported.
class CEmpty : public CTestGenerated<CEmpty, 1> {
public:
    CEmpty();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// Three levels: L1 holds L2, which holds L3, which holds v (i4, at most 10).
class CLevel3 : public CTestGenerated<CLevel3, 1> {
public:
    enum { P_v };
    CLevel3();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

class CLevel2 : public CTestGenerated<CLevel2, 1> {
public:
    enum { P_L3 };
    CLevel2();
    void Init() override;
    CLevel3* GetL3() const;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

class CLevel1 : public CTestGenerated<CLevel1, 1> {
public:
    enum { P_L2 };
    CLevel1();
    void Init() override;
    CLevel2* GetL2() const;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// A nillable element NT with an optional child x (string) and i4 text.
class CNillableText : public CTestGenerated<CNillableText, 2>, public QvXmlLib10::INillable {
public:
    enum { P_x, P_text };
    CNillableText();
    void Init() override;
    bool GetIsNil() override { return m_isNil; }
    void SetIsNil(bool isNil) override { m_isNil = isNil; }
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);

private:
    bool m_isNil = false;
};

// A pseudo element (a model group): x (mandatory string), y (optional string) and the
// optional attribute ga, all on the enclosing element.
class CGroupXY : public CTestGenerated<CGroupXY, 3> {
public:
    enum { P_x, P_y, P_ga };
    CGroupXY();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// G: optional a, the group CGroupXY (not required), optional z; optional attribute g.
class CWithGroup : public CTestGenerated<CWithGroup, 4> {
public:
    enum { P_a, P_group, P_z, P_g };
    CWithGroup();
    void Init() override;
    CGroupXY* GetGroup() const;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// A pseudo element holding a choice of p and q (strings).
class CChoiceGroupPQ : public CTestGenerated<CChoiceGroupPQ, 2> {
public:
    enum { P_p, P_q };
    CChoiceGroupPQ();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// CG: the choice group CChoiceGroupPQ (not required), then an optional r.
class CWithChoiceGroup : public CTestGenerated<CWithChoiceGroup, 2> {
public:
    enum { P_group, P_r };
    CWithChoiceGroup();
    void Init() override;
    CChoiceGroupPQ* GetGroup() const;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// Inner: a choice of p and q (strings), used as member of the choice Ch.
class CInnerChoice : public CTestGenerated<CInnerChoice, 2> {
public:
    enum { P_p, P_q };
    CInnerChoice();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// Ch: a choice of Inner (a CInnerChoice) and s (string).
class CChooser : public CTestGenerated<CChooser, 2> {
public:
    enum { P_Inner, P_s };
    CChooser();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// Item: label (string) and the required attribute n (i4). Under another element name
// it writes its type.
class CItem : public CTestGenerated<CItem, 2> {
public:
    enum { P_label, P_n };
    CItem();
    void Init() override;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

// The collection of Item elements, 1 to 3 of them.
class CItemCol : public QvXmlLib10::CXmlCollection {
public:
    CItemCol();
    CItem* Item(int index) const;

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext& context, bool isChoiceMember) const override;
    QvXmlLib10::CXmlElement* FromXml_Int(QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement* first,
                                         const QvXmlLib10::CXmlSerializationContext& context,
                                         bool isChoiceMember) override;
};

// A collection of strings, in the way of the typed value collections.
class CTestStringCol : public QvXmlLib10::CXmlTypeCollection {
public:
    CTestStringCol(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs);

    int GetCount() const override { return static_cast<int>(m_values.size()); }
    void Clear() override;
    void Remove(int index) override;
    void AddFromString(const std::string& text) override;
    const std::vector<std::string>& Values() const { return m_values; }

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext& context, bool isChoiceMember) const override;

private:
    std::vector<std::string> m_values;
};

// Order: the required attribute code (string), name (string), the items (1 to 3),
// an optional Item under the name Extra, and any number of tag strings.
class COrder : public CTestGenerated<COrder, 5> {
public:
    enum { P_code, P_name, P_items, P_Extra, P_tags };
    COrder();
    void Init() override;
    CItemCol* GetItems() const;
    CTestStringCol* GetTags() const;
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*&, QvXmlLib10Data::CElementInfo**&,
                              QvXmlLib10Data::CAttributeInfo**&);
};

} // namespace QvXmlTest
