#include "binding/XmlSerializationContext.h"
#include "foundation/QvException.h"

#include <gtest/gtest.h>

using namespace QvXmlLib10;

TEST(SerializationContext, DefaultsAndNullTexts) {
    const CXmlSerializationContext context;
    EXPECT_TRUE(context.GetWriteTypeAttribute());
    EXPECT_TRUE(context.GetStripCDATA());
    EXPECT_FALSE(context.GetIgnoreUnknownAttributes());
    EXPECT_FALSE(context.GetIgnoreUnknownElements());
    EXPECT_FALSE(context.GetIgnoreMissingMandatoryElements());
    EXPECT_FALSE(context.GetIgnoreMissingChoice());
    EXPECT_FALSE(context.GetIgnoreInvalidCollectionCounts());
    EXPECT_FALSE(context.GetIgnoreNamespaces());
    EXPECT_FALSE(context.GetNoOptionalAttributeDefaultOutput());
    EXPECT_EQ(context.GetSchemaType(), SchemaType_Default);
    EXPECT_EQ(context.GetInLineSchema(), "");
    EXPECT_EQ(context.GetDefaultNamespaceURI(), "");
    EXPECT_TRUE(context.GetProcessingInstructions().empty());

    // Null texts become empty.
    CXmlSerializationContext changed;
    changed.SetDefaultNamespaceURI("x");
    changed.SetDefaultNamespaceURI(nullptr);
    changed.SetInLineSchema(nullptr);
    EXPECT_EQ(changed.GetDefaultNamespaceURI(), "");
    EXPECT_EQ(changed.GetInLineSchema(), "");
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
    CXmlSerializationContext context;
    context.SetIgnoreMissingMandatoryElements(true);
    try {
        context.SetIgnoreUnknownElements(true);
        FAIL() << "no exception";
    } catch (const CQvInvalidStateException& e) {
        EXPECT_EQ(e.GetFullMessage(),
                  "The parser can only ignore additional elements, or ignore the fact that some required ones are "
                  "missing, you can not ignore both\nSet IgnoreMissingMandatoryElements to false before setting "
                  "IgnoreUnknownElements to true");
    }
    EXPECT_FALSE(context.GetIgnoreUnknownElements());
    EXPECT_TRUE(context.GetIgnoreMissingMandatoryElements());
    context.SetIgnoreUnknownElements(false); // clearing never fails

    context.SetIgnoreMissingMandatoryElements(false);
    context.SetIgnoreUnknownElements(true);
    try {
        context.SetIgnoreMissingMandatoryElements(true);
        FAIL() << "no exception";
    } catch (const CQvInvalidStateException& e) {
        EXPECT_EQ(e.GetFullMessage(),
                  "The parser can only ignore additional elements, or ignore the fact that some required ones are "
                  "missing, you can not ignore both\nSet IgnoreUnknownElements to false before setting "
                  "IgnoreMissingMandatoryElements to true");
    }
    EXPECT_FALSE(context.GetIgnoreMissingMandatoryElements());
    EXPECT_TRUE(context.GetIgnoreUnknownElements());
}

TEST(SerializationContext, CopyTakesEverySetting) {
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI("urn:d");
    context.SetInLineSchema("<xs:schema/>");
    context.GetProcessingInstructions().push_back("pi one");
    context.GetProcessingInstructions().push_back("pi two");
    context.SetWriteTypeAttribute(false);
    context.SetStripCDATA(false);
    context.SetIgnoreUnknownAttributes(true);
    context.SetIgnoreUnknownElements(true);
    context.SetIgnoreMissingChoice(true);
    context.SetIgnoreInvalidCollectionCounts(true);
    context.SetIgnoreNamespaces(true);
    context.SetNoOptionalAttributeDefaultOutput(true);
    context.SetSchemaType(SchemaType_NoNamespaces);

    const CXmlSerializationContext copy(context);
    EXPECT_EQ(copy.GetDefaultNamespaceURI(), "urn:d");
    EXPECT_EQ(copy.GetInLineSchema(), "<xs:schema/>");
    EXPECT_EQ(copy.GetProcessingInstructions(), (std::vector<std::string>{"pi one", "pi two"}));
    EXPECT_FALSE(copy.GetWriteTypeAttribute());
    EXPECT_FALSE(copy.GetStripCDATA());
    EXPECT_TRUE(copy.GetIgnoreUnknownAttributes());
    EXPECT_TRUE(copy.GetIgnoreUnknownElements());
    EXPECT_TRUE(copy.GetIgnoreMissingChoice());
    EXPECT_TRUE(copy.GetIgnoreInvalidCollectionCounts());
    EXPECT_TRUE(copy.GetNoOptionalAttributeDefaultOutput());
    EXPECT_EQ(copy.GetSchemaType(), SchemaType_NoNamespaces);
    // The copy is independent.
    context.GetProcessingInstructions().clear();
    EXPECT_EQ(copy.GetProcessingInstructions().size(), 2u);
}
