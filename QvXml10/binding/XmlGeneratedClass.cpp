#include "binding/XmlGeneratedClass.h"

#include <memory>
#include <strings.h>

#include "binding/metadata/ChoiceElementInfo.h"
#include "collections/AttributeCollections.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "values/QvVariant.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

using namespace QvXmlLib10Data;

namespace QvXmlLib10 {

CQVCriticalSection CXmlGeneratedClass::m_csInit;

namespace {

// One flag per table entry, on the stack for tables of usual size.
class CEntryFlags {
public:
    explicit CEntryFlags(size_t count) : m_pFlags(m_inline) {
        if (count > kInline) {
            m_pHeap.reset(new bool[count]());
            m_pFlags = m_pHeap.get();
        } else {
            for (size_t i = 0; i < count; ++i)
                m_inline[i] = false;
        }
    }
    CEntryFlags(const CEntryFlags&) = delete;
    CEntryFlags& operator=(const CEntryFlags&) = delete;

    bool& operator[](size_t index) { return m_pFlags[index]; }

private:
    static constexpr size_t kInline = 64;
    bool m_inline[kInline];
    std::unique_ptr<bool[]> m_pHeap;
    bool* m_pFlags;
};

template <typename T> size_t CountEntries(T* const* table) {
    size_t count = 0;
    if (table != nullptr)
        while (table[count] != nullptr)
            ++count;
    return count;
}

INillable* AsNillable(const CXmlGeneratedClass* object) {
    return dynamic_cast<INillable*>(const_cast<CXmlGeneratedClass*>(object));
}

// The nil state of a nillable object; false for any other.
bool IsNilObject(const CXmlGeneratedClass* object) {
    INillable* const nillable = AsNillable(object);
    return nillable != nullptr && nillable->GetIsNil();
}

[[noreturn]] void ThrowLeftover(const CXmlElement* element, const CXmlElement* cursor) {
    throw CQvValidationException(FormatString("Failed read all the elements held within the element [%s]. The "
                                              "unexpected element [%s] remains un processed",
                                              element->GetLocalName().c_str(), cursor->GetLocalName().c_str()));
}

const char* LocalNameOf(const CXmlElement* element) {
    return element != nullptr ? element->GetLocalName().c_str() : "";
}

} // namespace

CXmlGeneratedClass::CXmlGeneratedClass() {}

CXmlGeneratedClass::~CXmlGeneratedClass() {}

void CXmlGeneratedClass::ReadProperty(int propertyIndex, QvVariant& value) const {
    const_cast<CXmlGeneratedClass*>(this)->AccessProperty(propertyIndex, true, value);
}

int CXmlGeneratedClass::GetClassElementInfoCount() const {
    return static_cast<int>(CountEntries(const_cast<CXmlGeneratedClass*>(this)->GetClassElementInfo()));
}

void CXmlGeneratedClass::CleanMetaData(CParentElementInfo*& parentInfo, CElementInfo**& elementInfo,
                                       CAttributeInfo**& attributeInfo) {
    delete parentInfo;
    parentInfo = nullptr;
    if (elementInfo != nullptr) {
        for (CElementInfo** entry = elementInfo; *entry != nullptr; ++entry)
            delete *entry;
        delete[] elementInfo;
        elementInfo = nullptr;
    }
    if (attributeInfo != nullptr) {
        for (CAttributeInfo** entry = attributeInfo; *entry != nullptr; ++entry)
            delete *entry;
        delete[] attributeInfo;
        attributeInfo = nullptr;
    }
}

bool CXmlGeneratedClass::DoesElementContainOptionalElements() const {
    // Only optional members of a choice and choice collections with a minimum of 0
    // make a choice optional; members of other classes count for nothing.
    CElementInfo* const* const table = const_cast<CXmlGeneratedClass*>(this)->GetClassElementInfo();
    for (size_t i = 0; table[i] != nullptr; ++i) {
        const CElementInfo* const entry = table[i];
        if (dynamic_cast<const CElementInfoChoicePrimOpt*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceClsOpt*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceAbsClsOpt*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceEnumOpt*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceUntpdOpt*>(entry) != nullptr)
            return true;
        if (dynamic_cast<const CElementInfoChoicePrimCol*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceClsCol*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceAbsClsCol*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceEnumCol*>(entry) != nullptr ||
            dynamic_cast<const CElementInfoChoiceUntpdCol*>(entry) != nullptr) {
            QvVariant value;
            entry->ReadProperty(this, value);
            if (value.GetItemType() != ItemType_XmlCollection) continue;
            const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
            if (collection && collection->GetMinOccurs() == 0) return true;
        }
    }
    return false;
}

bool CXmlGeneratedClass::IsElementInList(const CXmlSerializationContext& context, CXmlElement* element) const {
    CElementInfo* const* const table = const_cast<CXmlGeneratedClass*>(this)->GetClassElementInfo();
    for (size_t i = 0; table[i] != nullptr; ++i) {
        if (table[i]->IsThisElement(context, element)) return true;
    }
    return false;
}

// ---------------------------------------------------------------------------------------------
// Reading

CXmlElement* CXmlGeneratedClass::FromXml_Int(CXmlElement* element, CXmlElement* firstChild,
                                             const CXmlSerializationContext& context, bool isChoiceMember) {
    try {
        if (element == nullptr) throw CQvInvalidParamException("There is no element to read the object from");
        Init();
        const CParentElementInfo* const info = GetParentElementInfo();
        // A pseudo element has no element of its own and keeps its name.
        if (info->m_elementType == XmlElementType_Element) m_elementName = element->GetLocalName();
        ProcessAttributesFromXml(context, element, info->m_reportUnknownAttributes);
        // Neither the children nor the text of a nil element are looked at.
        if (IsNilObject(this)) return firstChild;

        CXmlElement* cursor = nullptr;
        switch (info->m_groupType) {
        case XmlElementGroupType_Sequence:
            cursor = ProcessElementSeqFromXml(context, element, firstChild, info->m_elementType);
            break;
        case XmlElementGroupType_Choice:
            cursor = ProcessElementChoiceFromXml(context, element, firstChild, info->m_elementType, isChoiceMember);
            break;
        case XmlElementGroupType_All:
            cursor = ProcessElementAllFromXml(context, element, firstChild, info->m_elementType);
            break;
        default:
            throw CQvException("Unknow Group Type");
        }

        if (info->m_textPropertyIndex != -1 && info->m_textItemType != ItemType_Invalid) {
            QvVariant value;
            if (info->m_textIsRaw)
                value.SetString(element->GetText());
            else
                value.FromString(element->GetText(), info->m_textItemType, CWhitespaceUtils::WhitespaceRule_None);
            AccessProperty(info->m_textPropertyIndex, false, value);
        }
        return cursor;
    } catch (const CQvException& e) {
        throw CQvValidationException(FormatString("Failed to process the element [%s]", LocalNameOf(element)), e);
    }
}

void CXmlGeneratedClass::ProcessAttributesFromXml(const CXmlSerializationContext& context, CXmlElement* element,
                                                  bool reportUnknown) {
    CAttributeInfo* const* const table = GetClassAttributeInfo();
    const size_t count = CountEntries(table);
    CEntryFlags found(count);

    for (const std::unique_ptr<CXmlAttribute>& attributePtr : element->GetAttributes()) {
        CXmlAttribute* const attribute = attributePtr.get();
        if (attribute->IsNamespaceAttribute()) continue;

        if (attribute->IsNilAttribute()) {
            INillable* const nillable = AsNillable(this);
            if (nillable == nullptr) {
                throw CQvValidationException(FormatString("Invalid use of 'nil' attibute in non-nillable element [%s]",
                                                          element->GetLocalName().c_str()));
            }
            const char* const value = attribute->GetValue().c_str();
            if (strcasecmp(value, "true") == 0 || strcasecmp(value, "1") == 0)
                nillable->SetIsNil(true);
            else if (strcasecmp(value, "false") == 0 || strcasecmp(value, "0") == 0)
                nillable->SetIsNil(false);
            else
                throw CQvValidationException(FormatString("Unexpected Value [%s] for 'nil' Attribute found.", value));
            continue;
        }

        // The first entry that takes it ends the search. Entries that took one before
        // are asked again, so that a wildcard can collect any number.
        bool taken = false;
        for (size_t i = 0; i < count; ++i) {
            if (table[i]->AttributeFromXml(context, this, attribute)) {
                found[i] = true;
                taken = true;
                break;
            }
        }
        if (!taken && reportUnknown && !context.GetIgnoreUnknownAttributes()) {
            throw CQvValidationException(
                FormatString("Unexpected Attribute [%s] found.", attribute->GetLocalName().c_str()));
        }
    }

    for (size_t i = 0; i < count; ++i)
        table[i]->Validate(context, found[i]);
}

CXmlElement* CXmlGeneratedClass::ProcessElementSeqFromXml(const CXmlSerializationContext& context, CXmlElement* element,
                                                          CXmlElement* child, XmlElementType type) {
    CElementInfo* const* const table = GetClassElementInfo();
    const size_t count = CountEntries(table);
    CXmlElement* const entry = child;
    CXmlElement* cursor = child;
    size_t resume = 0;

    for (;;) {
        for (size_t i = resume; i < count; ++i) {
            CXmlElement* const before = cursor;
            // A member answers false only in a pseudo element: the group does not match
            // here, unless unknown elements may be passed over.
            while (!table[i]->ElementFromXml(context, this, element, &cursor, GetNamespace().c_str(), type)) {
                if (!context.GetIgnoreUnknownElements() || cursor == nullptr) return entry;
                cursor = cursor->GetNextSiblingElement();
            }
            if (cursor != before) resume = i;
        }

        if (type != XmlElementType_Element || cursor == nullptr) return cursor;
        if (!context.GetIgnoreUnknownElements()) ThrowLeftover(element, cursor);

        // Pass over the unknown element and give the last member that consumed
        // something, and all behind it, another try: a collection may go on behind it.
        cursor = cursor->GetNextSiblingElement();
        if (cursor == nullptr) return nullptr;
    }
}

CXmlElement* CXmlGeneratedClass::ProcessElementAllFromXml(const CXmlSerializationContext& context, CXmlElement* element,
                                                          CXmlElement* child, XmlElementType type) {
    CElementInfo* const* const table = GetClassElementInfo();
    const size_t count = CountEntries(table);
    CEntryFlags found(count);
    CXmlElement* const entry = child;
    CXmlElement* cursor = child;

    // Passes over the members not found yet, for as long as a pass consumes something.
    // An element that no member takes ends them: nothing is skipped here.
    bool moved = true;
    while (cursor != nullptr && moved) {
        CXmlElement* const before = cursor;
        for (size_t i = 0; i < count; ++i) {
            if (!found[i])
                found[i] = table[i]->ElementFromXml(context, this, element, &cursor, GetNamespace().c_str(), type);
        }
        moved = cursor != before;
    }

    const bool check = type == XmlElementType_Element;
    for (size_t i = 0; i < count; ++i) {
        if (!table[i]->Validate(context, this, found[i], check)) return entry;
    }

    if (type == XmlElementType_Element && cursor != nullptr && !context.GetIgnoreUnknownElements())
        ThrowLeftover(element, cursor);
    return cursor;
}

CXmlElement* CXmlGeneratedClass::ProcessElementChoiceFromXml(const CXmlSerializationContext& context,
                                                             CXmlElement* element, CXmlElement* child,
                                                             XmlElementType type, bool isChoiceMember) {
    CElementInfo* const* const table = GetClassElementInfo();
    const size_t count = CountEntries(table);
    CXmlElement* const entry = child;
    CXmlElement* cursor = child;
    const bool ignoreUnknown = context.GetIgnoreUnknownElements();

    // The first member that takes the cursor is the choice. With unknown elements
    // ignored, an element of its own passes over what no member takes and tries again.
    bool found = false;
    for (;;) {
        for (size_t i = 0; i < count && !found; ++i)
            found = table[i]->ElementFromXml(context, this, element, &cursor, GetNamespace().c_str(), type);
        if (found) break;
        if (cursor != nullptr && ignoreUnknown && type == XmlElementType_Element)
            cursor = cursor->GetNextSiblingElement();
        if (!(ignoreUnknown && cursor != nullptr && type == XmlElementType_Element)) break;
    }

    if (found || isChoiceMember) {
        if (type != XmlElementType_Element) return cursor;
    } else if (type != XmlElementType_Element) {
        // A pseudo element that matched nothing hands back where it started.
        if (type == XmlElementType_Pseudo && ignoreUnknown) cursor = entry;
        return cursor;
    } else if (!DoesElementContainOptionalElements() && !context.GetIgnoreMissingChoice()) {
        throw CQvValidationException(
            FormatString("No child elements within the element [%s] were populated. The element represents a "
                         "choice, so one and only one element should be populated. The element contained no "
                         "sutable child elements",
                         element->GetLocalName().c_str()));
    }

    // Only one member is read: a second element of the choice is left over.
    if (cursor != nullptr && !ignoreUnknown) ThrowLeftover(element, cursor);
    return cursor;
}

// ---------------------------------------------------------------------------------------------
// Writing

void CXmlGeneratedClass::ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                                   const CXmlSerializationContext& context, bool isChoiceMember) const {
    try {
        CXmlGeneratedClass* const self = const_cast<CXmlGeneratedClass*>(this);
        const CParentElementInfo* const info = self->GetParentElementInfo();
        // A pseudo element has no tag and no attribute of its own.
        const bool hasTag = info->m_elementType == XmlElementType_Element;

        if (hasTag) {
            if (isRoot) {
                for (const std::string& instruction : context.GetProcessingInstructions())
                    writer->WritePI(instruction);
                const CNamespaceAliasMap& aliases = context.GetNamespaceAliases();
                const int aliasCount = aliases.GetNamespaceCount();
                for (int i = 0; i < aliasCount; ++i) {
                    const std::string namespaceAt = aliases.GetNamespaceAt(i);
                    writer->AddNamespace(aliases.GetAliasFromNamespace(namespaceAt.c_str()), namespaceAt);
                }
                const std::string defaultNamespace = context.GetDefaultNamespaceURI();
                if (!defaultNamespace.empty()) writer->SetDefaultNamespace(defaultNamespace);
            }

            writer->WriteStartElement(m_elementName, OrEmpty(namespaceUri));
            if (isRoot) {
                const CSmartPtr<CAttributeCol> rootAttributes = context.GetAdditionalRootAttributes();
                CXmlObjectBase::ToXml_Int(rootAttributes.Get(), writer, false, namespaceUri, context, isChoiceMember);
            }
            AttributesToXml_Int(writer, context);
            if (isRoot) {
                const std::string schema = context.GetInLineSchema();
                if (!schema.empty()) writer->WriteInlineSchema(schema);
            }
        }

        if (IsNilObject(this)) {
            writer->WriteAttributeNil();
        } else {
            switch (info->m_groupType) {
            case XmlElementGroupType_Sequence:
                ProcessElementSeqToXml(context, self->GetClassElementInfo(), writer);
                break;
            case XmlElementGroupType_Choice:
                ProcessElementChoiceToXml(context, self->GetClassElementInfo(), writer, isChoiceMember);
                break;
            case XmlElementGroupType_All:
                ProcessElementAllToXml(context, self->GetClassElementInfo(), writer);
                break;
            default:
                throw CQvException("Unknown XML Group Type");
            }

            if (info->m_textPropertyIndex != -1 && info->m_textItemType != ItemType_Invalid) {
                QvVariant value;
                ReadProperty(info->m_textPropertyIndex, value);
                if (value.IsNil())
                    writer->WriteAttributeNil();
                else
                    writer->WriteString(value.ToString(info->m_textFormat.c_str()), value.GetItemType());
            }
        }

        if (hasTag) writer->WriteEndElement();
    } catch (const CQvException& e) {
        throw CQvValidationException(FormatString("Failed to convert the element [%s] to XML", m_elementName.c_str()),
                                     e);
    }
}

