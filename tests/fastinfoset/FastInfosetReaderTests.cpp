// Reading Fast Infoset documents given as bytes: recognition, optional parts, elements,
// names, strings, integers, and the failures of defective documents.

#include "FiReaderSupport.h"
#include "FiTestSupport.h"

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "fastinfoset/FastInfosetContext.h"
#include "internal/Limits.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace QvXmlLib10;
using FiTest::Bytes;
using FiTest::Failure;
using FiTest::Lit;
using FiTest::LoadDump;

namespace {

const std::string kHeader = Bytes("E0 00 00 01 00");
// A root "a" without attributes, closed by its terminator and the document's.
const std::string kRootA = Bytes("3C") + Lit("a") + Bytes("FF");
// A root "order" with attribute "id" = "7" and a child "name" with text "Ann".
const std::string kOrder = kHeader + Bytes("78 F0 3C") + Lit("order") + Bytes("78") + Lit("id") + Bytes("40 37 F0 3C") +
                           Lit("name") + Bytes("92 00 41 6E 6E FF F0");
const std::string kXsi = "http://www.w3.org/2001/XMLSchema-instance";

struct TreeCase {
    const char* what;
    std::string bytes;
    std::string tree;
};

} // namespace

TEST(FastInfosetReader, BuildsTrees) {
    const TreeCase cases[] = {
        {"the writer's example; the final F0 stays unread", kOrder, "order[id=7](name'Ann')"},
        {"a second child by name index and text index", kOrder.substr(0, kOrder.size() - 2) + Bytes("F0 01 A0 FF F0"),
         "order[id=7](name'Ann',name'Ann')"},
        {"an empty namespace block", kHeader + Bytes("38 F0") + kRootA, "a"},
        {"header and terminator only", kHeader + Bytes("F0"), "(no tree)"},
        {"an unknown octet at document level is skipped", kHeader + Bytes("90") + kRootA, "a"},
        {"a declaration in front", "<?xml version='1.0' encoding='finf' standalone='no'?>" + kHeader + kRootA, "a"},
        {"FF ends the attribute list and the element",
         kHeader + Bytes("3C") + Lit("a") + Bytes("7C") + Lit("c") + Bytes("78") + Lit("b") + Bytes("FF FF 80 78 F0"),
         "a'x'(c[b=])"},
        {"FF in content closes the element and its parent",
         kHeader + Bytes("3C") + Lit("a") + Bytes("3C") + Lit("b") + Bytes("3C") + Lit("c") + Bytes("FF 3C") +
             Lit("d") + Bytes("FF"),
         "a(b(c),d)"},
        {"text in two chunks, carriage return left out", kHeader + Bytes("3C") + Lit("a") + Bytes("81 41 0D 80 42 FF"),
         "a'AB'"},
        {"literal names with prefixes and namespaces, one by index",
         kHeader + Bytes("7F") + Lit("p") + Lit("urn:p") + Lit("a") + Bytes("7B 81 81") + Lit("b") +
             Bytes("00 31 7B 81 81 80 FF FF"),
         "{urn:p}a[{urn:p}b=1][{urn:p}a=]"},
        {"the type attribute stays an attribute",
         kHeader + Bytes("7C") + Lit("e") + Bytes("7B") + Lit("xsi") + Lit(kXsi) + Lit("type") + Bytes("05") +
             "xs:int" + Bytes("FF"),
         "e[{" + kXsi + "}type=xs:int]"},
        {"restricted alphabets: date and time in an attribute, numeric in text",
         kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("d") + Bytes("20 13 20 26 A0 1F F0 88 02 00 A1 C5 D3 FF"),
         "a[d=2026-01]'-1.5e3'"},
        {"a nibble 0xF ends an alphabet string", kHeader + Bytes("3C") + Lit("a") + Bytes("88 01 12 F3 FF"), "a'12'"},
        {"algorithms: int reads back unsigned, boolean, cdata, base64 in text",
         kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("i") + Bytes("30 33 FF FF FF FF 78") + Lit("b") +
             Bytes("30 50 38 78") + Lit("c") + Bytes("30 92 61 3C 62 F0 8C 06 00 61 62 63 FF"),
         "a[i=4294967295][b=true][c=a<b]'YWJj'"},
        {"optional parts: standalone, version, encoding scheme",
         Bytes("E0 00 00 01 07 04") + "UTF-8" + Bytes("01 02") + "1.0" + kRootA, "a"},
        {"optional parts: notations and unparsed entities",
         Bytes("E0 00 00 01 18 C0 00 6E F0 D0 00 65 00 73 00 6E F0") + kRootA, "a"},
        {"the external vocabulary is stepped over", Bytes("E0 00 00 01 20 10 00 04 75 72 6E 3A 61") + kRootA, "a"},
        {"a sequence length is read again after each item", Bytes("E0 00 00 01 20 02 00 00 00 70 00") + kRootA, "a"},
        {"processing instruction and comment before the root",
         kHeader + Bytes("E1 00 74 02 61 62 63 E2 02 61 62 63") + kRootA, "a"},
        {"a comment that starts with F0 ends the document", kHeader + Bytes("E2 00 F0") + kRootA, "(no tree)"},
        {"comment, processing instruction and entity reference in content are dropped",
         kHeader + Bytes("3C") + Lit("a") + Bytes("E2 00 78 E1 00 74 00 79 C8 00 72 80 7A FF"), "a'z'"},
    };
    for (const TreeCase& c : cases)
        EXPECT_EQ(c.tree, LoadDump(c.bytes)) << c.what;
}

