// Encoding algorithms, vocabulary tables and Fast Infoset options.

#include "fastinfoset/FastInfosetBinaryData.h"
#include "fastinfoset/FastInfosetContext.h"
#include "binding/XmlSerializationContext.h"
#include "fastinfoset/FiTestSupport.h"

#include <gtest/gtest.h>

using namespace QvXmlLib10;
using FiTest::Failure;
using FiTest::Hex;

namespace {

struct AlgorithmCase {
    unsigned long algorithm;
    const char* text;
    const char* bytes;    // encoding of text
    const char* readBack; // GetAsString of those bytes
};

TEST(EncodingAlgorithms, EncodeAndReadBack) {
    const AlgorithmCase cases[] = {
        {1, "0aFF", "0A FF", "0AFF"},
        {2, "AQI=", "01 02", "AQI="},
        {3, "-2", "FF FE", "-2"},
        {3, "32767", "7F FF", "32767"},
        {4, "-1", "FF FF FF FF", "4294967295"}, // read back without sign extension
        {4, "258", "00 00 01 02", "258"},
        {5, "-2", "FF FF FF FF FF FF FF FE", "-2"},
        {6, "true", "38", "true"},
        {6, "false", "30", "false"},
        {7, "1", "3F 80 00 00", "0.7470588"}, // read as the pattern 3F 3F 3F 3F
        {8, "1.5", "3F F8 00 00 00 00 00 00", "1.5"},
        {9, "00112233445566778899AABBCCDDEEFF", "00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF",
         "00112233445566778899AABBCCDDEEFF"},
    };
    for (const AlgorithmCase& c : cases) {
        CFastInfosetBinaryData data("left over");
        data.SetAsEncodedString(c.algorithm, c.text);
        EXPECT_EQ(c.bytes, Hex(data)) << c.algorithm << " " << c.text;
        EXPECT_EQ(c.readBack, data.GetAsString(c.algorithm)) << c.algorithm << " " << c.text;
    }
    CFastInfosetBinaryData cdata;
    cdata.SetAsEncodedString(10, "a<b");
    EXPECT_EQ("61 3C 62", Hex(cdata));
}

TEST(EncodingAlgorithms, ListsOfValues) {
    const struct {
        unsigned long algorithm;
        std::vector<unsigned char> bytes;
        const char* text;
    } cases[] = {
        {3, {0x00, 0x01, 0x00, 0x02}, "1 2"},
        {4, {0x00, 0x00, 0x00, 0x01, 0x80, 0x00, 0x00, 0x00}, "1 2147483648"},
        {5, {0, 0, 0, 0, 0, 0, 0, 1, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, "1 -1"},
        // Booleans: the values of one octet form one word.
        {6, {0x40, 0xB0}, "falsefalsefalsefalse truefalsetruetrue"},
        {6, {0x08, 0x80}, "truefalsefalsefalse truefalsefalsefalsefalsefalsefalsefalse"},
        {6, {0x00}, "falsefalsefalsefalse"},
        {8, {0x3F, 0xF0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0}, "1 -2"},
    };
    for (const auto& c : cases) {
        std::vector<unsigned char> bytes = c.bytes;
        CFastInfosetBinaryData data(bytes.data(), static_cast<unsigned long>(bytes.size()), false);
        EXPECT_EQ(c.text, data.GetAsString(c.algorithm)) << c.algorithm;
    }
}

TEST(EncodingAlgorithms, Failures) {
    unsigned char three[] = {1, 2, 3};
    unsigned char fifteen[15] = {};
    const CFastInfosetBinaryData odd(three, 3, false), short16(fifteen, 15, false), empty;
    const struct {
        std::function<void()> call;
        const char* failure;
    } cases[] = {
        {[] { CFastInfosetBinaryData().SetAsEncodedString(0, "1"); }, "CQvException: Unknown byte encoding."},
        {[] { CFastInfosetBinaryData().SetAsEncodedString(11, "1"); }, "CQvException: Unknown byte encoding."},
        {[&] { odd.GetAsString(10); }, "CQvException: Unknown byte encoding."},
        {[&] { odd.GetAsString(99); }, "CQvException: Unknown byte encoding."},
        {[&] { odd.GetAsString(3); }, "CQvException: Invalid value for SHORT byte encoding."},
        {[&] { odd.GetAsString(4); }, "CQvException: Invalid value for INT byte encoding."},
        {[&] { odd.GetAsString(5); }, "CQvException: Invalid value for LONG byte encoding."},
        {[&] { odd.GetAsString(7); }, "CQvException: Invalid value for FLOAT byte encoding."},
        {[&] { odd.GetAsString(8); }, "CQvException: Invalid value for DOUBLE byte encoding."},
        {[&] { short16.GetAsString(9); }, "CQvException: Invalid value for UUID byte encoding."},
        {[] { CFastInfosetBinaryData().SetAsEncodedString(9, "123"); }, "CQvException: Invalid length in hex string"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.failure, Failure(c.call));
    // Out of range for a short: the conversion's own failure.
    EXPECT_NE(std::string::npos, Failure([] {
                                     CFastInfosetBinaryData().SetAsEncodedString(3, "40000");
                                 }).find("CQvInvalidValueException"));
    for (unsigned long algorithm : {1ul, 6ul, 9ul, 10ul, 99ul})
        EXPECT_EQ("", empty.GetAsString(algorithm));
}

using Vocabulary = CFIVocabulary;

std::vector<std::string> Strings(const Vocabulary::CFIStringTable& table) { return {table.begin(), table.end()}; }

std::string Names(const Vocabulary::CFIQNameTable& table) {
    std::string text;
    for (const auto& n : table)
        text += "(" + std::to_string(n.m_prefixIndex) + "," + std::to_string(n.m_namespaceIndex) + "," +
                std::to_string(n.m_localNameIndex) + ")";
    return text;
}

TEST(Vocabulary, NewVocabularyAndIndices) {
    Vocabulary v;
    EXPECT_EQ((std::vector<std::string>{"0123456789-+.e ", "0123456789-:TZ "}), v.m_restrictedAlphabets);
    unsigned long index = 77;
    EXPECT_TRUE(v.FindPrefixNameIndex("xml", index));
    EXPECT_EQ(1u, index);
    EXPECT_TRUE(v.FindNamespaceNameIndex("http://www.w3.org/XML/1998/namespace", index));
    EXPECT_EQ(1u, index);
    index = 77;
    EXPECT_FALSE(v.FindLocalNameIndex("a", index));
    EXPECT_EQ(77u, index);

    v.AddPrefixName("p");
    EXPECT_TRUE(v.FindPrefixNameIndex("p", index));
    EXPECT_EQ(2u, index);

    v.AddElement("", "", "a");
    v.AddElement("", "", "a"); // same key: nothing added
    v.AddElement("q", "urn:n", "a");
    v.AddElement("r", "urn:n", "a"); // differs in the prefix: shares namespace and local name
    v.AddAttribute("", "", "id");
    EXPECT_EQ("(0,0,1)(3,2,1)(4,2,1)", Names(v.GetElementNamesTable()));
    EXPECT_EQ("(0,0,2)", Names(v.GetAttributeNamesTable()));
    EXPECT_EQ((std::vector<std::string>{"xml", "p", "q", "r"}), Strings(v.GetPrefixNamesTable()));
    EXPECT_EQ((std::vector<std::string>{"a", "id"}), Strings(v.GetLocalNamesTable()));
    EXPECT_EQ(std::string("a\x01\x01", 3), v.m_elementNamesMap.begin()->first);
    EXPECT_EQ(3u, v.m_elementNamesMap.at(std::string("a\x01urn:n\x01r")));

    // A duplicate value keeps its map index but is appended to the array again.
    v.AddElementValue("x");
    v.AddElementValue("x");
    v.AddAttributeValue("y");
    EXPECT_EQ(1u, v.m_characterChunksMap.at("x"));
    EXPECT_EQ((std::vector<std::string>{"x", "x"}), Strings(v.GetCharacterChunksTable()));
    EXPECT_EQ((std::vector<std::string>{"y"}), Strings(v.GetAttributeValuesTable()));

    // A copy is deep.
    Vocabulary copy(v);
    copy.AddLocalName("z");
    EXPECT_EQ(2u, Strings(v.GetLocalNamesTable()).size());
    EXPECT_EQ(3u, Strings(copy.GetLocalNamesTable()).size());
}

TEST(Vocabulary, TablesStopSilentlyAt2pw20) {
    Vocabulary v;
    for (unsigned i = 0; i < (1u << 20) + 1; ++i)
        v.AddValueToMap(std::to_string(i), v.m_characterChunksMap);
    EXPECT_EQ(1u << 20, v.m_characterChunksMap.size());
    unsigned long index = 0;
    EXPECT_FALSE(v.FindIndex(v.m_characterChunksMap, std::to_string(1u << 20), index));
    std::vector<std::string> strings(1u << 20);
    v.AddValueToVector("more", strings);
    EXPECT_EQ(1u << 20, strings.size());
    std::vector<Vocabulary::CQNameParts> parts(1u << 20);
    v.AddQNameToVector(0, 0, 1, parts);
    EXPECT_EQ(1u << 20, parts.size());
}

TEST(FastInfosetContext, DefaultsSuggestedValuesAndCopies) {
    CXmlSerializationContext context;
    CFastInfosetContext& fi = context.GetFIContext();
    EXPECT_EQ(6u, fi.GetAttributeMaxAddLength());
    EXPECT_EQ(6u, fi.GetElementMaxAddLength());
    EXPECT_EQ(0, fi.GetDefaultStringEncoding());
    EXPECT_FALSE(fi.GetUseGeneratedVocabulary());
    EXPECT_EQ("", fi.GetExternalVocabularyURI());

    fi.SetEncoding(ItemType_string, {CFastInfosetContext::EncodedKind_Algorithm, 10});
    fi.SetAttributeMaxAddLength(9);
    fi.SetSuggestedValues();
    std::string kinds;
    for (unsigned long type = 0; type < 29; ++type) {
        const auto e = fi.GetEncoding(type);
        kinds += e.m_kind == 0 ? "-" : std::to_string(e.m_kind) + "/" + std::to_string(e.m_index);
        kinds += ' ';
    }
    EXPECT_EQ(
        "- 2/1 2/2 2/3 2/3 2/4 2/5 2/3 2/4 2/5 2/5 2/7 2/8 - 1/2 1/2 1/2 1/2 1/2 1/2 1/2 1/2 - 2/10 2/6 1/1 1/1 - - ",
        kinds);
    EXPECT_EQ(9u, fi.GetAttributeMaxAddLength());

    // The serialization context is copied with the whole vocabulary.
    fi.GetVocabulary()->AddLocalName("kept");
    fi.SetExternalVocabularyURI("urn:v");
    const CXmlSerializationContext copy(context);
    unsigned long index = 0;
    EXPECT_TRUE(copy.GetFIContext().GetVocabulary()->FindLocalNameIndex("kept", index));
    EXPECT_EQ("urn:v", copy.GetFIContext().GetExternalVocabularyURI());
    EXPECT_EQ(10u, copy.GetFIContext().GetEncoding(ItemType_string).m_index);
}

} // namespace
