#pragma once

// A hand-written bound class that records what it reads: its element, attributes,
// text and the names of its child elements, and counts its destruction when given a
// counter. Used where a test needs an object without metadata.

#include "binding/XmlObjectBase.h"
#include "document/XmlDocument.h"
#include "support/TestSupport.h"

#include <string>
#include <vector>

namespace QvXmlTest {

class CRecorder : public QvXmlLib10::CXmlObjectBase {
public:
    struct Attribute {
        std::string localName;
        std::string namespaceUri;
        std::string value;
        bool operator==(const Attribute& o) const {
            return localName == o.localName && namespaceUri == o.namespaceUri && value == o.value;
        }
    };

    std::string localName;
    std::string namespaceUri;
    std::string text;
    std::vector<Attribute> attributes;
    std::vector<std::string> children; // "{namespace}name" of each child element in order
    int reads = 0;
    bool firstChildWasNull = false;

    explicit CRecorder(int* destroyed = nullptr) : m_destroyed(destroyed) {}
    ~CRecorder() override {
        if (m_destroyed) ++*m_destroyed;
    }
    long RefCount() const { return m_refCount; }

    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return std::string(); }
    std::string GetNamespace() const override { return std::string(); }

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter*, bool, const char*, const QvXmlLib10::CXmlSerializationContext&,
                   bool) const override {}

    QvXmlLib10::CXmlElement* FromXml_Int(QvXmlLib10::CXmlElement* element, QvXmlLib10::CXmlElement* firstChild,
                                         const QvXmlLib10::CXmlSerializationContext&, bool) override {
        ++reads;
        localName = element->GetLocalName();
        namespaceUri = element->GetNamespaceURI();
        text = element->GetText();
        SetElementName(localName.c_str());
        attributes.clear();
        for (const auto& a : element->GetAttributes())
            attributes.push_back({a->GetLocalName(), a->GetNamespaceURI(), a->GetValue()});
        children.clear();
        firstChildWasNull = firstChild == nullptr;
        for (QvXmlLib10::CXmlElement* c = firstChild; c; c = c->GetNextSiblingElement())
            children.push_back("{" + c->GetNamespaceURI() + "}" + c->GetLocalName());
        return nullptr;
    }

private:
    int* m_destroyed;
};

} // namespace QvXmlTest
