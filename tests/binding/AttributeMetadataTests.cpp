#include <cstring>

#include "binding/metadata/AttributeInfoKinds.h"
#include "collections/AttributeCollections.h"
#include "document/XmlDocument.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;
using QvXmlTest::WrappedFailureOf;

namespace {

const char* const T_NS = "urn:t";

enum Shape { Shape_Circle = 0, Shape_Square = 1 };

const char* ShapeToText(int value) { return value == Shape_Square ? "square" : "circle"; }
int TextToShape(const char* text) { return std::strcmp(text, "square") == 0 ? Shape_Square : Shape_Circle; }

// A class in the way of generated code with one attribute of each kind: the required
// count (i4, at most 10), the optional ratio (r8, default "1.0") and size (string,
// default "medium"), the optional color and the required shape in urn:t
// (enumerations), and the wildcard for attributes of other namespaces than urn:t.
struct HolderTables : QvXmlTest::CTableDefaults {
    enum { P_count, P_ratio, P_size, P_color, P_shape, P_any, kProperties };
    static constexpr const char* kName = "Holder";
    static void Construct(QvVariant* properties) {
        properties[P_any].SetXmlCollection(new CAttributeCol("", "##other", T_NS));
    }
    static void Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
        parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, "Holder", T_NS, true,
                                        false, -1, ItemType_Invalid, nullptr, false);
        elements = new CElementInfo* [1] { nullptr };
        const CPrimitiveRestrictions atMostTen(nullptr, -1, -1, nullptr, "10", nullptr, nullptr, -1);
        attributes = new CAttributeInfo* [7] {
            new CAttributeInfoPrimitive("count", "", P_count, false, ItemType_i4, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, atMostTen, nullptr),
                new CAttributeInfoPrimitive("ratio", "", P_ratio, true, ItemType_r8, nullptr,
                                            CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), "1.0"),
                new CAttributeInfoPrimitive("size", "", P_size, true, ItemType_string, nullptr,
                                            CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                            "medium"),
                new CAttributeInfoEnum("color", "", P_color, true, ShapeToText, TextToShape, "circle"),
                new CAttributeInfoEnum("shape", T_NS, P_shape, false, ShapeToText, TextToShape, nullptr),
                new CAttributeInfoAny("AnyAttribute", "", P_any, true, "##other", T_NS, nullptr), nullptr
        };
    }
};
using CHolder = QvXmlTest::CTableClass<HolderTables>;

const char BASE[] = "<t:Holder xmlns:t=\"urn:t\" xmlns:o=\"urn:o\" ";

CSmartPtr<CHolder> Read(const std::string& attributes,
                        const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) {
    CSmartPtr<CHolder> holder(new CHolder);
    holder->FromXml((BASE + attributes + "/>").c_str(), context);
    return holder;
}

std::string Attributes(const CAttributeCol& attributes) {
    std::string out;
    for (const CAttribute* attribute : attributes)
        out += "{" + attribute->GetNamespace() + "}" + attribute->GetName() + "=" + attribute->GetValue() + " ";
    return out;
}

} // namespace

TEST(AttributeMetadata, ReadsEachKindAndCollectsTheRestWithoutDuplicateTest) {
    CSmartPtr<CHolder> holder = Read("count=\" 3 \" ratio=\"2.5\" size=\" big \" color=\"square\" t:shape=\"square\" "
                                     "o:x=\"1\" o:y=\"2\" z=\"3\"");
    EXPECT_EQ(holder->Property(CHolder::P_count).GetI4(), 3);
    EXPECT_EQ(holder->Property(CHolder::P_ratio).GetR8(), 2.5);
    EXPECT_EQ(holder->Property(CHolder::P_size).GetString(), " big ");
    EXPECT_EQ(holder->Property(CHolder::P_color).GetI4(), Shape_Square);
    EXPECT_EQ(holder->Property(CHolder::P_shape).GetI4(), Shape_Square);
    EXPECT_EQ(Attributes(*holder->Collection<CAttributeCol>(CHolder::P_any)), "{urn:o}x=1 {urn:o}y=2 {}z=3 ");

    // Every offer to the wildcard adds, without a test for a name it holds already.
    CXmlDocument document;
    document.LoadXml("<Holder xmlns:a=\"urn:a\" xmlns:b=\"urn:b\" a:n=\"1\" b:n=\"2\"/>");
    CAttributeInfoAny any("AnyAttribute", "", CHolder::P_any, true, "##any", "", nullptr);
    for (int i = 0; i < 2; ++i)
        for (const auto& attribute : document.GetDocumentElement()->GetAttributes())
            EXPECT_TRUE(
                any.AttributeFromXml(CXmlSerializationContext::m_defaultContext, holder.Get(), attribute.get()));
    EXPECT_EQ(Attributes(*holder->Collection<CAttributeCol>(CHolder::P_any)),
              "{urn:o}x=1 {urn:o}y=2 {}z=3 {urn:a}n=1 {urn:b}n=2 {urn:a}n=1 {urn:b}n=2 ");
}

