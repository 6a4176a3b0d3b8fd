#pragma once

#include "../foundation/QvExport.h"

#include <string>

#include "XmlObjectBase.h"
#include "metadata/AttributeInfo.h"
#include "metadata/ElementInfo.h"
#include "metadata/ParentElementInfo.h"
#include "../foundation/CriticalSection.h"

namespace QvXmlLib10 {

class QvVariant;

// Base of every generated class, and the engine that reads and writes it by its
// metadata tables: FromXml_Int walks the attribute and element tables over a parsed
// element, ToXml_Int walks them over a writer. The class holds no data; a generated
// class brings its properties, AccessProperty and its tables.
//
// A generated class sets its element name and creates the member objects and
// collections of its mandatory children and collections in its constructor, returns
// itself from GetBase, and hands out tables that it builds once per class (under
// m_csInit) and gives back through CleanMetaData. Init brings an object to its
// initial state; it is the first step of every read.
//
// Failures of any step are wrapped in a CQvValidationException naming the element, so
// that GetFullMessage shows the path from the root to the failing element.
class QVXML_API CXmlGeneratedClass : public CXmlObjectBase {
public:
    CXmlGeneratedClass();
    ~CXmlGeneratedClass() override;

    // The generated code's lock for building its tables; the library never takes it.
    static CQVCriticalSection m_csInit;

    // With `read` true stores the property's value in `value` (nothing for a property
    // without a value); with `read` false assigns `value` to it.
    virtual void AccessProperty(int propertyIndex, bool read, QvVariant& value) = 0;
    // Never null.
    virtual QvXmlLib10Data::CParentElementInfo* GetParentElementInfo() = 0;
    // Null-terminated, in schema order; never null.
    virtual QvXmlLib10Data::CElementInfo** GetClassElementInfo() = 0;
    virtual QvXmlLib10Data::CAttributeInfo** GetClassAttributeInfo() = 0;
    // Resets the object before it is read.
    virtual void Init() = 0;

    // AccessProperty for reading, on a const object.
    void ReadProperty(int propertyIndex, QvVariant& value) const;
    // Number of entries of the element table ahead of the null.
    int GetClassElementInfoCount() const;
    // Deletes the parent info, each entry of both tables and the tables themselves,
    // and nulls the three pointers. Any of them may be null already.
    static void CleanMetaData(QvXmlLib10Data::CParentElementInfo*& parentInfo,
                              QvXmlLib10Data::CElementInfo**& elementInfo,
                              QvXmlLib10Data::CAttributeInfo**& attributeInfo);
    // Whether a choice of this class may stay empty: true when a member is optional
    // by itself or a collection with a minimum of 0.
    bool DoesElementContainOptionalElements() const;
    // Whether any entry of the element table matches the element.
    bool IsElementInList(const CXmlSerializationContext& context, CXmlElement* element) const;

    // Offers every attribute of `element` to the attribute table, then lets each entry
    // validate what it found.
    void ProcessAttributesFromXml(const CXmlSerializationContext& context, CXmlElement* element, bool reportUnknown);
    // Writes the class's attributes, then those of its pseudo children.
    void ProcessAttributesToXml(const CXmlSerializationContext& context, QvXmlLib10Data::CElementInfo** elements,
                                QvXmlLib10Data::CAttributeInfo** attributes, CXmlWriter* writer) const;

    // The three walks over the children from `child`; each returns the new cursor.
    CXmlElement* ProcessElementSeqFromXml(const CXmlSerializationContext& context, CXmlElement* element,
                                          CXmlElement* child, QvXmlLib10Data::XmlElementType type);
    CXmlElement* ProcessElementAllFromXml(const CXmlSerializationContext& context, CXmlElement* element,
                                          CXmlElement* child, QvXmlLib10Data::XmlElementType type);
    CXmlElement* ProcessElementChoiceFromXml(const CXmlSerializationContext& context, CXmlElement* element,
                                             CXmlElement* child, QvXmlLib10Data::XmlElementType type,
                                             bool isChoiceMember);

    // Write every entry in table order.
    void ProcessElementSeqToXml(const CXmlSerializationContext& context, QvXmlLib10Data::CElementInfo** elements,
                                CXmlWriter* writer) const;
    void ProcessElementAllToXml(const CXmlSerializationContext& context, QvXmlLib10Data::CElementInfo** elements,
                                CXmlWriter* writer) const;
    // Writes the first entry that has something to write, and only that one.
    void ProcessElementChoiceToXml(const CXmlSerializationContext& context, QvXmlLib10Data::CElementInfo** elements,
                                   CXmlWriter* writer, bool isChoiceMember) const;

protected:
    void AttributesToXml_Int(CXmlWriter* writer, const CXmlSerializationContext& context) const override;
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri, const CXmlSerializationContext& context,
                   bool isChoiceMember) const override;
    CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* firstChild, const CXmlSerializationContext& context,
                             bool isChoiceMember) override;
};

} // namespace QvXmlLib10
