// The Fast Infoset writer, byte by byte: whole documents compared as hexadecimal text.

#include "fastinfoset/FastInfosetWriter.h"
#include "foundation/Streams.h"
#include "fastinfoset/FiTestSupport.h"

#include <gtest/gtest.h>

#include <functional>

using namespace QvXmlLib10;
using FiTest::Failure;
using FiTest::Hex;
using FiTest::Play;

namespace {

using Events = std::function<void(CFastInfosetWriter&)>;
using Kind = CFastInfosetContext::EncodedKind;

const std::string kHeader = "E0 00 00 01 00 ";
const std::string kVocabularyHeader = "E0 00 00 01 20 10 00 00 75 "; // generated vocabulary "u"

std::string Write(const CFastInfosetContext& fi, const Events& events, FInfoDecl declaration = FInfoDecl_None) {
    CBinaryStream stream;
    {
        CFastInfosetWriter writer(fi, stream);
        writer.Open();
        writer.WriteStartDocument(declaration);
        events(writer);
        writer.WriteEndDocument();
        writer.Close();
    }
    return Hex(stream.GetBinaryStream());
}

std::string Write(const CFastInfosetContext& fi, const std::string& script, ItemType type = ItemType_string) {
    return Write(fi, [&](CFastInfosetWriter& w) { Play(w, script, type); });
}

CFastInfosetContext Vocabulary() {
    CFastInfosetContext fi;
    fi.SetUseGeneratedVocabulary(true);
    fi.SetExternalVocabularyURI("u");
    return fi;
}

TEST(FastInfosetWriter, DocumentsByteForByte) {
    const struct {
        const char* script;
        const char* bytes;
    } cases[] = {
        {"<a >", "38 F0 3C 00 61 FF"},
        // The example order; the second equal child goes by index, after the owed F0.
        {"<order @id=7 <name 'Ann > <name 'Ann > >",
         "78 F0 3C 04 6F 72 64 65 72 78 01 69 64 40 37 F0 3C 03 6E 61 6D 65 92 00 41 6E 6E F0 01 A0 FF F0"},
        // Four ends at once share their terminators.
        {"<a <b <c <d > > > >", "38 F0 3C 00 61 3C 00 62 3C 00 63 3C 00 64 FF FF F0"},
        // Empty values, a second attribute, empty text closing the attribute list.
        {"<a @x= @y= ' >", "78 F0 3C 00 61 78 00 78 FF 78 00 79 FF F0 FF"},
        // 5-byte values by index on their second use, 6-byte ones never.
        {"<a @x=12345 @y=12345 @z=123456 @w=123456 <b '12345 > <b '12345 > <b '123456 > <b '123456 > >",
         "78 F0 3C 00 61 78 00 78 44 31 32 33 34 35 78 00 79 80 78 00 7A 05 31 32 33 34 35 36 78 00 77 05 31 32 33 34 "
         "35 36 F0 3C 00 62 92 02 31 32 33 34 35 F0 01 A0 F0 01 82 03 31 32 33 34 35 36 F0 01 82 03 31 32 33 34 35 36 "
         "FF F0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(kHeader + c.bytes, Write(CFastInfosetContext(), c.script)) << c.script;

    // Comments, inline schemas and processing instructions are not carried.
    EXPECT_EQ(kHeader + "78 F0 3C 00 61 78 00 78 40 31 F0 FF", Write(CFastInfosetContext(), [](CFastInfosetWriter& w) {
                  w.WritePI("pi");
                  w.WriteStartElement("a", "");
                  w.WriteComment("c");
                  w.WriteInlineSchema("<xs:schema/>");
                  Play(w, "@x=1 >");
              }));
}

TEST(FastInfosetWriter, NamespacesPrefixesAndScopesOfTheFrame) {
    // Two siblings in an undeclared namespace each invent "AA" in a scope of their own;
    // the nested child in its parent's namespace takes the parent's prefix.
    const auto events = [](CXmlWriter& w) {
        w.SetDefaultNamespace("urn:d");
        w.AddNamespace("p", "urn:p");
        Play(w, "<{urn:d}r @{urn:p}q=1 <{urn:x}c <{urn:x}c @{urn:y}k=2 > > <{urn:x}c <{urn:x}c @{urn:y}k=2 > > "
                "<{urn:p}c");
        w.WriteAttributeType("urn:p", "T", ItemType_string);
        w.WriteAttributeType("urn:t", "T", ItemType_string);
        w.WriteAttributeType("", "U", ItemType_string);
        w.WriteAttributeNil();
        Play(w, "> >");
    };
    EXPECT_EQ(
        kHeader +
            // root: declarations of the default namespace and of p, never of xml; r, p:q
            "78 CD 04 75 72 6E 3A 64 CF 00 70 04 75 72 6E 3A 70 F0 3D 81 00 72 7B 81 82 00 71 40 31 F0 "
            // AA:c, AA:c (element name 2) with AB:k; the sibling by indices
            "3F 01 41 41 04 75 72 6E 3A 78 00 63 41 7B 01 41 42 04 75 72 6E 3A 79 00 6B 40 32 F0 FF 01 41 01 81 F0 FF "
            // p:c; xsi:type under the prefix p
            "7F 81 82 82 7B 81 28 68 74 74 70 3A 2F 2F 77 77 77 2E 77 33 2E 6F 72 67 2F 32 30 30 31 2F "
            "58 4D 4C 53 63 68 65 6D 61 2D 69 6E 73 74 61 6E 63 65 03 74 79 70 65 42 70 3A 54 "
            // an attribute named after a type of an undeclared namespace: AA:T
            "7B 82 04 75 72 6E 3A 74 00 54 43 41 41 3A 54 "
            // AB:type and AB:nil in the xsi namespace
            "7B 83 85 84 40 55 7B 83 85 02 6E 69 6C 43 74 72 75 65 F0 FF F0",
        Write(CFastInfosetContext(), events));
}

TEST(FastInfosetWriter, DeclarationsAndGeneratedVocabulary) {
    for (int d = 1; d <= 9; ++d)
        EXPECT_EQ(Hex(std::string(FI_DECLARATION_LIST[d - 1])) + " " + kHeader + "38 F0 3C 00 61 FF",
                  Write(
                      CFastInfosetContext(), [](CFastInfosetWriter& w) { Play(w, "<a >"); }, FInfoDecl(d)));
    EXPECT_EQ("<?xml version='1.1' encoding='finf' standalone='no'?>", std::string(FI_DECLARATION_LIST[8]));

    CFastInfosetContext fi = Vocabulary();
    fi.SetExternalVocabularyURI("urn:a");
    EXPECT_EQ("E0 00 00 01 20 10 00 04 75 72 6E 3A 61 38 F0 3C 00 61 FF", Write(fi, "<a >"));
    // The generated vocabulary's names and values go by index from the start; writing
    // leaves the context's vocabulary as it was.
    fi.GetVocabulary()->AddElement("", "", "a");
    fi.GetVocabulary()->AddAttribute("", "", "x");
    fi.GetVocabulary()->AddAttributeValue("1");
    fi.GetVocabulary()->AddElementValue("t");
    fi.SetExternalVocabularyURI("");
    const std::string uri = FI_DEFAULT_EXTERNAL_VOCABULARY_URI;
    EXPECT_EQ("E0 00 00 01 20 10 00 " + Hex(std::string(1, char(uri.size() - 1))) + " " + Hex(uri) +
                  " 78 F0 00 00 80 F0 3C 00 62 A0 FF F0",
              Write(fi, "<a @x=1 <b 't > >"));
    EXPECT_EQ(1u, fi.GetVocabulary()->m_elementNamesMap.size());
    fi.SetUseGeneratedVocabulary(false);
    EXPECT_EQ(kHeader + "78 F0 3C 00 61 78 00 78 40 31 F0 3C 00 62 90 74 FF F0", Write(fi, "<a @x=1 <b 't > >"));
}

// Every integer encoder at each boundary where its encoding grows, through indices that
// a generated vocabulary hands the writer.
TEST(FastInfosetWriter, IndicesAtEveryBoundary) {
    const struct {
        uint64_t index;
        // element name (Bit3), attribute name (Bit2), attribute value (Bit2 after 80), chunk (Bit4 after A0)
        const char* bytes;
    } cases[] = {
        {1, "00 00 80 F0 A0"},
        {16, "0F 0F 8F F0 AF"},
        {17, "10 10 90 F0 B0 00"},
        {32, "1F 1F 9F F0 B0 0F"},
        {33, "20 00 20 A0 F0 B0 10"},
        {64, "20 1F 3F BF F0 B0 2F"},
        {65, "20 20 40 00 C0 00 F0 B0 30"},
        {1040, "23 EF 43 CF C3 CF F0 B3 FF"},
        {1041, "23 F0 43 D0 C3 D0 F0 B4 00 00"},
        {2080, "27 FF 47 DF C7 DF F0 B4 04 0F"},
        {2081, "28 00 00 47 E0 C7 E0 F0 B4 04 10"},
        {8256, "28 18 1F 5F FF DF FF F0 B4 1C 2F"},
        {8257, "28 18 20 60 00 00 E0 00 00 F0 B4 1C 30"},
        {263184, "2B FB EF 63 E3 CF E3 E3 CF F0 B7 FF FF"},
        {263185, "2B FB F0 63 E3 D0 E3 E3 D0 F0 B8 00 00 00"},
        {526368, "2F FF FF 67 E7 DF E7 E7 DF F0 B8 04 04 0F"},
        // One less subtracted than a reader adds back: it reads 526370.
        {526369, "30 00 00 01 67 E7 E0 E7 E7 E0 F0 B8 04 04 10"},
        {1048576, "30 07 F7 E0 6F DF BF EF DF BF F0 B8 0B FB EF"},
    };
    for (const auto& c : cases) {
        CFastInfosetContext fi = Vocabulary();
        CFIVocabulary& v = *fi.GetVocabulary();
        v.m_elementNamesMap[std::string("a\x01\x01", 3)] = c.index;
        v.m_attributeNamesMap[std::string("b\x01\x01", 3)] = c.index;
        v.m_attributeValuesMap["v"] = c.index;
        v.m_characterChunksMap["t"] = c.index;
        EXPECT_EQ(kVocabularyHeader + "78 F0 " + c.bytes + " FF", Write(fi, "<a @b=v 't >")) << c.index;
    }
}

// Every string encoder at each boundary where its length encoding grows.
TEST(FastInfosetWriter, LengthsAtEveryBoundary) {
    const struct {
        size_t length;
        // local name (UTF8Bit2), attribute value (Bit5), character chunk (Bit7 after 80)
        const char *name, *value, *chunk;
    } cases[] = {
        {1, "00", "00", "80"},
        {2, "01", "01", "81"},
        {3, "02", "02", "82 00"},
        {8, "07", "07", "82 05"},
        {9, "08", "08 00", "82 06"},
        {64, "3F", "08 37", "82 3D"},
        {65, "40 00", "08 38", "82 3E"},
        {258, "40 C1", "08 F9", "82 FF"},
        {259, "40 C2", "08 FA", "83 00 00 00 00"},
        {264, "40 C7", "08 FF", "83 00 00 00 05"},
        {265, "40 C8", "0C 00 00 00 00", "83 00 00 00 06"},
        {320, "40 FF", "0C 00 00 00 37", "83 00 00 00 3D"},
        {321, "60 00 00 00 00", "0C 00 00 00 38", "83 00 00 00 3E"},
    };
    CFastInfosetContext fi;
    fi.SetAttributeMaxAddLength(0); // nothing is added: literal values without the add bit
    fi.SetElementMaxAddLength(0);
    for (const auto& c : cases) {
        const std::string x(c.length, 'x'), data = Hex(x);
        EXPECT_EQ(kHeader + "78 F0 3C " + c.name + " " + data + " 78 00 79 " + c.value + " " + data + " F0 " + c.chunk +
                      " " + data + " FF",
                  Write(fi, "<" + x + " @y=" + x + " '" + x + " >"))
            << c.length;
    }
    // A limit of 7 shares six bytes.
    fi.SetAttributeMaxAddLength(7);
    EXPECT_EQ(kHeader +
                  "78 F0 3C 00 61 78 00 78 45 31 32 33 34 35 36 78 00 79 80 F0 3C 00 62 81 31 32 F0 01 81 31 32 FF F0",
              Write(fi, "<a @x=123456 @y=123456 <b '12 > <b '12 > >"));
}

TEST(FastInfosetWriter, EncodingsOfValues) {
    CFastInfosetContext fi;
    fi.SetSuggestedValues();
    fi.SetEncoding(ItemType_string, {CFastInfosetContext::EncodedKind_Algorithm, 9});
    fi.SetEncoding(ItemType_char, {CFastInfosetContext::EncodedKind_Algorithm, 10});
    fi.SetElementMaxAddLength(0);
    fi.SetAttributeMaxAddLength(0);
    const struct {
        ItemType type;
        const char *text, *attribute, *chunk;
    } cases[] = {
        // One value per way of encoding; the algorithms' own octets are tested with their encoder.
        {ItemType_hexBinary, "0AFF", "30 01 0A FF", "8C 01 0A FF"},
        {ItemType_r8, "1.5", "30 77 3F F8 00 00 00 00 00 00", "8C 1E 05 3F F8 00 00 00 00 00 00"},
        {ItemType_string, "00112233445566778899AABBCCDDEEFF",
         "30 88 07 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF",
         "8C 22 0D 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF"},
        {ItemType_decimal, "12.5", "20 01 12 C5", "88 01 12 C5"},
        {ItemType_date, "2024-01-02", "20 14 20 24 A0 1A 02", "88 06 02 20 24 A0 1A 02"},
        {ItemType_duration, "P1D", "02 50 31 44", "82 00 50 31 44"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(kHeader + "78 F0 3C 00 61 78 00 78 " + c.attribute + " F0 " + c.chunk + " FF",
                  Write(fi, std::string("<a @x=") + c.text + " '" + c.text + " >", c.type))
            << c.text;

    // An alphabet of 128 characters packs into 8 bits.
    CFastInfosetContext wide = Vocabulary();
    std::string alphabet;
    for (int c = 32; c < 160; ++c)
        alphabet += static_cast<char>(c);
    wide.GetVocabulary()->m_restrictedAlphabets[0] = alphabet;
    wide.SetEncoding(ItemType_string, {CFastInfosetContext::EncodedKind_RestrictedAlphabet, 1});
    EXPECT_EQ(kVocabularyHeader + "38 F0 3C 00 61 98 01 21 41 FF", Write(wide, "<a 'Aa >"));
}

// A context whose default string encoding is UTF-16, which no setter offers.
class CUtf16Context : public CFastInfosetContext {
public:
    CUtf16Context() { m_defaultStringEncoding = 1; }
};

TEST(FastInfosetWriter, Failures) {
    const auto encoding = [](Kind kind, uint64_t index) {
        CFastInfosetContext fi = Vocabulary();
        fi.SetEncoding(ItemType_string, {kind, index});
        return fi;
    };
    const auto alphabet = [&](const char* characters) {
        CFastInfosetContext fi = encoding(CFastInfosetContext::EncodedKind_RestrictedAlphabet, 1);
        fi.GetVocabulary()->m_restrictedAlphabets[0] = characters;
        return fi;
    };
    const Kind algorithm = CFastInfosetContext::EncodedKind_Algorithm,
               letters = CFastInfosetContext::EncodedKind_RestrictedAlphabet;
    const std::string failed = "CQvException: Failed to write FastInfoset. ";
    const struct {
        CFastInfosetContext fi;
        const char* script;
        std::string failure;
    } cases[] = {
        {encoding(algorithm, 11), "<a '1", failed + "Invalid Encoding Algorithm value [11]"},
        {encoding(algorithm, 0), "<a @x=1", failed + "Invalid Encoding Algorithm value [0]"},
        {encoding(letters, 3), "<a '1", failed + "Invalid Restricted Alphabet value [3]"},
        {encoding(letters, 0), "<a @x=1", failed + "Invalid Restricted Alphabet value [0]"},
        {encoding(Kind(7), 1), "<a '1", failed + "Unknown encoding in EncodedCharacterStringBit7."},
        {encoding(Kind(7), 1), "<a @x=1", failed + "Unknown encoding in EncodedCharacterStringBit5."},
        {CUtf16Context(), "<a '1", failed + "Unsupported Feature UTF16BE in EncodedCharacterStringBit5."},
        {CUtf16Context(), "<a @x=1", failed + "Unsupported Feature UTF16BE in EncodedCharacterStringBit5."},
        {encoding(letters, 2), "<a '+01:00", failed + "Invalid character not found for Restricted Alphabet."},
        {alphabet("0"), "<a '1",
         failed + "Invalid Restricted Alphabet. Alphabet must contain between 2 and 2^20 characters."},
        {alphabet("012"), "<a '1", failed + "Unsupported Feature in AppendRestrictedAlphabetString."},
        {alphabet("0123456789abcdef"), "<a '1", failed + "Unsupported Feature in AppendRestrictedAlphabetString."},
        {encoding(algorithm, 3), "<a 'x", "CQvInvalidValueException: The value [x] can not be converted to a i4"},
        {CFastInfosetContext(), "<a 't @x=1", "CQvException: Attributes must be added before elements"},
        {CFastInfosetContext(), "<a <b > @x=1", "CQvException: Attributes must be added before elements"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.failure, Failure([&] {
                      CBinaryStream stream;
                      CFastInfosetWriter writer(c.fi, stream);
                      Play(writer, c.script);
                  }));
    for (const auto& call :
         std::vector<Events>{[](CFastInfosetWriter& w) { w.WriteAttributeNil(); },
                             [](CFastInfosetWriter& w) { w.WriteAttributeType("urn:t", "T", ItemType_string); }})
        EXPECT_EQ("CQvException: Attributes must be added before elements", Failure([&] {
                      CBinaryStream stream;
                      const CFastInfosetContext fi;
                      CFastInfosetWriter writer(fi, stream);
                      Play(writer, "<a '");
                      call(writer);
                  }));
}

} // namespace
