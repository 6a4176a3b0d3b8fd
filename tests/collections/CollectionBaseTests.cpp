#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "binding/XmlSerializationContext.h"
#include "collections/XmlCollection.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "support/Recorder.h"
#include "support/TestClasses.h"
#include "support/TestSupport.h"
#include "values/QvVariant.h"

using namespace QvXmlLib10;
using QvXmlTest::CObjectCol;
using QvXmlTest::CRecorder;
using QvXmlTest::CStringCol;

namespace {

// A collection of any objects; reading and writing are not its business here.
class CPlainCol : public CXmlCollection {
public:
    CPlainCol() = default;
    CPlainCol(int minOccurs, int maxOccurs) : CXmlCollection("e", "urn:c", minOccurs, maxOccurs) {}
    // The items in list order, walked both ways to prove the links.
    std::vector<CXmlObjectBase*> Forward() const {
        std::vector<CXmlObjectBase*> items;
        for (CNode* node = m_pFirst; node != nullptr; node = node->m_pNext)
            items.push_back(node->m_pItem);
        return items;
    }
    std::vector<CXmlObjectBase*> Backward() const {
        std::vector<CXmlObjectBase*> items;
        for (CNode* node = m_pLast; node != nullptr; node = node->m_pPrev)
            items.insert(items.begin(), node->m_pItem);
        return items;
    }

protected:
    void ToXml_Int(CXmlWriter*, bool, const char*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* first, const CXmlSerializationContext&, bool) override {
        return first;
    }
};

// Records the events it receives as "type[data]" with the source checked.
class CEventLog : public IEventSink {
public:
    explicit CEventLog(const CXmlObjectBase* expectedSource, const char* name = "")
        : m_expectedSource(expectedSource), m_name(name) {}
    void OnEvent(CXmlObjectBase* source, MsgType type, void* data) override {
        EXPECT_EQ(m_expectedSource, source);
        static const char* const kNames[] = {"change", "add", "addComplete", "remove", "removeComplete"};
        std::string entry = std::string(m_name) + kNames[type];
        if (type == MsgType_Remove || type == MsgType_RemoveComplete)
            entry += data ? "(" + std::to_string(*static_cast<int*>(data)) + ")" : "(null)";
        else if (data != nullptr)
            entry += "(" + DataName(data) + ")";
        m_log.push_back(entry);
        if (m_onEvent) m_onEvent();
    }
    std::function<std::string(void*)> DataName = [](void*) { return std::string("item"); };
    std::function<void()> m_onEvent;
    std::vector<std::string> m_log;

private:
    const CXmlObjectBase* m_expectedSource;
    const char* m_name;
};

using Log = std::vector<std::string>;

// Four items held by the fixture as well, so that each test can judge the
// collection's references by releasing the fixture's own.
class CollectionTest : public ::testing::Test {
protected:
    CollectionTest() : log(&col) {
        for (int i = 0; i < 4; ++i)
            items[i] = new CRecorder(&destroyed);
        log.DataName = [this](void* data) {
            for (int i = 0; i < 4; ++i)
                if (data == Item(i)) return "i" + std::to_string(i);
            return std::string("?");
        };
    }
    // The log and what its callbacks captured are gone before the collection clears.
    ~CollectionTest() override { col.RemoveEventListener(&log); }
    CXmlObjectBase* Item(int i) const { return items[i].Get(); }
    void LetGo() {
        for (CSmartPtr<CRecorder>& item : items)
            item.Reset();
    }

