
#include "binding/ClassfactoryBase.h"
#include "document/XmlDocument.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using QvXmlTest::CItem;

namespace {

#define XSI "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "

// A factory in the way of generated code: the type decides, and without one the
// element's name.
class CTestFactory : public CClassfactoryBase {
public:
    static CSmartPtr<CXmlObjectBase> CreateFromElement(CXmlElement* element) {
        if (GetElementTypeNamespaceUri(element) != QvXmlTest::kNs) return CSmartPtr<CXmlObjectBase>();
        std::string type = GetElementType(element);
        if (type.empty()) type = element->GetLocalName();
        if (type == "Item") return CSmartPtr<CXmlObjectBase>(new CItem);
        return CSmartPtr<CXmlObjectBase>();
    }
};

} // namespace

TEST(ClassFactory, TypeAndNamespaceOfTheTypeAttribute) {
    struct Case {
        const char* xml;
        const char* type;
        const char* namespaceUri;
    } cases[] = {
        {"<e xmlns=\"urn:y\" xmlns:a=\"urn:x\" " XSI "xsi:type=\"a:T\"/>", "T", "urn:x"},
        {"<e xmlns=\"urn:y\" " XSI "xsi:type=\"T\"/>", "T", "urn:y"},
        {"<e xmlns=\"urn:y\" " XSI "xsi:type=\"b:T\"/>", "T", "urn:y"},
        {"<e xmlns=\"urn:y\" type=\"a:T\"/>", "", "urn:y"},
        {"<e/>", "", ""},
        // The empty prefix is looked up too: it finds the default namespace.
        {"<p:e xmlns=\"urn:d\" xmlns:p=\"urn:p\" " XSI "xsi:type=\":T\"/>", "T", "urn:d"},
        {"<p:e xmlns:p=\"urn:p\" " XSI "xsi:type=\":T\"/>", "T", "urn:p"},
        // Only the first colon divides.
        {"<e xmlns:a=\"urn:a\" " XSI "xsi:type=\"a:b:T\"/>", "b:T", "urn:a"},
    };
    for (const Case& c : cases) {
        CXmlDocument document;
        document.LoadXml(c.xml);
        CXmlElement* const element = document.GetDocumentElement();
        EXPECT_EQ(CClassfactoryBase::GetElementType(element), c.type) << c.xml;
        EXPECT_EQ(CClassfactoryBase::GetElementTypeNamespaceUri(element), c.namespaceUri) << c.xml;
    }
    EXPECT_EQ(CClassfactoryBase::GetElementType(nullptr), "");
    EXPECT_EQ(CClassfactoryBase::GetElementTypeNamespaceUri(nullptr), "");
}

TEST(ClassFactory, APrefixResolvesByItsLastDeclarationInTheDocument) {
    CXmlDocument document;
    document.LoadXml("<r xmlns:a=\"urn:early\" " XSI "><c xsi:type=\"a:T\"/><d xmlns:a=\"urn:late\"/></r>");
    EXPECT_EQ(CClassfactoryBase::GetElementTypeNamespaceUri(document.GetDocumentElement()->GetFirstElement()),
              "urn:late");
}

TEST(ClassFactory, AnObjectWrittenUnderAnotherNameComesBackAsItsClass) {
    CSmartPtr<CItem> item(new CItem);
    item->SetElementName("Extra");
    item->Property(CItem::P_label).SetString("l");
    item->Property(CItem::P_n).SetI4(4);

    // With urn:t as default namespace the type needs no prefix.
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(QvXmlTest::kNs);
    const std::string text = item->ToXml(false, false, EOLType_LF, context);
    EXPECT_EQ(text, "<Extra xmlns=\"urn:t\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"Item\" "
                    "n=\"4\"><label>l</label></Extra>");

    CXmlDocument document;
    document.LoadXml(text.c_str());
    CSmartPtr<CXmlObjectBase> object = CTestFactory::CreateFromElement(document.GetDocumentElement());
    ASSERT_NE(dynamic_cast<CItem*>(object.Get()), nullptr);
    object->FromXmlElement(document.GetDocumentElement());
    EXPECT_EQ(object->ToXml(false, false, EOLType_LF, context), text);

    // With a prefix, the document's declaration resolves it.
    const std::string prefixed = item->ToXml(false, false);
    EXPECT_EQ(prefixed, "<AA:Extra xmlns:AA=\"urn:t\" xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" "
                        "AB:type=\"AA:Item\" n=\"4\"><AA:label>l</AA:label></AA:Extra>");
    CXmlDocument second;
    second.LoadXml(prefixed.c_str());
    object = CTestFactory::CreateFromElement(second.GetDocumentElement());
    ASSERT_NE(dynamic_cast<CItem*>(object.Get()), nullptr);
    object->FromXmlElement(second.GetDocumentElement());
    EXPECT_EQ(object->ToXml(false, false), prefixed);

    // An element whose type names no known class gets none.
    CXmlDocument unknown;
    unknown.LoadXml("<Item xmlns=\"urn:t\" " XSI "xsi:type=\"Other\"/>");
    EXPECT_FALSE(CTestFactory::CreateFromElement(unknown.GetDocumentElement()));
}
