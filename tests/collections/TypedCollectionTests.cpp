// Collections of primitive values and of dates and times: event sequences, bounds,
// facets, reading and writing. All texts are ASCII.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "binding/XmlSerializationContext.h"
#include "collections/DateTimeCollections.h"
#include "collections/TypedCollections.h"
#include "document/XmlTextWriter.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "values/Conversions.h"

#include "support/TestSupport.h"

using namespace QvXmlLib10;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

// Records each event as a word, with the index of the remove events.
class CEventLog : public IEventSink {
public:
    void OnEvent(CXmlObjectBase*, MsgType type, void* data) override {
        static const char* const kNames[] = {"change", "add", "added", "remove", "removed"};
        std::string entry = kNames[type];
        if (type == MsgType_Remove || type == MsgType_RemoveComplete) entry += " " + std::to_string(*(int*)data);
        m_entries += (m_entries.empty() ? "" : ",") + entry;
    }
    // The entries since the last call.
    std::string Take() { return std::exchange(m_entries, std::string()); }

private:
    std::string m_entries;
};

// A collection of element name "n", no namespace, with the given bounds and facets.
template <typename Col>
Col Make(int minOccurs = 0, int maxOccurs = -1, const char* minInclusive = "", const char* maxInclusive = "",
         const char* format = nullptr, CWhitespaceUtils::WhitespaceRule rule = kCollapse) {
    return Col("n", "", minOccurs, maxOccurs, "", -1, -1, minInclusive, maxInclusive, "", "", -1, rule, format);
}

// The collection written inside an element <w>, unformatted.
std::string Written(const CXmlObjectBase& collection) {
    CTextStream stream;
    CXmlTextWriter writer(stream);
    writer.SetFormat(false);
    writer.WriteStartElement("w", "");
    CXmlObjectBase::ToXml_Int(&collection, &writer, false, "", CXmlSerializationContext::m_defaultContext, false);
    writer.WriteEndElement();
    return std::string(stream.GetText(), static_cast<size_t>(stream.GetLength()));
}

} // namespace

TEST(ValueCollection, EventsBoundsAndFacetsOfI4) {
    auto col = Make<Ci4Col>(1, 3, "0", "");
    CEventLog log;
    col.AddEventListener(&log);

    col.Add(1);
    col.Add(2);
    col.AddAt(1, 5);
    EXPECT_EQ(log.Take(), "add,added,change,add,added,change,add,added,change");
    EXPECT_EQ(Written(col), "<w><n>1</n><n>5</n><n>2</n></w>");

    // Refusals raise the add event first and leave the values as they were.
    EXPECT_EQ(FailureOf([&] { col.AddAt(4, 9); }), "Index out of range");
    EXPECT_EQ(FailureOf([&] { col.AddAt(-1, 9); }), "Index out of range");
    EXPECT_EQ(FailureOf([&] { col.Add(-1); }), "Invalid Value for n [-1]");
    EXPECT_EQ(FailureOf([&] { col.AddFromString("x"); }), "The value [x] can not be converted to a i4");
    EXPECT_EQ(log.Take(), "add,add,add");
    EXPECT_EQ(col.GetCount(), 3);
    EXPECT_EQ(FailureOf([&] { col.Item(3); }), "Index 3 is out of range, use 0 - 3");
    EXPECT_EQ(FailureOf([&] { col.Item(-1); }), "Index -1 is out of range, use 0 - 3");

    // Above maxOccurs the output fails, with nothing written.
    col.Add(7);
    log.Take();
    EXPECT_EQ(FailureOf([&] { Written(col); }), "The Maximum number of [n] elements allowed in this collection is 3");

    col.Remove(3);
    EXPECT_EQ(FailureOf([&] { col.Remove(3); }), "Index 3 is out of range, use 0 - 3");
    EXPECT_EQ(log.Take(), "remove 3,removed 0,change,remove 3");
    col.Clear();
    EXPECT_EQ(log.Take(), "remove 0,removed 0,change,remove 0,removed 0,change,remove 0,removed 0,change");
    EXPECT_EQ(FailureOf([&] { Written(col); }), "The Minimum number of [n] elements allowed in this collection is 1");
}

