#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "internal/TextAppender.h"
#include "TestHelpers.h"

#include <gtest/gtest.h>

#include <string>

namespace QvXmlLib10 {

// Looks at the block layout of a buffer.
class CStringBufferInspector {
public:
    static size_t Blocks(const CStringBuffer& b) { return b.m_blocks.size(); }
    static uint64_t BlockSize(const CStringBuffer& b) { return b.m_blockSize; }
    static uint64_t Capacity(const CStringBuffer& b) { return b.m_currentCapacity; }
    static uint64_t Used(const CStringBuffer& b) { return b.m_currentUsed; }
    static std::vector<uint64_t> Sizes(const CStringBuffer& b) { return b.m_blockSizes; }
};

} // namespace QvXmlLib10

using namespace QvXmlLib10;
using Inspect = CStringBufferInspector;

TEST(StringBuffer, TenCharactersInBlocksOfFourMakeThreeBlocks) {
    for (bool byChar : {false, true}) {
        SCOPED_TRACE(byChar ? "Append(char)" : "Append(const char*)");
        CStringBuffer b(5);
        if (byChar) {
            for (char c : std::string("abcdefghij"))
                b.Append(c);
        } else {
            b.Append("abc");
            b.Append(std::string("defghij"));
        }
        EXPECT_EQ(Inspect::Blocks(b), 3u);
        EXPECT_EQ(Inspect::Sizes(b), (std::vector<uint64_t>{4, 4, 4}));
        EXPECT_EQ(b.GetLength(), 10u);

        const char* text = b.GetText();
        EXPECT_STREQ(text, "abcdefghij");
        EXPECT_EQ(b.GetLength(), 10u);
        // Joined once into a single block of exactly the text; a second read copies nothing.
        EXPECT_EQ(Inspect::Blocks(b), 1u);
        EXPECT_EQ(Inspect::Sizes(b), std::vector<uint64_t>{10});
        EXPECT_EQ(b.GetText(), text);

        // The next append starts a new block of the normal size.
        b.Append('k');
        EXPECT_EQ(Inspect::Blocks(b), 2u);
        EXPECT_EQ(Inspect::Capacity(b), 4u);
        EXPECT_STREQ(b.GetText(), "abcdefghijk");
        EXPECT_EQ(b.GetLength(), 11u);
    }
}

TEST(StringBuffer, ExactFitDoesNotOpenAnEmptyBlock) {
    CStringBuffer b(5);
    b.Append("abcd");
    EXPECT_EQ(Inspect::Blocks(b), 1u);
    b.Append("");
    EXPECT_EQ(Inspect::Blocks(b), 1u);
    EXPECT_STREQ(b.GetText(), "abcd");
}

TEST(StringBuffer, StringFormStopsAtEmbeddedNul) {
    CStringBuffer b;
    b.Append(std::string("ab\0cd", 5));
    EXPECT_EQ(b.GetLength(), 2u);
    EXPECT_STREQ(b.GetText(), "ab");
    b.Append(static_cast<const char*>(nullptr));
    EXPECT_EQ(b.GetLength(), 2u);
}

TEST(StringBuffer, EmptyKeepsASingleBlockAndClearsSeveral) {
    CStringBuffer one(8);
    one.Append("abc");
    const char* block = one.GetText();
    one.Append("d"); // a single block is given back in place, also after growing
    EXPECT_EQ(one.GetText(), block);
    EXPECT_STREQ(block, "abcd");
    one.Empty();
    EXPECT_EQ(Inspect::Blocks(one), 1u);
    EXPECT_EQ(one.GetLength(), 0u);
    EXPECT_EQ(Inspect::Used(one), 0u);
    EXPECT_EQ(one.GetText(), block);
    EXPECT_STREQ(one.GetText(), "");
    one.Append("xy");
    EXPECT_STREQ(one.GetText(), "xy");

    CStringBuffer several(3);
    several.Append("abcdef");
    ASSERT_EQ(Inspect::Blocks(several), 3u);
    several.Empty();
    EXPECT_EQ(Inspect::Blocks(several), 0u);
    EXPECT_EQ(several.GetLength(), 0u);
    EXPECT_STREQ(several.GetText(), "");
    // SetText replaces the whole text.
    several.Append("abcdef");
    several.SetText("xyz12");
    EXPECT_STREQ(several.GetText(), "xyz12");
    EXPECT_EQ(several.GetLength(), 5u);
}