TEST(FastInfosetReader, FillsTheAliasMapFromNamespaceAttributes) {
    // xmlns:p="urn:p" then xmlns="urn:d" on the root; p redeclared on the child.
    const std::string bytes = kHeader + Bytes("38 CF") + Lit("p") + Lit("urn:p") + Bytes("CD") + Lit("urn:d") +
                              Bytes("F0 3D 82") + Lit("a") + Bytes("38 CF 81") + Lit("urn:q") + Bytes("F0 3C") +
                              Lit("b") + Bytes("FF");
    CXmlDocument document;
    FiTest::LoadBytes(document, bytes);
    EXPECT_EQ("{urn:d}a(b)", FiTest::Dump(document.GetDocumentElement()));
    EXPECT_EQ("urn:q", document.LookupNamespaceFromAlias("p"));
    EXPECT_EQ("urn:d", document.LookupNamespaceFromAlias(""));
}

TEST(FastInfosetReader, GeneratedVocabularySeedsTheTables) {
    CXmlSerializationContext context;
    CFIVocabulary& vocabulary = *context.GetFIContext().GetVocabulary();
    vocabulary.AddElement("", "urn:x", "root");
    vocabulary.AddAttribute("", "", "id");
    vocabulary.AddAttributeValue("7");
    vocabulary.AddElementValue("hi");
    const std::string bytes = Bytes("E0 00 00 01 20 10 00 04 75 72 6E 3A 61 40 00 80 F0 A0 F0");
    EXPECT_EQ("CQvException: Failed to parse FastInfoset. Index [1] beyond the Element Names table.",
              Failure([&] { LoadDump(bytes, context); }));
    context.GetFIContext().SetUseGeneratedVocabulary(true);
    EXPECT_EQ("{urn:x}root[id=7]'hi'", LoadDump(bytes, context));
}

TEST(FastInfosetReader, RecognitionFallsBackToText) {
    // Not Fast Infoset: the text parser reads the data and reports on it.
    const std::string cases[] = {
        Bytes("E0 00 00 01"),
        "<?xml version=\"1.0\" encoding='finf'?>" + kHeader + kRootA,
        "<?xml encoding='finf'?>" + Bytes("E0 00 00 02 00") + kRootA,
        Bytes("E0 00 00 02 00") + kRootA,
    };
    for (const std::string& bytes : cases)
        EXPECT_EQ(0u, Failure([&] { LoadDump(bytes); }).find("CQvException: ")) << FiTest::Hex(bytes);
    EXPECT_EQ("r'x'", LoadDump("<r>x</r>"));
}

