#include <functional>
#include <memory>

#include "binding/metadata/AllElementInfo.h"
#include "binding/metadata/ChoiceElementInfo.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "collections/Element.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;
using namespace QvXmlTest;

namespace {

using MakeMember = std::function<std::unique_ptr<CElementInfo>(XmlElementType)>;

// A member named Pair of property 0 (collections: 1) of the given kind; the arguments
// after the kind follow.
template <class Member, int Index = 0, class... Args> MakeMember Make(Args... args) {
    return [=](XmlElementType kind) {
        return std::unique_ptr<CElementInfo>(new Member("Pair", kNs, Index, kind, args...));
    };
}

// The class and abstract class members of every family write the attributes of a
// pseudo child, or of each pseudo child in a collection, on the enclosing element;
// children of other kinds write nothing there.
TEST(ElementFamilies, PseudoChildrenWriteTheirAttributesOnTheEnclosingElement) {
    CSmartPtr<CHost> host = new CHost();
    CPair* const pair = new CPair();
    pair->Property(PairTables::P_pa).SetString("A");
    host->Property(0).SetXmlObject(pair);
    CObjectCol* const pairs = new CObjectCol("Pair", CObjectCol::Kind_Pair, 0, -1);
    host->Property(1).SetXmlCollection(pairs);
    for (const char* value : {"B", "C"}) {
        CPair* const item = new CPair();
        item->Property(PairTables::P_pa).SetString(value);
        pairs->AppendItem(item);
    }

    const MakeMember objects[] = {
        Make<CElementInfoSeqClsMnd>(nullptr, 0, true), Make<CElementInfoSeqClsOpt>(nullptr, 0),
        Make<CElementInfoSeqAbsClsMnd>(nullptr),       Make<CElementInfoSeqAbsClsOpt>(nullptr),
        Make<CElementInfoAllClsMnd>(nullptr, 0, true), Make<CElementInfoAllClsOpt>(nullptr, 0),
        Make<CElementInfoAllAbsClsMnd>(nullptr, 0),    Make<CElementInfoAllAbsClsOpt>(nullptr),
        Make<CElementInfoChoiceClsOpt>(nullptr, 0),    Make<CElementInfoChoiceAbsClsOpt>(nullptr),
    };
    const MakeMember collections[] = {
        Make<CElementInfoSeqClsCol, 1>(),
        Make<CElementInfoSeqAbsClsCol, 1>(),
        Make<CConcrete<CElementInfoAllClsCol>, 1>(),
        Make<CConcrete<CElementInfoAllAbsClsCol>, 1>(),
        Make<CElementInfoChoiceClsCol, 1>(),
        Make<CElementInfoChoiceAbsClsCol, 1>(),
    };
    auto attributesOf = [&](const CElementInfo& info) {
        CRecordingWriter writer;
        info.PseudoChildAttributeToXml(CXmlSerializationContext::m_defaultContext, host, &writer);
        return writer.m_log;
    };
    for (const MakeMember& make : objects) {
        EXPECT_EQ("@pa{}=A", attributesOf(*make(XmlElementType_Pseudo)));
        EXPECT_EQ("", attributesOf(*make(XmlElementType_Element)));
        EXPECT_EQ("", attributesOf(*make(XmlElementType_PseudoGroup)));
    }
    for (const MakeMember& make : collections) {
        EXPECT_EQ("@pa{}=B @pa{}=C", attributesOf(*make(XmlElementType_Pseudo)));
        EXPECT_EQ("", attributesOf(*make(XmlElementType_Element)));
        EXPECT_EQ("", attributesOf(*make(XmlElementType_PseudoGroup)));
    }

    // Untyped and value members have nothing to add.
    EXPECT_EQ("", attributesOf(CElementInfoSeqUntpdMnd("Pair", kNs, 0, "##any", "")));
    EXPECT_EQ("", attributesOf(CElementInfoAllUntpdOpt("Pair", kNs, 0, "##any", "")));
    EXPECT_EQ("", attributesOf(CElementInfoChoiceUntpdCol("Pair", kNs, 1)));
    EXPECT_EQ("", attributesOf(CElementInfoChoiceEnumOpt("Pair", kNs, 0, false, ColorToText, TextToColor)));
}

// Generated code creates the objects and collections its mandatory members read into;
// a class that breaks this contract gets an exception, not a crash.
TEST(ElementFamilies, PropertiesWithoutTheirObjectOrCollectionAreRefused) {
    CSmartPtr<CHost> host = new CHost();
    host->Property(1).SetXmlCollection(new CStringCol("a", 0, -1));
    CElementInfoSeqClsMnd child("Leaf", kNs, 0, XmlElementType_Element, nullptr, 0, false);
    CElementInfoAllUntpdMnd untyped("AnyElement", kNs, 0, "##any", "");
    CElementInfoChoicePrimCol values("pc", kNs, 0);
    CElementInfoSeqUntpdCol named("a", kNs, 1);
    EXPECT_EQ("The property of the element [Leaf] holds no object",
              FailureOf([&] { Offer(child, *host, "<Leaf/>", XmlElementType_Element); }));
    EXPECT_EQ("The property of the element [AnyElement] holds no object",
              FailureOf([&] { Offer(untyped, *host, "<a/>", XmlElementType_Element); }));
    EXPECT_EQ("The property of the element [pc] holds no collection",
              FailureOf([&] { Offer(values, *host, "<pc/>", XmlElementType_Element); }));
    EXPECT_EQ("The property of the element [a] holds no CElementCol",
              FailureOf([&] { Offer(named, *host, "<a/>", XmlElementType_Element); }));
    // On writing there is nothing to count and nothing to write.
    CRecordingWriter writer;
    EXPECT_FALSE(
        CElementInfoSeqPrimCol("pc", kNs, 0).ElementToXml(CXmlSerializationContext::m_defaultContext, host, &writer));
    EXPECT_EQ("", writer.m_log);
}

// Every member kind writes what its property holds, and nothing for an unset property.
TEST(ElementFamilies, EveryMemberWritesWhatItsPropertyHolds) {
    const XmlElementType kElement = XmlElementType_Element;
    const auto leaf = [](QvVariant& property) {
        CLeaf* const object = new CLeaf();
        object->Property(LeafTables::P_v).SetString("l");
        property.SetXmlObject(object);
    };
    const auto shape = [](QvVariant& property) {
        CCircle* const circle = new CCircle();
        circle->SetElementName("Shape");
        circle->Property(CircleTables::P_r).SetI4(4);
        property.SetXmlObject(circle);
    };
    const auto untyped = [](QvVariant& property) {
        CElement* const element = new CElement("w", "urn:o");
        element->SetText("u");
        property.SetXmlObject(element);
    };
    const auto green = [](QvVariant& property) { property.SetI4(1); };
    const auto strings = [](QvVariant& property) {
        CStringCol* const col = new CStringCol("c", 0, -1);
        col->m_values = {"red", "blue"};
        property.SetXmlCollection(col);
    };
    const std::string leafText = "<Leaf{urn:t} <v{urn:t} \"l\" /> />";
    const std::string shapeText = "<Shape{urn:t} @type{urn:t}Circle <r{urn:t} \"4\" /> />";
    const std::string untypedText = "<w{urn:o} \"u\" />";
    const std::string greenText = "<e{urn:t} \"green\" />";
    const std::string stringsText = "<c{urn:t} \"red\" /> <c{urn:t} \"blue\" />";
    struct Row {
        std::unique_ptr<CElementInfo> info;
        std::function<void(QvVariant&)> set;
        std::string written;
    };
    Row rows[] = {
        {std::make_unique<CElementInfoSeqEnumMnd>("e", kNs, 0, false, ColorToText, TextToColor), green, greenText},
        {std::make_unique<CElementInfoSeqEnumOpt>("e", kNs, 0, false, ColorToText, TextToColor), green, greenText},
        {std::make_unique<CElementInfoSeqEnumCol>("c", kNs, 0), strings, stringsText},
        {std::make_unique<CElementInfoSeqAbsClsOpt>("Shape", kNs, 0, kElement, CreateShape), shape, shapeText},
        {std::make_unique<CElementInfoSeqUntpdMnd>("w", kNs, 0, "##any", ""), untyped, untypedText},
        {std::make_unique<CElementInfoSeqUntpdOpt>("w", kNs, 0, "##any", ""), untyped, untypedText},
        {std::make_unique<CElementInfoAllEnumMnd>("e", kNs, 0, false, ColorToText, TextToColor), green, greenText},
        {std::make_unique<CElementInfoAllEnumOpt>("e", kNs, 0, false, ColorToText, TextToColor), green, greenText},
        {std::make_unique<CElementInfoAllClsMnd>("Leaf", kNs, 0, kElement, nullptr, 0, false), leaf, leafText},
        {std::make_unique<CElementInfoAllClsOpt>("Leaf", kNs, 0, kElement, nullptr, 0), leaf, leafText},
        {std::make_unique<CElementInfoAllAbsClsMnd>("Shape", kNs, 0, kElement, CreateShape, 0), shape, shapeText},
        {std::make_unique<CElementInfoAllAbsClsOpt>("Shape", kNs, 0, kElement, CreateShape), shape, shapeText},
        {std::make_unique<CElementInfoAllUntpdMnd>("w", kNs, 0, "##any", ""), untyped, untypedText},
        {std::make_unique<CElementInfoAllUntpdOpt>("w", kNs, 0, "##any", ""), untyped, untypedText},
        {std::make_unique<CElementInfoChoiceEnumOpt>("e", kNs, 0, false, ColorToText, TextToColor), green, greenText},
        {std::make_unique<CElementInfoChoiceEnumCol>("c", kNs, 0), strings, stringsText},
        {std::make_unique<CElementInfoChoicePrimCol>("c", kNs, 0), strings, stringsText},
        {std::make_unique<CElementInfoChoiceAbsClsOpt>("Shape", kNs, 0, kElement, CreateShape), shape, shapeText},
        {std::make_unique<CElementInfoChoiceUntpdOpt>("w", kNs, 0, "##any", ""), untyped, untypedText},
    };
    for (Row& row : rows) {
        CSmartPtr<CHost> host = new CHost();
        CRecordingWriter unset;
        EXPECT_FALSE(row.info->ElementToXml(CXmlSerializationContext::m_defaultContext, host, &unset)) << row.written;
        EXPECT_EQ("", unset.m_log);
        row.set(host->Property(0));
        CRecordingWriter writer;
        EXPECT_TRUE(row.info->ElementToXml(CXmlSerializationContext::m_defaultContext, host, &writer)) << row.written;
        EXPECT_EQ(row.written, writer.m_log);
    }
}

} // namespace
