#include "binding/XmlObjectBase.h"

#include "collections/Element.h"
#include "collections/XmlCollection.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "internal/Text.h"

#include <cstdio>
#include <cstring>

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

int g_nMajor = 0;
int g_nMinor = 0;
bool ASYNC_FROMXMLFILE = false;

namespace {

const int RUNTIME_MAJOR = 10;
const int RUNTIME_MINOR = 1;

bool IsVersionValid() { return g_nMajor == RUNTIME_MAJOR && g_nMinor == RUNTIME_MINOR; }

void PrintVersionBanner(FILE* stream) {
    std::fputs("\n-----------------Version Mismatch-----------------\n", stream);
    std::fputs("Quiver Works XML 2012 - Version Mismatch Error\n", stream);
    std::fputs(FormatString("Please ensure your generated code is the same version as this library (Quiver Runtime: "
                            "v%d.%d, Generator: v%d.%d).\n",
                            RUNTIME_MAJOR, RUNTIME_MINOR, g_nMajor, g_nMinor)
                   .c_str(),
               stream);
    std::fflush(stream);
}

void PrintVersionBanners() {
    PrintVersionBanner(stdout);
    PrintVersionBanner(stderr);
}

} // namespace

void SetGeneratorVersion(int major, int minor) {
    g_nMajor = major;
    g_nMinor = minor;
}

void AsyncFromXmlFile(bool async) { ASYNC_FROMXMLFILE = async; }

void CXmlObjectBase::CheckVersion() {
    if (IsVersionValid()) return;
    PrintVersionBanners();
    throw CQvException(FormatString("Wrong Version (Quiver Runtime: v%d.%d, Generator: v%d.%d)", RUNTIME_MAJOR,
                                    RUNTIME_MINOR, g_nMajor, g_nMinor));
}

CXmlObjectBase::CXmlObjectBase() : m_refCount(0) {
    // Only the first object of the process reports a mismatch, and it does not throw:
    // objects can be built, their conversions fail.
    static bool bMsgCreated = false;
    if (!bMsgCreated) {
        bMsgCreated = true;
        if (!IsVersionValid()) PrintVersionBanners();
    }
}

CXmlObjectBase::CXmlObjectBase(const CXmlObjectBase& other)
    : IEventSink(other), m_elementName(other.m_elementName), m_refCount(0) {}

CXmlObjectBase& CXmlObjectBase::operator=(const CXmlObjectBase& other) {
    m_elementName = other.m_elementName;
    return *this;
}

CXmlObjectBase::~CXmlObjectBase() {}

long CXmlObjectBase::AddRef() {
    m_cs.Enter();
    const long count = ++m_refCount;
    m_cs.Leave();
    return count;
}

long CXmlObjectBase::Release() {
    m_cs.Enter();
    const long count = --m_refCount;
    m_cs.Leave();
    if (count == 0) delete this;
    return count;
}

std::string CXmlObjectBase::GetElementName() const { return m_elementName; }

void CXmlObjectBase::SetElementName(const char* name) { m_elementName = OrEmpty(name); }

void CXmlObjectBase::OnEvent(CXmlObjectBase* /*source*/, MsgType /*type*/, void* /*data*/) {}

CXmlObjectBase* CXmlObjectBase::GetBase() const { return const_cast<CXmlObjectBase*>(this)->GetBase(); }

// ---------------------------------------------------------------------------------------------
// Reading entry points: each builds a document, loads it and hands its root to FromXml_Int.

void CXmlObjectBase::FromXmlFile(const char* path, const CXmlSerializationContext& context) {
    CheckVersion();
    CXmlDocument document(context);
    document.Load(path);
    CXmlElement* root = document.GetDocumentElement();
    FromXml_Int(root, root->GetFirstElement(), context, false);
}

void CXmlObjectBase::FromXml(const char* text, const CXmlSerializationContext& context) {
    CheckVersion();
    CXmlDocument document(context);
    document.LoadXml(text);
    CXmlElement* root = document.GetDocumentElement();
    FromXml_Int(root, root->GetFirstElement(), context, false);
}

void CXmlObjectBase::FromXml(const wchar_t* text, const CXmlSerializationContext& context) {
    CheckVersion();
    CXmlDocument document(context);
    document.LoadXml(text);
    CXmlElement* root = document.GetDocumentElement();
    FromXml_Int(root, root->GetFirstElement(), context, false);
}

void CXmlObjectBase::FromXmlStream(unsigned char* data, unsigned long length, const CXmlSerializationContext& context) {
    CheckVersion();
    CXmlDocument document(context);
    document.LoadXmlStream(data, length);
    CXmlElement* root = document.GetDocumentElement();
    FromXml_Int(root, root->GetFirstElement(), context, false);
}

void CXmlObjectBase::FromXmlStream(const CBinaryData& data, const CXmlSerializationContext& context) {
    // Not through the virtual table, and no version check of its own: the called form has one.
    CXmlObjectBase::FromXmlStream(data.GetData(), data.GetLength(), context);
}

CXmlElement* CXmlObjectBase::FromXmlElement(const CXmlElement* element, const CXmlSerializationContext& context) {
    CheckVersion();
    CXmlElement* mutableElement = const_cast<CXmlElement*>(element);
    return FromXml_Int(mutableElement, mutableElement ? mutableElement->GetFirstElement() : nullptr, context, false);
}

