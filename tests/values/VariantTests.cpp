#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <string>

#include "binding/SmartPtr.h"
#include "binding/XmlObjectBase.h"
#include "foundation/QvException.h"
#include "values/QvVariant.h"

#include "support/Recorder.h"
#include "support/TestSupport.h"

using namespace QvXmlLib10;
using QvXmlTest::CRecorder;

namespace {

constexpr auto Collapse = CWhitespaceUtils::WhitespaceRule_Collapse;

// The generator version is set by the support header, before any object exists.
using VariantTest = ::testing::Test;

struct ScalarCase {
    ItemType kind;
    const char* type;
    std::function<void(QvVariant&)> set;
    std::function<bool(const QvVariant&)> holds;
    std::string text;
};

class VariantScalarTest : public ::testing::TestWithParam<ScalarCase> {};

TEST_P(VariantScalarTest, SetGetTypeTextAndCopy) {
    const ScalarCase& c = GetParam();
    QvVariant v;
    c.set(v);
    EXPECT_TRUE(v.IsValid());
    EXPECT_FALSE(v.IsNil());
    EXPECT_EQ(c.type, v.GetType());
    EXPECT_TRUE(c.holds(v));
    EXPECT_EQ(c.text, v.ToString());

    const QvVariant copy(v);
    EXPECT_EQ(c.type, copy.GetType());
    EXPECT_TRUE(c.holds(copy));

    QvVariant assigned;
    assigned.SetString("old");
    assigned = v;
    EXPECT_EQ(c.type, assigned.GetType());
    EXPECT_TRUE(c.holds(assigned));

    // Year, month and day are parsed through the date type, which is not in this
    // library yet; every other kind reads its own text back.
    if (c.kind != ItemType_year && c.kind != ItemType_month && c.kind != ItemType_day) {
        QvVariant parsed;
        parsed.SetI4(1);
        parsed.FromString(c.text, c.kind, CWhitespaceUtils::WhitespaceRule_None);
        EXPECT_EQ(c.type, parsed.GetType());
        EXPECT_TRUE(c.holds(parsed));
    }
}

INSTANTIATE_TEST_SUITE_P(
    AllScalars, VariantScalarTest,
    ::testing::Values(ScalarCase{ItemType_i1, "i1", [](QvVariant& v) { v.SetI1(static_cast<char>(-128)); },
                                 [](const QvVariant& v) { return v.GetI1() == static_cast<char>(-128); }, "-128"},
                      ScalarCase{ItemType_i2, "i2", [](QvVariant& v) { v.SetI2(-32768); },
                                 [](const QvVariant& v) { return v.GetI2() == -32768; }, "-32768"},
                      ScalarCase{ItemType_i4, "i4", [](QvVariant& v) { v.SetI4(LONG_MIN); },
                                 [](const QvVariant& v) { return v.GetI4() == LONG_MIN; }, "-9223372036854775808"},
                      ScalarCase{ItemType_i8, "i8", [](QvVariant& v) { v.SetI8(LLONG_MAX); },
                                 [](const QvVariant& v) { return v.GetI8() == LLONG_MAX; }, "9223372036854775807"},
                      ScalarCase{ItemType_ui1, "ui1", [](QvVariant& v) { v.SetUI1(255); },
                                 [](const QvVariant& v) { return v.GetUI1() == 255; }, "255"},
                      ScalarCase{ItemType_ui2, "ui2", [](QvVariant& v) { v.SetUI2(65535); },
                                 [](const QvVariant& v) { return v.GetUI2() == 65535; }, "65535"},
                      ScalarCase{ItemType_ui4, "ui4", [](QvVariant& v) { v.SetUI4(ULONG_MAX); },
                                 [](const QvVariant& v) { return v.GetUI4() == ULONG_MAX; }, "18446744073709551615"},
                      ScalarCase{ItemType_ui8, "ui8", [](QvVariant& v) { v.SetUI8(ULLONG_MAX); },
                                 [](const QvVariant& v) { return v.GetUI8() == ULLONG_MAX; }, "18446744073709551615"},
                      ScalarCase{ItemType_r4, "r4", [](QvVariant& v) { v.SetR4(0.1f); },
                                 [](const QvVariant& v) { return v.GetR4() == 0.1f; }, "0.1"},
                      ScalarCase{ItemType_r8, "r8", [](QvVariant& v) { v.SetR8(-HUGE_VAL); },
                                 [](const QvVariant& v) { return v.GetR8() == -HUGE_VAL; }, "-INF"},
                      ScalarCase{ItemType_year, "year", [](QvVariant& v) { v.SetYear(5); },
                                 [](const QvVariant& v) { return v.GetYear() == 5; }, "5"},
                      ScalarCase{ItemType_month, "month", [](QvVariant& v) { v.SetMonth(3); },
                                 [](const QvVariant& v) { return v.GetMonth() == 3; }, "--03"},
                      ScalarCase{ItemType_day, "day", [](QvVariant& v) { v.SetDay(9); },
                                 [](const QvVariant& v) { return v.GetDay() == 9; }, "---09"},
                      ScalarCase{ItemType_char, "char", [](QvVariant& v) { v.SetChar('z'); },
                                 [](const QvVariant& v) { return v.GetChar() == 'z'; }, "z"},
                      ScalarCase{ItemType_boolean, "boolean", [](QvVariant& v) { v.SetBoolean(true); },
                                 [](const QvVariant& v) { return v.GetBoolean(); }, "true"},
                      ScalarCase{ItemType_string, "string", [](QvVariant& v) { v.SetString(" a b "); },
                                 [](const QvVariant& v) { return v.GetString() == " a b "; }, " a b "}));

TEST_F(VariantTest, EmptyAndNil) {
    QvVariant v;
    EXPECT_FALSE(v.IsValid());
    EXPECT_FALSE(v.IsNil());
    EXPECT_EQ("Invalid Type 0", FailureOf([&] { v.GetType(); }));
    EXPECT_EQ("Invalid Type 0 to convert to string", FailureOf([&] { v.ToString(); }));

    // Nil on an empty variant makes it valid and outlives the next setter; the next
    // Clear of a kind takes it.
    v.SetNil();
    EXPECT_TRUE(v.IsValid());
    EXPECT_TRUE(v.IsNil());
    EXPECT_EQ("Invalid Type 0", FailureOf([&] { v.GetType(); }));
    v.SetI4(5);
    EXPECT_TRUE(v.IsNil());
    EXPECT_EQ(5, v.GetI4());
    v.SetI4(5);
    EXPECT_FALSE(v.IsNil());

    // Nil keeps the kind; the nil flag is not looked at, and a scalar's value word survives.
    v.SetNil();
    EXPECT_EQ("i4", v.GetType());
    EXPECT_EQ("5", v.ToString());
    v.Clear();
    EXPECT_FALSE(v.IsNil());
    EXPECT_FALSE(v.IsValid());
    v.SetI4(1);
    v.SetNil();
    v.SetInvalid();
    EXPECT_FALSE(v.IsValid());

    // A nil string holds no string, in copies as well.
    v.SetString("text");
    v.SetNil();
    EXPECT_EQ("string", v.GetType());
    EXPECT_EQ("", v.GetString());
    EXPECT_EQ("", v.ToString());
    QvVariant copy;
    copy.SetI8(-1);
    copy = v;
    EXPECT_TRUE(copy.IsNil());
    EXPECT_EQ("string", copy.GetType());
    EXPECT_EQ("", copy.GetString());
}

TEST_F(VariantTest, StringsAreOwnedAndCopiedDeeply) {
    QvVariant v;
    v.SetString("first");
    v.SetString(std::string(1000, 'x'));
    QvVariant copy(v);
    v.SetString("changed");
    EXPECT_EQ(std::string(1000, 'x'), copy.GetString());
    EXPECT_EQ("changed", v.GetString());
    v.Clear();
    EXPECT_FALSE(v.IsValid());
    EXPECT_EQ("Invalid Type 0", FailureOf([&] { v.GetType(); }));
    EXPECT_EQ(std::string(1000, 'x'), copy.GetString());
}

TEST_F(VariantTest, SelfAssignmentEmptiesTheVariant) {
    QvVariant v;
    QvVariant& alias = v;
    v.SetI4(5);
    v = alias;
    EXPECT_FALSE(v.IsValid());

    v.SetString("gone");
    v = alias;
    EXPECT_FALSE(v.IsValid());
    EXPECT_EQ("", v.GetString());

    v.SetI4(1);
    v.SetNil();
    v = alias;
    EXPECT_FALSE(v.IsValid());
    EXPECT_FALSE(v.IsNil());
}

TEST_F(VariantTest, R4WritesHalfOfTheValueWord) {
    QvVariant v;
    v.SetI8(-1);
    v.SetR4(1.0f);
    EXPECT_EQ(static_cast<long long>(0xFFFFFFFF3F800000ULL), v.GetI8());
}

TEST_F(VariantTest, FromStringReplacesOnlyOnSuccess) {
    QvVariant v;
    v.SetString("abc");
    v.FromString(" 12 ", ItemType_i1, Collapse);
    EXPECT_EQ("i1", v.GetType());
    EXPECT_EQ(12, v.GetI1());

    v.SetString("abc");
    EXPECT_EQ("The value [x] can not be converted to a i4",
              FailureOf([&] { v.FromString("x", ItemType_i4, Collapse); }));
    EXPECT_EQ("abc", v.GetString());

    // A kind without a conversion is refused in the words of the present kind.
    v.SetI4(7);
    for (ItemType refused : {ItemType_Invalid, ItemType_XmlObject, static_cast<ItemType>(99)}) {
        EXPECT_EQ("Invalid Type 5 to convert to string", FailureOf([&] { v.FromString("1", refused, Collapse); }));
        EXPECT_EQ(7, v.GetI4());
    }
    EXPECT_EQ("Unknown WhitespaceRule",
              FailureOf([&] { v.FromString("1", ItemType_i4, static_cast<CWhitespaceUtils::WhitespaceRule>(5)); }));
}

TEST_F(VariantTest, FormatReachesOnlyTheFloats) {
    QvVariant v;
    v.SetR8(1.5);
    EXPECT_EQ("1.50", v.ToString("%.2f"));
    EXPECT_EQ("1.5", v.ToString(nullptr));
    EXPECT_EQ("1.5", v.ToString(""));
    v.SetR4(2.25f);
    EXPECT_EQ("2.2", v.ToString("%.1f"));
    v.SetI4(15);
    EXPECT_EQ("15", v.ToString("%.2f"));
    v.SetChar('\0');
    EXPECT_EQ("", v.ToString());
}

TEST_F(VariantTest, ObjectStaysAliveWhileHeld) {
    int destroyed = 0;
    auto* object = new CRecorder(&destroyed);
    QvVariant v;
    {
        CSmartPtr<CRecorder> own(object);
        v.SetXmlObject(object);
        EXPECT_EQ(2, object->RefCount());
    }
    EXPECT_EQ(0, destroyed);
    EXPECT_EQ(1, object->RefCount());
    EXPECT_EQ("Invalid Type 27", FailureOf([&] { v.GetType(); }));
    EXPECT_EQ("Invalid Type 27 to convert to string", FailureOf([&] { v.ToString(); }));
    {
        CSmartPtr<CXmlObjectBase> got = v.GetXmlObject();
        EXPECT_EQ(object, got.Get());
        EXPECT_EQ(2, object->RefCount());
    }
    EXPECT_EQ(1, object->RefCount());
    // Setting the object held a second time must not drop it on the way.
    v.SetXmlObject(object);
    EXPECT_EQ(0, destroyed);
    EXPECT_EQ(1, object->RefCount());
    v.Clear();
    EXPECT_EQ(1, destroyed);
    EXPECT_FALSE(v.IsValid());
}

TEST_F(VariantTest, ObjectIsSharedByCopies) {
    int destroyed = 0;
    auto* object = new CRecorder(&destroyed);
    {
        QvVariant v;
        v.SetXmlObject(object);
        QvVariant copy(v);
        QvVariant assigned;
        assigned = copy;
        EXPECT_EQ(3, object->RefCount());
        v.SetI4(1);
        EXPECT_EQ(2, object->RefCount());
        // Self-assignment gives the reference back.
        QvVariant& alias = copy;
        copy = alias;
        EXPECT_EQ(1, object->RefCount());
        EXPECT_FALSE(copy.IsValid());
    }
    EXPECT_EQ(1, destroyed);
}

TEST_F(VariantTest, NullAndNilObjects) {
    QvVariant v;
    v.SetXmlObject(nullptr);
    EXPECT_TRUE(v.IsValid());
    EXPECT_EQ(nullptr, v.GetXmlObject().Get());
    QvVariant copy(v);
    EXPECT_EQ(nullptr, copy.GetXmlObject().Get());

    int destroyed = 0;
    v.SetXmlObject(new CRecorder(&destroyed));
    copy = v;
    v.SetNil();
    EXPECT_EQ(0, destroyed);
    EXPECT_TRUE(v.IsNil());
    EXPECT_EQ(nullptr, v.GetXmlObject().Get());
    QvVariant nilCopy(v);
    EXPECT_TRUE(nilCopy.IsNil());
    EXPECT_EQ(nullptr, nilCopy.GetXmlObject().Get());
    copy.SetString("x");
    EXPECT_EQ(1, destroyed);
}

TEST_F(VariantTest, AssigningTheHoldersOwnMemberIsSafe) {
    // The source lives inside the object that the target holds; the object must stay
    // alive until the source has been read.
    struct Holder : CRecorder {
        using CRecorder::CRecorder;
        QvVariant member;
    };
    int destroyed = 0;
    auto* holder = new Holder(&destroyed);
    holder->member.SetString("inner");
    QvVariant v;
    v.SetXmlObject(holder);
    v = holder->member;
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ("inner", v.GetString());
}

} // namespace