TEST(ValueCollection, ClearsThroughRemoveAndKeepsBooleansInOrder) {
    // Clear goes through the virtual Remove, as often as values are left.
    struct CCounting : Ci8Col {
        using Ci8Col::Ci8Col;
        void Remove(int index) override {
            ++m_removes;
            Ci8Col::Remove(index);
        }
        int m_removes = 0;
    } counting("n", "", 0, -1, "", -1, -1, "", "", "", "", -1, kNone, nullptr);
    for (int i = 0; i < 1000; ++i)
        counting.Add(i);
    counting.Clear();
    EXPECT_EQ(counting.m_removes, 1000);
    EXPECT_EQ(counting.GetCount(), 0);

    // Booleans keep their order across many values and inserts at the front.
    auto flags = Make<CbooleanCol>();
    std::string expected;
    for (int i = 0; i < 65; ++i) {
        flags.AddAt(0, i % 3 == 0);
        expected.insert(0, i % 3 == 0 ? "1" : "0");
    }
    flags.Remove(64);
    expected.pop_back();
    std::string actual;
    for (int i = 0; i < flags.GetCount(); ++i)
        actual += flags.Item(i) ? "1" : "0";
    EXPECT_EQ(actual, expected);
}

namespace {

// Reads two texts into a collection of its kind, writes it, and reads the first value
// back; the result is the written text.
template <typename Col> std::string TwoValues(const char* first, const char* second, const char* format = nullptr) {
    auto col = Make<Col>(0, -1, "", "", format);
    col.AddFromString(first);
    col.AddFromString(second);
    const std::string written = Written(col);
    EXPECT_EQ(FailureOf([&] { col.Item(2); }), "Index 2 is out of range, use 0 - 2");
    col.Clear();
    EXPECT_EQ(col.GetCount(), 0);
    return written;
}

} // namespace

TEST(ValueCollection, EveryKindReadsAndWritesItsValues) {
    EXPECT_EQ(TwoValues<Ci1Col>("-128", "127"), "<w><n>-128</n><n>127</n></w>");
    EXPECT_EQ(TwoValues<Ci2Col>("-2", "300"), "<w><n>-2</n><n>300</n></w>");
    EXPECT_EQ(TwoValues<Ci8Col>("-9223372036854775808", "1"), "<w><n>-9223372036854775808</n><n>1</n></w>");
    EXPECT_EQ(TwoValues<Cui1Col>("255", "0"), "<w><n>255</n><n>0</n></w>");
    EXPECT_EQ(TwoValues<Cui2Col>("65535", "1"), "<w><n>65535</n><n>1</n></w>");
    EXPECT_EQ(TwoValues<Cui4Col>("4000000000", "1"), "<w><n>4000000000</n><n>1</n></w>");
    EXPECT_EQ(TwoValues<Cui8Col>("18446744073709551615", "1"), "<w><n>18446744073709551615</n><n>1</n></w>");
    EXPECT_EQ(TwoValues<Cr4Col>("0.5", "INF", "%.2f"), "<w><n>0.50</n><n>INF</n></w>");
    EXPECT_EQ(TwoValues<Cr8Col>("0.1", "-INF"), "<w><n>0.1</n><n>-INF</n></w>");
    EXPECT_EQ(TwoValues<CstringCol>(" a  b ", "c&lt;"), "<w><n>a b</n><n>c&amp;lt;</n></w>");
    EXPECT_EQ(TwoValues<CbooleanCol>("TRUE", "0"), "<w><n>true</n><n>false</n></w>");
    EXPECT_EQ(TwoValues<CdecimalCol>("1.5", "-2", "2"), "<w><n>1.50</n><n>-2.00</n></w>");
    EXPECT_EQ(TwoValues<CintegerCol>("123456789012345678901234567890", "-1"),
              "<w><n>123456789012345678901234567890</n><n>-1</n></w>");
    EXPECT_EQ(TwoValues<Cbase64BinaryCol>("AQID", ""), "<w><n>AQID</n><n/></w>");
    EXPECT_EQ(TwoValues<ChexBinaryCol>("0aff", "00"), "<w><n>0AFF</n><n>00</n></w>");
    EXPECT_EQ(TwoValues<CdurationCol>("P1D", "-PT1M"), "<w><n>P1D</n><n>-PT1M</n></w>");
    EXPECT_EQ(TwoValues<CdayCol>("---01", "---31"), "<w><n>---01</n><n>---31</n></w>");
    EXPECT_EQ(TwoValues<CmonthCol>("--12", "--01"), "<w><n>--12</n><n>--01</n></w>");
    EXPECT_EQ(TwoValues<CyearCol>("2012", "0005"), "<w><n>2012</n><n>5</n></w>");

    // Object values are copies of their own; binary copies share their bytes.
    auto blobs = Make<ChexBinaryCol>();
    CBinaryData data("abc");
    blobs.Add(data);
    EXPECT_EQ(blobs.Item(0).GetData(), data.GetData());
    auto numbers = Make<CdecimalCol>(0, -1, "", "10");
    CDecimal number("1.25");
    numbers.Add(number);
    number = CDecimal("3");
    EXPECT_EQ(numbers.Item(0).ToString(), "1.25");
    EXPECT_EQ(FailureOf([&] { numbers.AddFromString("10.01"); }), "Invalid Value for n [10.01]");
}

