#include "foundation/Base64.h"
#include "foundation/BinaryData.h"
#include "foundation/QvException.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <typeinfo>
#include <vector>

using namespace QvXmlLib10;

namespace {

CBinaryData Of(const std::string& bytes) {
    CBinaryData data;
    data.SetBuffer(reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data())),
                   static_cast<unsigned long>(bytes.size()));
    return data;
}

} // namespace

TEST(BinaryData, EmptinessAndEquality) {
    const CBinaryData none;
    EXPECT_EQ(none.GetData(), nullptr);
    EXPECT_EQ(none.GetLength(), 0u);
    EXPECT_TRUE(none == CBinaryData());
    // A holder of length 0 is not the same as no holder.
    const CBinaryData zero("");
    EXPECT_NE(zero.GetData(), nullptr);
    EXPECT_TRUE(zero != none);
    EXPECT_TRUE(none != zero);
    EXPECT_TRUE(zero == CBinaryData(""));

    EXPECT_TRUE(CBinaryData("ab") == Of("ab"));
    EXPECT_TRUE(CBinaryData("ab") != CBinaryData("ac"));
    EXPECT_TRUE(CBinaryData("ab") != CBinaryData("abc"));
    EXPECT_EQ(Bytes(Of(std::string("a\0b", 3))), std::string("a\0b", 3));

    // No bytes behind a null pointer, whatever the length says.
    EXPECT_EQ(CBinaryData(nullptr, 5, false).GetLength(), 0u);
    CBinaryData data("ab");
    data.Append(nullptr, 3);
    EXPECT_EQ(Bytes(data), "ab");
}

TEST(BinaryData, CopiesShareUntilOneChanges) {
    CBinaryData a("content");
    CBinaryData b(a);
    CBinaryData c;
    c = a;
    EXPECT_EQ(b.GetData(), a.GetData());
    EXPECT_EQ(c.GetData(), a.GetData());

    b.Append('!');
    EXPECT_EQ(Bytes(a), "content");
    EXPECT_EQ(a.GetLength(), 7u);
    EXPECT_EQ(Bytes(b), "content!");
    EXPECT_NE(b.GetData(), a.GetData());
    EXPECT_EQ(c.GetData(), a.GetData());

    // Reading through the const index operator keeps sharing; writing separates.
    const CBinaryData& constC = c;
    EXPECT_EQ(constC[0], 'c');
    EXPECT_EQ(c.GetData(), a.GetData());
    c[0] = 'C';
    EXPECT_EQ(Bytes(c), "Content");
    EXPECT_EQ(Bytes(a), "content");

    CBinaryData moved(std::move(c));
    EXPECT_EQ(Bytes(moved), "Content");
    EXPECT_EQ(c.GetData(), nullptr);
    a = a;
    EXPECT_EQ(Bytes(a), "content");
}

TEST(BinaryData, IndexUpToTheLength) {
    CBinaryData data("abc");
    EXPECT_EQ(data[2], 'c');
    EXPECT_NO_THROW(data[3]); // just past the data
    EXPECT_EQ(FailureOf<CQvException>([&] { data[4]; }), "Index Out of range [4]");
    const CBinaryData none;
    EXPECT_EQ(FailureOf<CQvException>([&] { none[0]; }), "Index Out of range [0]");
    CBinaryData none2;
    EXPECT_EQ(FailureOf<CQvException>([&] { none2[0]; }), "Index Out of range [0]");
}

TEST(BinaryData, AppendForms) {
    CBinaryData data;
    data.Append("ab\0cd");
    data.Append(std::string("ef\0gh", 5));
    data.Append('g');
    data.Append(static_cast<unsigned char>(0xFF));
    data.Append(CBinaryData("xy"));
    unsigned char raw[] = {0, 1};
    data.Append(raw, 2);
    EXPECT_EQ(Bytes(data), std::string("abefg\xFFxy\0\1", 10));

    // Appending to an empty value makes a holder even for no bytes.
    CBinaryData empty;
    empty.Append(CBinaryData());
    EXPECT_TRUE(empty != CBinaryData());
    EXPECT_EQ(empty.GetLength(), 0u);
}