    int destroyed = 0;
    CPlainCol col;
    CSmartPtr<CRecorder> items[4];
    CEventLog log;
};

using Items = std::vector<CXmlObjectBase*>;

TEST_F(CollectionTest, AddRaisesAddLinksThenCompletesAndChanges) {
    col.AddEventListener(&log);
    col.AppendItem(items[0]);
    EXPECT_EQ((Log{"add(i0)", "addComplete(i0)", "change"}), log.m_log);
    EXPECT_EQ(1, col.GetCount());
    // The add event comes before anything changes; add complete after the link.
    std::vector<int> counts;
    log.m_onEvent = [&] { counts.push_back(col.GetCount()); };
    col.PrependItem(items[1]);
    EXPECT_EQ((std::vector<int>{1, 2, 2}), counts);
}

TEST_F(CollectionTest, RemoveAndClearRaiseEventsWithoutIndexAndReleaseTheItems) {
    for (const CSmartPtr<CRecorder>& item : items)
        col.AppendItem(item);
    const Items rest{Item(0), Item(2), Item(3)};
    LetGo();
    col.AddEventListener(&log);
    std::vector<int> counts;
    log.m_onEvent = [&] { counts.push_back(col.GetCount()); };
    col.Remove(1);
    EXPECT_EQ((Log{"remove(null)", "removeComplete(null)", "change"}), log.m_log);
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(rest, col.Forward());
    // Clear removes from the front, with the same three events per item.
    col.Clear();
    EXPECT_EQ(0, col.GetCount());
    EXPECT_EQ(12u, log.m_log.size());
    EXPECT_EQ((std::vector<int>{4, 3, 3, 3, 2, 2, 2, 1, 1, 1, 0, 0}), counts);
    EXPECT_EQ(4, destroyed);
}

TEST_F(CollectionTest, ListenersAreCalledPerRegistrationAndRemovedWholly) {
    CEventLog second(&col, "2:");
    col.AddEventListener(&log);
    col.AddEventListener(&second);
    col.AddEventListener(&log);
    col.AppendItem(items[0]);
    EXPECT_EQ((Log{"2:add(item)", "2:addComplete(item)", "2:change"}), second.m_log);
    EXPECT_EQ((Log{"add(i0)", "add(i0)", "addComplete(i0)", "addComplete(i0)", "change", "change"}), log.m_log);
    col.RemoveEventListener(&log);
    col.Clear();
    EXPECT_EQ(6u, log.m_log.size());
    EXPECT_EQ(6u, second.m_log.size());
}

TEST_F(CollectionTest, DestructionClearsWithEvents) {
    std::unique_ptr<CPlainCol> local(new CPlainCol());
    CEventLog localLog(local.get());
    local->AppendItem(items[0]);
    local->PrependItem(items[1]);
    local->AddEventListener(&localLog);
    LetGo();
    EXPECT_EQ(2, destroyed);
    local.reset();
    EXPECT_EQ((Log{"remove(null)", "removeComplete(null)", "change", "remove(null)", "removeComplete(null)", "change"}),
              localLog.m_log);
    EXPECT_EQ(4, destroyed);
}

TEST_F(CollectionTest, AddItemAtInsertsBeforeTheIndexAndAppendsAtTheCount) {
    col.AddItemAt(0, items[0]);
    col.AddItemAt(1, items[1]);
    col.AddItemAt(1, items[2]);
    col.AddItemAt(0, items[3]);
    const Items expected{Item(3), Item(0), Item(2), Item(1)};
    EXPECT_EQ(expected, col.Forward());
    EXPECT_EQ(expected, col.Backward());

    col.AddEventListener(&log);
    CSmartPtr<CRecorder> extra = new CRecorder(&destroyed);
    EXPECT_EQ("Index out of range", FailureOf<CQvInvalidParamException>([&] { col.AddItemAt(5, extra); }));
    EXPECT_EQ("Index out of range", FailureOf<CQvInvalidParamException>([&] { col.AddItemAt(-1, extra); }));
    EXPECT_TRUE(log.m_log.empty());
}

TEST_F(CollectionTest, NullNeighbourMeansTheEndBeforeAndTheStartAfter) {
    col.AppendItem(items[0]);
    col.AddBeforeItem(nullptr, items[1]);
    col.AddAfterItem(nullptr, items[2]);
    EXPECT_EQ((Items{Item(2), Item(0), Item(1)}), col.Forward());
    col.AddBeforeItem(items[0], items[3]);
    EXPECT_EQ((Items{Item(2), Item(3), Item(0), Item(1)}), col.Forward());
    col.Remove(1);
    // Behind the last item, and behind the first one.
    col.AddAfterItem(items[1], items[3]);
    col.AddAfterItem(items[2], items[3]);
    const Items expected{Item(2), Item(3), Item(0), Item(1), Item(3)};
    EXPECT_EQ(expected, col.Forward());
    EXPECT_EQ(expected, col.Backward());
    col.AddBeforeItem(items[2], items[1]);
    EXPECT_EQ((Items{Item(1), Item(2), Item(3), Item(0), Item(1), Item(3)}), col.Backward());
}

// A neighbour not in the collection fails after the add event; an index out of range before.
TEST_F(CollectionTest, RefusalsAndTheirEvents) {
    col.AppendItem(items[0]);
    col.AddEventListener(&log);
    EXPECT_EQ("The object was not found in the collection", FailureOf([&] { col.AddBeforeItem(items[1], items[2]); }));
    EXPECT_EQ("The object was not found in the collection",
              FailureOf<CQvInvalidParamException>([&] { col.AddAfterItem(items[1], items[2]); }));
    EXPECT_EQ((Log{"add(i2)", "add(i2)"}), log.m_log);
    EXPECT_EQ(1, col.GetCount());
    log.m_log.clear();
    // A null item is refused before any event.
    for (const std::function<void()>& add : std::vector<std::function<void()>>{
             [&] { col.AppendItem(nullptr); }, [&] { col.PrependItem(nullptr); }, [&] { col.AddItemAt(0, nullptr); },
             [&] { col.AddBeforeItem(nullptr, nullptr); }, [&] { col.AddAfterItem(nullptr, nullptr); }})
        EXPECT_EQ("A NULL item can not be added to the collection", FailureOf(add));
    EXPECT_TRUE(log.m_log.empty());
    col.AppendItem(items[1]);
    EXPECT_EQ("Index 2 is out of range, use 0 - 2", FailureOf<CQvInvalidParamException>([&] { col.Remove(2); }));
    EXPECT_EQ("Index -1 is out of range, use 0 - 2", FailureOf([&] { col.Remove(-1); }));
    EXPECT_EQ(2, col.GetCount());
}

TEST(CollectionBase, CountsAgainstTheBounds) {
    struct Case {
        int minOccurs, maxOccurs, count;
        const char* failure; // of ValidateCount; null when it passes
    };
    const Case cases[] = {
        {1, 1, 0, "The Minimum number of [e] elements allowed in this collection is 1"},
        {1, 1, 1, nullptr},
        {1, 1, 2, "The Maximum number of [e] elements allowed in this collection is 1"},
        {0, -1, 0, nullptr},
        {0, -1, 3, nullptr},
        {2, 3, 1, "The Minimum number of [e] elements allowed in this collection is 2"},
        {2, 3, 3, nullptr},
        // The upper bound is tested first.
        {5, 3, 4, "The Maximum number of [e] elements allowed in this collection is 3"},
    };
    CXmlSerializationContext strict;
    CXmlSerializationContext lenient;
    lenient.SetIgnoreInvalidCollectionCounts(true);
    for (const Case& c : cases) {
        int destroyed = 0;
        CPlainCol col(c.minOccurs, c.maxOccurs);
        for (int i = 0; i < c.count; ++i)
            col.AppendItem(new CRecorder(&destroyed));
        SCOPED_TRACE(std::to_string(c.minOccurs) + ".." + std::to_string(c.maxOccurs) + " with " +
                     std::to_string(c.count));
        EXPECT_EQ(c.failure == nullptr, col.IsValidCount(strict));
        if (c.failure)
            EXPECT_EQ(c.failure, FailureOf<CQvValidationException>([&] { col.ValidateCount(strict); }));
        else
            EXPECT_NO_THROW(col.ValidateCount(strict));
        EXPECT_TRUE(col.IsValidCount(lenient));
        EXPECT_NO_THROW(col.ValidateCount(lenient));
    }
}

TEST(CollectionBase, TargetNamespaceIsRefusedAndNoBoundsPassEmpty) {
    CPlainCol col(0, -1);
    EXPECT_EQ("CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection (program logic "
              "error)",
              FailureOf([&] { col.GetTargetNamespace(); }));
    // An empty collection made without bounds passes its count check.
    EXPECT_TRUE(CPlainCol().IsValidCount(CXmlSerializationContext()));
}

TEST(ChoiceReadCollection, ReadsOnceCountsTheReadAndChecksTheCount) {
    CXmlDocument document;
    document.LoadXml("<r xmlns='urn:t'><tag>1</tag><tag>2</tag><other/></r>");
    CXmlElement* const root = document.GetDocumentElement();
    CStringCol col("tag", 1, 2, true);
    CXmlSerializationContext context;

    CXmlElement* child = root->GetFirstElement();
    long count = 1;
    CXmlObjectBase::Choice_Read_Collection(&col, root, child, count, context);
    EXPECT_EQ(root->GetFirstElement(), child);
    EXPECT_EQ(1, count);
    EXPECT_EQ(0, col.GetCount());

    count = 0;
    CXmlObjectBase::Choice_Read_Collection(&col, root, child, count, context);
    ASSERT_NE(nullptr, child);
    EXPECT_EQ("other", child->GetLocalName());
    EXPECT_EQ(1, count);
    EXPECT_EQ((std::vector<std::string>{"1", "2"}), col.Values());

    // Nothing read: nothing moves, nothing is counted, and no count is checked.
    CStringCol empty("tag", 1, 2, true);
    count = 0;
    CXmlObjectBase::Choice_Read_Collection(&empty, root, child, count, context);
    EXPECT_EQ(0, count);
    EXPECT_EQ("other", child->GetLocalName());

    // The count of what it read is checked.
    CXmlDocument three;
    three.LoadXml("<r xmlns='urn:t'><tag/><tag/><tag/></r>");
    CXmlElement* const threeRoot = three.GetDocumentElement();
    CStringCol full("tag", 1, 2, true);
    child = threeRoot->GetFirstElement();
    EXPECT_EQ("The Maximum number of [tag] elements allowed in this collection is 2",
              FailureOf([&] { CXmlObjectBase::Choice_Read_Collection(&full, threeRoot, child, count, context); }));
    EXPECT_EQ(nullptr, child);
    EXPECT_EQ(0, count);
}

TEST(TypeCollection, ReadsMatchingSiblingsAndStopsAtTheFirstOther) {
    CXmlDocument document;
    document.LoadXml("<r xmlns='urn:t'><a> x </a><a>y</a><b>z</b><a>w</a></r>");
    CXmlElement* const first = document.GetDocumentElement()->GetFirstElement();
    CStringCol col("a", 0, -1, true);
    CXmlSerializationContext context;
    CXmlElement* const rest = CXmlObjectBase::FromXml_Int(&col, nullptr, first, context);
    ASSERT_NE(nullptr, rest);
    EXPECT_EQ("b", rest->GetLocalName());
    EXPECT_EQ((std::vector<std::string>{" x ", "y"}), col.Values());

    EXPECT_EQ(nullptr, CXmlObjectBase::FromXml_Int(&col, nullptr, rest->GetNextSiblingElement(), context));
    EXPECT_EQ(3, col.GetCount());
    EXPECT_EQ(nullptr, CXmlObjectBase::FromXml_Int(&col, nullptr, nullptr, context));
}

TEST(TypeCollection, NamespaceMustMatchUnlessIgnored) {
    CXmlDocument document;
    document.LoadXml("<r><a>1</a><a xmlns='urn:t'>2</a></r>");
    CXmlElement* const first = document.GetDocumentElement()->GetFirstElement();
    CStringCol col("a", 0, -1, true);
    CXmlSerializationContext context;
    EXPECT_EQ(first, CXmlObjectBase::FromXml_Int(&col, nullptr, first, context));
    EXPECT_EQ(0, col.GetCount());
    context.SetIgnoreNamespaces(true);
    EXPECT_EQ(nullptr, CXmlObjectBase::FromXml_Int(&col, nullptr, first, context));
    EXPECT_EQ((std::vector<std::string>{"1", "2"}), col.Values());
}

TEST(CollectionAttributes, AreThoseOfEveryItemInOrder) {
    CObjectCol col("Item", CObjectCol::Kind_Item, 1, 3);
    for (int n : {3, 1}) {
        QvXmlTest::CItem* item = new QvXmlTest::CItem();
        item->Property(QvXmlTest::CItem::P_n).SetI4(n);
        col.AppendItem(item);
    }
    QvXmlTest::CRecordingWriter writer;
    CXmlObjectBase::AttributesToXml_Int(&col, &writer, CXmlSerializationContext());
    EXPECT_EQ("@n{}=3 @n{}=1", writer.m_log);
}

TEST(VariantCollectionKind, HoldsACountedReference) {
    int destroyed = 0;
    CPlainCol* col = new CPlainCol();
    col->AppendItem(new CRecorder(&destroyed));
    QvVariant value;
    value.SetXmlCollection(col);
    EXPECT_EQ(ItemType_XmlCollection, value.GetItemType());
    {
        QvVariant copy(value);
        value.Clear();
        EXPECT_EQ(0, destroyed);
        EXPECT_EQ(col, copy.GetXmlCollection().Get());
        EXPECT_EQ("Invalid Type 28", FailureOf([&] { copy.GetType(); }));
    }
    // The last reference was the copy's: the collection and its item are gone.
    EXPECT_EQ(1, destroyed);
    value.SetXmlCollection(new CPlainCol());
    value.SetNil();
    EXPECT_EQ(nullptr, QvVariant(value).GetXmlCollection().Get());
}

} // namespace
