#pragma once

// A bound class written by hand that reads and writes itself through the document tree
// and the writer, without metadata: an order with attributes in and out of namespaces,
// a text child and repeated child objects in a second namespace.

#include "binding/XmlObjectBase.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "support/TestSupport.h"

#include <string>
#include <vector>

namespace QvXmlTest {

const char ORDER_NS[] = "urn:example:orders";
const char LINE_NS[] = "urn:example:lines";
const char META_NS[] = "urn:example:meta";

class CHandLine : public QvXmlLib10::CXmlObjectBase {
public:
    std::string sku;
    std::string quantity;
    std::string description;

    CHandLine() { SetElementName("line"); }
    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return LINE_NS; }
    std::string GetNamespace() const override { return LINE_NS; }

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext&, bool) const override {
        writer->WriteStartElement(m_elementName, namespaceUri);
        writer->WriteAttributeString("sku", "", sku, QvXmlLib10::ItemType_string);
        writer->WriteAttributeString("quantity", META_NS, quantity, QvXmlLib10::ItemType_i4);
        writer->WriteString(description, QvXmlLib10::ItemType_string);
        writer->WriteEndElement();
    }

    QvXmlLib10::CXmlElement* FromXml_Int(QvXmlLib10::CXmlElement* element, QvXmlLib10::CXmlElement*,
                                         const QvXmlLib10::CXmlSerializationContext&, bool) override {
        sku = element->GetAttribute("sku", "");
        quantity = element->GetAttribute("quantity", META_NS);
        description = element->GetText();
        return nullptr;
    }
};

class CHandOrder : public QvXmlLib10::CXmlObjectBase {
public:
    std::string id;
    std::string priority;
    std::string customer;
    std::vector<QvXmlLib10::CSmartPtr<CHandLine>> lines;

    CHandOrder() { SetElementName("order"); }
    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return ORDER_NS; }
    std::string GetNamespace() const override { return ORDER_NS; }

protected:
    void ToXml_Int(QvXmlLib10::CXmlWriter* writer, bool, const char* namespaceUri,
                   const QvXmlLib10::CXmlSerializationContext& context, bool) const override {
        writer->WriteStartElement(m_elementName, namespaceUri);
        writer->WriteAttributeString("id", "", id, QvXmlLib10::ItemType_string);
        if (!priority.empty()) writer->WriteAttributeString("priority", META_NS, priority, QvXmlLib10::ItemType_string);
        writer->WriteStartElement("customer", namespaceUri);
        writer->WriteString(customer, QvXmlLib10::ItemType_string);
        writer->WriteEndElement();
        for (const auto& line : lines)
            CXmlObjectBase::ToXml_Int(line.Get(), writer, false, LINE_NS, context, false);
        writer->WriteEndElement();
    }

    QvXmlLib10::CXmlElement* FromXml_Int(QvXmlLib10::CXmlElement* element, QvXmlLib10::CXmlElement* child,
                                         const QvXmlLib10::CXmlSerializationContext& context, bool) override {
        id = element->GetAttribute("id", "");
        priority = element->GetAttribute("priority", META_NS);
        customer.clear();
        lines.clear();
        for (; child; child = child->GetNextSiblingElement()) {
            if (child->GetLocalName() == "customer" && child->GetNamespaceURI() == ORDER_NS) {
                customer = child->GetText();
            } else if (child->GetLocalName() == "line" && child->GetNamespaceURI() == LINE_NS) {
                QvXmlLib10::CSmartPtr<CHandLine> line(new CHandLine);
                CXmlObjectBase::FromXml_Int(line.Get(), child, child->GetFirstElement(), context);
                lines.push_back(line);
            } else {
                throw QvXmlLib10::CQvValidationException("Unexpected element " + child->GetLocalName());
            }
        }
        return nullptr;
    }
};

} // namespace QvXmlTest
