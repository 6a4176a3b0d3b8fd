// Example: a hand-written bound class reads and writes a purchase order.
//
// The program builds a small document tree through the document's build operations,
// as a parser would, hands it to a bound object with FromXmlElement and prints what
// the object read. It then reads the bundled sample file through FromXmlFile and
// writes the object back as XML text with ToXml. Non-ASCII text is handled under
// ASCIIOnly(true): the local code page is then UTF-8 and bytes pass as they are.

#include <QvXml10.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace QvXmlLib10;

namespace {

struct OrderLine {
    std::string sku;
    std::string quantity;
    std::string description;
};

// A bound class written by hand: reads its attributes, text and child elements.
class COrder : public CXmlObjectBase {
public:
    std::string id;
    std::string customer;
    std::vector<OrderLine> lines;

    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return "urn:example:orders"; }
    std::string GetNamespace() const override { return "urn:example:orders"; }

    void Print() const {
        std::printf("order %s for %s, %zu line(s)\n", id.c_str(), customer.c_str(), lines.size());
        for (const OrderLine& line : lines)
            std::printf("  %s x %s: %s\n", line.quantity.c_str(), line.sku.c_str(), line.description.c_str());
    }

protected:
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* ns, const CXmlSerializationContext& context,
                   bool) const override {
        if (isRoot && !context.GetDefaultNamespaceURI().empty())
            writer->SetDefaultNamespace(context.GetDefaultNamespaceURI());
        writer->WriteStartElement("order", ns);
        writer->WriteAttributeString("id", "", id, ItemType_string);
        writer->WriteStartElement("customer", ns);
        writer->WriteString(customer, ItemType_string);
        writer->WriteEndElement();
        for (const OrderLine& line : lines) {
            writer->WriteStartElement("line", ns);
            writer->WriteAttributeString("sku", "", line.sku, ItemType_string);
            writer->WriteAttributeString("quantity", "", line.quantity, ItemType_i4);
            writer->WriteString(line.description, ItemType_string);
            writer->WriteEndElement();
        }
        writer->WriteEndElement();
    }

    CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* firstChild, const CXmlSerializationContext&,
                             bool) override {
        SetElementName(element->GetLocalName().c_str());
        id = element->GetAttribute("id", "");
        customer.clear();
        lines.clear();
        for (CXmlElement* child = firstChild; child; child = child->GetNextSiblingElement()) {
            if (child->GetLocalName() == "customer") {
                customer = child->GetText();
            } else if (child->GetLocalName() == "line") {
                lines.push_back({child->GetAttribute("sku", ""), child->GetAttribute("quantity", ""), child->GetText()});
            } else {
                throw CQvValidationException(FormatString("Unexpected element [%s]", child->GetLocalName().c_str()));
            }
        }
        return nullptr;
    }
};

void ReadBuiltTree() {
    const char* ns = "urn:example:orders";
    CXmlDocument document;
    CXmlElement* order = document.AddDocElement(ns, "order");
    order->AddAttribute("id", "A-1001", "");
    CXmlDocument::AppendTextExcludingCR(document.AddChildElement(ns, "customer"), "Ada Lovelace");
    document.EndElement();
    CXmlElement* line = document.AddChildElement(ns, "line");
    line->AddAttribute("sku", "P-17", "");
    line->AddAttribute("quantity", "2", "");
    CXmlDocument::AppendTextExcludingCR(line, "Difference engine gears");
    document.EndElement();
    document.EndElement();

    COrder result;
    result.FromXmlElement(document.GetDocumentElement());
    std::printf("From a tree built by hand:\n");
    result.Print();
}

void ReadSampleFile(const std::string& path) {
    COrder result;
    result.FromXmlFile(path.c_str());
    std::printf("From %s:\n", path.substr(path.find_last_of('/') + 1).c_str());
    result.Print();

    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI("urn:example:orders");
    std::printf("Written back:\n%s", result.ToXml(true, true, EOLType_LF, context).c_str());
}

} // namespace

int main(int argc, char** argv) {
    SetGeneratorVersion(10, 1);
    ASCIIOnly(true);
    const std::string sample = argc > 1 ? argv[1] : std::string(QVXML_EXAMPLE_DIR) + "/order.xml";
    try {
        ReadBuiltTree();
        ReadSampleFile(sample);
    } catch (const CQvException& e) {
        std::fprintf(stderr, "error: %s\n", e.GetFullMessage().c_str());
        return 1;
    }
    return 0;
}
