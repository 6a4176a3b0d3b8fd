#pragma once

// Helpers shared by all test programs: the generator version, scoped locale and
// ASCIIOnly settings, the bytes of a binary value, the full message of a failure,
// serialization contexts, and writing an object as root (recorded or as text).

#include "binding/XmlObjectBase.h"
#include "binding/XmlSerializationContext.h"
#include "document/XmlTextWriter.h"
#include "document/XmlWriter.h"
#include "foundation/BinaryData.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <clocale>
#include <functional>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace QvXmlTest {
// Test programs declare the matching generator version before any object exists, as
// generated code does.
inline const bool g_generatorVersionSet = (QvXmlLib10::SetGeneratorVersion(10, 1), true);
} // namespace QvXmlTest

// Sets LC_ALL for the lifetime of a scope and restores the previous locale.
class ScopedLocale {
public:
    explicit ScopedLocale(const char* name) {
        const char* previous = std::setlocale(LC_ALL, nullptr);
        m_previous = previous ? previous : "C";
        m_ok = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, m_previous.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    bool Ok() const { return m_ok; }

private:
    std::string m_previous;
    bool m_ok;
};

// Sets ASCIIOnly for the lifetime of a scope and restores the previous value.
class ScopedAsciiOnly {
public:
    explicit ScopedAsciiOnly(bool value) : m_previous(QvXmlLib10::ASCII_ONLY) { QvXmlLib10::ASCIIOnly(value); }
    ~ScopedAsciiOnly() { QvXmlLib10::ASCIIOnly(m_previous); }
    ScopedAsciiOnly(const ScopedAsciiOnly&) = delete;
    ScopedAsciiOnly& operator=(const ScopedAsciiOnly&) = delete;

private:
    bool m_previous;
};

#define REQUIRE_UTF8_LOCALE(guard)                                                                                     \
    ScopedLocale guard("C.UTF-8");                                                                                     \
    if (!guard.Ok()) GTEST_SKIP() << "no C.UTF-8 locale on this machine"

inline std::string Bytes(const QvXmlLib10::CBinaryData& data) {
    return data.GetData() ? std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength())
                          : std::string();
}

// The full message chain of the CQvException that the call throws, or "no exception".
// With a class given, the exception must be of exactly that class.
template <class E = void, class F> std::string FailureOf(F&& call) {
    try {
        call();
    } catch (const QvXmlLib10::CQvException& e) {
        if constexpr (!std::is_void<E>::value) EXPECT_EQ(typeid(e).name(), typeid(E).name()) << e.GetFullMessage();
        return e.GetFullMessage();
    }
    return "no exception";
}

// The same for failures that the reading and writing drivers wrap: the outermost class
// is CQvValidationException.
template <class F> std::string WrappedFailureOf(F&& call) {
    return FailureOf<QvXmlLib10::CQvValidationException>(std::forward<F>(call));
}

namespace QvXmlTest {
using ::FailureOf;
using ::WrappedFailureOf;

// A context with the settings given on (nullptr members stay off); defaultNamespace
// makes the output need no prefix for it.
inline QvXmlLib10::CXmlSerializationContext Context(bool ignoreUnknown, bool ignoreMissing = false,
                                                    bool ignoreCounts = false, const char* defaultNamespace = nullptr) {
    QvXmlLib10::CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(ignoreUnknown);
    context.SetIgnoreMissingMandatoryElements(ignoreMissing);
    context.SetIgnoreInvalidCollectionCounts(ignoreCounts);
    if (defaultNamespace) context.SetDefaultNamespaceURI(defaultNamespace);
    return context;
}
inline QvXmlLib10::CXmlSerializationContext IgnoringUnknown() { return Context(true); }
inline QvXmlLib10::CXmlSerializationContext IgnoringMissing() { return Context(false, true); }
inline QvXmlLib10::CXmlSerializationContext IgnoringCounts() { return Context(false, false, true); }

// Records each call as a short token, in order:
//   <name{ns}  @name{ns}=value  @type{ns}name  @nil  "text"  />  pi(text)
//   xmlns:alias=ns  xmlns=ns  schema(text)
class CRecordingWriter : public QvXmlLib10::CXmlWriter {
public:
    CRecordingWriter() : CXmlWriter("CRecordingWriter") {}

    void SetDefaultNamespace(const std::string& namespaceUri) override { Log("xmlns=" + namespaceUri); }
    void AddNamespace(const std::string& alias, const std::string& namespaceUri) override {
        Log("xmlns:" + alias + "=" + namespaceUri);
    }
    void WriteComment(const std::string& text) override { Log("comment(" + text + ")"); }
    void WritePI(const std::string& text) override { Log("pi(" + text + ")"); }
    void WriteInlineSchema(const std::string& schemaText) override { Log("schema(" + schemaText + ")"); }
    void WriteStartElement(const std::string& localName, const std::string& namespaceUri) override {
        Log("<" + localName + "{" + namespaceUri + "}");
    }
    void WriteString(const std::string& text, QvXmlLib10::ItemType) override { Log("\"" + text + "\""); }
    void WriteEndElement() override { Log("/>"); }
    void WriteAttributeString(const std::string& localName, const std::string& namespaceUri, const std::string& value,
                              QvXmlLib10::ItemType) override {
        Log("@" + localName + "{" + namespaceUri + "}=" + value);
    }
    void WriteAttributeType(const std::string& typeNamespaceUri, const std::string& typeName,
                            QvXmlLib10::ItemType) override {
        Log("@type{" + typeNamespaceUri + "}" + typeName);
    }
    void WriteAttributeNil() override { Log("@nil"); }

    std::string m_log;

private:
    void Log(const std::string& token) {
        if (!m_log.empty()) m_log += ' ';
        m_log += token;
    }
};

// The calls that writing `object` as root makes.
inline std::string RecordXml(
    const QvXmlLib10::CXmlObjectBase& object,
    const QvXmlLib10::CXmlSerializationContext& context = QvXmlLib10::CXmlSerializationContext::m_defaultContext) {
    CRecordingWriter writer;
    const std::string namespaceUri = object.GetTargetNamespace();
    QvXmlLib10::CXmlObjectBase::ToXml_Int(&object, &writer, true, namespaceUri.c_str(), context, false);
    return writer.m_log;
}

// The XML text of `object` written as root, unformatted.
inline std::string
WriteXml(const QvXmlLib10::CXmlObjectBase& object,
         const QvXmlLib10::CXmlSerializationContext& context = QvXmlLib10::CXmlSerializationContext::m_defaultContext) {
    QvXmlLib10::CTextStream stream(QvXmlLib10::XmlEncoding_None);
    QvXmlLib10::CXmlTextWriter writer(stream);
    writer.Open();
    writer.SetFormat(false);
    const std::string namespaceUri = object.GetTargetNamespace();
    QvXmlLib10::CXmlObjectBase::ToXml_Int(&object, &writer, true, namespaceUri.c_str(), context, false);
    writer.Close();
    return stream.GetText();
}

// Runs `body` on a thread of 1 MB of stack, as threads are often given.
inline void OnSmallStack(const std::function<void()>& body) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1 << 20), 0);
    pthread_t thread;
    auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&body)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace QvXmlTest