TEST(AttributeMetadata, ReadingFailuresWithTheirChains) {
    struct Case {
        std::string attributes;
        bool ignoreUnknownAttributes;
        const char* message;
    } cases[] = {
        // Ignoring unknown attributes does not excuse a required one.
        {"t:shape=\"circle\"", true,
         "Failed to process the element [Holder]\nFailed to find the required Attribute [count]"},
        {"count=\"1\"", false, "Failed to process the element [Holder]\nFailed to find the required Attribute [shape]"},
        // The wildcard refuses the target namespace.
        {"count=\"1\" t:shape=\"circle\" t:other=\"1\"", false,
         "Failed to process the element [Holder]\nUnexpected Attribute [other] found."},
        // A conversion failure passes up as it is, inside the driver's chain.
        {"count=\"x\" t:shape=\"circle\"", false,
         "Failed to process the element [Holder]\nThe value [x] can not be converted to a i4"},
    };
    for (const Case& c : cases) {
        CXmlSerializationContext context;
        context.SetIgnoreUnknownAttributes(c.ignoreUnknownAttributes);
        EXPECT_EQ(WrappedFailureOf([&] { Read(c.attributes, context); }), c.message) << c.attributes;
    }
    // The unknown attribute passes when ignored.
    CXmlSerializationContext lenient;
    lenient.SetIgnoreUnknownAttributes(true);
    EXPECT_EQ(Read("count=\"1\" t:shape=\"circle\" t:other=\"1\"", lenient)
                  ->Collection<CAttributeCol>(CHolder::P_any)
                  ->GetCount(),
              0);
}

TEST(AttributeMetadata, IgnoringNamespacesReachesEnumerationsButNotPrimitives) {
    CXmlSerializationContext context;
    context.SetIgnoreNamespaces(true);
    context.SetIgnoreUnknownAttributes(true);
    // shape without its namespace is found; count in a namespace is not, and the
    // wildcard refuses urn:t.
    CSmartPtr<CHolder> holder(new CHolder);
    EXPECT_EQ(WrappedFailureOf(
                  [&] { holder->FromXml("<Holder xmlns:t=\"urn:t\" t:count=\"4\" shape=\"square\"/>", context); }),
              "Failed to process the element [Holder]\nFailed to find the required Attribute [count]");
    EXPECT_EQ(holder->Property(CHolder::P_shape).GetI4(), Shape_Square);

    holder->FromXml("<Holder xmlns:o=\"urn:o\" count=\"4\" o:shape=\"square\"/>", context);
    EXPECT_EQ(holder->Property(CHolder::P_count).GetI4(), 4);
    EXPECT_EQ(holder->Property(CHolder::P_shape).GetI4(), Shape_Square);
    EXPECT_EQ(holder->Collection<CAttributeCol>(CHolder::P_any)->GetCount(), 0);

    // Without ignoring namespaces, shape outside urn:t goes to the wildcard.
    CXmlSerializationContext strict;
    strict.SetIgnoreUnknownAttributes(true);
    EXPECT_EQ(WrappedFailureOf(
                  [&] { holder->FromXml("<Holder xmlns:o=\"urn:o\" count=\"4\" o:shape=\"square\"/>", strict); }),
              "Failed to process the element [Holder]\nFailed to find the required Attribute [shape]");
    EXPECT_EQ(Attributes(*holder->Collection<CAttributeCol>(CHolder::P_any)), "{urn:o}shape=square ");
}

