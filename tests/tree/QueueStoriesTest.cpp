// What is done with the stories of a queue, its form and its reports.

#include <gmock/gmock.h>

#include <quire/forms/Field.h>
#include <quire/forms/FormData.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/session/StoryID.h>
#include <quire/story/Story.h>
#include <quire/tree/AttributeKeys.h>
#include <quire/tree/ListMutexLocker.h>

#include "tree/TreeFixture.h"
#include "tree/Waiting.h"

using namespace Quire;
using FakeServer::Kind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// The queue MAIL with three stories, loaded, and its label-telling calls.
class QueueStoriesTest : public TreeTest
{
protected:
    void SetUp() override
    {
        TreeTest::SetUp();
        server.data[text("MAIL")].number = 31;
        server.data[text("MAIL")].formName = text("RUNDOWN");
        addStory("MAIL", "10:2:3", "Ten");
        addStory("MAIL", "11:2:3", "Eleven");
        addStory("MAIL", "12:2:3", "Twelve");
        server.form = text("<zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell>"
                           "<zeko:cell idref=Writer length=20>By</zeko:cell></zeko:row></zeko:form>");
        queue = openQueue("MAIL");
    }
    void TearDown() override
    {
        queue.reset();
        TreeTest::TearDown();
    }

    /// Has the session know the story.
    void openOnce(int index) const { const std::unique_ptr<Story> story(queue->GetStory(index)); }

    static QString idOf(const std::unique_ptr<Story> &story)
    {
        QString id;
        if (story) {
            StoryID parts{};
            story->GetID(&parts);
            id = StoryID2String(parts, true);
        }
        return id;
    }
    template<typename Work>
    static HRESULT raised(const Work &work)
    {
        try {
            work();
        } catch (const _com_error &error) {
            return error.Error();
        }
        return S_OK;
    }
    bool isCached(int part1)
    {
        const StoryID id{part1, 0, 0};
        return session->GetCachedStory(text("MAIL"), &id, true) != nullptr;
    }

    std::unique_ptr<Queue> queue;
};

} // namespace

// ---- opening by index -----------------------------------------------------------------------------------------------

TEST_F(QueueStoriesTest, OpensTheStoryAtAnIndex)
{
    const std::unique_ptr<Story> story(queue->GetStory(1));
    ASSERT_TRUE(story);
    EXPECT_EQ(idOf(story), text("11:2:3"));
    EXPECT_TRUE(isCached(11));
}

TEST_F(QueueStoriesTest, OpeningAsksUnderThisLabel)
{
    const std::unique_ptr<Story> story(queue->GetStory(1));
    const QStringList calls = callsWithLabels();
    ASSERT_GE(calls.size(), 2);
    EXPECT_EQ(calls.at(0), text("MAIL.get_Item(VT_I4 1) under Queue::GetStory:get_StoryUnique"));
    EXPECT_EQ(calls.at(1), text("MAIL#11.get_StoryUnique() under Queue::GetStory:get_StoryUnique"));
}

TEST_F(QueueStoriesTest, TheQueueIsLookedUpUnderThisLabel)
{
    session->RemoveDirFromCache(text("MAIL"));
    const std::unique_ptr<Story> story(queue->GetStory(1));
    ASSERT_TRUE(story);
    EXPECT_TRUE(callsWithLabels().at(0).endsWith(text(" under Queue::GetStory:GetCachedDir")))
        << callsWithLabels().at(0).toStdString();
}

TEST_F(QueueStoriesTest, TheItemIsReadUnderTheListsLock)
{
    ListMutexLocker::sDebugListLocks = true;
    const FrameworkLog log;
    const std::unique_ptr<Story> story(queue->GetStory(1));
    ListMutexLocker::sDebugListLocks = false;
    EXPECT_EQ(listLocks(log.texts()), QStringList(text("Queue::GetStory()")));
}

