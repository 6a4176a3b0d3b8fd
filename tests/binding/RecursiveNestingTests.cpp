// A class of a recursive schema, read and written as deep as a document may nest, on a
// thread with a small stack (the refusal one level deeper is tested with the reader).

#include "binding/XmlGeneratedClass.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "foundation/QvException.h"
#include "internal/Limits.h"
#include "support/TestSupport.h"
#include "values/QvVariant.h"

#include <gtest/gtest.h>


#include <functional>
#include <string>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace {

CSmartPtr<CXmlObjectBase> CreateNode(int, const char*);

// Element n with an optional child n.
class CNode : public CXmlGeneratedClass {
public:
    CNode() { SetElementName("n"); }
    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return ""; }
    std::string GetNamespace() const override { return ""; }
    void AccessProperty(int, bool read, QvVariant& value) override {
        if (read)
            value = m_child;
        else
            m_child = value;
    }
    CParentElementInfo* GetParentElementInfo() override { return Tables().parent; }
    CElementInfo** GetClassElementInfo() override { return Tables().elements; }
    CAttributeInfo** GetClassAttributeInfo() override { return Tables().attributes; }
    void Init() override { m_child.SetInvalid(); }

private:
    struct CTables {
        CParentElementInfo* parent = new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, "n",
                                                            "", true, false, -1, ItemType_Invalid, nullptr, false);
        CElementInfo** elements = new CElementInfo* [2] {
            new CElementInfoSeqClsOpt("n", "", 0, XmlElementType_Element, CreateNode, 0), nullptr
        };
        CAttributeInfo** attributes = new CAttributeInfo* [1] { nullptr };
        ~CTables() { CleanMetaData(parent, elements, attributes); }
    };
    static CTables& Tables() {
        static CTables tables;
        return tables;
    }

    QvVariant m_child;
};

CSmartPtr<CXmlObjectBase> CreateNode(int, const char*) { return CSmartPtr<CXmlObjectBase>(new CNode()); }

std::string Nested(size_t depth) {
    std::string xml;
    for (size_t i = 0; i < depth; ++i)
        xml += "<n>";
    for (size_t i = 1; i < depth; ++i)
        xml += "</n>";
    return xml + (depth ? "</n>" : "");
}

using QvXmlTest::OnSmallStack;

} // namespace

TEST(RecursiveNesting, ClassReadAndWrittenAtTheLimitOnASmallStack) {
    const std::string xml = Nested(Internal::kMaxNestingDepth);
    std::string written, failure;
    OnSmallStack([&] {
        try {
            CSmartPtr<CNode> node(new CNode());
            node->FromXml(xml.c_str());
            written = node->ToXml(false, false);
        } catch (const CQvException& e) {
            failure = e.GetFullMessage();
        }
    });
    EXPECT_EQ(failure, "");
    // The innermost element has no child and is written empty.
    EXPECT_EQ(written, Nested(Internal::kMaxNestingDepth - 1).insert(Internal::kMaxNestingDepth * 3 - 3, "<n/>"));
}
