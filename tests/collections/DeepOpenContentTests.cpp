// Open content nested as deep as a document may be, on a thread with a small stack.

#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "foundation/QvException.h"
#include "internal/Limits.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>


#include <functional>
#include <string>

using namespace QvXmlLib10;

namespace {

const size_t kDepth = Internal::kMaxNestingDepth;

// `depth` nested elements "e", each start tag on a line of its own.
std::string Nested(size_t depth) {
    std::string xml;
    for (size_t i = 0; i < depth; ++i)
        xml += "<e>\n";
    for (size_t i = 0; i < depth; ++i)
        xml += "</e>";
    return xml;
}

using QvXmlTest::OnSmallStack;

size_t DepthOf(const CElement& element) {
    size_t depth = 1;
    for (CSmartPtr<CElementCol> children = element.GetElements(); children->GetCount() != 0;
         children = children->Item(0)->GetElements())
        ++depth;
    return depth;
}

} // namespace

// Reading, copying, cloning, writing and destroying stay within the stack of a small thread.
TEST(DeepOpenContent, ElementsAtTheLimitAreReadCopiedClonedAndWrittenOnASmallStack) {
    const std::string xml = Nested(kDepth);
    std::string written, clonedText;
    size_t depth = 0, copiedDepth = 0;
    OnSmallStack([&] {
        CElement element("e");
        element.FromXml(xml.c_str());
        depth = DepthOf(element);
        CSmartPtr<CElement> clone = element.Clone();
        clonedText = clone->ToXml(false, false);
        CElement copy(&element, nullptr);
        copiedDepth = DepthOf(copy);
        written = element.ToXml(false, false);
    });
    EXPECT_EQ(depth, kDepth);
    EXPECT_EQ(copiedDepth, kDepth);
    EXPECT_EQ(written, clonedText);
    EXPECT_EQ(written.size(), kDepth * std::string("<e>\n</e>").size());
}

TEST(DeepOpenContent, OneLevelDeeperIsRefusedWithTheLine) {
    CElement element("e");
    EXPECT_EQ(FailureOf([&] { element.FromXml(Nested(kDepth + 1).c_str()); }),
              "The document nests elements deeper than 500 levels at line 501");
}

// A tree built by hand can't be written deeper than a document can be read.
TEST(DeepOpenContent, WritingAHandBuiltTreeDeeperThanTheLimitIsRefused) {
    CElement root("e");
    CElement* innermost = &root;
    for (size_t i = 0; i < kDepth; ++i)
        innermost = innermost->GetElements()->Add("e").Get();
    EXPECT_EQ(FailureOf([&] { root.ToXml(false, false); }), "The elements to write nest deeper than 500 levels");
}