void CXmlGeneratedClass::AttributesToXml_Int(CXmlWriter* writer, const CXmlSerializationContext& context) const {
    try {
        CXmlGeneratedClass* const self = const_cast<CXmlGeneratedClass*>(this);
        const CParentElementInfo* const info = self->GetParentElementInfo();
        // An object under another element's name declares its own type.
        if (context.GetWriteTypeAttribute() && info->m_writeTypeForOtherName && info->m_elementName != m_elementName)
            writer->WriteAttributeType(info->m_namespaceUri, info->m_elementName, ItemType_string);
        ProcessAttributesToXml(context, self->GetClassElementInfo(), self->GetClassAttributeInfo(), writer);
    } catch (const CQvException& e) {
        throw CQvException("Failed to convert attributes to XML", e);
    }
}

void CXmlGeneratedClass::ProcessAttributesToXml(const CXmlSerializationContext& context, CElementInfo** elements,
                                                CAttributeInfo** attributes, CXmlWriter* writer) const {
    if (attributes != nullptr)
        for (size_t i = 0; attributes[i] != nullptr; ++i)
            attributes[i]->AttributeToXml(context, this, writer);
    // The attributes of pseudo children land on this element, behind its own.
    if (elements != nullptr)
        for (size_t i = 0; elements[i] != nullptr; ++i)
            elements[i]->PseudoChildAttributeToXml(context, this, writer);
}

void CXmlGeneratedClass::ProcessElementSeqToXml(const CXmlSerializationContext& context, CElementInfo** elements,
                                                CXmlWriter* writer) const {
    for (size_t i = 0; elements[i] != nullptr; ++i)
        elements[i]->ElementToXml(context, this, writer);
}

void CXmlGeneratedClass::ProcessElementAllToXml(const CXmlSerializationContext& context, CElementInfo** elements,
                                                CXmlWriter* writer) const {
    for (size_t i = 0; elements[i] != nullptr; ++i)
        elements[i]->ElementToXml(context, this, writer);
}

void CXmlGeneratedClass::ProcessElementChoiceToXml(const CXmlSerializationContext& context, CElementInfo** elements,
                                                   CXmlWriter* writer, bool isChoiceMember) const {
    for (size_t i = 0; elements[i] != nullptr; ++i) {
        if (elements[i]->ElementToXml(context, this, writer)) return;
    }
    if (DoesElementContainOptionalElements() || isChoiceMember || context.GetIgnoreMissingChoice()) return;
    throw CQvValidationException("This element is a choice, and as such must have at one (and only one) valid item, "
                                 "currently there are none set");
}

} // namespace QvXmlLib10