TEST(AttributeMetadata, WritesDefaultsUnlessAskedToLeaveThemOut) {
    CSmartPtr<CHolder> holder(new CHolder);
    holder->Property(CHolder::P_count).SetI4(2);
    holder->Property(CHolder::P_shape).SetI4(Shape_Circle);
    CXmlSerializationContext context;
    // Optional attributes without a value stay out; the wildcard's collection is empty.
    EXPECT_EQ(holder->ToXml(false, false, EOLType_LF, context),
              "<AA:Holder xmlns:AA=\"urn:t\" count=\"2\" AA:shape=\"circle\"/>");

    holder->Property(CHolder::P_ratio).SetR8(1.0);
    holder->Property(CHolder::P_size).SetString("medium");
    holder->Property(CHolder::P_color).SetI4(Shape_Circle);
    holder->Collection<CAttributeCol>(CHolder::P_any)->Add("extra", "e", "urn:o");
    const char all[] = "<AA:Holder xmlns:AA=\"urn:t\" count=\"2\" ratio=\"1\" size=\"medium\" color=\"circle\" "
                       "AA:shape=\"circle\" xmlns:AB=\"urn:o\" AB:extra=\"e\"/>";
    EXPECT_EQ(holder->ToXml(false, false, EOLType_LF, context), all);

    // Texts equal to the default are left out; "1" is not "1.0", and a mandatory
    // attribute has no default to compare.
    context.SetNoOptionalAttributeDefaultOutput(true);
    EXPECT_EQ(holder->ToXml(false, false, EOLType_LF, context),
              "<AA:Holder xmlns:AA=\"urn:t\" count=\"2\" ratio=\"1\" AA:shape=\"circle\" xmlns:AB=\"urn:o\" "
              "AB:extra=\"e\"/>");
    holder->Property(CHolder::P_color).SetI4(Shape_Square);
    EXPECT_EQ(holder->ToXml(false, false, EOLType_LF, context),
              "<AA:Holder xmlns:AA=\"urn:t\" count=\"2\" ratio=\"1\" color=\"square\" AA:shape=\"circle\" "
              "xmlns:AB=\"urn:o\" AB:extra=\"e\"/>");

    // What is written reads back.
    CSmartPtr<CHolder> copy(new CHolder);
    copy->FromXml(all);
    EXPECT_EQ(copy->ToXml(false, false), all);
}

TEST(AttributeMetadata, WritingChecksTheFacetsOfPrimitives) {
    CSmartPtr<CHolder> holder(new CHolder);
    holder->Property(CHolder::P_count).SetI4(11);
    holder->Property(CHolder::P_shape).SetI4(Shape_Circle);
    EXPECT_EQ(WrappedFailureOf([&] { holder->ToXml(); }), "Failed to convert the element [Holder] to XML\nFailed to "
                                                          "convert attributes to XML\nInvalid Value for count [11]");
}

TEST(AttributeMetadata, TheWildcardNeedsAnAttributeCollection) {
    CSmartPtr<CHolder> holder(new CHolder);
    holder->Property(CHolder::P_any).SetXmlCollection(new CElementCol("", "##any", "", 0, -1));
    const char message[] = "Failed to process the element [Holder]\n"
                           "Serialization Data Error : The collection should be a CAttributeCol, it was not!";
    EXPECT_EQ(WrappedFailureOf([&] { holder->FromXml("<Holder xmlns:o=\"urn:o\" count=\"1\" o:x=\"1\"/>"); }), message);
    holder->Property(CHolder::P_any).SetInvalid();
    EXPECT_EQ(WrappedFailureOf([&] { holder->FromXml("<Holder xmlns:o=\"urn:o\" count=\"1\" o:x=\"1\"/>"); }), message);
    // Without a collection there is nothing to write.
    holder->Property(CHolder::P_count).SetI4(1);
    holder->Property(CHolder::P_shape).SetI4(Shape_Square);
    EXPECT_EQ(holder->ToXml(false, false), "<AA:Holder xmlns:AA=\"urn:t\" count=\"1\" AA:shape=\"square\"/>");
}