TEST(FastInfosetReader, RefusesDefectiveDocuments) {
    const std::string root = kHeader + Bytes("3C") + Lit("a");
    const struct {
        std::string bytes;
        const char* message;
    } cases[] = {
        {kHeader + Bytes("3C 04 6F 72"), "Unexpected End of File."},
        {root, "Unexpected End of File."},
        {root + Bytes("D0"), "Invalid Encoding of Element type."},
        {kHeader + Bytes("3E") + Lit("p") + Lit("a"), "Invalid QName type Prefix without Namespace."},
        {kHeader + Bytes("3C 41"), "Invalid NonEmptyOctetString type  on the second bit of an octet."},
        {kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("b") + Bytes("09"),
         "Invalid NonEmptyOctetString type  on the fifth bit of an octet."},
        {kHeader + Bytes("38 F0 38"), "Invalid Encoding of integers 1 To 2^20 type  on the third bit of an octet."},
        {root + Bytes("BC"), "Invalid Encoding of integers 1 To 2^20 type  on the fourth bit of an octet."},
        {kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("b") + Bytes("C0"),
         "Invalid Encoding of integers 0 To 2^20 type  on the second bit of an octet."},
        // Indices beyond their tables, each integer form once.
        {kHeader + Bytes("00"), "Index [1] beyond the Element Names table."},
        {kHeader + Bytes("20 05"), "Index [38] beyond the Element Names table."},
        {kHeader + Bytes("28 01 05"), "Index [2342] beyond the Element Names table."},
        {kHeader + Bytes("30 00 00 01"), "Index [526370] beyond the Element Names table."},
        {kHeader + Bytes("7C") + Lit("a") + Bytes("40 05"), "Index [70] beyond the Attribute Names table."},
        {kHeader + Bytes("7C") + Lit("a") + Bytes("60 00 05"), "Index [8262] beyond the Attribute Names table."},
        {kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("b") + Bytes("81"),
         "Index [2] beyond the Attribute Values table."},
        {root + Bytes("B0 05"), "Index [22] beyond the Character Chunks table."},
        {root + Bytes("B4 00 05"), "Index [1046] beyond the Character Chunks table."},
        {root + Bytes("B8 00 00 05"), "Index [263190] beyond the Character Chunks table."},
        {kHeader + Bytes("3D 81"), "Index [2] beyond the Namespace Names table."},
        {kHeader + Bytes("3F 81"), "Index [2] beyond the Prefix Names table."},
        {kHeader + Bytes("3C 80"), "Index [1] beyond the Local Names table."},
        {kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("b") + Bytes("20 21 12"),
         "Invalid Restricted Alphabet index [3]."},
        {kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("b") + Bytes("11 00 41"),
         "Unsupported Feature UTF16BE in NonEmptyOctetUTF16BEString."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(std::string("CQvException: Failed to parse FastInfoset. ") + c.message,
                  Failure([&] { LoadDump(c.bytes); }))
            << c.message;
    // Algorithms above 10 and a wrong length of a known one are refused by the algorithm.
    EXPECT_EQ("CQvException: Unknown byte encoding.", Failure([&] {
                  LoadDump(kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("b") + Bytes("30 A0 00"));
              }));
    EXPECT_EQ("CQvException: Invalid value for INT byte encoding.", Failure([&] {
                  LoadDump(kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("b") + Bytes("30 32 00 00 00"));
              }));
}

TEST(FastInfosetReader, FailureKeepsThePartialTreeWithItsText) {
    CXmlDocument document;
    EXPECT_EQ("CQvException: Failed to parse FastInfoset. Invalid Encoding of Element type.", Failure([&] {
                  FiTest::LoadBytes(document, kHeader + Bytes("3C") + Lit("a") + Bytes("80 78 3C") + Lit("b") +
                                                  Bytes("80 79 D0"));
              }));
    EXPECT_EQ("a'x'(b'y')", FiTest::Dump(document.GetDocumentElement()));
}

TEST(FastInfosetReader, NestingDepthIsLimited) {
    // One octet per level: the element name index 1 again and again.
    const size_t limit = Internal::kMaxNestingDepth;
    std::string deep =
        kHeader + Bytes("3C") + Lit("a") + std::string(limit - 1, '\0') + std::string(limit / 2 + 1, '\xFF');
    EXPECT_EQ(limit, [&] {
        CXmlDocument document;
        FiTest::LoadBytes(document, deep);
        size_t depth = 0;
        for (const CXmlElement* e = document.GetDocumentElement(); e; e = e->GetFirstElement())
            ++depth;
        return depth;
    }());
    deep.insert(kHeader.size() + 3, 1, '\0');
    EXPECT_EQ("CQvException: The document nests elements deeper than " + std::to_string(limit) + " levels",
              Failure([&] { LoadDump(deep); }));
}

TEST(FastInfosetReader, DamagedDocumentsGiveATreeOrAFailure) {
    // Every prefix and every single-octet change of these documents loads or fails with a
    // CQvException of the library, and never reads outside the data.
    const std::string documents[] = {
        kOrder,
        kHeader + Bytes("38 CF") + Lit("p") + Lit("urn:p") + Bytes("F0 7F 81 82") + Lit("a") + Bytes("7B 81 82") +
            Lit("b") + Bytes("00 31 F0 88 02 00 A1 C5 D3 3C 81 A0 01 A0 FF F0"),
        kHeader + Bytes("7C") + Lit("a") + Bytes("78") + Lit("i") + Bytes("30 33 FF FF FF FF 78") + Lit("b") +
            Bytes("20 13 20 26 A0 1F F0 8C 06 00 61 62 63 80 0D FF"),
        Bytes("E0 00 00 01 3F 04") + "UTF-8" + Bytes("01 02") + "1.0" + kRootA,
    };
    CXmlDocument document;
    size_t trees = 0, failures = 0;
    auto load = [&](const std::string& bytes) {
        try {
            FiTest::LoadBytes(document, bytes);
            ++trees;
        } catch (const CQvException& e) {
            EXPECT_FALSE(e.GetMessage().empty());
            ++failures;
        }
    };
    for (const std::string& bytes : documents) {
        for (size_t length = 1; length < bytes.size(); ++length)
            load(bytes.substr(0, length));
        for (size_t at = 0; at < bytes.size(); ++at)
            for (int value = 0; value < 256; ++value) {
                std::string changed = bytes;
                changed[at] = static_cast<char>(value);
                load(changed);
            }
    }
    EXPECT_GT(trees, 0u);
    EXPECT_GT(failures, 0u);
}

TEST(FastInfosetReader, LengthsBeyondTheDataAreRefusedBeforeUse) {
    // Four-octet lengths of up to 4 GB in each string form.
    const std::string root = kHeader + Bytes("7C") + Lit("a");
    const std::string cases[] = {
        kHeader + Bytes("3C 60 FF FF FF FF 61"),   root + Bytes("78") + Lit("b") + Bytes("0C FF FF FF FF 61"),
        root + Bytes("F0 83 FF FF FF FF 61"),      root + Bytes("F0 8C 0B FF FF FF FF 61"),
        Bytes("E0 00 00 01 04 60 FF FF FF FF 61"),
    };
    for (const std::string& bytes : cases)
        EXPECT_EQ("CQvException: Failed to parse FastInfoset. Unexpected End of File.",
                  Failure([&] { LoadDump(bytes); }));
}

TEST(FastInfosetReader, TheElementHookIsLeftOut) {
    // The hook that would remove every element serves text input only.
    CXmlDocument document([](CXmlElement*) { return true; });
    FiTest::LoadBytes(document, kOrder);
    EXPECT_EQ("order[id=7](name'Ann')", FiTest::Dump(document.GetDocumentElement()));
}
