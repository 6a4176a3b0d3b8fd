#include "binding/XmlObjectBase.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "support/Recorder.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

using namespace QvXmlLib10;
using QvXmlTest::CRecorder;

TEST(ObjectBase, ReferenceCountStartsAtZeroAndOnlyTheReleaseReachingZeroDeletes) {
    int destroyed = 0;
    CRecorder* object = new CRecorder(&destroyed);
    EXPECT_EQ(object->AddRef(), 1);
    EXPECT_EQ(object->AddRef(), 2);
    EXPECT_EQ(object->Release(), 1);
    EXPECT_EQ(destroyed, 0);
    EXPECT_EQ(object->Release(), 0);
    EXPECT_EQ(destroyed, 1);

    // A Release below zero does not delete.
    {
        CRecorder onStack(&destroyed);
        EXPECT_EQ(onStack.Release(), -1);
        EXPECT_EQ(destroyed, 1);
        EXPECT_EQ(onStack.AddRef(), 0);
        EXPECT_EQ(destroyed, 1); // only a Release that reaches 0 deletes
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(ObjectBase, AddRefAndReleaseFromSeveralThreads) {
    int destroyed = 0;
    CRecorder* object = new CRecorder(&destroyed);
    object->AddRef();
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&] {
            while (!go)
                std::this_thread::yield();
            for (int i = 0; i < 20000; ++i) {
                object->AddRef();
                object->Release();
            }
        });
    }
    go = true;
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(destroyed, 0);
    EXPECT_EQ(object->Release(), 0);
    EXPECT_EQ(destroyed, 1);
}

TEST(ObjectBase, SmartPointerHoldsOneReference) {
    int destroyed = 0;
    {
        CSmartPtr<CRecorder> first(new CRecorder(&destroyed));
        {
            CSmartPtr<CRecorder> second = first;
            CSmartPtr<CXmlObjectBase> asBase = second;
            EXPECT_EQ(first->AddRef(), 4);
            first->Release();
        }
        CSmartPtr<CRecorder> moved = std::move(first);
        EXPECT_FALSE(first);
        EXPECT_EQ(destroyed, 0);
        moved = moved; // self-assignment keeps the object
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);

    CSmartPtr<CRecorder> reset(new CRecorder(&destroyed));
    reset.Reset();
    EXPECT_EQ(destroyed, 2);
}

TEST(ObjectBase, PropertyChecks) {
    CRecorder value;
    value.SetElementName("street");
    EXPECT_NO_THROW(CXmlObjectBase::Throw_IfPropertyIsNull(&value, "Name"));
    EXPECT_NO_THROW(CXmlObjectBase::Throw_IfElementNameDiffers(nullptr, "city"));
    EXPECT_NO_THROW(CXmlObjectBase::Throw_IfElementNameDiffers(&value, "street"));
    EXPECT_EQ("The Property [Name] is mandatory, it may node be NULL",
              FailureOf<CQvInvalidParamException>([] { CXmlObjectBase::Throw_IfPropertyIsNull(nullptr, "Name"); }));
    EXPECT_EQ("This property requrires an element with the name city the element being set has the element name street",
              FailureOf<CQvInvalidParamException>([&] { CXmlObjectBase::Throw_IfElementNameDiffers(&value, "city"); }));
}

namespace {

struct ChoiceCase {
    const char* description;
    std::string selectedBefore;
    std::function<void(std::string&)> call;
    std::string selectedAfter; // when it does not throw
    std::string message;       // when it throws
};

} // namespace

