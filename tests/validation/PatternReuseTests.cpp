// A set of facets compiles its pattern once and reuses it: the answers must be those of
// a fresh compilation every time, whatever happened to the facets in between.

#include "foundation/QvException.h"
#include "validation/PrimitiveRestrictions.h"
#include "validation/XmlObjectHelper.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

using namespace QvXmlLib10;

namespace {

CPrimitiveRestrictions Pattern(const char* pattern) {
    return CPrimitiveRestrictions(pattern, -1, -1, nullptr, nullptr, nullptr, nullptr, -1);
}

std::string FailureOf(const std::string& value, const CPrimitiveRestrictions& restrictions) {
    try {
        CXmlObjectHelper::CheckRestrictionForstring("sku", value, restrictions);
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
    return "no exception";
}

bool Passes(const std::string& value, const CPrimitiveRestrictions& restrictions) {
    return FailureOf(value, restrictions) == "no exception";
}

} // namespace

TEST(PatternReuse, RepeatedChecksAnswerAsAFreshCompilation) {
    const CPrimitiveRestrictions restrictions = Pattern("[A-Z]{2}-\\d{4}");
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(Passes("DE-1822", restrictions));
        EXPECT_FALSE(Passes("de-1822", restrictions));
        EXPECT_FALSE(Passes("DE-1822\n", restrictions));
        EXPECT_EQ(FailureOf("X", restrictions), "Invalid Value for sku [X]");
    }
}

TEST(PatternReuse, ChangedPatternTakesEffectAndCopiesAnswerAlike) {
    CPrimitiveRestrictions restrictions = Pattern("a+");
    EXPECT_TRUE(Passes("aaa", restrictions));
    const CPrimitiveRestrictions copy = restrictions;
    restrictions.m_strPattern = "b+";
    EXPECT_FALSE(Passes("aaa", restrictions));
    EXPECT_TRUE(Passes("bb", restrictions));
    EXPECT_TRUE(Passes("aaa", copy));
    EXPECT_FALSE(Passes("bb", copy));
    restrictions.m_strPattern.clear();
    EXPECT_TRUE(Passes("anything", restrictions));
}

TEST(PatternReuse, RefusedPatternFailsAlikeOnEveryCall) {
    const CPrimitiveRestrictions restrictions = Pattern("(");
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(FailureOf("abc", restrictions),
                  "Invalid Regular Expression: abc Error: 'missing )'\nInvalid Value for sku [abc]");
}

TEST(PatternReuse, SharedFacetsCheckedOnSeveralThreadsAtOnce) {
    const CPrimitiveRestrictions restrictions = Pattern("[A-Z]{2}-\\d{4}");
    std::atomic<bool> go{false};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            while (!go)
                std::this_thread::yield();
            for (int i = 0; i < 300; ++i) {
                const bool good = (i + t) % 2 == 0;
                if (Passes(good ? "AB-1234" : "AB-12345", restrictions) != good) ++wrong;
            }
        });
    }
    go = true;
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
}
