#include "support/Recorder.h"

#include <atomic>
#include <thread>

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
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            while (!go)
                std::this_thread::yield();
            for (int i = 0; i < 10000; ++i) {
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

TEST(ObjectBase, ChoiceBookkeeping) {
    CRecorder some;
    const std::string busy = "The Property [a] is already set. Only one element within this class bay be set at a time";
    // call: 's' Choice_SelectElement (arg 1 passes an object, 0 null), 'c' Choice_CollectionChanged (arg the count),
    // 'v' Choice_SetElementValid (arg the flag).
    struct Case {
        const char* before;
        char call;
        const char* name;
        int arg;
        std::string after; // or the failure
    };
    const Case cases[] = {
        {"", 's', "a", 0, "a"},
        {"", 's', "a", 1, "a"},
        {"a", 's', "a", 0, ""},
        {"a", 's', "a", 1, "a"},
        {"a", 's', "b", 0, "a"},
        {"a", 's', "b", 1, busy},
        {"", 'c', "a", 2, "a"},
        {"", 'c', "a", 0, ""},
        {"a", 'c', "a", 0, ""},
        {"a", 'c', "a", 3, "a"},
        {"a", 'c', "b", 0, "a"},
        {"a", 'c', "b", 1, busy},
        {"a", 'v', "b", 0, ""},
        {"a", 'v', "a", 1, "a"},
        {"", 'v', "a", 1, "The Property  is already set. Only one element within this class bay be set at a time"},
        {"a", 'v', "b", 1, "The Property a is already set. Only one element within this class bay be set at a time"},
    };
    for (const Case& c : cases) {
        std::string selected = c.before;
        const std::string failure = FailureOf<CQvInvalidStateException>([&] {
            if (c.call == 's') CXmlObjectBase::Choice_SelectElement(c.name, c.arg ? &some : nullptr, selected);
            if (c.call == 'c') CXmlObjectBase::Choice_CollectionChanged(c.name, c.arg, selected);
            if (c.call == 'v') CXmlObjectBase::Choice_SetElementValid(c.arg != 0, c.name, selected);
        });
        const std::string where = std::string(c.before) + " " + c.call + " " + c.name + std::to_string(c.arg);
        EXPECT_EQ(failure == "no exception" ? selected : failure, c.after) << where;
        if (failure != "no exception") EXPECT_EQ(selected, c.before) << where;
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
