// The version check, in a program of its own: the constructor reports a mismatch only
// for the first object of the process, so this program must not declare the matching
// version before its test runs.

#include "binding/XmlObjectBase.h"
#include "document/XmlDocument.h"
#include "foundation/BinaryData.h"
#include "foundation/QvException.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

using namespace QvXmlLib10;

namespace {

class CPlain : public CXmlObjectBase {
public:
    int reads = 0;
    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return ""; }
    std::string GetNamespace() const override { return ""; }

protected:
    void ToXml_Int(CXmlWriter*, bool, const char*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override {
        ++reads;
        return nullptr;
    }
};

std::string Banner(int major, int minor) {
    return "\n-----------------Version Mismatch-----------------\n"
           "Quiver Works XML 2012 - Version Mismatch Error\n"
           "Please ensure your generated code is the same version as this library (Quiver Runtime: v10.1, Generator: "
           "v" +
           std::to_string(major) + "." + std::to_string(minor) + ").\n";
}

} // namespace

TEST(VersionCheck, BannerOnceAtConstructionAndAtEveryEntryPoint) {
    // Never declared: the version is 0.0.
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    CPlain first;
    CPlain second;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), Banner(0, 0));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), Banner(0, 0));

    CXmlDocument document;
    CXmlElement* root = document.AddDocElement("", "r");
    SetGeneratorVersion(9, 3);
    for (int attempt = 0; attempt < 2; ++attempt) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        try {
            first.FromXmlElement(root);
            ADD_FAILURE() << "no exception";
        } catch (const CQvException& e) {
            EXPECT_EQ(typeid(e), typeid(CQvException));
            EXPECT_EQ(e.GetFullMessage(), "Wrong Version (Quiver Runtime: v10.1, Generator: v9.3)");
        }
        EXPECT_EQ(testing::internal::GetCapturedStdout(), Banner(9, 3));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), Banner(9, 3));
    }
    const std::string path = testing::TempDir() + "qvxml-version.xml";
    unsigned char bytes[] = "<r/>";
    const CBinaryData buffer(bytes, 4, false);
    const std::pair<const char*, std::function<void()>> entryPoints[] = {
        {"FromXml", [&] { first.FromXml("<r/>"); }},
        {"FromXml wide", [&] { first.FromXml(L"<r/>"); }},
        {"FromXmlStream", [&] { first.FromXmlStream(bytes, 4); }},
        {"FromXmlStream buffer", [&] { first.FromXmlStream(buffer); }},
        {"FromXmlFile", [&] { first.FromXmlFile("/nonexistent/file.xml"); }},
        {"ToXml", [&] { first.ToXml(); }},
        {"ToXmlStream", [&] { first.ToXmlStream(); }},
        {"ToXmlFile", [&] { first.ToXmlFile(path.c_str()); }},
    };
    for (const auto& entryPoint : entryPoints) {
        const char* entry = entryPoint.first;
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        try {
            entryPoint.second();
            ADD_FAILURE() << entry << ": no exception";
        } catch (const CQvException& e) {
            EXPECT_EQ(e.GetFullMessage(), "Wrong Version (Quiver Runtime: v10.1, Generator: v9.3)") << entry;
        }
        EXPECT_EQ(testing::internal::GetCapturedStdout(), Banner(9, 3)) << entry;
        testing::internal::GetCapturedStderr();
    }
    EXPECT_EQ(first.reads, 0);

    SetGeneratorVersion(10, 1);
    testing::internal::CaptureStdout();
    first.FromXmlElement(root);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(first.reads, 1);
}
