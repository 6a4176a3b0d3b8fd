#include "internal/ByteScan.h"
#include "internal/Hashing.h"
#include "internal/Locale.h"
#include "internal/Text.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

using namespace QvXmlLib10;

namespace {

// Every length up to 24 at every alignment, the text ending exactly at the end of its
// allocation (so that a read past it is caught under the sanitizers), with one odd byte
// at every position or none.
TEST(InternalHelperTests, ByteScannersAgreeWithABytewiseScanAtEveryAlignmentAndEnd) {
    for (const unsigned char odd : {0x00, 0x80, 0xFF}) {
        for (size_t align = 0; align < 8; ++align) {
            for (size_t length = 0; length <= 24; ++length) {
                for (size_t at = 0; at <= length; ++at) { // at == length: no odd byte
                    std::unique_ptr<char[]> block(new char[align + length]);
                    char* const text = block.get() + align;
                    std::memset(text, 'a', length);
                    if (at < length) text[at] = static_cast<char>(odd);
                    const bool hasNul = at < length && odd == 0;
                    const bool hasHigh = at < length && odd >= 0x80;
                    SCOPED_TRACE(testing::Message()
                                 << "odd " << int(odd) << " align " << align << " length " << length << " at " << at);
                    const auto* p = reinterpret_cast<const unsigned char*>(text);
                    EXPECT_EQ(Internal::FindNonAscii(p, p + length), p + (hasHigh ? at : length));
                    EXPECT_EQ(Internal::HasHighByte(text, length), hasHigh);
                    EXPECT_EQ(Internal::HasNulOrHighByte(text, length, false), hasNul || hasHigh);
                    EXPECT_EQ(Internal::HasNulOrHighByte(text, length, true), hasNul);
                    if (length <= 16) {
                        EXPECT_EQ(Internal::HasNulShort(text, length), hasNul);
                        char copy[18];
                        std::memset(copy, '#', sizeof copy);
                        Internal::CopyShort(copy + 1, text, length);
                        EXPECT_EQ(std::string(copy + 1, length), std::string(text, length));
                        EXPECT_EQ(copy[0], '#');
                        EXPECT_EQ(copy[length + 1], '#');
                    }
                }
            }
        }
    }
}

TEST(InternalHelperTests, SameBytesFindsADifferenceAtEveryPosition) {
    for (size_t length = 0; length <= 20; ++length) {
        const std::string a(length, 'x');
        EXPECT_TRUE(Internal::SameBytes(a.data(), std::string(a).data(), length));
        for (size_t at = 0; at < length; ++at) {
            std::string b = a;
            b[at] = 'y';
            EXPECT_FALSE(Internal::SameBytes(a.data(), b.data(), length)) << length << " " << at;
            EXPECT_NE(Internal::HashBytes(a.data(), length), Internal::HashBytes(b.data(), length));
        }
    }
}

TEST(InternalHelperTests, ProbeTableKeepsEveryEntryFindableWhileItGrows) {
    std::vector<std::string> keys;
    for (int i = 0; i < 1000; ++i)
        keys.push_back("name" + std::to_string(i));
    Internal::CProbeTable<size_t> table(4);
    auto find = [&](const std::string& key) {
        return table.Find(Internal::HashBytes(key.data(), key.size()),
                          [&](size_t index) { return keys[index] == key; });
    };
    for (size_t i = 0; i < keys.size(); ++i) {
        ASSERT_EQ(find(keys[i]), nullptr);
        table.Insert(Internal::HashBytes(keys[i].data(), keys[i].size()), i);
        ASSERT_GE(table.SlotCount(), 2 * table.Size());
    }
    EXPECT_EQ(table.Size(), keys.size());
    for (size_t i = 0; i < keys.size(); ++i) {
        const size_t* found = find(keys[i]);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(*found, i);
    }
    EXPECT_EQ(find("name1000"), nullptr);
}

TEST(InternalHelperTests, RunsWithoutCarriageReturnsEndAtTheLengthOrTheFirstNul) {
    struct Case {
        const char* text;
        size_t length;
        const char* runs; // joined with "|"
    };
    const Case cases[] = {
        {"abc", 3, "abc"},     {"a\r\nb", 4, "a|\nb"}, {"\r\r", 2, ""}, {"\rab\r", 4, "ab"},
        {"ab\0c\rd", 6, "ab"}, {"ab\rcd", 4, "ab|c"},  {"abc", 0, ""},  {"a\rb", 0xFFFFFFFF, "a|b"},
    };
    for (const Case& c : cases) {
        std::string runs;
        Internal::ForEachRunWithoutCR(c.text, c.length, [&](const char* run, size_t length) {
            if (!runs.empty()) runs += '|';
            runs.append(run, length);
        });
        EXPECT_EQ(runs, c.runs) << c.text;
    }
    EXPECT_STREQ(Internal::OrEmpty(nullptr), "");
}

std::string WriteLocal(const std::wstring& text) {
    std::string out(text.size() * MB_CUR_MAX, '\0');
    Internal::CLocalCharWriter writer(&out[0]);
    for (wchar_t wc : text)
        writer.Put(wc);
    out.resize(static_cast<size_t>(writer.Position() - out.data()));
    return out;
}

// Under C.UTF-8 the wide text is written as UTF-8; under "C" a character beyond ASCII becomes "?".
TEST(InternalHelperTests, LocaleHelpersFollowTheCurrentLocale) {
    {
        ScopedLocale scope("C");
        EXPECT_FALSE(Internal::IsUtf8Locale());
        EXPECT_EQ(WriteLocal(L"a\u00E9b"), "a?b");
    }
    REQUIRE_UTF8_LOCALE(scope);
    EXPECT_TRUE(Internal::IsUtf8Locale());
    EXPECT_EQ(WriteLocal(L"a\u00E9\u20ACb"), "a\xC3\xA9\xE2\x82\xAC"
                                             "b");
}

} // namespace
