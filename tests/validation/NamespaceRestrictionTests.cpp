#include <gtest/gtest.h>

#include <string>

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "support/Recorder.h"
#include "support/TestSupport.h"
#include "validation/XmlObjectHelper.h"

using namespace QvXmlLib10;

namespace {

struct NamespaceCase {
    const char* restriction;
    const char* target;
    const char* namespaceUri;
    bool valid;
};

const NamespaceCase kNamespaceCases[] = {
    {"##any", "urn:a", "urn:z", true},
    {"##any", "urn:a", "", true},
    {"##other", "urn:a", "urn:b", true},
    {"##other", "urn:a", "", true},
    {"##other", "urn:a", "urn:a", false},
    {"##local", "urn:a", "", true},
    {"##local", "urn:a", "urn:a", false},
    {"##targetNamespace", "urn:a", "urn:a", true},
    {"##targetNamespace", "urn:a", "urn:b", false},
    {"##targetNamespace", "", "", true},
    {"urn:x", "urn:t", "urn:x", true},
    {"urn:x", "urn:t", "", true},
    {"urn:x", "urn:t", "urn:y", false},
    // Only the first token of a list is read as a keyword.
    {"##any urn:x", "", "urn:q", true},
    {"##local urn:x", "", "urn:x", false},
    {"##local urn:x", "", "", true},
    {"##other urn:x", "urn:x", "urn:x", false},
    // A literal first token is compared through the whole list, and later tokens are
    // empty: they accept the empty namespace and the whole list, and nothing else.
    {"urn:x ##any", "", "urn:x ##any", true},
    {"urn:x ##any", "", "", true},
    {"urn:x ##any", "", "urn:x", false},
    {"urn:x urn:y", "", "urn:y", false},
    {"", "", "", true},
    {"", "", "urn:a", false},
    // Exact comparison, by bytes and length.
    {"urn:x", "", "URN:X", false},
    {"urn:x", "", "urn:x ", false},
};

TEST(NamespaceRestrictions, DecidedByTheFirstTokenAndTestNamespaceThrowsWhereRefused) {
    for (const NamespaceCase& c : kNamespaceCases) {
        SCOPED_TRACE(std::string("restriction [") + c.restriction + "] target [" + c.target + "] namespace [" +
                     c.namespaceUri + "]");
        EXPECT_EQ(c.valid, CXmlObjectHelper::IsNamespaceValid(c.namespaceUri, c.restriction, c.target));
        if (c.valid) {
            EXPECT_NO_THROW(CXmlObjectHelper::TestNamespace(c.namespaceUri, c.restriction, c.target));
        } else {
            EXPECT_THROW(CXmlObjectHelper::TestNamespace(c.namespaceUri, c.restriction, c.target),
                         CQvInvalidNamespaceException);
        }
    }
    EXPECT_EQ(
        "Invalid namespace [urn:y]. The namespace must be one of [urn:x] where the target namespace is [urn:t]",
        FailureOf<CQvInvalidNamespaceException>([] { CXmlObjectHelper::TestNamespace("urn:y", "urn:x", "urn:t"); }));
}

TEST(ElementNameMatch, NeedsNameAndNamespaceUnlessIgnored) {
    CXmlDocument document;
    document.LoadXml("<r xmlns='urn:a'><e/><f xmlns='urn:b'/></r>");
    CXmlElement* const e = document.GetDocumentElement()->GetFirstElement();
    CXmlElement* const f = e->GetNextSiblingElement();
    CXmlSerializationContext context, ignoring, noNamespaces;
    ignoring.SetIgnoreNamespaces(true);
    noNamespaces.SetSchemaType(SchemaType_NoNamespaces);
    const struct {
        const CXmlSerializationContext& context;
        CXmlElement* element;
        const char* name;
        const char* namespaceUri;
        bool matches;
    } cases[] = {
        {context, e, "e", "urn:a", true},        {context, e, "e", "urn:b", false},
        {context, e, "E", "urn:a", false},       {context, f, "e", "urn:b", false},
        {context, nullptr, "e", "urn:a", false}, {ignoring, f, "f", "urn:other", true},
        {ignoring, f, "e", "urn:b", false},      {noNamespaces, f, "f", "", true},
        {noNamespaces, f, "g", "urn:b", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.matches, CXmlObjectHelper::DoesElementNameMatch(c.context, c.element, c.name, c.namespaceUri))
            << c.name << " " << c.namespaceUri;

    // The object base takes a null text as empty.
    QvXmlTest::CRecorder object;
    EXPECT_TRUE(object.DoesElementNameMatch(context, e, "e", "urn:a"));
    EXPECT_FALSE(object.DoesElementNameMatch(context, e, "e", nullptr));
    EXPECT_NO_THROW(object.TestNamespace(nullptr, "urn:x", "urn:t"));
    EXPECT_THROW(object.TestNamespace("urn:a", "##local", nullptr), CQvInvalidNamespaceException);
    EXPECT_FALSE(object.IsNamespaceValid("urn:a", "##other", "urn:a"));
}

} // namespace
