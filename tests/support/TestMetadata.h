#pragma once

// Minimal element and attribute metadata for tests of the driver: a primitive value,
// a child object and a collection, each reading by the rules of its group (sequence,
// all or choice), and a primitive attribute. They implement the pure operations of
// the metadata frame the way generated metadata does, for the cases the tests need.

#include "binding/SmartPtr.h"
#include "binding/XmlGeneratedClass.h"
#include "binding/metadata/AttributeInfo.h"
#include "binding/metadata/ElementInfo.h"
#include "validation/PrimitiveRestrictions.h"
#include "validation/WhitespaceUtils.h"

namespace QvXmlTest {

enum class Group { Sequence, All, Choice };
enum class Occurs { Mandatory, Optional };

using CreateObjectFn = QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*)(int classId, const char* name);

// A value of a primitive type.
class CTestPrimElement : public QvXmlLib10Data::CElementInfo {
public:
    CTestPrimElement(Group group, Occurs occurs, const char* name, const char* namespaceUri, int propertyIndex,
                     bool nillable, QvXmlLib10::ItemType itemType,
                     const QvXmlLib10::CPrimitiveRestrictions& restrictions = QvXmlLib10::CPrimitiveRestrictions(),
                     const char* format = nullptr);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        QvXmlLib10Data::XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;

private:
    // Reads the value at the cursor, nil included, stores it and moves the cursor on.
    void ReadValue(QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlElement** cursor);

    Group m_group;
    Occurs m_occurs;
};

// A child object of a known class, with a tag of its own or as pseudo element.
// Mandatory children exist already (their parent built them); optional ones are
// created through `create` when something is there.
class CTestClsElement : public QvXmlLib10Data::CElementInfo {
public:
    CTestClsElement(Group group, Occurs occurs, const char* name, const char* namespaceUri, int propertyIndex,
                    QvXmlLib10Data::XmlElementType classElementType, CreateObjectFn create, int classId,
                    bool pseudoMandatory = false);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        QvXmlLib10Data::XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

private:
    bool ReadSequence(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor,
                      QvXmlLib10Data::XmlElementType type);
    bool ReadChoice(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                    QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor);
    bool ReadAll(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                 QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor);
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> Fetch(QvXmlLib10::CXmlGeneratedClass* object) const;
    void Store(QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlObjectBase* child) const;

    Group m_group;
    Occurs m_occurs;
    QvXmlLib10Data::XmlElementType m_classElementType;
    CreateObjectFn m_createObject;
    int m_classId;
    bool m_pseudoMandatory;
};

// A collection member of a sequence, read and written as a whole by the collection.
class CTestColElement : public QvXmlLib10Data::CElementInfo {
public:
    CTestColElement(const char* name, const char* namespaceUri, int propertyIndex);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        QvXmlLib10Data::XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
};

// An attribute of a primitive type.
class CTestAttribute : public QvXmlLib10Data::CAttributeInfo {
public:
    CTestAttribute(const char* name, const char* namespaceUri, int propertyIndex, bool optional,
                   QvXmlLib10::ItemType itemType);

    void AttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                        const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const override;
    bool AttributeFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                          QvXmlLib10::CXmlAttribute* attribute) override;
    void Validate(const QvXmlLib10::CXmlSerializationContext& context, bool found) const override;

private:
    QvXmlLib10::ItemType m_itemType;
};

} // namespace QvXmlTest
