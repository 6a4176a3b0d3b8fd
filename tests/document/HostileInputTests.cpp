// Input that once crashed or exhausted the text reader.

#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "internal/Limits.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib10;

namespace {

std::string LoadFailure(CXmlDocument& document, const std::string& xml) {
    try {
        document.LoadXml(xml.c_str());
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
    return "no exception";
}

} // namespace

// A carriage return as the very first character data is dropped before any text was kept.
TEST(HostileInput, CarriageReturnAsFirstTextLeavesNoText) {
    CXmlDocument document;
    document.LoadXml("<a>&#13;</a>");
    EXPECT_EQ(document.GetDocumentElement()->GetText(), "");
    document.LoadXml("<a>&#13;<b>&#13;</b>&#13;x&#13;</a>");
    EXPECT_EQ(document.GetDocumentElement()->GetText(), "x");
    EXPECT_EQ(document.GetDocumentElement()->GetFirstElement()->GetText(), "");
}

// Elements nest at most kMaxNestingDepth levels; the level beyond is refused with its
// line, and the elements read so far stay in the tree with their text.
TEST(HostileInput, NestingDeeperThanTheLimitIsRefusedWithItsLine) {
    const size_t limit = Internal::kMaxNestingDepth;
    std::string xml;
    for (size_t i = 0; i < limit; ++i)
        xml += "<e>t\n";
    std::string closing;
    for (size_t i = 0; i < limit; ++i)
        closing += "</e>";

    CXmlDocument document;
    document.LoadXml((xml + closing).c_str());
    size_t depth = 0;
    for (const CXmlElement* e = document.GetDocumentElement(); e; e = e->GetFirstElement(), ++depth)
        ASSERT_EQ(e->GetText(), "t\n") << depth; // each level keeps its own text
    EXPECT_EQ(depth, limit);

    EXPECT_EQ(LoadFailure(document, xml + "<e/>" + closing),
              "The document nests elements deeper than 500 levels at line 501");
    EXPECT_EQ(document.GetDocumentElement()->GetText(), "t\n");
}
