#pragma once

#include "../../foundation/QvExport.h"

#include <string>

#include "../SmartPtr.h"
#include "ElementInfo.h"

namespace QvXmlLib10Data {

// Element metadata of a class whose compositor is a choice. The walk offers the
// cursor to the members in table order until one answers true: that member was
// chosen and has read its element. A member that answers false has left the cursor
// where it was. No member of a choice is required by itself.
class QVXML_API CElementInfoChoice : public CElementInfo {
public:
    using CElementInfo::CElementInfo;

    // The choice walk never asks: always throws CQvException.
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
};

// A repeating member of a choice: chosen when its collection takes at least one
// element. Its count is checked on reading only.
class QVXML_API CElementInfoChoiceCol : public CElementInfoChoice {
public:
    using CElementInfoChoice::CElementInfoChoice;

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

// A primitive value.
class QVXML_API CElementInfoChoicePrimOpt : public CElementInfoChoice {
public:
    CElementInfoChoicePrimOpt(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                              QvXmlLib10::ItemType itemType, const char* format,
                              QvXmlLib10::CWhitespaceUtils::WhitespaceRule whitespaceRule,
                              const QvXmlLib10::CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

// An enumeration value, held as an i4.
class QVXML_API CElementInfoChoiceEnumOpt : public CElementInfoChoice {
public:
    CElementInfoChoiceEnumOpt(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                              const char* (*enumToText)(int), int (*textToEnum)(const char*));

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;

    const char* (*m_enumToText)(int);
    int (*m_textToEnum)(const char*);
};

// A child object of a known class, created when chosen. The property is stored before
// the object is read, so that the generated setter records the choice first. A child
// with a tag of its own is read and written as a choice member: its own choice group
// may stay empty.
class QVXML_API CElementInfoChoiceClsOpt : public CElementInfoChoice {
public:
    CElementInfoChoiceClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                             XmlElementType classElementType,
                             QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*createObject)(int, const char*),
                             int classId);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*m_createObject)(int, const char*);
    int m_classId;
};

// A child object whose class `createFromElement` finds from the element. What it
// returns is stored, null included; a null object leaves the choice to later members.
class QVXML_API CElementInfoChoiceAbsClsOpt : public CElementInfoChoice {
public:
    CElementInfoChoiceAbsClsOpt(
        const char* elementName, const char* namespaceUri, int propertyIndex, XmlElementType classElementType,
        QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*createFromElement)(QvXmlLib10::CXmlElement*));

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*m_createFromElement)(QvXmlLib10::CXmlElement*);
};

// An untyped element (CElement); "AnyElement" accepts any local name. When nothing is
// taken the property is set to a null object.
class QVXML_API CElementInfoChoiceUntpdOpt : public CElementInfoChoice {
public:
    CElementInfoChoiceUntpdOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                               const char* namespaceRestriction, const char* targetNamespace);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;

    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
};

// Any number of primitive values, held in a typed value collection.
class QVXML_API CElementInfoChoicePrimCol : public CElementInfoChoiceCol {
public:
    CElementInfoChoicePrimCol(const char* elementName, const char* namespaceUri, int propertyIndex);
};

// Any number of enumeration values, held in a collection.
class QVXML_API CElementInfoChoiceEnumCol : public CElementInfoChoiceCol {
public:
    CElementInfoChoiceEnumCol(const char* elementName, const char* namespaceUri, int propertyIndex);
};

// Any number of child objects of a known class.
class QVXML_API CElementInfoChoiceClsCol : public CElementInfoChoiceCol {
public:
    CElementInfoChoiceClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                             XmlElementType classElementType);

    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
};

// Any number of child objects whose class is found from the element.
class QVXML_API CElementInfoChoiceAbsClsCol : public CElementInfoChoiceCol {
public:
    CElementInfoChoiceAbsClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                                XmlElementType classElementType);

    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
};

// Any number of untyped elements, held in a CElementCol. Under a fixed name the
// collection takes only elements of that name and of the namespace of the first.
class QVXML_API CElementInfoChoiceUntpdCol : public CElementInfoChoiceCol {
public:
    CElementInfoChoiceUntpdCol(const char* elementName, const char* namespaceUri, int propertyIndex);

    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

} // namespace QvXmlLib10Data
