// The Fast Infoset writer, byte by byte: whole documents compared as hexadecimal text.

#include "fastinfoset/FastInfosetWriter.h"
#include "document/XmlTextWriter.h"
#include "foundation/Streams.h"
#include "fastinfoset/FiTestSupport.h"

#include <gtest/gtest.h>

#include <functional>

using namespace QvXmlLib10;
using FiTest::Failure;
using FiTest::Hex;

namespace {

using Events = std::function<void(CFastInfosetWriter&)>;

const char kHeader[] = "E0 00 00 01 00 ";
// Header with a generated vocabulary announced as "u".
const char kVocabularyHeader[] = "E0 00 00 01 20 10 00 00 75 ";

std::string Write(const CFastInfosetContext& fi, const Events& events, FInfoDecl declaration = FInfoDecl_None) {
    CBinaryStream stream;
    CFastInfosetWriter writer(fi, stream);
    writer.Open();
    writer.WriteStartDocument(declaration);
    events(writer);
    writer.WriteEndDocument();
    writer.Close();
    return Hex(stream.GetBinaryStream());
}

std::string Write(const Events& events) { return Write(CFastInfosetContext(), events); }

// <name>text</name> as a child or the root.
void Leaf(CFastInfosetWriter& w, const std::string& name, const std::string& text, ItemType type = ItemType_string) {
    w.WriteStartElement(name, "");
    w.WriteString(text, type);
    w.WriteEndElement();
}

std::string Repeat(const char* octet, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i)
        text += i ? std::string(" ") + octet : std::string(octet);
    return text;
}

