// What the Fast Infoset writer writes, the reader loads into the tree that the text
// reader builds from the text writer's output of the same events, apart from the
// differences the format's algorithms and index forms bring.

#include "FiReaderSupport.h"
#include "FiTestSupport.h"

#include "document/XmlTextWriter.h"
#include "fastinfoset/FastInfosetWriter.h"
#include "foundation/Streams.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

using namespace QvXmlLib10;

namespace {

using Events = std::function<void(CXmlWriter&)>;
const char* const kPrefixes[] = {"", "p", "AA", "AB", nullptr};

std::string ThroughText(const Events& events) {
    CTextStream stream(XmlEncoding_None);
    CXmlTextWriter writer(stream);
    writer.Open();
    writer.SetFormat(false);
    events(writer);
    writer.Close();
    CXmlDocument document;
    document.LoadXml(stream.GetText());
    return FiTest::Describe(document, kPrefixes);
}

std::string ThroughFastInfoset(const Events& events, const CXmlSerializationContext& context,
                               FInfoDecl declaration = FInfoDecl_None) {
    CBinaryStream stream;
    CFastInfosetWriter writer(context.GetFIContext(), stream);
    writer.Open();
    writer.WriteStartDocument(declaration);
    events(writer);
    writer.WriteEndDocument();
    writer.Close();
    const CBinaryData bytes = stream.GetBinaryStream();
    CXmlDocument document(context);
    document.LoadXmlStream(bytes.GetData(), bytes.GetLength());
    return FiTest::Describe(document, kPrefixes);
}

// The prefixes that the writers invent (AA for urn:x, AB for the instance namespace)
// are declared in text only; in Fast Infoset they travel in the attribute names and
// never reach the alias map.
std::string WithoutInventedPrefixes(std::string text) {
    text.replace(text.find("AA=urn:x"), 8, "AA=");
    text.erase(text.find("AB=") + 3);
    return text;
}

void Leaf(CXmlWriter& w, const std::string& name, const std::string& ns, const std::string& text,
          ItemType type = ItemType_string) {
    w.WriteStartElement(name, ns);
    w.WriteString(text, type);
    w.WriteEndElement();
}

// Namespaces by default, by alias and invented, attributes in each, the type and nil
// attributes, repeated short values and long ones, empty elements and values.
void Order(CXmlWriter& w) {
    w.SetDefaultNamespace("urn:d");
    w.AddNamespace("p", "urn:p");
    w.WriteStartElement("order", "urn:d");
    w.WriteAttributeString("id", "", "7", ItemType_string);
    w.WriteAttributeString("note", "urn:p", "", ItemType_string);
    w.WriteAttributeString("src", "urn:x", "web", ItemType_string);
    w.WriteAttributeType("urn:p", "OrderType", ItemType_string);
    for (int i = 0; i < 3; ++i) {
        w.WriteStartElement("line", "urn:p");
        w.WriteAttributeString("no", "", std::to_string(i % 2), ItemType_string);
        Leaf(w, "sku", "urn:d", "AB-1");
        Leaf(w, "text", "urn:d", "a line of text & more, longer than the shared values\r\nin two lines");
        w.WriteEndElement();
    }
    w.WriteStartElement("empty", "urn:d");
    w.WriteAttributeNil();
    w.WriteEndElement();
    Leaf(w, "blank", "urn:d", "");
    w.WriteEndElement();
}

} // namespace

TEST(FastInfosetRoundTrip, WriterOutputLoadsAsItsText) {
    const std::string expected = WithoutInventedPrefixes(ThroughText(Order));
    // Values shared up to the default length, up to 100 bytes and never; a generated
    // vocabulary on both sides.
    CXmlSerializationContext contexts[4];
    contexts[1].GetFIContext().SetAttributeMaxAddLength(100);
    contexts[1].GetFIContext().SetElementMaxAddLength(100);
    contexts[2].GetFIContext().SetAttributeMaxAddLength(0);
    contexts[2].GetFIContext().SetElementMaxAddLength(0);
    CFIVocabulary& vocabulary = *contexts[3].GetFIContext().GetVocabulary();
    vocabulary.AddElement("", "urn:d", "order");
    vocabulary.AddElement("p", "urn:p", "line");
    vocabulary.AddAttribute("", "", "no");
    vocabulary.AddAttributeValue("1");
    vocabulary.AddElementValue("AB-1");
    contexts[3].GetFIContext().SetUseGeneratedVocabulary(true);
    for (const CXmlSerializationContext& context : contexts)
        EXPECT_EQ(expected, ThroughFastInfoset(Order, context));
    EXPECT_EQ(expected, ThroughFastInfoset(Order, contexts[0], static_cast<FInfoDecl>(9)));
}

TEST(FastInfosetRoundTrip, ValuesThroughAlgorithmsAndAlphabets) {
    CXmlSerializationContext context;
    context.GetFIContext().SetSuggestedValues();
    const struct {
        ItemType type;
        const char* written;
        const char* read;
    } cases[] = {
        {ItemType_i2, "-2", "-2"},
        {ItemType_i4, "-1", "4294967295"}, // the int algorithm reads back without sign
        {ItemType_i8, "-9000000000", "-9000000000"},
        {ItemType_ui4, "4000000000", "4000000000"},
        {ItemType_r4, "1", "0.7470588"}, // the float algorithm reads its first octet four times
        {ItemType_r8, "0.5", "0.5"},
        {ItemType_boolean, "1", "true"},
        {ItemType_hexBinary, "0a1b", "0A1B"},
        {ItemType_base64Binary, "YWJj", "YWJj"},
        {ItemType_date, "2026-11-23", "2026-11-23"},
        {ItemType_datetime, "2026-11-23T21:30:00Z", "2026-11-23T21:30:00Z"},
        {ItemType_decimal, "-12.50", "-12.50"},
        {ItemType_integer, "123456789012345678901234567890", "123456789012345678901234567890"},
    };
    for (const auto& c : cases) {
        const Events events = [&](CXmlWriter& w) {
            w.WriteStartElement("v", "");
            w.WriteAttributeString("a", "", c.written, c.type);
            w.WriteString(c.written, c.type);
            w.WriteEndElement();
        };
        const std::string text = ThroughText(events);
        EXPECT_EQ("v[a=" + std::string(c.written) + "]'" + c.written + "' =", text.substr(0, text.find(" p=")));
        const std::string read = ThroughFastInfoset(events, context);
        EXPECT_EQ("v[a=" + std::string(c.read) + "]'" + c.read + "' =", read.substr(0, read.find(" p="))) << c.type;
    }
}

TEST(FastInfosetRoundTrip, ElementNameIndicesAbove526368ComeBackOneHigher) {
    // The writer subtracts 526368 from an index in the last form, the reader adds 526369.
    CXmlSerializationContext context;
    CFastInfosetContext& fi = context.GetFIContext();
    for (int i = 1; i <= 526370; ++i)
        fi.GetVocabulary()->AddElement("", "", "n" + std::to_string(i));
    fi.SetUseGeneratedVocabulary(true);
    const auto element = [](const char* name) {
        return [name](CXmlWriter& w) {
            w.WriteStartElement(name, "");
            w.WriteEndElement();
        };
    };
    EXPECT_EQ("n526368 = p= AA= AB=", ThroughFastInfoset(element("n526368"), context));
    EXPECT_EQ("n526370 = p= AA= AB=", ThroughFastInfoset(element("n526369"), context));
}