TEST(StringBuffer, DegenerateBlockSizeStillHoldsOneCharacterPerBlock) {
    CStringBuffer unsized;
    EXPECT_STREQ(unsized.GetText(), "");
    EXPECT_EQ(Inspect::Blocks(unsized), 0u); // nothing allocated before the first append
    EXPECT_EQ(Inspect::BlockSize(unsized), 4095u);
    for (unsigned long bytes : {0ul, 1ul, 2ul}) {
        CStringBuffer b(bytes);
        b.Append("abc");
        b.Append('d');
        EXPECT_EQ(Inspect::Blocks(b), 4u);
        EXPECT_STREQ(b.GetText(), "abcd");
    }
}

TEST(TextStream, EncodedStreamRefusesUnknownEncodings) {
    for (int value : {0, 4, -1}) {
        CTextStream s(static_cast<XmlEncoding>(value));
        s.Append("abc");
        try {
            s.GetEncodedStream();
            FAIL() << "no exception for encoding " << value;
        } catch (const CQvException& e) {
            EXPECT_EQ(typeid(e), typeid(CQvException));
            EXPECT_EQ(e.GetFullMessage(), "Unknown Encoding, select UTF-8 (contact support@qvxml.example for support)");
        }
    }
}

TEST(TextAppender, PiecesOfEveryLengthAcrossBlockBoundaries) {
    // A block of the text sink holds 4095 characters; pieces of 0 to 40 bytes, and
    // single characters, land on and across the boundaries.
    CTextStream s;
    std::string expected;
    {
        Internal::CTextAppender out(s);
        out.Put(nullptr, 0);
        for (int round = 0; round < 400; ++round) {
            const size_t length = static_cast<size_t>(round % 41);
            std::string piece(length, static_cast<char>('a' + round % 26));
            if (length > 1) piece[length / 2] = '\0'; // NULs go in as they stand
            out.Put(piece.data(), piece.size());
            out.Put(static_cast<char>('0' + round % 10));
            expected += piece;
            expected += static_cast<char>('0' + round % 10);
        }
        out.Put(std::string(9000, 'x').data(), 9000);
        expected += std::string(9000, 'x');
    }
    EXPECT_EQ(s.GetLength(), expected.size());
    EXPECT_EQ(std::string(s.GetText(), s.GetLength()), expected);
}

TEST(TextAppender, CommitsWhenAskedAndWhenDestroyed) {
    CTextStream s;
    s.Append("ab");
    {
        Internal::CTextAppender out(s);
        out.Put("cd", 2);
        EXPECT_EQ(s.GetLength(), 2u);
        out.Commit();
        EXPECT_EQ(s.GetLength(), 4u);
        out.Put('e');
        out.Commit();
        out.Commit();
        EXPECT_EQ(s.GetLength(), 5u);
        out.Put('f');
    }
    EXPECT_STREQ(s.GetText(), "abcdef");
    // After the text was joined into one full block, the next piece opens a new one.
    std::string more(5000, 'm');
    {
        Internal::CTextAppender out(s);
        out.Put(more.data(), more.size());
    }
    EXPECT_EQ(std::string(s.GetText()), "abcdef" + more);
}

TEST(TextStream, EncodedStreamOfSeveralBlocks) {
    // Long texts span several blocks; the UTF-8 bytes are the same as those of the joined
    // text, and the text itself stays as it was. Sets a UTF-8 locale for the non-ASCII
    // case and ASCIIOnly for the last one; both are restored.
    const std::string plain = std::string(5000, 'p') + "<tail>";
    const std::string accented = std::string(4094, 'a') + "\xC3\xA9" + std::string(3000, 'b');
    {
        CTextStream s(XmlEncoding_UTF8);
        s.Append(plain);
        EXPECT_EQ(Bytes(s.GetEncodedStream()), plain);
        EXPECT_EQ(std::string(s.GetText()), plain);
    }
    {
        // A NUL ends the text for the conversion, as it does for GetText.
        CTextStream s(XmlEncoding_UTF8);
        s.Append(plain);
        s.Append('\0');
        s.Append(plain);
        EXPECT_EQ(Bytes(s.GetEncodedStream()), plain);
        EXPECT_EQ(s.GetLength(), 2 * plain.size() + 1);
    }
    {
        REQUIRE_UTF8_LOCALE(locale);
        CTextStream s(XmlEncoding_UTF8);
        s.Append(accented);
        EXPECT_EQ(Bytes(s.GetEncodedStream()), accented);
        s.Append("\xFF");
        EXPECT_EQ(Bytes(s.GetEncodedStream()), Bytes(CEncoder::LocalCodePageToUtf8Binary((accented + "\xFF").c_str())));
    }
    {
        ScopedAsciiOnly ascii(true);
        CTextStream s(XmlEncoding_UTF8);
        s.Append(accented + "\xFF");
        EXPECT_EQ(Bytes(s.GetEncodedStream()), accented + "\xFF");
    }
}