TEST(FastInfosetWriter, DocumentsByteForByte) {
    const struct {
        const char* what;
        Events events;
        const char* bytes;
    } cases[] = {
        {"empty root",
         [](CFastInfosetWriter& w) {
             w.WriteStartElement("a", "");
             w.WriteEndElement();
         },
         "38 F0 3C 00 61 FF"},
        {"order with attribute, child and text, then a second equal child",
         [](CFastInfosetWriter& w) {
             w.WriteStartElement("order", "");
             w.WriteAttributeString("id", "", "7", ItemType_string);
             Leaf(w, "name", "Ann");
             Leaf(w, "name", "Ann");
             w.WriteEndElement();
         },
         "78 F0 3C 04 6F 72 64 65 72 78 01 69 64 40 37 F0 3C 03 6E 61 6D 65 92 00 41 6E 6E F0 01 A0 FF F0"},
        {"terminators of four elements closing at once",
         [](CFastInfosetWriter& w) {
             for (const char* name : {"a", "b", "c", "d"})
                 w.WriteStartElement(name, "");
             for (int i = 0; i < 4; ++i)
                 w.WriteEndElement();
         },
         "38 F0 3C 00 61 3C 00 62 3C 00 63 3C 00 64 FF FF F0"},
        {"empty attribute value, second attribute, empty text closes the attribute list",
         [](CFastInfosetWriter& w) {
             w.WriteStartElement("a", "");
             w.WriteAttributeString("x", "", "", ItemType_string);
             w.WriteAttributeString("y", "", "", ItemType_string);
             w.WriteString("", ItemType_string);
             w.WriteEndElement();
         },
         "78 F0 3C 00 61 78 00 78 FF 78 00 79 FF F0 FF"},
        {"5-byte values go by index on their second use, 6-byte ones never",
         [](CFastInfosetWriter& w) {
             w.WriteStartElement("a", "");
             w.WriteAttributeString("x", "", "12345", ItemType_string);
             w.WriteAttributeString("y", "", "12345", ItemType_string);
             w.WriteAttributeString("z", "", "123456", ItemType_string);
             w.WriteAttributeString("w", "", "123456", ItemType_string);
             Leaf(w, "b", "12345");
             Leaf(w, "b", "12345");
             Leaf(w, "b", "123456");
             Leaf(w, "b", "123456");
             w.WriteEndElement();
         },
         "78 F0 3C 00 61 78 00 78 44 31 32 33 34 35 78 00 79 80 78 00 7A 05 31 32 33 34 35 36 78 00 77 05 31 32 33 34 "
         "35 36 F0 3C 00 62 92 02 31 32 33 34 35 F0 01 A0 F0 01 82 03 31 32 33 34 35 36 F0 01 82 03 31 32 33 34 35 36 "
         "FF F0"},
        {"processing instructions, comments and inline schemas are not carried",
         [](CFastInfosetWriter& w) {
             w.WritePI("pi");
             w.WriteStartElement("a", "");
             w.WriteComment("c");
             w.WriteInlineSchema("<xs:schema/>");
             w.WriteAttributeString("x", "", "1", ItemType_string);
             w.WriteEndElement();
         },
         "78 F0 3C 00 61 78 00 78 40 31 F0 FF"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(kHeader + std::string(c.bytes), Write(c.events)) << c.what;
}

TEST(FastInfosetWriter, NamespacesPrefixesAndScopes) {
    const auto events = [](CXmlWriter& w) {
        w.SetDefaultNamespace("urn:d");
        w.AddNamespace("p", "urn:p");
        w.WriteStartElement("r", "urn:d");
        w.WriteAttributeString("q", "urn:p", "1", ItemType_string);
        // Two siblings in an undeclared namespace: each invents "AA" in a scope of its own;
        // the nested child in its parent's namespace takes the parent's prefix.
        for (int i = 0; i < 2; ++i) {
            w.WriteStartElement("c", "urn:x");
            w.WriteStartElement("c", "urn:x");
            w.WriteAttributeString("k", "urn:y", "2", ItemType_string);
            w.WriteEndElement();
            w.WriteEndElement();
        }
        w.WriteStartElement("c", "urn:p");
        w.WriteAttributeType("urn:p", "T", ItemType_string);
        w.WriteAttributeType("urn:t", "T", ItemType_string);
        w.WriteAttributeType("", "U", ItemType_string);
        w.WriteAttributeNil();
        w.WriteEndElement();
        w.WriteEndElement();
    };
    EXPECT_EQ(kHeader + std::string(
                            // root: declarations of the default namespace and of p, never of xml
                            "78 CD 04 75 72 6E 3A 64 CF 00 70 04 75 72 6E 3A 70 F0 "
                            // name r in the default namespace; attribute p:q
                            "3D 81 00 72 7B 81 82 00 71 40 31 F0 "
                            // AA:c, AA:c (element name 2) with attribute AB:k
                            "3F 01 41 41 04 75 72 6E 3A 78 00 63 41 7B 01 41 42 04 75 72 6E 3A 79 00 6B 40 32 F0 FF "
                            // the sibling: names and value by index
                            "01 41 01 81 F0 FF "
                            // p:c; xsi:type under the prefix p
                            "7F 81 82 82 7B 81 28 68 74 74 70 3A 2F 2F 77 77 77 2E 77 33 2E 6F 72 67 2F 32 30 30 31 2F "
                            "58 4D 4C 53 63 68 65 6D 61 2D 69 6E 73 74 61 6E 63 65 03 74 79 70 65 42 70 3A 54 "
                            // an attribute named after the type in an undeclared namespace: AA:T
                            "7B 82 04 75 72 6E 3A 74 00 54 43 41 41 3A 54 "
                            // AB:type and AB:nil in the xsi namespace
                            "7B 83 85 84 40 55 7B 83 85 02 6E 69 6C 43 74 72 75 65 F0 FF F0"),
              Write(CFastInfosetContext(), events));

    // The text writer invents the same prefixes through the same frame.
    CTextStream text;
    CXmlTextWriter textWriter(text);
    textWriter.SetFormat(false);
    events(textWriter);
    const std::string xml = text.GetText();
    EXPECT_EQ("<r xmlns=\"urn:d\" xmlns:p=\"urn:p\" p:q=\"1\"><AA:c xmlns:AA=\"urn:x\"><AA:c xmlns:AB=\"urn:y\" "
              "AB:k=\"2\"/></AA:c><AA:c xmlns:AA=\"urn:x\"><AA:c xmlns:AB=\"urn:y\" AB:k=\"2\"/></AA:c><p:c",
              xml.substr(0, xml.find(" ", xml.find("<p:c"))));
}

TEST(FastInfosetWriter, DeclarationsAndGeneratedVocabulary) {
    const Events root = [](CFastInfosetWriter& w) {
        w.WriteStartElement("a", "");
        w.WriteEndElement();
    };
    for (int d = 1; d <= 9; ++d) {
        const std::string declaration = FI_DECLARATION_LIST[d - 1];
        EXPECT_EQ(Hex(reinterpret_cast<const unsigned char*>(declaration.data()), declaration.size()) + " " + kHeader +
                      "38 F0 3C 00 61 FF",
                  Write(CFastInfosetContext(), root, static_cast<FInfoDecl>(d)));
    }
    EXPECT_EQ("<?xml version='1.1' encoding='finf' standalone='no'?>", std::string(FI_DECLARATION_LIST[8]));

    CFastInfosetContext fi;
    fi.SetUseGeneratedVocabulary(true);
    fi.SetExternalVocabularyURI("urn:a");
    EXPECT_EQ("E0 00 00 01 20 10 00 04 75 72 6E 3A 61 38 F0 3C 00 61 FF", Write(fi, root));
    // Names and values of the generated vocabulary go by index from the start, and the
    // context's vocabulary is not changed by writing.
    fi.GetVocabulary()->AddElement("", "", "a");
    fi.GetVocabulary()->AddAttribute("", "", "x");
    fi.GetVocabulary()->AddAttributeValue("1");
    fi.GetVocabulary()->AddElementValue("t");
    fi.SetExternalVocabularyURI("");
    const Events withContent = [](CFastInfosetWriter& w) {
        w.WriteStartElement("a", "");
        w.WriteAttributeString("x", "", "1", ItemType_string);
        Leaf(w, "b", "t");
        w.WriteEndElement();
    };
    const std::string uri = FI_DEFAULT_EXTERNAL_VOCABULARY_URI;
    EXPECT_EQ("E0 00 00 01 20 10 00 " +
                  Hex(std::vector<unsigned char>{static_cast<unsigned char>(uri.size() - 1)}.data(), 1) + " " +
                  Hex(reinterpret_cast<const unsigned char*>(uri.data()), uri.size()) +
                  " 78 F0 00 00 80 F0 3C 00 62 A0 FF F0",
              Write(fi, withContent));
    EXPECT_EQ(1u, fi.GetVocabulary()->m_elementNamesMap.size());
    fi.SetUseGeneratedVocabulary(false);
    EXPECT_EQ(std::string(kHeader) + "78 F0 3C 00 61 78 00 78 40 31 F0 3C 00 62 90 74 FF F0", Write(fi, withContent));
}

// Every integer encoder at each boundary where its encoding grows, through indices that
// a generated vocabulary hands the writer.
TEST(FastInfosetWriter, IndicesAtEveryBoundary) {
    const struct {
        uint64_t index;
        const char* elementName;    // Integer1To2pw20Bit3, prefix 0
        const char* attributeName;  // Integer1To2pw20Bit2, prefix 0
        const char* attributeValue; // Integer1To2pw20Bit2, prefix 80
        const char* chunk;          // Integer1To2pw20Bit4, prefix A0
    } cases[] = {
        {1, "00", "00", "80", "A0"},
        {16, "0F", "0F", "8F", "AF"},
        {17, "10", "10", "90", "B0 00"},
        {32, "1F", "1F", "9F", "B0 0F"},
        {33, "20 00", "20", "A0", "B0 10"},
        {64, "20 1F", "3F", "BF", "B0 2F"},
        {65, "20 20", "40 00", "C0 00", "B0 30"},
        {1040, "23 EF", "43 CF", "C3 CF", "B3 FF"},
        {1041, "23 F0", "43 D0", "C3 D0", "B4 00 00"},
        {2080, "27 FF", "47 DF", "C7 DF", "B4 04 0F"},
        {2081, "28 00 00", "47 E0", "C7 E0", "B4 04 10"},
        {8256, "28 18 1F", "5F FF", "DF FF", "B4 1C 2F"},
        {8257, "28 18 20", "60 00 00", "E0 00 00", "B4 1C 30"},
        {263184, "2B FB EF", "63 E3 CF", "E3 E3 CF", "B7 FF FF"},
        {263185, "2B FB F0", "63 E3 D0", "E3 E3 D0", "B8 00 00 00"},
        {526368, "2F FF FF", "67 E7 DF", "E7 E7 DF", "B8 04 04 0F"},
        // One less subtracted than the reader adds back: the reader sees 526370.
        {526369, "30 00 00 01", "67 E7 E0", "E7 E7 E0", "B8 04 04 10"},
        {1048576, "30 07 F7 E0", "6F DF BF", "EF DF BF", "B8 0B FB EF"},
    };
    for (const auto& c : cases) {
        CFastInfosetContext fi;
        fi.SetUseGeneratedVocabulary(true);
        fi.SetExternalVocabularyURI("u");
        CFIVocabulary& v = *fi.GetVocabulary();
        v.m_elementNamesMap[std::string("a\x01\x01", 3)] = c.index;
        v.m_attributeNamesMap[std::string("b\x01\x01", 3)] = c.index;
        v.m_attributeValuesMap["v"] = c.index;
        v.m_characterChunksMap["t"] = c.index;
        const std::string bytes = Write(fi, [](CFastInfosetWriter& w) {
            w.WriteStartElement("a", "");
            w.WriteAttributeString("b", "", "v", ItemType_string);
            w.WriteString("t", ItemType_string);
            w.WriteEndElement();
        });
        EXPECT_EQ(kVocabularyHeader + std::string("78 F0 ") + c.elementName + " " + c.attributeName + " " +
                      c.attributeValue + " F0 " + c.chunk + " FF",
                  bytes)
            << c.index;
    }
}

// Every string encoder at each boundary where its length encoding grows.
TEST(FastInfosetWriter, LengthsAtEveryBoundary) {
    const struct {
        size_t length;
        const char* localName; // NonEmptyOctetUTF8StringBit2, prefix 0
        const char* value;     // NonEmptyOctetStringBit5, prefix 0 (attribute value)
        const char* chunk;     // NonEmptyOctetStringBit7, prefix 80 (character chunk)
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
        const std::string text(c.length, 'x');
        const std::string data = Repeat("78", c.length);
        EXPECT_EQ(kHeader + std::string("78 F0 3C ") + c.localName + " " + data + " 78 00 79 " + c.value + " " + data +
                      " F0 " + c.chunk + " " + data + " FF",
                  Write(fi,
                        [&](CFastInfosetWriter& w) {
                            w.WriteStartElement(text, "");
                            w.WriteAttributeString("y", "", text, ItemType_string);
                            w.WriteString(text, ItemType_string);
                            w.WriteEndElement();
                        }))
            << c.length;
    }
}

TEST(FastInfosetWriter, AddLengthLimits) {
    const Events events = [](CFastInfosetWriter& w) {
        w.WriteStartElement("a", "");
        w.WriteAttributeString("x", "", "123456", ItemType_string);
        w.WriteAttributeString("y", "", "123456", ItemType_string);
        Leaf(w, "b", "12");
        Leaf(w, "b", "12");
        w.WriteEndElement();
    };
    CFastInfosetContext fi;
    fi.SetAttributeMaxAddLength(7); // six bytes are shared now
    fi.SetElementMaxAddLength(0);   // and no text at all
    EXPECT_EQ(kHeader + std::string("78 F0 3C 00 61 78 00 78 45 31 32 33 34 35 36 78 00 79 80 F0 3C 00 62 81 31 32 F0 "
                                    "01 81 31 32 FF F0"),
              Write(fi, events));
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
        const char* text;
        const char* chunk;     // character chunk, from its first octet
        const char* attribute; // attribute value, from its first octet
    } cases[] = {
        {ItemType_hexBinary, "0AFF", "8C 01 0A FF", "30 01 0A FF"},
        {ItemType_base64Binary, "AQI=", "8C 05 01 02", "30 11 01 02"},
        {ItemType_i1, "-2", "8C 09 FF FE", "30 21 FF FE"},
        {ItemType_ui2, "-1", "8C 0E 01 FF FF FF FF", "30 33 FF FF FF FF"},
        {ItemType_ui8, "1", "8C 12 05 00 00 00 00 00 00 00 01", "30 47 00 00 00 00 00 00 00 01"},
        {ItemType_boolean, "true", "8C 14 38", "30 50 38"},
        {ItemType_r4, "1", "8C 1A 01 3F 80 00 00", "30 63 3F 80 00 00"},
        {ItemType_r8, "1.5", "8C 1E 05 3F F8 00 00 00 00 00 00", "30 77 3F F8 00 00 00 00 00 00"},
        {ItemType_string, "00112233445566778899AABBCCDDEEFF",
         "8C 22 0D 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF",
         "30 88 07 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF"},
        {ItemType_char, "a<b", "8C 26 00 61 3C 62", "30 92 61 3C 62"},
        {ItemType_decimal, "12.5", "88 01 12 C5", "20 01 12 C5"},
        {ItemType_integer, "-123", "88 01 A1 23", "20 01 A1 23"},
        {ItemType_date, "2024-01-02", "88 06 02 20 24 A0 1A 02", "20 14 20 24 A0 1A 02"},
        {ItemType_time, "1", "88 04 1F", "20 10 1F"},
        {ItemType_duration, "P1D", "82 00 50 31 44", "02 50 31 44"},
    };
    for (const auto& c : cases) {
        const std::string bytes = Write(fi, [&](CFastInfosetWriter& w) {
            w.WriteStartElement("a", "");
            w.WriteAttributeString("x", "", c.text, c.type);
            w.WriteString(c.text, c.type);
            w.WriteEndElement();
        });
        EXPECT_EQ(kHeader + std::string("78 F0 3C 00 61 78 00 78 ") + c.attribute + " F0 " + c.chunk + " FF", bytes)
            << c.text;
    }
}

// A context whose default string encoding is UTF-16, which no setter offers.
class CUtf16Context : public CFastInfosetContext {
public:
    CUtf16Context() { m_defaultStringEncoding = 1; }
};

TEST(FastInfosetWriter, Failures) {
    using Encoding = CFastInfosetContext::EncodedCharacterString;
    const auto context = [](Encoding encoding) {
        CFastInfosetContext fi;
        fi.SetEncoding(ItemType_string, encoding);
        return fi;
    };
    const auto withAlphabet = [](const std::string& alphabet) {
        CFastInfosetContext fi;
        fi.SetUseGeneratedVocabulary(true);
        fi.GetVocabulary()->m_restrictedAlphabets[0] = alphabet;
        fi.SetEncoding(ItemType_string, {CFastInfosetContext::EncodedKind_RestrictedAlphabet, 1});
        return fi;
    };
    const Events chunk = [](CFastInfosetWriter& w) { Leaf(w, "a", "1"); };
    const Events attribute = [](CFastInfosetWriter& w) {
        w.WriteStartElement("a", "");
        w.WriteAttributeString("x", "", "1", ItemType_string);
    };
    const std::string prefix = "CQvException: Failed to write FastInfoset. ";
    const struct {
        CFastInfosetContext fi;
        const Events& events;
        std::string failure;
    } cases[] = {
        {context({CFastInfosetContext::EncodedKind_Algorithm, 11}), chunk,
         prefix + "Invalid Encoding Algorithm value [11]"},
        {context({CFastInfosetContext::EncodedKind_Algorithm, 0}), attribute,
         prefix + "Invalid Encoding Algorithm value [0]"},
        {context({CFastInfosetContext::EncodedKind_RestrictedAlphabet, 3}), chunk,
         prefix + "Invalid Restricted Alphabet value [3]"},
        {context({CFastInfosetContext::EncodedKind_RestrictedAlphabet, 0}), attribute,
         prefix + "Invalid Restricted Alphabet value [0]"},
        {context({static_cast<CFastInfosetContext::EncodedKind>(7), 1}), chunk,
         prefix + "Unknown encoding in EncodedCharacterStringBit7."},
        {context({static_cast<CFastInfosetContext::EncodedKind>(7), 1}), attribute,
         prefix + "Unknown encoding in EncodedCharacterStringBit5."},
        {CUtf16Context(), chunk, prefix + "Unsupported Feature UTF16BE in EncodedCharacterStringBit5."},
        {CUtf16Context(), attribute, prefix + "Unsupported Feature UTF16BE in EncodedCharacterStringBit5."},
        {context({CFastInfosetContext::EncodedKind_RestrictedAlphabet, 2}),
         [](CFastInfosetWriter& w) { Leaf(w, "a", "+01:00"); },
         prefix + "Invalid character not found for Restricted Alphabet."},
        {withAlphabet("0"), chunk,
         prefix + "Invalid Restricted Alphabet. Alphabet must contain between 2 and 2^20 characters."},
        {withAlphabet("012"), chunk, prefix + "Unsupported Feature in AppendRestrictedAlphabetString."},
        {withAlphabet("0123456789abcdef"), chunk, prefix + "Unsupported Feature in AppendRestrictedAlphabetString."},
        {context({CFastInfosetContext::EncodedKind_Algorithm, 3}), [](CFastInfosetWriter& w) { Leaf(w, "a", "x"); },
         "CQvInvalidValueException: The value [x] can not be converted to a i4"},
        {CFastInfosetContext(),
         [](CFastInfosetWriter& w) {
             w.WriteStartElement("a", "");
             w.WriteString("t", ItemType_string);
             w.WriteAttributeString("x", "", "1", ItemType_string);
         },
         "CQvException: Attributes must be added before elements"},
        {CFastInfosetContext(),
         [](CFastInfosetWriter& w) {
             w.WriteStartElement("a", "");
             Leaf(w, "b", "");
             w.WriteAttributeNil();
         },
         "CQvException: Attributes must be added before elements"},
        {CFastInfosetContext(),
         [](CFastInfosetWriter& w) {
             w.WriteStartElement("a", "");
             w.WriteString("", ItemType_string);
             w.WriteAttributeType("urn:t", "T", ItemType_string);
         },
         "CQvException: Attributes must be added before elements"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.failure, Failure([&] {
                      CBinaryStream stream;
                      CFastInfosetWriter writer(c.fi, stream);
                      writer.WriteStartDocument(FInfoDecl_None);
                      c.events(writer);
                  }));
    }
}

TEST(FastInfosetWriter, EightBitAlphabet) {
    std::string alphabet;
    for (int c = 32; c < 160; ++c)
        alphabet += static_cast<char>(c);
    CFastInfosetContext fi;
    fi.SetUseGeneratedVocabulary(true);
    fi.SetExternalVocabularyURI("u");
    fi.GetVocabulary()->m_restrictedAlphabets[0] = alphabet;
    fi.SetEncoding(ItemType_string, {CFastInfosetContext::EncodedKind_RestrictedAlphabet, 1});
    EXPECT_EQ(kVocabularyHeader + std::string("38 F0 3C 00 61 98 01 21 41 FF"),
              Write(fi, [](CFastInfosetWriter& w) { Leaf(w, "a", "Aa"); }));
}

} // namespace