TEST_F(QueueStoriesTest, OpensNothingOutsideTheList)
{
    for (const int index : {-1, 3, -2147483647 - 1, 2147483647})
        EXPECT_EQ(queue->GetStory(index), nullptr) << index;
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(QueueStoriesTest, OpensNothingOutsideTheListWhileAnotherThreadHoldsIt)
{
    queue->Lock();
    EXPECT_EQ(onOtherThread([this] { return queue->GetStory(3); }), nullptr);
    queue->Unlock();
}

TEST_F(QueueStoriesTest, OpensNothingWithoutASession)
{
    QuireCOM::UnloadCOM();
    server.forgetCalls();
    EXPECT_EQ(queue->GetStory(0), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(QueueStoriesTest, OpensNothingWhenTheQueueIsGone)
{
    server.remove(text("MAIL"));
    session->RemoveDirFromCache(text("MAIL"));
    EXPECT_EQ(queue->GetStory(0), nullptr);
}

TEST_F(QueueStoriesTest, OpensNothingWhenADirectoryHasTakenItsPlace)
{
    session->AddDirToCache(text("MAIL"), object("NEWS"));
    EXPECT_EQ(queue->GetStory(0), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(QueueStoriesTest, OpensNoStoryMarkedAsLockedAndDoesNotAskForIt)
{
    for (const char *value : {"", "E", "anything"}) {
        queue->Nth(1)->attributes.clear();
        queue->Nth(1)->AddAttr(text("_lock"), text(value));
        EXPECT_EQ(queue->GetStory(1), nullptr) << value;
    }
    EXPECT_THAT(server.calls(), IsEmpty());
    EXPECT_TRUE(std::unique_ptr<Story>(queue->GetStory(0))); // the others open
}

TEST_F(QueueStoriesTest, OpensNothingWhenTheServerHasNoStoryThere)
{
    server.queues[text("MAIL")][1].story.reset();
    EXPECT_EQ(queue->GetStory(1), nullptr);
    server.queues[text("MAIL")][1].form = FakeServer::QueueEntry::Null;
    EXPECT_EQ(queue->GetStory(1), nullptr);
    server.queues[text("MAIL")][1].form = FakeServer::QueueEntry::Nothing;
    EXPECT_EQ(queue->GetStory(1), nullptr);
    server.queues[text("MAIL")].removeLast();
    EXPECT_EQ(queue->GetStory(2), nullptr); // answered with E_NOINTERFACE
}

TEST_F(QueueStoriesTest, OpeningRaisesWhatTheServerRefuses)
{
    const QVector<const char *> calls{"get_Item", "get_StoryUnique"};
    for (const char *call : calls) {
        server.fail(text(call), E_ACCESSDENIED);
        EXPECT_EQ(raised([&] { std::unique_ptr<Story>(queue->GetStory(1)); }), E_ACCESSDENIED) << call;
        server.mend();
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
        EXPECT_FALSE(isCached(11));
        EXPECT_TRUE(queue->tryLock());
        queue->Unlock();
    }
}

// ---- opening by identifier ------------------------------------------------------------------------------------------

TEST_F(QueueStoriesTest, OpensTheStoryWithAnIdentifier)
{
    const StoryID id{12, 2, 77}; // the third part does not count
    const std::unique_ptr<Story> story(queue->GetStory(&id));
    EXPECT_EQ(idOf(story), text("12:2:3"));
}

TEST_F(QueueStoriesTest, OpensNoStoryThatIsNotInTheList)
{
    addStory("MAIL", "13:2:3", "Thirteen"); // on the server, but not loaded
    const StoryID unloaded{13, 2, 3};
    const StoryID otherPart{12, 3, 3};
    EXPECT_EQ(queue->GetStory(&unloaded), nullptr);
    EXPECT_EQ(queue->GetStory(&otherPart), nullptr);
    EXPECT_EQ(queue->GetStory(static_cast<const StoryID *>(nullptr)), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

// ---- creating -------------------------------------------------------------------------------------------------------

TEST_F(QueueStoriesTest, CreatesAStory)
{
    server.created = std::make_shared<FakeServer::StoryData>(text("20:5:6"));
    const std::unique_ptr<Story> story(queue->CreateStory(2));
    EXPECT_EQ(idOf(story), text("20:5:6"));
    EXPECT_TRUE(isCached(20));
    EXPECT_EQ(callsWithLabels().mid(0, 2), QStringList({text("MAIL.CreateStory(2) under Queue::CreateStory"),
                                                        text("MAIL#20.get_StoryUnique() under Queue::CreateStory")}));
    EXPECT_EQ(queue->Size(), 3); // the list stays as it is
}

TEST_F(QueueStoriesTest, CreatingPassesThePositionOn)
{
    server.created = std::make_shared<FakeServer::StoryData>(text("20:5:6"));
    for (const int position : {-1, 0, 2147483647})
        std::unique_ptr<Story>(queue->CreateStory(position));
    EXPECT_EQ(server.count(text("MAIL.CreateStory(-1)")), 1);
    EXPECT_EQ(server.count(text("MAIL.CreateStory(0)")), 1);
    EXPECT_EQ(server.count(text("MAIL.CreateStory(2147483647)")), 1);
}

TEST_F(QueueStoriesTest, CreatesNothingWhenTheServerGivesNoStory)
{
    EXPECT_EQ(queue->CreateStory(0), nullptr);
}

TEST_F(QueueStoriesTest, CreatesNothingWithoutSessionOrQueue)
{
    server.remove(text("MAIL"));
    session->RemoveDirFromCache(text("MAIL"));
    EXPECT_EQ(queue->CreateStory(0), nullptr);
    QuireCOM::UnloadCOM();
    server.forgetCalls();
    EXPECT_EQ(queue->CreateStory(0), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(QueueStoriesTest, CreatingRaisesWhatTheServerRefuses)
{
    server.created = std::make_shared<FakeServer::StoryData>(text("20:5:6"));
    for (const char *call : {"CreateStory", "get_StoryUnique"}) {
        server.fail(text(call), E_ACCESSDENIED);
        EXPECT_EQ(raised([&] { std::unique_ptr<Story>(queue->CreateStory(0)); }), E_ACCESSDENIED) << call;
        server.mend();
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    }
}

// ---- deleting -------------------------------------------------------------------------------------------------------

TEST_F(QueueStoriesTest, DeletesAStoryAndDropsItFromTheSession)
{
    openOnce(1);
    ASSERT_TRUE(isCached(11));
    server.forgetCalls();
    EXPECT_TRUE(queue->Delete(1));
    EXPECT_FALSE(isCached(11));
    EXPECT_THAT(callsWithLabels(), ElementsAre(text("MAIL.get_Item(VT_I4 1) under Queue::Delete"),
                                               text("MAIL#11.get_StoryUnique() under Queue::Delete"),
                                               text("MAIL.Delete(VT_I4 1) under Queue::Delete")));
    EXPECT_EQ(queue->Size(), 3);
}

TEST_F(QueueStoriesTest, DeletesAlsoAStoryThatDoesNotTellItsIdentifier)
{
    openOnce(1);
    server.fail(text("get_StoryUnique"), E_FAIL);
    EXPECT_TRUE(queue->Delete(1));
    EXPECT_EQ(server.count(text("MAIL.Delete(VT_I4 1)")), 1);
    server.mend();
    EXPECT_TRUE(isCached(11));
}

TEST_F(QueueStoriesTest, DeletesAlsoWhatIsNoStory)
{
    server.queues[text("MAIL")][1].story.reset();
    EXPECT_TRUE(queue->Delete(1));
    EXPECT_TRUE(queue->Delete(7)); // no such entry: the server is asked all the same
    EXPECT_EQ(server.count(text("MAIL.Delete(VT_I4 7)")), 1);
}

TEST_F(QueueStoriesTest, DeletingTellsWhetherItWorked)
{
    server.fail(text("Delete"), E_ACCESSDENIED);
    EXPECT_FALSE(queue->Delete(1));
    server.fail(text("Delete"), S_FALSE);
    EXPECT_TRUE(queue->Delete(1));
}

TEST_F(QueueStoriesTest, DeletingRaisesWhenTheEntryIsRefused)
{
    server.fail(text("get_Item"), E_ACCESSDENIED);
    EXPECT_EQ(raised([&] { queue->Delete(1); }), E_ACCESSDENIED);
    EXPECT_EQ(server.count(text("MAIL.Delete(VT_I4 1)")), 0);
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST_F(QueueStoriesTest, DeletesAllAndDropsThemFromTheSession)
{
    openOnce(0);
    openOnce(2);
    server.forgetCalls();
    EXPECT_TRUE(queue->DeleteAll());
    EXPECT_THAT(callsWithLabels(), ElementsAre(text("MAIL.DeleteAll() under Queue::DeleteAll")));
    EXPECT_FALSE(isCached(10));
    EXPECT_FALSE(isCached(12));
}

TEST_F(QueueStoriesTest, DeletingAllDropsThemAlsoWhenTheServerRefuses)
{
    openOnce(0);
    server.fail(text("DeleteAll"), E_ACCESSDENIED);
    EXPECT_FALSE(queue->DeleteAll());
    EXPECT_FALSE(isCached(10));
}

TEST_F(QueueStoriesTest, DeletesNothingWithoutSessionOrQueue)
{
    server.remove(text("MAIL"));
    session->RemoveDirFromCache(text("MAIL"));
    EXPECT_FALSE(queue->Delete(0));
    EXPECT_FALSE(queue->DeleteAll());
    QuireCOM::UnloadCOM();
    server.forgetCalls();
    EXPECT_FALSE(queue->Delete(0));
    EXPECT_FALSE(queue->DeleteAll());
    EXPECT_THAT(server.calls(), IsEmpty());
}

// ---- the form -------------------------------------------------------------------------------------------------------

namespace {

class OpenedQueue : public Queue
{
public:
    using Queue::GetFormA;
    using Queue::Queue;
};

} // namespace

TEST_F(QueueStoriesTest, TheFormIsAskedForUnderThisLabelAndKept)
{
    OpenedQueue opened(object("MAIL"));
    server.forgetCalls();
    FormData *const form = opened.GetFormA(object("MAIL"));
    ASSERT_TRUE(form);
    server.forgetCalls();
    EXPECT_EQ(opened.GetFormA(object("MAIL")), form);
    EXPECT_THAT(callsWithLabels(), ElementsAre(text("MAIL.get_FormName() under Queue::GetForm")));
}

TEST_F(QueueStoriesTest, AnotherObjectHasNoForm)
{
    OpenedQueue opened(object("MAIL"));
    server.forgetCalls();
    EXPECT_EQ(opened.GetFormA(object("NEWS")), nullptr);
    EXPECT_EQ(opened.GetFormA(IDispatchPtr()), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(QueueStoriesTest, ARefusedFormNameIsRaised)
{
    server.fail(text("get_FormName"), E_ACCESSDENIED);
    EXPECT_EQ(raised([&] { queue->FindField(text("title")); }), E_ACCESSDENIED);
    std::vector<Attribute> fields{{text("old"), QString(), 0}};
    EXPECT_EQ(raised([&] { queue->RetrieveFields(fields); }), E_ACCESSDENIED);
    EXPECT_TRUE(fields.empty());
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST_F(QueueStoriesTest, FindsFieldsWhateverTheirCase)
{
    Field *const writer = queue->FindField(text("WRITER"));
    ASSERT_TRUE(writer);
    EXPECT_EQ(writer->m_Id, text("Writer"));
    EXPECT_EQ(queue->FindField(text("writer")), writer);
    ASSERT_TRUE(queue->FindField(text("Title")));
}

TEST_F(QueueStoriesTest, FindsNoFieldThatIsNotThere)
{
    EXPECT_EQ(queue->FindField(text("writers")), nullptr);
    EXPECT_EQ(queue->FindField(QString()), nullptr);
}

TEST_F(QueueStoriesTest, TellsTheFieldsWithTheirLabels)
{
    std::vector<Attribute> fields{{text("old"), text("old"), 3}};
    queue->RetrieveFields(fields);
    ASSERT_EQ(fields.size(), 2u);
    EXPECT_EQ(fields[0].name, text("title"));
    EXPECT_EQ(fields[0].value, text("Title"));
    EXPECT_EQ(fields[0].flags, 0);
    EXPECT_EQ(fields[1].name, text("Writer"));
    EXPECT_EQ(fields[1].value, text("By"));
}

TEST_F(QueueStoriesTest, WithoutAFormThereAreNoFields)
{
    session->AddDirToCache(text("MAIL"), object("NEWS"));
    std::vector<Attribute> fields{{text("old"), text("old"), 3}};
    queue->RetrieveFields(fields);
    EXPECT_TRUE(fields.empty());
    EXPECT_EQ(queue->FindField(text("title")), nullptr);
}

// ---- reports --------------------------------------------------------------------------------------------------------

TEST_F(QueueStoriesTest, SwitchesTheReportsUnderThisLabel)
{
    queue->SetUpdate(true);
    EXPECT_TRUE(server.data[text("MAIL")].reports);
    queue->SetUpdate(false);
    EXPECT_FALSE(server.data[text("MAIL")].reports);
    EXPECT_THAT(callsWithLabels(), ElementsAre(text("MAIL.put_Update(-1) under Queue::SetUpdate"),
                                               text("MAIL.put_Update(0) under Queue::SetUpdate")));
}

TEST_F(QueueStoriesTest, SwitchingTheReportsWritesALine)
{
    QuireCOMMutex::sMutexDebugging = false;
    const FrameworkLog log;
    queue->SetUpdate(true);
    queue->SetUpdate(false);
    EXPECT_THAT(log.texts(), ElementsAre(text("Queue Update ON: 31 MAIL"), text("Queue Update OFF: 31 MAIL")));
    EXPECT_EQ(log.messages().at(0).type, QtDebugMsg);
}

TEST_F(QueueStoriesTest, ARefusedSwitchWritesTheLineAndIsRaised)
{
    QuireCOMMutex::sMutexDebugging = false;
    const FrameworkLog log;
    server.fail(text("put_Update"), E_ACCESSDENIED);
    EXPECT_EQ(raised([&] { queue->SetUpdate(true); }), E_ACCESSDENIED);
    EXPECT_THAT(log.texts(), ElementsAre(text("Queue Update ON: 31 MAIL")));
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST_F(QueueStoriesTest, TheLineHasNamesOutsideAsciiWhole)
{
    server.add(Kind::Queue, text("NEWS.Größe – 数"));
    const std::unique_ptr<Queue> other = openQueue("NEWS.Größe – 数");
    ASSERT_TRUE(other);
    QuireCOMMutex::sMutexDebugging = false;
    const FrameworkLog log;
    other->SetUpdate(true);
    EXPECT_THAT(log.texts(), ElementsAre(text("Queue Update ON: 0 NEWS.Größe – 数")));
}

TEST_F(QueueStoriesTest, WithoutSessionOrQueueNoSwitchIsMadeOrWritten)
{
    QuireCOMMutex::sMutexDebugging = false;
    server.remove(text("MAIL"));
    session->RemoveDirFromCache(text("MAIL"));
    const FrameworkLog log;
    queue->SetUpdate(true);
    EXPECT_FALSE(queue->GetUpdate());
    QuireCOM::UnloadCOM();
    queue->SetUpdate(true);
    EXPECT_FALSE(queue->GetUpdate());
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(QueueStoriesTest, TellsWhetherTheServerReports)
{
    EXPECT_FALSE(queue->GetUpdate());
    server.data[text("MAIL")].reports = true;
    EXPECT_TRUE(queue->GetUpdate());
    EXPECT_THAT(callsWithLabels(), ElementsAre(text("MAIL.get_Update() under Queue::GetUpdate"),
                                               text("MAIL.get_Update() under Queue::GetUpdate")));
    server.fail(text("get_Update"), E_ACCESSDENIED);
    EXPECT_EQ(raised([&] { queue->GetUpdate(); }), E_ACCESSDENIED);
}

TEST_F(QueueStoriesTest, AnyAnswerButFalseSaysThatTheServerReports)
{
    server.data[text("MAIL")].reports = true;
    server.yes = 1;
    EXPECT_TRUE(queue->GetUpdate());
}

TEST_F(QueueStoriesTest, LiveRefreshIsAsReadWhenTheQueueWasMade)
{
    EXPECT_FALSE(queue->GetLiveRefresh());
    server.data[text("MAIL")].flags = {0, 0, 1};
    EXPECT_FALSE(queue->GetLiveRefresh());
    EXPECT_TRUE(openQueue("MAIL")->GetLiveRefresh());
}

TEST_F(QueueStoriesTest, AQueueTellsAllItsFlagsWithoutASearcher)
{
    server.data[text("MAIL")].flags = {1 << 1, 1 << 7, 1 << 6};
    const std::unique_ptr<Queue> flagged = openQueue("MAIL");
    EXPECT_TRUE(flagged->FlagCheck(Attr_Indexed));
    EXPECT_TRUE(flagged->FlagCheck(Attr_Lock));
    EXPECT_TRUE(flagged->FlagCheck(Attr_Sorted));
    EXPECT_FALSE(flagged->FlagCheck(Attr_Inverted));
}

TEST_F(QueueStoriesTest, MakingAQueueAsksUnderTheseLabels)
{
    const IDispatchPtr mail = object("MAIL");
    const Queue other(mail);
    const QStringList calls = callsWithLabels();
    EXPECT_THAT(calls.mid(0, 4),
                ElementsAre(text("MAIL.get_Name() under Queue::Queue"), text("MAIL.get_QueueID() under Queue::Queue"),
                            text("MAIL.get_Flags() under Queue::Queue"),
                            text("MAIL.GetList(0, 100) under Queue::LoadListChunk:GetList")));
}

TEST_F(QueueStoriesTest, StoriesAreAppendedUnderTheListsLock)
{
    const IDispatchPtr mail = object("MAIL");
    ListMutexLocker::sDebugListLocks = true;
    const FrameworkLog log;
    const Queue other(mail);
    ListMutexLocker::sDebugListLocks = false;
    EXPECT_GE(listLocks(log.texts()).count(text("Queue::LoadListChunk()")), 3);
}