TEST(DateCollection, RefusalsBeforeEventsAndOrderOfOutput) {
    auto col = Make<CdateCol>(0, -1, "2000-01-01", "");
    CEventLog log;
    col.AddEventListener(&log);

    col.AddFromString("2001-01-01");
    col.AddFromString("2003-03-03");
    col.AddAt(1, CConversions::dateFromString("2002-02-02", kNone));
    EXPECT_EQ(log.Take(), "add,added,change,add,added,change,add,added,change");
    EXPECT_EQ(Written(col), "<w><n>2001-01-01</n><n>2002-02-02</n><n>2003-03-03</n></w>");

    // A value of another date type, or one that fails a facet, raises no event.
    EXPECT_EQ(FailureOf([&] { col.Add(CConversions::timeFromString("10:00:00", kNone)); }),
              "Dates added to this collection must be of type dt_date");
    EXPECT_EQ(FailureOf([&] { col.AddFromString("1999-01-01"); }), "Invalid Value for n [1999-01-01]");
    EXPECT_EQ(FailureOf([&] { col.AddFromString("2000-01-01T00:00:00"); }), "Invalid Date ('T' not allowed)");
    EXPECT_EQ(log.Take(), "");
    // An index out of range is refused after the add event.
    EXPECT_EQ(FailureOf([&] { col.AddAt(9, CConversions::dateFromString("2004-01-01", kNone)); }),
              "Index out of range");
    EXPECT_EQ(log.Take(), "add");

    EXPECT_EQ(col.Item(1).ToString(), "2002-02-02");
    EXPECT_EQ(FailureOf([&] { col.Item(3); }), "Index 3 is out of range, use 0 - 3");
    col.Remove(2);
    col.Clear();
    EXPECT_EQ(log.Take(), "remove 2,removed 0,change,remove 0,removed 0,change,remove 0,removed 0,change");
}

namespace {

// Reads one text into a date collection, writes it, and returns the output and the
// refusal of a value of another date type.
template <typename Col> std::string OneDate(const char* text, const CDateTime& other) {
    auto col = Make<Col>();
    col.AddFromString(text);
    const std::string refusal = FailureOf([&] { col.Add(other); });
    return Written(col) + " " + refusal;
}

} // namespace

TEST(DateCollection, EveryMemberTakesOnlyItsDateType) {
    const CDateTime date = CConversions::dateFromString("2012-01-02", kNone);
    const std::string refusal = " Dates added to this collection must be of type dt_";
    EXPECT_EQ(OneDate<CdateCol>("2012-01-02Z", CConversions::timeFromString("10:00:00", kNone)),
              "<w><n>2012-01-02Z</n></w>" + refusal + "date");
    EXPECT_EQ(OneDate<CdatetimeCol>("2012-01-02T03:04:05", date),
              "<w><n>2012-01-02T03:04:05</n></w>" + refusal + "dateTime");
    EXPECT_EQ(OneDate<CtimeCol>("03:04:05+01:00", date), "<w><n>03:04:05+01:00</n></w>" + refusal + "time");
    EXPECT_EQ(OneDate<CmonthDayCol>("--02-29", date), "<w><n>--02-29</n></w>" + refusal + "gMonthDay");
    EXPECT_EQ(OneDate<CyearMonthCol>("2012-02", date), "<w><n>2012-02</n></w>" + refusal + "gYearMonth");
}
