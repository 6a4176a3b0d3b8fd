#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "internal/TextAppender.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib10;

TEST(StringBuffer, TextAcrossBlocksOfEverySize) {
    // Block sizes 0 to 2 still hold a character each; 4095 is the default.
    for (unsigned long blockBytes : {0ul, 1ul, 2ul, 5ul, 4095ul}) {
        for (bool byChar : {false, true}) {
            CStringBuffer b(blockBytes);
            EXPECT_STREQ(b.GetText(), "");
            if (byChar) {
                for (char c : std::string("abcdefghij"))
                    b.Append(c);
            } else {
                b.Append("abc");
                b.Append("");
                b.Append(std::string("defghij"));
            }
            EXPECT_STREQ(b.GetText(), "abcdefghij");
            EXPECT_EQ(b.GetLength(), 10u);
            b.Append('k');
            b.Append("lm");
            EXPECT_STREQ(b.GetText(), "abcdefghijklm");
            EXPECT_EQ(b.GetLength(), 13u);
            b.Empty();
            EXPECT_EQ(b.GetLength(), 0u);
            EXPECT_STREQ(b.GetText(), "");
            b.Append("xy");
            EXPECT_STREQ(b.GetText(), "xy");
            b.Append("abcdef");
            b.SetText("xyz12");
            EXPECT_STREQ(b.GetText(), "xyz12");
            EXPECT_EQ(b.GetLength(), 5u);
        }
    }
}

TEST(StringBuffer, StringFormStopsAtEmbeddedNul) {
    CStringBuffer b;
    b.Append(std::string("ab\0cd", 5));
    b.Append(static_cast<const char*>(nullptr));
    EXPECT_EQ(b.GetLength(), 2u);
    EXPECT_STREQ(b.GetText(), "ab");
}

TEST(TextStream, EncodedStreamRefusesUnknownEncodings) {
    for (int value : {0, 4, -1}) {
        CTextStream s(static_cast<XmlEncoding>(value));
        s.Append("abc");
        EXPECT_EQ(FailureOf<CQvException>([&] { s.GetEncodedStream(); }),
                  "Unknown Encoding, select UTF-8 (contact support@qvxml.example for support)");
    }
}

TEST(TextAppender, PiecesOfEveryLengthAcrossBlockBoundaries) {
    // Pieces of 0 to 40 bytes and single characters land on and across the block
    // boundaries; NULs go in as they stand. Commit hands over what was put so far.
    CTextStream s;
    s.Append("ab");
    std::string expected = "ab";
    {
        Internal::CTextAppender out(s);
        out.Put(nullptr, 0);
        out.Put("cd", 2);
        EXPECT_EQ(s.GetLength(), 2u);
        out.Commit();
        out.Commit();
        EXPECT_EQ(s.GetLength(), 4u);
        expected += "cd";
        for (int round = 0; round < 400; ++round) {
            const size_t length = static_cast<size_t>(round % 41);
            std::string piece(length, static_cast<char>('a' + round % 26));
            if (length > 1) piece[length / 2] = '\0';
            out.Put(piece.data(), piece.size());
            out.Put(static_cast<char>('0' + round % 10));
            expected += piece;
            expected += static_cast<char>('0' + round % 10);
        }
        out.Put(std::string(9000, 'x').data(), 9000);
        expected += std::string(9000, 'x');
    }
    EXPECT_EQ(std::string(s.GetText(), s.GetLength()), expected);
    // After the text was joined into one block, the next pieces go on after it.
    {
        Internal::CTextAppender out(s);
        out.Put(std::string(5000, 'm').data(), 5000);
    }
    EXPECT_EQ(std::string(s.GetText(), s.GetLength()), expected + std::string(5000, 'm'));
}

TEST(TextStream, EncodedStreamOfSeveralBlocks) {
    // The UTF-8 bytes are those of the joined text, which stays as it was; a NUL ends the
    // text for the conversion. Sets a UTF-8 locale for the non-ASCII case and ASCIIOnly for
    // the last one; both are restored.
    const std::string plain = std::string(5000, 'p') + "<tail>";
    const std::string accented = std::string(4094, 'a') + "\xC3\xA9" + std::string(3000, 'b');
    {
        CTextStream s(XmlEncoding_UTF8);
        s.Append(plain);
        EXPECT_EQ(Bytes(s.GetEncodedStream()), plain);
        EXPECT_EQ(std::string(s.GetText()), plain);
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
