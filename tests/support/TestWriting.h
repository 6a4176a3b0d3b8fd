#pragma once

// Writing support for tests: a writer that records its calls, and the XML text of an
// object written as root through the text writer.

#include <string>

#include "binding/XmlObjectBase.h"
#include "binding/XmlSerializationContext.h"
#include "document/XmlTextWriter.h"
#include "document/XmlWriter.h"
#include "foundation/Streams.h"

namespace QvXmlTest {

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

} // namespace QvXmlTest
