#pragma once

#include "../foundation/QvExport.h"

#include "SmartPtr.h"
#include "XmlSerializationContext.h"
#include "../foundation/BinaryData.h"
#include "../foundation/CriticalSection.h"
#include "../foundation/QvTypes.h"

#include <string>

namespace QvXmlLib10Data {
class CElementInfo;
}

namespace QvXmlLib10 {

class CXmlObjectBase;
class CXmlCollectionBase;
class CElement;
class CXmlElement;
class CXmlWriter;

// Receives the events of collections.
class QVXML_API IEventSink {
public:
    enum MsgType : int32_t {
        MsgType_Change = 0,
        MsgType_Add = 1,
        MsgType_AddComplete = 2,
        MsgType_Remove = 3,
        MsgType_RemoveComplete = 4
    };

    virtual void OnEvent(CXmlObjectBase* source, MsgType type, void* data) = 0;

protected:
    ~IEventSink() = default;
};

// Implemented by objects that can be nil in XML.
class QVXML_API INillable {
public:
    virtual bool GetIsNil() = 0;
    virtual void SetIsNil(bool isNil) = 0;

protected:
    ~INillable() = default;
};

// The generator's version, set by SetGeneratorVersion; 10.1 matches this runtime.
extern QVXML_API int g_nMajor;
extern QVXML_API int g_nMinor;

// Declares the version of the generated code. Call before the first object is created.
QVXML_API void SetGeneratorVersion(int major, int minor);

// Selects the streaming route of ToXmlFile (a file text sink); see ToXmlFile.
QVXML_API void AsyncToXmlFile(bool async);
extern QVXML_API bool ASYNC_TOXMLFILE;

// Accepted for compatibility; reading from a file is always synchronous.
QVXML_API void AsyncFromXmlFile(bool async);
extern QVXML_API bool ASYNC_FROMXMLFILE;

// Root of everything that binds to XML. Reference counted: a new object has count 0
// and is deleted by the Release that brings the count back to 0.
class QVXML_API CXmlObjectBase : public IEventSink {
public:
    CXmlObjectBase();
    CXmlObjectBase(const CXmlObjectBase& other);
    CXmlObjectBase& operator=(const CXmlObjectBase& other);

    long AddRef();
    long Release();

    std::string GetElementName() const;
    void SetElementName(const char* name);

    void OnEvent(CXmlObjectBase* source, MsgType type, void* data) override;
    virtual CXmlObjectBase* GetBase() = 0;
    CXmlObjectBase* GetBase() const;

    // Text output entry points. ToXmlStream compresses the finished bytes in gzip or zlib form;
    // ToXmlFile takes gzip only.
    virtual void ToXmlFile(const char* path, bool declaration = true, bool format = true,
                           XmlEncoding encoding = XmlEncoding_UTF8, EOLType eol = EOLType_LF,
                           const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext,
                           CompressionType compression = CompressionType_None) const;
    // Fast Infoset output entry points. A compression other than none is refused for now.
    virtual void
    ToFastInfosetFile(const char* path, FInfoDecl declaration = FInfoDecl_None,
                      const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext,
                      CompressionType compression = CompressionType_None) const;
    virtual std::string
    ToXml(bool declaration = true, bool format = true, EOLType eol = EOLType_LF,
          const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) const;
    virtual CBinaryData
    ToXmlStream(bool declaration = true, bool format = true, XmlEncoding encoding = XmlEncoding_UTF8,
                EOLType eol = EOLType_LF,
                const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext,
                CompressionType compression = CompressionType_None) const;
    virtual CBinaryData
    ToFastInfosetStream(FInfoDecl declaration = FInfoDecl_None,
                        const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext,
                        CompressionType compression = CompressionType_None) const;

    // Reading entry points.
    virtual void FromXmlFile(const char* path,
                             const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext);
    virtual void FromXml(const char* text,
                         const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext);
    virtual void FromXml(const wchar_t* text,
                         const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext);
    virtual void FromXmlStream(unsigned char* data, unsigned long length,
                               const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext);
    virtual void FromXmlStream(const CBinaryData& data,
                               const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext);
    // Reads from a parsed element; returns what FromXml_Int returns.
    virtual CXmlElement*
    FromXmlElement(const CXmlElement* element,
                   const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext);
    // Reads from an open content element, by way of its XML text (written with the
    // default context; only the reading uses `context`).
    virtual void FromXmlElement(const CElement* element,
                                const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext);

    virtual ~CXmlObjectBase();

    virtual std::string GetTargetNamespace() const = 0;
    virtual std::string GetNamespace() const = 0;

    static void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                    const CXmlSerializationContext& context);
    static void ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                          const CXmlSerializationContext& context, bool isChoiceMember);
    static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* element, CXmlElement* firstChild,
                                    const CXmlSerializationContext& context);

    // Argument checks used by generated setters.
    static void Throw_IfPropertyIsNull(CXmlObjectBase* value, const char* name);
    static void Throw_IfElementNameDiffers(CXmlObjectBase* value, const char* name);

    // Bookkeeping of the selected member of a choice, kept by generated setters in `selected`.
    static void Choice_SetElementValid(bool valid, const char* name, std::string& selected);
    static void Choice_SelectElement(const char* name, CXmlObjectBase* value, std::string& selected);
    static void Choice_CollectionChanged(const char* name, long count, std::string& selected);
    // Lets the collection read at `child` while `count` is below 1; when it consumed
    // something, moves `child` on, checks the collection's count and counts the read.
    static void Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* element, CXmlElement*& child,
                                       long& count, const CXmlSerializationContext& context);

    // Namespace tests of open content, forwarded to CXmlObjectHelper.
    bool DoesElementNameMatch(const CXmlSerializationContext& context, const CXmlElement* element, const char* name,
                              const char* namespaceUri) const;
    bool IsNamespaceValid(const char* namespaceUri, const char* restriction, const char* targetNamespace) const;
    void TestNamespace(const char* namespaceUri, const char* restriction, const char* targetNamespace) const;

    // Tell a listener about a change of a collection, with the collection's base as
    // source. The remove events pass the address of the index, or null for -1.
    static void FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection);
    static void FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection, void* item);
    static void FireOnCollectionAddCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection, void* item);
    static void FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection, int index);
    static void FireOnCollectionRemoveCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection, int index);

protected:
    // Element metadata reads children through the protected FromXml_Int, choice flag included.
    friend class QvXmlLib10Data::CElementInfo;

    virtual void AttributesToXml_Int(CXmlWriter* writer, const CXmlSerializationContext& context) const;
    virtual void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                           const CXmlSerializationContext& context, bool isChoiceMember) const = 0;
    // Reads this object from `element`, walking its children from `firstChild`; returns
    // the first child element left to read.
    virtual CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* firstChild,
                                     const CXmlSerializationContext& context, bool isChoiceMember) = 0;

    // Prints the version banner and throws unless the generator's version is this runtime's.
    static void CheckVersion();

    std::string m_elementName;
    CQVCriticalSection m_cs;
    long m_refCount;
};

} // namespace QvXmlLib10
