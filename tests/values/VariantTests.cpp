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

struct ScalarCase {
    ItemType kind;
    const char* type;
    std::function<void(QvVariant&)> set;
    std::function<bool(const QvVariant&)> holds;
    std::string text;
};

// One row per kind: the setter, the getter's value and the text.
#define SCALAR(kind, Name, value, text)                                                                                \
    ScalarCase {                                                                                                       \
        ItemType_##kind, #kind, [](QvVariant& v) { v.Set##Name(value); },                                              \
            [](const QvVariant& v) { return v.Get##Name() == (value); }, text                                          \
    }

// Set, get, type, text, copy, assignment and reading the text back, for every scalar kind.
TEST(Variant, EveryScalarKind) {
    const ScalarCase cases[] = {
        SCALAR(i1, I1, static_cast<char>(-128), "-128"),
        SCALAR(i2, I2, -32768, "-32768"),
        SCALAR(i4, I4, LONG_MIN, "-9223372036854775808"),
        SCALAR(i8, I8, LLONG_MAX, "9223372036854775807"),
        SCALAR(ui1, UI1, 255, "255"),
        SCALAR(ui2, UI2, 65535, "65535"),
        SCALAR(ui4, UI4, ULONG_MAX, "18446744073709551615"),
        SCALAR(ui8, UI8, ULLONG_MAX, "18446744073709551615"),
        SCALAR(r4, R4, 0.1f, "0.1"),
        SCALAR(r8, R8, -HUGE_VAL, "-INF"),
        SCALAR(year, Year, 5, "5"),
        SCALAR(month, Month, 3, "--03"),
        SCALAR(day, Day, 9, "---09"),
        SCALAR(char, Char, 'z', "z"),
        SCALAR(boolean, Boolean, true, "true"),
        SCALAR(string, String, " a b ", " a b "),
    };
    for (const ScalarCase& c : cases) {
        SCOPED_TRACE(c.type);
        QvVariant v;
        c.set(v);
        EXPECT_TRUE(v.IsValid() && !v.IsNil());
        EXPECT_EQ(c.text, v.ToString());
        QvVariant assigned;
        assigned.SetString("old");
        assigned = v;
        // Every kind but year, month and day (read in the date forms) reads its own text back.
        QvVariant parsed(v);
        if (c.kind != ItemType_year && c.kind != ItemType_month && c.kind != ItemType_day) {
            parsed.SetI4(1);
            parsed.FromString(c.text, c.kind, CWhitespaceUtils::WhitespaceRule_None);
        }
        for (const QvVariant& each : {v, QvVariant(v), assigned, parsed}) {
            EXPECT_EQ(c.type, each.GetType());
            EXPECT_TRUE(c.holds(each));
        }
    }
}

#undef SCALAR

TEST(Variant, EmptyAndNil) {
    QvVariant v;
    EXPECT_FALSE(v.IsValid());
    EXPECT_FALSE(v.IsNil());
    EXPECT_EQ("Invalid Type 0", FailureOf([&] { v.GetType(); }));
    EXPECT_EQ("Invalid Type 0 to convert to string", FailureOf([&] { v.ToString(); }));

    // Nil on an empty variant makes it valid and outlives the next setter; the next
    // Clear of a kind takes it.
    v.SetNil();
    EXPECT_TRUE(v.IsValid() && v.IsNil());
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
    EXPECT_FALSE(v.IsNil() || v.IsValid());
    v.SetI4(1);
    v.SetNil();
    v.SetInvalid();
    EXPECT_FALSE(v.IsValid());

    // A nil string holds no string, in copies as well.
    v.SetString("text");
    v.SetNil();
    EXPECT_EQ("string", v.GetType());
    EXPECT_EQ("", v.GetString() + v.ToString());
    QvVariant copy;
    copy.SetI8(-1);
    copy = v;
    EXPECT_TRUE(copy.IsNil());
    EXPECT_EQ("string", copy.GetType());
    EXPECT_EQ("", copy.GetString());
}

TEST(Variant, StringsAreCopiedDeeplyAndSelfAssignmentEmpties) {
    QvVariant v;
    v.SetString("first");
    v.SetString(std::string(1000, 'x'));
    const QvVariant copy(v);
    v.SetString("changed");
    EXPECT_EQ(std::string(1000, 'x'), copy.GetString());

    QvVariant& alias = v;
    v = alias;
    EXPECT_FALSE(v.IsValid());
    EXPECT_EQ("", v.GetString());
    v.SetI4(1);
    v.SetNil();
    v = alias;
    EXPECT_FALSE(v.IsValid() || v.IsNil());
}

TEST(Variant, R4WritesHalfOfTheValueWord) {
    QvVariant v;
    v.SetI8(-1);
    v.SetR4(1.0f);
    EXPECT_EQ(static_cast<long long>(0xFFFFFFFF3F800000ULL), v.GetI8());
}

TEST(Variant, FromStringReplacesOnlyOnSuccess) {
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

TEST(Variant, FormatReachesOnlyTheFloats) {
    QvVariant v;
    v.SetR8(1.5);
    EXPECT_EQ("1.50 1.5 1.5", v.ToString("%.2f") + " " + v.ToString(nullptr) + " " + v.ToString(""));
    v.SetR4(2.25f);
    EXPECT_EQ("2.2", v.ToString("%.1f"));
    v.SetI4(15);
    EXPECT_EQ("15", v.ToString("%.2f"));
    v.SetChar('\0');
    EXPECT_EQ("", v.ToString());
}

TEST(Variant, ObjectIsHeldAndSharedByCopies) {
    int destroyed = 0;
    auto* object = new CRecorder(&destroyed);
    QvVariant v;
    {
        CSmartPtr<CRecorder> own(object);
        v.SetXmlObject(object);
    }
    EXPECT_EQ(1, object->RefCount());
    EXPECT_EQ("Invalid Type 27", FailureOf([&] { v.GetType(); }));
    EXPECT_EQ("Invalid Type 27 to convert to string", FailureOf([&] { v.ToString(); }));
    EXPECT_EQ(object, v.GetXmlObject().Get());
    EXPECT_EQ(1, object->RefCount());
    // Setting the object held a second time must not drop it on the way.
    v.SetXmlObject(object);
    EXPECT_EQ(1, object->RefCount());
    {
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
    }
    EXPECT_EQ(1, destroyed);
}

TEST(Variant, NullAndNilObjects) {
    QvVariant v;
    v.SetXmlObject(nullptr);
    EXPECT_TRUE(v.IsValid());
    EXPECT_EQ(nullptr, QvVariant(v).GetXmlObject().Get());

    int destroyed = 0;
    v.SetXmlObject(new CRecorder(&destroyed));
    QvVariant copy = v;
    v.SetNil();
    EXPECT_EQ(0, destroyed);
    EXPECT_TRUE(v.IsNil());
    EXPECT_EQ(nullptr, v.GetXmlObject().Get());
    const QvVariant nilCopy(v);
    EXPECT_TRUE(nilCopy.IsNil());
    EXPECT_EQ(nullptr, nilCopy.GetXmlObject().Get());
    copy.SetString("x");
    EXPECT_EQ(1, destroyed);
}

TEST(Variant, AssigningTheHoldersOwnMemberIsSafe) {
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