TEST(BinaryData, AppendToItself) {
    // An adopted buffer has no spare room, so appending moves the bytes.
    unsigned char* raw = new unsigned char[3]{'a', 'b', 'c'};
    CBinaryData data(raw, 3, true);
    EXPECT_EQ(data.GetData(), raw);
    data.Append(data);
    EXPECT_EQ(Bytes(data), "abcabc");
    data.Append(data.GetData(), data.GetLength());
    EXPECT_EQ(Bytes(data), "abcabcabcabc");

    CBinaryData shared(data);
    data.Append(shared);
    EXPECT_EQ(Bytes(data), "abcabcabcabcabcabcabcabc");
    EXPECT_EQ(Bytes(shared), "abcabcabcabc");
}

TEST(BinaryData, SetBufferCopiesAndClearReleases) {
    char text[] = "source";
    CBinaryData data;
    data.SetBuffer(text);
    text[0] = 'S';
    EXPECT_EQ(Bytes(data), "source");
    unsigned char raw[] = {1, 2, 3};
    data.SetBuffer(raw, 2);
    EXPECT_EQ(Bytes(data), "\1\2");
    data.Clear();
    EXPECT_TRUE(data == CBinaryData());
    data.SetBuffer(static_cast<const char*>(nullptr));
    EXPECT_TRUE(data == CBinaryData());
}

TEST(BinaryData, ReleaseDataHandsOverTheBuffer) {
    CBinaryData alone("mine");
    const unsigned char* buffer = alone.GetData();
    std::unique_ptr<unsigned char[]> taken(alone.ReleaseData());
    EXPECT_EQ(taken.get(), buffer);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(taken.get()), 4), "mine");
    EXPECT_TRUE(alone == CBinaryData());
    EXPECT_EQ(alone.ReleaseData(), nullptr);

    // With a second sharer the caller gets a private copy.
    CBinaryData first("ours");
    CBinaryData second(first);
    std::unique_ptr<unsigned char[]> copy(second.ReleaseData());
    EXPECT_NE(copy.get(), first.GetData());
    EXPECT_EQ(std::string(reinterpret_cast<char*>(copy.get()), 4), "ours");
    EXPECT_EQ(Bytes(first), "ours");
    EXPECT_EQ(second.GetData(), nullptr);
}

TEST(BinaryData, HolderRefusesChangesWhileShared) {
    unsigned char bytes[] = {1, 2, 3};
    auto* holder = new CBinaryData::CDataHolder(bytes, 3, false);
    holder->AddRef();
    EXPECT_EQ(FailureOf<CQvException>([&] { holder->Append(bytes, 1); }), "Failed to append. [RefCount=2]");
    // The count drops before the check, so the message shows what is left.
    EXPECT_EQ(FailureOf<CQvException>([&] { holder->Release(true); }), "Failed to release data. [RefCount=1]");
    holder->Append(bytes, 3);
    EXPECT_EQ(holder->GetLength(), 6u);
    holder->Release(false);
}

TEST(BinaryData, CopiesSeparateAcrossThreads) {
    const CBinaryData original("shared:");
    const int threadCount = 8;
    const int appends = 2000;
    std::vector<CBinaryData> results(threadCount);
    std::vector<CBinaryData> untouched(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            CBinaryData mine(original);
            untouched[t] = mine; // a second sharer that must keep the old content
            for (int i = 0; i < appends; ++i)
                mine.Append(static_cast<unsigned char>('a' + t));
            results[t] = mine;
        });
    }
    for (auto& thread : threads)
        thread.join();
    for (int t = 0; t < threadCount; ++t) {
        EXPECT_EQ(Bytes(results[t]), "shared:" + std::string(appends, static_cast<char>('a' + t)));
        EXPECT_EQ(Bytes(untouched[t]), "shared:");
    }
    EXPECT_EQ(Bytes(original), "shared:");
}

