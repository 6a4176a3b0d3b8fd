#pragma once

#include "../../foundation/QvExport.h"

#include <string>

#include "../SmartPtr.h"
#include "ElementInfo.h"

namespace QvXmlLib10Data {

// Element metadata of a class whose compositor is an all group: each element at most
// once, in any order. The walk offers the cursor to every member not found yet, over
// and over; ElementFromXml answers true when the member has read its element, and
// moves the cursor only past what it read. Afterwards Validate tells who is missing.
class QVXML_API CElementInfoAll : public CElementInfo {
public:
    using CElementInfo::CElementInfo;
};

// A single member of an all group, for generated code that refines it. Nothing
// derives from it in the library.
class QVXML_API CElementInfoAllNonCol : public CElementInfoAll {
public:
    using CElementInfoAll::CElementInfoAll;
};

// An enumeration collection in an all group, for generated code that refines it.
// Nothing derives from it in the library.
class QVXML_API CElementInfoAllEnumCol : public CElementInfoAll {
public:
    using CElementInfoAll::CElementInfoAll;
};

// A repeating member of an all group. The collection reads what is its own at the
// cursor, and the member stays open for later passes; counts are checked on writing
// only. Validate is left to the derived classes, so these members are abstract: an
// all group has no repeating member.
class QVXML_API CElementInfoAllCol : public CElementInfoAll {
public:
    using CElementInfoAll::CElementInfoAll;

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    // Always false.
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
};

// ---------------------------------------------------------------------------------------------
// Primitive values

// Exactly one primitive value; missing, Validate fails in a class with a tag of its own.
class QVXML_API CElementInfoAllPrimMnd : public CElementInfoAll {
public:
    CElementInfoAllPrimMnd(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           QvXmlLib10::ItemType itemType, const char* format,
                           QvXmlLib10::CWhitespaceUtils::WhitespaceRule whitespaceRule,
                           const QvXmlLib10::CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
};

// At most one primitive value.
class QVXML_API CElementInfoAllPrimOpt : public CElementInfoAll {
public:
    CElementInfoAllPrimOpt(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           QvXmlLib10::ItemType itemType, const char* format,
                           QvXmlLib10::CWhitespaceUtils::WhitespaceRule whitespaceRule,
                           const QvXmlLib10::CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    // Always true.
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
};

// Any number of primitive values; abstract, see CElementInfoAllCol.
class QVXML_API CElementInfoAllPrimCol : public CElementInfoAllCol {
public:
    CElementInfoAllPrimCol(const char* elementName, const char* namespaceUri, int propertyIndex);
};

// ---------------------------------------------------------------------------------------------
// Enumerations, held as an i4

// Exactly one enumeration value.
class QVXML_API CElementInfoAllEnumMnd : public CElementInfoAll {
public:
    CElementInfoAllEnumMnd(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           const char* (*enumToText)(int), int (*textToEnum)(const char*));

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;

    const char* (*m_enumToText)(int);
    int (*m_textToEnum)(const char*);
};

// At most one enumeration value.
class QVXML_API CElementInfoAllEnumOpt : public CElementInfoAll {
public:
    CElementInfoAllEnumOpt(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           const char* (*enumToText)(int), int (*textToEnum)(const char*));

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    // Always true.
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;

    const char* (*m_enumToText)(int);
    int (*m_textToEnum)(const char*);
};

// ---------------------------------------------------------------------------------------------
// Child objects of a known class

// Exactly one child object, which its parent has created. A child with a tag of its
// own is reported missing only when `pseudoMandatory` says so; a pseudo child always.
class QVXML_API CElementInfoAllClsMnd : public CElementInfoAll {
public:
    CElementInfoAllClsMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                          XmlElementType classElementType,
                          QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*createObject)(int, const char*),
                          int classId, bool pseudoMandatory);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*m_createObject)(int, const char*);
    int m_classId;
    bool m_pseudoMandatory;
};

// At most one child object, created only when something is there.
class QVXML_API CElementInfoAllClsOpt : public CElementInfoAll {
public:
    CElementInfoAllClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                          XmlElementType classElementType,
                          QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*createObject)(int, const char*),
                          int classId);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    // Always true.
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*m_createObject)(int, const char*);
    int m_classId;
};

// Any number of child objects; abstract, see CElementInfoAllCol.
class QVXML_API CElementInfoAllClsCol : public CElementInfoAllCol {
public:
    CElementInfoAllClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                          XmlElementType classElementType);

    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
};

// ---------------------------------------------------------------------------------------------
// Child objects whose class is found from the element. They are written, but reading
// them is not supported: ElementFromXml always throws CQvException.

// Exactly one such child object.
class QVXML_API CElementInfoAllAbsClsMnd : public CElementInfoAll {
public:
    // The last argument is kept and not used.
    CElementInfoAllAbsClsMnd(
        const char* elementName, const char* namespaceUri, int propertyIndex, XmlElementType classElementType,
        QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*createFromElement)(QvXmlLib10::CXmlElement*), int reserved);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*m_createFromElement)(QvXmlLib10::CXmlElement*);
    int m_reserved;
};

// At most one such child object.
class QVXML_API CElementInfoAllAbsClsOpt : public CElementInfoAll {
public:
    CElementInfoAllAbsClsOpt(
        const char* elementName, const char* namespaceUri, int propertyIndex, XmlElementType classElementType,
        QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*createFromElement)(QvXmlLib10::CXmlElement*));

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    // Always true.
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;
    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
    QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> (*m_createFromElement)(QvXmlLib10::CXmlElement*);
};

// Any number of such child objects; abstract, see CElementInfoAllCol.
class QVXML_API CElementInfoAllAbsClsCol : public CElementInfoAllCol {
public:
    CElementInfoAllAbsClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                             XmlElementType classElementType);

    void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                   const QvXmlLib10::CXmlGeneratedClass* object,
                                   QvXmlLib10::CXmlWriter* writer) const override;

    XmlElementType m_classElementType;
};

// ---------------------------------------------------------------------------------------------
// Untyped open content (CElement); "AnyElement" accepts any local name.

// Exactly one untyped element, held in a CElement that the parent has created.
class QVXML_API CElementInfoAllUntpdMnd : public CElementInfoAll {
public:
    CElementInfoAllUntpdMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                            const char* namespaceRestriction, const char* targetNamespace);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;

    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
};

// At most one untyped element, in a new CElement held to the restriction.
class QVXML_API CElementInfoAllUntpdOpt : public CElementInfoAll {
public:
    CElementInfoAllUntpdOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                            const char* namespaceRestriction, const char* targetNamespace);

    bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                      QvXmlLib10::CXmlWriter* writer) const override;
    bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                        QvXmlLib10::CXmlElement* parent, QvXmlLib10::CXmlElement** cursor, const char* namespaceUri,
                        XmlElementType type) override;
    // Always true.
    bool Validate(const QvXmlLib10::CXmlSerializationContext& context, const QvXmlLib10::CXmlGeneratedClass* object,
                  bool found, bool check) const override;

    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
};

// Any number of untyped elements; abstract, see CElementInfoAllCol.
class QVXML_API CElementInfoAllUntpdCol : public CElementInfoAllCol {
public:
    CElementInfoAllUntpdCol(const char* elementName, const char* namespaceUri, int propertyIndex);
};

} // namespace QvXmlLib10Data
