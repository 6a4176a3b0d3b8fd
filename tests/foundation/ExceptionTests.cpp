#include "foundation/QvException.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <typeinfo>

using namespace QvXmlLib10;

TEST(QvException, FullMessageListsChainOutermostFirst) {
    CQvInvalidValueException innermost("three");
    CQvValidationException middle("two", innermost);
    CQvException outer("one", middle);
    EXPECT_EQ(outer.GetFullMessage(), "one\ntwo\nthree");
    ASSERT_NE(outer.GetInnerException(), nullptr);
    EXPECT_EQ(typeid(*outer.GetInnerException()), typeid(CQvValidationException));
    EXPECT_EQ(typeid(*outer.GetInnerException()->GetInnerException()), typeid(CQvInvalidValueException));
    EXPECT_EQ(innermost.GetFullMessage(), "three");
    EXPECT_EQ(CQvException().GetFullMessage(), "");
}

TEST(QvException, EveryClassClonesToItselfThroughABaseReference) {
    static_assert(std::is_base_of<CQvValidationException, CQvInvalidValueException>::value, "");
    static_assert(std::is_base_of<CQvException, CQvOverFlowException>::value, "");
    const CQvException inner("inner");
    std::unique_ptr<CQvException> all[] = {
        std::make_unique<CQvException>("m", inner),
        std::make_unique<CQvValidationException>("m", inner),
        std::make_unique<CQvInvalidValueException>("m", inner),
        std::make_unique<CQvInvalidNamespaceException>("m", inner),
        std::make_unique<CQvInvalidParamException>("m", inner),
        std::make_unique<CQvInvalidStateException>("m", inner),
        std::make_unique<CQvOverFlowException>("m", inner),
    };
    for (const auto& e : all) {
        std::unique_ptr<CQvException> copy(e->Clone());
        EXPECT_EQ(typeid(*copy), typeid(*e));
        EXPECT_EQ(copy->GetFullMessage(), "m\ninner");
        // The inner chain is a separate copy.
        EXPECT_NE(copy->GetInnerException(), e->GetInnerException());
    }
}

TEST(QvException, ConvertingConstructorChangesClassKeepsChain) {
    CQvValidationException validation("outer", CQvException("inner"));
    CQvInvalidStateException state(validation);
    EXPECT_EQ(state.GetFullMessage(), "outer\ninner");
    EXPECT_NE(state.GetInnerException(), validation.GetInnerException());
    const CQvException& asBase = state;
    EXPECT_EQ(typeid(asBase), typeid(CQvInvalidStateException));
}

TEST(QvException, AssignmentClonesInnerAndLeavesOldChainAllocated) {
    CQvException target("old", CQvException("old inner"));
    CQvException* oldInner = target.GetInnerException();
    CQvException source("new", CQvException("new inner"));
    target = source;
    EXPECT_EQ(target.GetFullMessage(), "new\nnew inner");
    EXPECT_NE(target.GetInnerException(), source.GetInnerException());
    // The previous chain was not destroyed by the assignment.
    EXPECT_EQ(oldInner->GetMessage(), "old inner");
    delete oldInner;

    CQvException* newInner = target.GetInnerException();
    target = CQvException("plain");
    EXPECT_EQ(target.GetInnerException(), nullptr);
    delete newInner;
}

struct FormatCase {
    const char* name;
    std::string actual;
    std::string expected;
};

TEST(FormatString, FormatsAndMeasuresEnoughRoom) {
    const std::string longText(5000, 'q');
    const FormatCase cases[] = {
        {"empty format", FormatString(""), ""},
        {"plain text", FormatString("no conversions"), "no conversions"},
        {"percent", FormatString("100%%"), "100%"},
        {"empty string measures one", FormatString("[%s]", ""), "[]"},
        {"null string", FormatString("%s", static_cast<const char*>(nullptr)), "(null)"},
        {"width and precision on string", FormatString("%5.2s|", "abcdef"), "   ab|"},
        {"left aligned", FormatString("%-6s|", "ab"), "ab    |"},
        {"star width on integer", FormatString("%*d", 40, 5), std::string(39, ' ') + "5"},
        {"star precision on string", FormatString("%.*s", 2, "abcdef"), "ab"},
        {"star width on string", FormatString("%*s", 50, "x"), std::string(49, ' ') + "x"},
        {"digits width wider than 32", FormatString("%45d", 12), std::string(43, ' ') + "12"},
        {"integer with precision", FormatString("%30.20d", 7), std::string(10, ' ') + std::string(19, '0') + "7"},
        {"characters", FormatString("%c%c", 'a', 'b'), "ab"},
        {"wide text", FormatString("%ls|%S", L"wide", L"too"), "wide|too"},
        {"long value", FormatString("%ld", 1234567890123L), "1234567890123"},
        {"hex", FormatString("%x %X %#x", 255u, 255u, 255u), "ff FF 0xff"},
        {"fixed", FormatString("%.2f", 3.14159), "3.14"},
        {"fixed width", FormatString("%10.3f", 3.14159), "     3.142"},
        {"huge fixed", FormatString("%f", 1e300), FormatString("%.0f", 1e300) + ".000000"},
        {"exponent", FormatString("%e", 12345.678), "1.234568e+04"},
        {"general", FormatString("%g", 0.5), "0.5"},
        {"text longer than a fixed buffer", FormatString("<%s>", longText.c_str()), "<" + longText + ">"},
        {"many items", FormatString("%s=%d;%s=%d", "a", 1, "b", 2), "a=1;b=2"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.actual, c.expected) << c.name;
    EXPECT_EQ(FormatString("%f", 1e300).size(), 308u);
}

TEST(FormatString, UnmeasuredConversionsCutTheOutput) {
    // "%E" is outside the measured conversions: it adds nothing, so its output is cut.
    EXPECT_EQ(FormatString("%E", 1.0), "");
    EXPECT_EQ(FormatString("ab%E", 1.0), "ab");
    // "ll" reads as the size "l" and an unknown conversion "l"; only the "d" that
    // follows is counted, as one plain character.
    EXPECT_EQ(FormatString("%lld", 123456789012345LL), "1");
}

TEST(FormatString, TrailingPercentDoesNotCrash) {
    // Outside the contract; it must only not read past the text.
    const char* format = "abc%";
    std::string result = FormatString(format);
    EXPECT_LE(result.size(), 4u);
}
