#pragma once

#include "../../foundation/QvExport.h"

#include <string>

#include "../SmartPtr.h"
#include "ElementInfo.h"

namespace QvXmlLib10Data {

// Element metadata of a class whose compositor is a sequence. The walk offers the
// members the cursor in table order; each takes what is its own at the cursor and
// moves the cursor behind it. ElementFromXml answers false only in a pseudo element,
// where it means that the group does not match at this cursor.
class QVXML_API CElementInfoSeq : public CElementInfo {
public:
    using CElementInfo::CElementInfo;

    // The sequence walk never asks: always throws CQvException.
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
};

// A single member of a sequence, for generated code that refines it. Nothing derives
// from it in the library.
class QVXML_API CElementInfoSeqNonCol : public CElementInfoSeq {
public:
    using CElementInfoSeq::CElementInfoSeq;
};

// A repeating member of a sequence: the collection reads as many elements as are its
// own, and its count is checked on reading and writing.
class QVXML_API CElementInfoSeqCol : public CElementInfoSeq {
public:
    using CElementInfoSeq::CElementInfoSeq;

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

// ---------------------------------------------------------------------------------------------
// Primitive values

// Exactly one primitive value. Missing, it fails, unless the context ignores missing
// mandatory elements; unknown elements ahead of it are passed over when the context
// ignores them.
class QVXML_API CElementInfoSeqPrimMnd : public CElementInfoSeq {
public:
    CElementInfoSeqPrimMnd(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           QvXmlLib10::ItemType itemType, const char* format,
                           QvXmlLib10::CWhitespaceUtils::WhitespaceRule whitespaceRule,
                           const QvXmlLib10::CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

// At most one primitive value, read only when it stands at the cursor.
class QVXML_API CElementInfoSeqPrimOpt : public CElementInfoSeq {
public:
    CElementInfoSeqPrimOpt(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           QvXmlLib10::ItemType itemType, const char* format,
                           QvXmlLib10::CWhitespaceUtils::WhitespaceRule whitespaceRule,
                           const QvXmlLib10::CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

// Any number of primitive values, held in a typed value collection.
class QVXML_API CElementInfoSeqPrimCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqPrimCol(const char* elementName, const char* namespaceUri, int propertyIndex);
};

// ---------------------------------------------------------------------------------------------
// Enumerations, held as an i4

// Exactly one enumeration value; missing, as CElementInfoSeqPrimMnd, except that a
// pseudo element does not pass over unknown elements to find it.
class QVXML_API CElementInfoSeqEnumMnd : public CElementInfoSeq {
public:
    CElementInfoSeqEnumMnd(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           const char* (*enumToText)(int), int (*textToEnum)(const char*));

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;

    int (*m_textToEnum)(const char*);
    const char* (*m_enumToText)(int);
};

// At most one enumeration value.
class QVXML_API CElementInfoSeqEnumOpt : public CElementInfoSeq {
public:
    CElementInfoSeqEnumOpt(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           const char* (*enumToText)(int), int (*textToEnum)(const char*));

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;

    const char* (*m_enumToText)(int);
    int (*m_textToEnum)(const char*);
};

// Any number of enumeration values, held in a collection.
class QVXML_API CElementInfoSeqEnumCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqEnumCol(const char* elementName, const char* namespaceUri, int propertyIndex);
};

// ---------------------------------------------------------------------------------------------
// Child objects of a known class

// Exactly one child object, which its parent has created. With a tag of its own it
// reads like a mandatory primitive; as a pseudo element it reads from the parent's
// element at the cursor, and `pseudoMandatory` says whether it must take something.
class QVXML_API CElementInfoSeqClsMnd : public CElementInfoSeq {
public:
    CElementInfoSeqClsMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                          XmlElementType classElementType,
                          QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*createObject)(int, const char*),
                          int classId, bool pseudoMandatory);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
    bool m_pseudoMandatory;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*m_createObject)(int, const char*);
    int m_classId;
};

// At most one child object, created through `createObject` only when something is
// there: the property stays as it was when the element or group is absent.
class QVXML_API CElementInfoSeqClsOpt : public CElementInfoSeq {
public:
    CElementInfoSeqClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
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

// Any number of child objects, held in a collection.
class QVXML_API CElementInfoSeqClsCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                          XmlElementType classElementType);

    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
};

// ---------------------------------------------------------------------------------------------
// Child objects whose class is found from the element

// Exactly one child object, made by `createFromElement` from the element at the
// cursor. Its absence fails whatever the context says.
class QVXML_API CElementInfoSeqAbsClsMnd : public CElementInfoSeq {
public:
    CElementInfoSeqAbsClsMnd(
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

// At most one such child object; an element no class fits is left unread.
class QVXML_API CElementInfoSeqAbsClsOpt : public CElementInfoSeq {
public:
    CElementInfoSeqAbsClsOpt(
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

// Any number of such child objects, held in a collection.
class QVXML_API CElementInfoSeqAbsClsCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqAbsClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                             XmlElementType classElementType);

    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
};

// ---------------------------------------------------------------------------------------------
// Untyped open content (CElement). The element name "AnyElement" accepts any local
// name; namespaces are left to the CElement's restriction.

// Exactly one untyped element, held in a CElement that the parent has created.
class QVXML_API CElementInfoSeqUntpdMnd : public CElementInfoSeq {
public:
    CElementInfoSeqUntpdMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                            const char* namespaceRestriction, const char* targetNamespace);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;

    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
};

// At most one untyped element, in a new CElement held to the restriction.
class QVXML_API CElementInfoSeqUntpdOpt : public CElementInfoSeq {
public:
    CElementInfoSeqUntpdOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                            const char* namespaceRestriction, const char* targetNamespace);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;

    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
};

// Any number of untyped elements, held in a CElementCol. Under a fixed name the
// collection takes only elements of that name and of the namespace of the first.
class QVXML_API CElementInfoSeqUntpdCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqUntpdCol(const char* elementName, const char* namespaceUri, int propertyIndex);

    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

} // namespace QvXmlLib10Data