void CXmlObjectBase::FromXmlElement(const CElement* element, const CXmlSerializationContext& context) {
    CheckVersion();
    Throw_IfPropertyIsNull(const_cast<CElement*>(element), "element");
    // Through text on purpose: the default context writes it, the caller's reads it.
    const std::string text = element->ToXml(false, false, EOLType_LF, CXmlSerializationContext::m_defaultContext);
    FromXml(text.c_str(), context);
}

// ---------------------------------------------------------------------------------------------

void CXmlObjectBase::AttributesToXml_Int(CXmlWriter* /*writer*/, const CXmlSerializationContext& /*context*/) const {}

void CXmlObjectBase::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                         const CXmlSerializationContext& context) {
    object->AttributesToXml_Int(writer, context);
}

void CXmlObjectBase::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                               const CXmlSerializationContext& context, bool isChoiceMember) {
    object->ToXml_Int(writer, isRoot, namespaceUri, context, isChoiceMember);
}

CXmlElement* CXmlObjectBase::FromXml_Int(CXmlObjectBase* object, CXmlElement* element, CXmlElement* firstChild,
                                         const CXmlSerializationContext& context) {
    return object->FromXml_Int(element, firstChild, context, false);
}

void CXmlObjectBase::Throw_IfPropertyIsNull(CXmlObjectBase* value, const char* name) {
    if (value == nullptr)
        throw CQvInvalidParamException(FormatString("The Property [%s] is mandatory, it may node be NULL", name));
}

void CXmlObjectBase::Throw_IfElementNameDiffers(CXmlObjectBase* value, const char* name) {
    if (value == nullptr) return;
    const std::string elementName = value->GetBase()->GetElementName();
    if (std::strcmp(elementName.c_str(), OrEmpty(name)) != 0) {
        throw CQvInvalidParamException(FormatString(
            "This property requrires an element with the name %s the element being set has the element name %s", name,
            elementName.c_str()));
    }
}

void CXmlObjectBase::Choice_SetElementValid(bool valid, const char* name, std::string& selected) {
    if (!valid) {
        selected.clear();
        return;
    }
    if (selected == name) {
        selected = name;
        return;
    }
    throw CQvInvalidStateException(FormatString(
        "The Property %s is already set. Only one element within this class bay be set at a time", selected.c_str()));
}

void CXmlObjectBase::Choice_SelectElement(const char* name, CXmlObjectBase* value, std::string& selected) {
    if (selected == name) {
        if (value == nullptr) selected.clear();
        return;
    }
    if (selected.empty()) {
        selected = name;
        return;
    }
    if (value != nullptr) {
        throw CQvInvalidStateException(
            FormatString("The Property [%s] is already set. Only one element within this class bay be set at a time",
                         selected.c_str()));
    }
}

void CXmlObjectBase::Choice_CollectionChanged(const char* name, long count, std::string& selected) {
    if (selected == name) {
        if (count == 0) selected.clear();
        return;
    }
    if (selected.empty()) {
        if (count > 0) selected = name;
        return;
    }
    if (count != 0) {
        throw CQvInvalidStateException(
            FormatString("The Property [%s] is already set. Only one element within this class bay be set at a time",
                         selected.c_str()));
    }
}

// ---------------------------------------------------------------------------------------------
// Collections of a choice, namespace tests and collection events.

void CXmlObjectBase::Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* element, CXmlElement*& child,
                                            long& count, const CXmlSerializationContext& context) {
    if (count >= 1) return;
    CXmlElement* const next = static_cast<CXmlObjectBase*>(collection)->FromXml_Int(element, child, context, false);
    if (next == child) return;
    child = next;
    collection->ValidateCount(context);
    ++count;
}

bool CXmlObjectBase::DoesElementNameMatch(const CXmlSerializationContext& context, const CXmlElement* element,
                                          const char* name, const char* namespaceUri) const {
    return CXmlObjectHelper::DoesElementNameMatch(context, element, OrEmpty(name), OrEmpty(namespaceUri));
}

bool CXmlObjectBase::IsNamespaceValid(const char* namespaceUri, const char* restriction,
                                      const char* targetNamespace) const {
    return CXmlObjectHelper::IsNamespaceValid(OrEmpty(namespaceUri), OrEmpty(restriction), OrEmpty(targetNamespace));
}

void CXmlObjectBase::TestNamespace(const char* namespaceUri, const char* restriction,
                                   const char* targetNamespace) const {
    CXmlObjectHelper::TestNamespace(OrEmpty(namespaceUri), OrEmpty(restriction), OrEmpty(targetNamespace));
}

void CXmlObjectBase::FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection) {
    if (sink != nullptr) sink->OnEvent(collection->GetBase(), MsgType_Change, nullptr);
}

void CXmlObjectBase::FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection, void* item) {
    if (sink != nullptr) sink->OnEvent(collection->GetBase(), MsgType_Add, item);
}

void CXmlObjectBase::FireOnCollectionAddCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection, void* item) {
    if (sink != nullptr) sink->OnEvent(collection->GetBase(), MsgType_AddComplete, item);
}

void CXmlObjectBase::FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection, int index) {
    if (sink != nullptr) sink->OnEvent(collection->GetBase(), MsgType_Remove, index == -1 ? nullptr : &index);
}

void CXmlObjectBase::FireOnCollectionRemoveCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection, int index) {
    if (sink != nullptr) sink->OnEvent(collection->GetBase(), MsgType_RemoveComplete, index == -1 ? nullptr : &index);
}

} // namespace QvXmlLib10
