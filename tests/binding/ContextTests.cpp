#include "binding/XmlSerializationContext.h"
#include "foundation/QvException.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib10;

namespace {

// Every setting in one line.
std::string Settings(const CXmlSerializationContext& c) {
    std::string out;
    for (bool flag :
         {c.GetWriteTypeAttribute(), c.GetStripCDATA(), c.GetIgnoreUnknownAttributes(), c.GetIgnoreUnknownElements(),
          c.GetIgnoreMissingMandatoryElements(), c.GetIgnoreMissingChoice(), c.GetIgnoreInvalidCollectionCounts(),
          c.GetIgnoreNamespaces(), c.GetNoOptionalAttributeDefaultOutput()})
        out += flag ? '1' : '0';
    out +=
        " " + std::to_string(c.GetSchemaType()) + " [" + c.GetDefaultNamespaceURI() + "] [" + c.GetInLineSchema() + "]";
    for (const std::string& pi : c.GetProcessingInstructions())
        out += " " + pi;
    return out;
}

} // namespace

TEST(SerializationContext, DefaultsNullTextsAndCopies) {
    CXmlSerializationContext context;
    EXPECT_EQ("110000000 " + std::to_string(SchemaType_Default) + " [] []", Settings(context));
    // Null texts become empty.
    context.SetDefaultNamespaceURI("x");
    context.SetDefaultNamespaceURI(nullptr);
    context.SetInLineSchema(nullptr);
    EXPECT_EQ("110000000 " + std::to_string(SchemaType_Default) + " [] []", Settings(context));

    context.SetDefaultNamespaceURI("urn:d");
    context.SetInLineSchema("<xs:schema/>");
    context.GetProcessingInstructions() = {"pi one", "pi two"};
    context.SetWriteTypeAttribute(false);
    context.SetStripCDATA(false);
    context.SetIgnoreUnknownAttributes(true);
    context.SetIgnoreUnknownElements(true);
    context.SetIgnoreMissingChoice(true);
    context.SetIgnoreInvalidCollectionCounts(true);
    context.SetNoOptionalAttributeDefaultOutput(true);
    context.SetSchemaType(SchemaType_NoNamespaces);
    const std::string all =
        "001101111 " + std::to_string(SchemaType_NoNamespaces) + " [urn:d] [<xs:schema/>] pi one pi two";
    EXPECT_EQ(all, Settings(context));
    const CXmlSerializationContext copy(context);
    context.GetProcessingInstructions().clear(); // the copy is independent
    EXPECT_EQ(all, Settings(copy));
}

TEST(SerializationContext, SchemaTypeWithoutNamespacesForcesIgnoreNamespaces) {
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    context.SetIgnoreNamespaces(false);
    EXPECT_TRUE(context.GetIgnoreNamespaces());
    context.SetSchemaType(SchemaType_Reserved);
    EXPECT_FALSE(context.GetIgnoreNamespaces());
    context.SetIgnoreNamespaces(true);
    EXPECT_TRUE(context.GetIgnoreNamespaces());
}

TEST(SerializationContext, IgnoreUnknownAndIgnoreMissingExcludeEachOther) {
    const std::string both = "The parser can only ignore additional elements, or ignore the fact that some required "
                             "ones are missing, you can not ignore both\n";
    CXmlSerializationContext context;
    context.SetIgnoreMissingMandatoryElements(true);
    EXPECT_EQ(both + "Set IgnoreMissingMandatoryElements to false before setting IgnoreUnknownElements to true",
              FailureOf<CQvInvalidStateException>([&] { context.SetIgnoreUnknownElements(true); }));
    EXPECT_FALSE(context.GetIgnoreUnknownElements());
    context.SetIgnoreUnknownElements(false); // clearing never fails

    context.SetIgnoreMissingMandatoryElements(false);
    context.SetIgnoreUnknownElements(true);
    EXPECT_EQ(both + "Set IgnoreUnknownElements to false before setting IgnoreMissingMandatoryElements to true",
              FailureOf<CQvInvalidStateException>([&] { context.SetIgnoreMissingMandatoryElements(true); }));
    EXPECT_FALSE(context.GetIgnoreMissingMandatoryElements());
    EXPECT_TRUE(context.GetIgnoreUnknownElements());
}