TEST(BinaryData, HexadecimalForms) {
    unsigned char bytes[] = {0x0A, 0xFF, 0x00, 0x5C};
    EXPECT_EQ(CBinaryData::GetAsHexString(bytes, 4), "0AFF005C");
    EXPECT_EQ(CBinaryData::GetAsHexString(nullptr, 4), "");
    EXPECT_EQ(CBinaryData().GetAsHexString(), "");

    CBinaryData data;
    data.SetAsHexString("0aff");
    EXPECT_EQ(Bytes(data), "\x0A\xFF");
    EXPECT_EQ(data.GetAsHexString(), "0AFF");
    data.SetAsHexString("09AfaF");
    EXPECT_EQ(Bytes(data), "\x09\xAF\xAF");

    // An empty text leaves a holder of length 0.
    data.SetAsHexString("");
    EXPECT_EQ(data.GetLength(), 0u);
    EXPECT_TRUE(data != CBinaryData());

    struct Case {
        const char* text;
        const char* message;
    } bad[] = {
        {"abc", "Invalid length in hex string"},    {"0", "Invalid length in hex string"},
        {"0G", "Invalid char in hex string [G]"},   {"G0", "Invalid char in hex string [G]"},
        {"00 1", "Invalid char in hex string [ ]"}, {"0x1F", "Invalid char in hex string [x]"},
    };
    for (const auto& c : bad) {
        SCOPED_TRACE(c.text);
        CBinaryData target("old");
        EXPECT_EQ(FailureOf<CQvException>([&] { target.SetAsHexString(c.text); }), c.message);
        EXPECT_TRUE(target == CBinaryData()); // cleared before converting
        unsigned char* out = reinterpret_cast<unsigned char*>(&target);
        EXPECT_EQ(FailureOf<CQvException>([&] { CBinaryData::ConvertToHexData(c.text, &out); }), c.message);
        if (std::strlen(c.text) % 2 == 0) EXPECT_EQ(out, nullptr);
    }

    unsigned char* out = nullptr;
    EXPECT_EQ(CBinaryData::ConvertToHexData("BEEF", &out), 2u);
    std::unique_ptr<unsigned char[]> owned(out);
    EXPECT_EQ(out[0], 0xBE);
    EXPECT_EQ(out[1], 0xEF);
}

TEST(Base64, EncodesWithPadding) {
    struct Case {
        std::string bytes;
        const char* text;
    } cases[] = {
        {"", ""},
        {"M", "TQ=="},
        {"Ma", "TWE="},
        {"Man", "TWFu"},
        {"Many", "TWFueQ=="},
        {std::string("\xFF\xFE\x00", 3), "//4A"},
        {"\xFB\xFF", "+/8="},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        CBinaryData data = Of(c.bytes);
        EXPECT_EQ(data.GetAsBase64(), c.text);
        CBinaryData back;
        back.SetAsBase64(c.text);
        EXPECT_EQ(Bytes(back), c.bytes);
    }
    EXPECT_EQ(CBinaryData().GetAsBase64(), "");
    EXPECT_EQ(CBase64().Encode(nullptr, 3), "");
    std::string large(3000, '\x5A');
    CBinaryData big = Of(large);
    CBinaryData roundTrip;
    roundTrip.SetAsBase64(big.GetAsBase64().c_str());
    EXPECT_EQ(Bytes(roundTrip), large);
}

TEST(Base64, DecodesLeniently) {
    struct Case {
        const char* text;
        std::string bytes;
    } cases[] = {
        {"TW Fu", "Man"},
        {"T\tW\r\nFu", "Man"},
        {"TQ==", "M"},
        {"TQ", "M"},
        // "=" is not an end mark: decoding goes on behind it.
        {"TQ==TQ==", "\x4D\x04\xD0"},
        // Only the low seven bits of a character count.
        {"\xD4\xD1==", "M"},
        // Invalid characters give an empty value, not a failure.
        {"TW*u", ""},
        {"TWFu-", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        CBinaryData data("old");
        data.SetAsBase64(c.text);
        EXPECT_EQ(Bytes(data), c.bytes);
    }

    CBase64 codec;
    unsigned char out[16];
    EXPECT_EQ(codec.Decode(nullptr, out), 0);
    EXPECT_EQ(codec.Decode("", out), 0);
    EXPECT_EQ(codec.Decode("TWFu", nullptr), 0);
    // What was decoded before an invalid character stays in the output.
    EXPECT_EQ(codec.Decode("TWFu*", out), 0);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 3), "Man");
    CBinaryData none;
    none.SetAsBase64(nullptr);
    EXPECT_TRUE(none == CBinaryData());
}