TEST(ObjectBase, ChoiceBookkeeping) {
    CRecorder some;
    const std::string busy = "The Property [a] is already set. Only one element within this class bay be set at a time";
    const ChoiceCase cases[] = {
        {"select null on empty sets it", "",
         [](std::string& s) { CXmlObjectBase::Choice_SelectElement("a", nullptr, s); }, "a", ""},
        {"select value on empty", "", [&](std::string& s) { CXmlObjectBase::Choice_SelectElement("a", &some, s); }, "a",
         ""},
        {"select null on itself clears", "a",
         [](std::string& s) { CXmlObjectBase::Choice_SelectElement("a", nullptr, s); }, "", ""},
        {"select value on itself keeps", "a",
         [&](std::string& s) { CXmlObjectBase::Choice_SelectElement("a", &some, s); }, "a", ""},
        {"select null on other changes nothing", "a",
         [](std::string& s) { CXmlObjectBase::Choice_SelectElement("b", nullptr, s); }, "a", ""},
        {"select value on other throws", "a",
         [&](std::string& s) { CXmlObjectBase::Choice_SelectElement("b", &some, s); }, "", busy},
        {"collection grows on empty", "", [](std::string& s) { CXmlObjectBase::Choice_CollectionChanged("a", 2, s); },
         "a", ""},
        {"collection empty on empty", "", [](std::string& s) { CXmlObjectBase::Choice_CollectionChanged("a", 0, s); },
         "", ""},
        {"collection emptied clears", "a", [](std::string& s) { CXmlObjectBase::Choice_CollectionChanged("a", 0, s); },
         "", ""},
        {"collection of itself keeps", "a", [](std::string& s) { CXmlObjectBase::Choice_CollectionChanged("a", 3, s); },
         "a", ""},
        {"other empty collection changes nothing", "a",
         [](std::string& s) { CXmlObjectBase::Choice_CollectionChanged("b", 0, s); }, "a", ""},
        {"other collection grows throws", "a",
         [](std::string& s) { CXmlObjectBase::Choice_CollectionChanged("b", 1, s); }, "", busy},
        {"valid false clears", "a", [](std::string& s) { CXmlObjectBase::Choice_SetElementValid(false, "b", s); }, "",
         ""},
        {"valid true on itself keeps", "a",
         [](std::string& s) { CXmlObjectBase::Choice_SetElementValid(true, "a", s); }, "a", ""},
        {"valid true on empty throws without name", "",
         [](std::string& s) { CXmlObjectBase::Choice_SetElementValid(true, "a", s); }, "",
         "The Property  is already set. Only one element within this class bay be set at a time"},
        {"valid true on other throws", "a",
         [](std::string& s) { CXmlObjectBase::Choice_SetElementValid(true, "b", s); }, "",
         "The Property a is already set. Only one element within this class bay be set at a time"},
    };
    for (const ChoiceCase& c : cases) {
        std::string selected = c.selectedBefore;
        const std::string failure = FailureOf<CQvInvalidStateException>([&] { c.call(selected); });
        EXPECT_EQ(c.message.empty() ? "no exception" : c.message, failure) << c.description;
        EXPECT_EQ(c.message.empty() ? c.selectedAfter : c.selectedBefore, selected) << c.description;
    }
}

TEST(ObjectBase, FromXmlElementReadsTreeBuiltByHand) {
    CXmlDocument document;
    CXmlElement* root = document.AddDocElement("urn:orders", "order");
    root->AddAttribute("id", "17", "");
    CXmlDocument::AppendTextExcludingCR(root, "text");
    document.AddChildElement("urn:orders", "line");
    document.EndElement();
    document.AddChildElement("", "note");
    document.EndElement();
    document.EndElement();

    CRecorder object;
    object.SetElementName("before");
    object.SetElementName(nullptr);
    EXPECT_EQ(object.GetElementName(), "");
    EXPECT_EQ(object.FromXmlElement(root), nullptr);
    EXPECT_EQ(object.reads, 1);
    EXPECT_EQ(object.GetElementName(), "order");
    EXPECT_EQ(object.namespaceUri, "urn:orders");
    EXPECT_EQ(object.text, "text");
    EXPECT_EQ(object.attributes, (std::vector<CRecorder::Attribute>{{"id", "", "17"}}));
    EXPECT_EQ(object.children, (std::vector<std::string>{"{urn:orders}line", "{}note"}));
    EXPECT_FALSE(object.firstChildWasNull);

    // An element without children gives a null cursor.
    CXmlDocument empty;
    object.FromXmlElement(empty.AddDocElement("", "empty"), CXmlSerializationContext::m_defaultContext);
    EXPECT_TRUE(object.firstChildWasNull);
}
