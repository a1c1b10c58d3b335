// Finding a story on the server: which calls are made, what is kept on the way, and what a failure ends with.

#include <quire/session/Dispatch2.h>

#include "story/StoryFixture.h"

using namespace Quire;
using FakeServer::Kind;
using FakeServer::QueueEntry;

namespace {

const StoryID wanted{5, 1, 2};

const HRESULT failures[] = {E_FAIL, E_ABORT, E_OUTOFMEMORY, hresult(0x8004040B), hresult(0x800706BA), -1};

const QueueEntry::Form noObjects[] = {QueueEntry::Null, QueueEntry::Number, QueueEntry::Text, QueueEntry::Nothing};

/// What a story's own look-up finds.
class StoryLookup : public StoryFixture
{
protected:
    /// Which story the look-up finds, null for none; the calls that it took remain.
    QString find(const StoryID &id = wanted, const QString &path = mail())
    {
        Story story;
        StoryID copy = id;
        session->GetSysReadRate();
        server.forgetCalls();
        const Orvex::IStory2Ptr found = StoryProbe::getStory(story, path, &copy);
        m_calls = server.calls();
        QString identifier = identifierOf(found);
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
        EXPECT_EQ(story.GetError(), 0);
        return identifier;
    }

    /// The calls of the last find().
    QStringList calls() const { return m_calls; }
    bool askedDirectly() const { return !m_calls.filter(text("GetStory(")).isEmpty(); }

private:
    QStringList m_calls;
};

/// What the static look-up with an index finds.
class StoryLookupAt : public StoryFixture
{
protected:
    void SetUp() override
    {
        StoryFixture::SetUp();
        add("3:7:8");
        add("4:9:9");
        add("5:1:2");
        server.direct[5] = server.queues[mail()].at(2).story; // where it must not be looked for
    }

    QString find(int index, bool *notFound, const QString &path = mail())
    {
        server.forgetCalls();
        const Orvex::IStory2Ptr found = Story::GetStory(path, wanted, index, notFound);
        m_calls = server.calls();
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
        EXPECT_EQ(m_calls.filter(text("GetStory(")), QStringList());
        return identifierOf(found);
    }

    QStringList calls() const { return m_calls; }

private:
    QStringList m_calls;
};

} // namespace

// ---- the walk -------------------------------------------------------------------------------------------------------

TEST_F(StoryLookup, WalksByPositionFromTheBeginningAndEndsAtTheStory)
{
    add("3:7:8");
    add("4:1:2");
    add("5:1:2");
    add("6:1:2");
    EXPECT_EQ(find(), text("5:1:2"));
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 0)", "MAIL#3.get_StoryUnique()", "MAIL.get_Item(VT_INT 1)",
                              "MAIL#4.get_StoryUnique()", "MAIL.get_Item(VT_INT 2)", "MAIL#5.get_StoryUnique()"}));
}

TEST_F(StoryLookup, IsUnderTheLabelOfTheLookupWhenNobodyHoldsTheLock)
{
    add("4:1:2");
    const LockDebugging labels;
    Story story;
    StoryID id = wanted;
    server.storiesExist = false;
    server.forgetCalls();
    StoryProbe::getStory(story, mail(), &id);
    EXPECT_EQ(callsWithLabels(),
              texts({"MAIL.get_Item(VT_INT 0) under Orvex GetStory", "MAIL#4.get_StoryUnique() under Orvex GetStory",
                     "MAIL.get_Item(VT_INT 1) under Orvex GetStory", "get_Connected() under Orvex GetStory",
                     "GetStory(MAIL, 5, 0, 0) under Orvex GetStory"}));
}

TEST_F(StoryLookup, ReadsIdentifiersAsTheServerWritesThem)
{
    add("ID 5:1:2");
    EXPECT_EQ(find(), text("ID 5:1:2"));
}

TEST_F(StoryLookup, TakesAnObjectThatIsHandedOutAsUnknown)
{
    const auto story = add("5:1:2");
    server.queues[mail()][0].form = QueueEntry::Unknown;
    EXPECT_EQ(find(), text("5:1:2"));
    EXPECT_EQ(story->references, 0);
}

TEST_F(StoryLookup, TakesAnAnswerThatIsNoFailure)
{
    add("5:1:2");
    server.queues[mail()][0].result = S_FALSE;
    EXPECT_EQ(find(), text("5:1:2"));
}

TEST_F(StoryLookup, DoesNotLookIntoTheCacheOfStories)
{
    add("5:1:2");
    const IDispatchPtr other(fetch(0));
    const StoryID id{5, 0, 0};
    session->AddStoryToCache(mail(), &id, other);
    find();
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 0)", "MAIL#5.get_StoryUnique()"}));
}

TEST_F(StoryLookup, FetchesTheQueueWhenItIsNotAtHand)
{
    add("5:1:2");
    session->RemoveDirFromCache(mail());
    EXPECT_EQ(find(), text("5:1:2"));
    EXPECT_GT(calls().indexOf(text("MAIL.get_Item(VT_INT 0)")), 0);
    EXPECT_TRUE(find() == text("5:1:2") && calls().first() == text("MAIL.get_Item(VT_INT 0)"));
}

// ---- what is kept on the way ----------------------------------------------------------------------------------------

TEST_F(StoryLookup, KeepsAPassedStoryOfAnotherNumberUnderItsOwn)
{
    add("4:1:2");
    add("5:1:2");
    find();
    EXPECT_EQ(cached(4), text("4:1:2"));
}

TEST_F(StoryLookup, KeepsAPassedStoryThatIsWhollyDifferentUnderItsOwnNumber)
{
    add("4:8:9");
    add("5:1:2");
    find();
    EXPECT_EQ(cached(4), text("4:8:9"));
}

TEST_F(StoryLookup, KeepsAPassedStoryOfTheSameNumberThatIsOtherwiseDifferent)
{
    add("5:8:9");
    add("5:1:2");
    EXPECT_EQ(find(), text("5:1:2"));
    EXPECT_EQ(cached(5), text("5:8:9"));
}

TEST_F(StoryLookup, SkipsAPassedStoryOfWhichOneLaterPartDiffers)
{
    add("4:8:2");
    add("6:1:9");
    add("5:8:2");
    add("5:1:9");
    add("5:1:2");
    EXPECT_EQ(find(), text("5:1:2"));
    for (const qint32 number : {4, 5, 6})
        EXPECT_EQ(cached(number), QString());
}

TEST_F(StoryLookup, DoesNotKeepTheStoryThatItFinds)
{
    add("5:1:2");
    find();
    EXPECT_EQ(cached(5), QString());
}

TEST_F(StoryLookup, KeepsStoriesUnderThePathAsItWasGiven)
{
    add("4:8:9");
    add("5:1:2");
    find(wanted, text("mail"));
    EXPECT_EQ(cached(4), QString());
    const StoryID id{4, 0, 0};
    EXPECT_TRUE(session->GetCachedStory(text("mail"), &id, true));
}

TEST_F(StoryLookup, KeepsTheHandlesAndNothingElse)
{
    const auto passed = add("4:8:9");
    const auto skipped = add("5:8:2");
    const auto found = add("5:1:2");
    find();
    EXPECT_EQ(passed->references, 1);
    EXPECT_EQ(skipped->references, 0);
    EXPECT_EQ(found->references, 0);
}

TEST_F(StoryLookup, PassesAStoryThatDoesNotTellItsIdentifier)
{
    add("4:8:9");
    add("5:1:2");
    int asked = 0;
    server.onCall = [&](const QString &operation) {
        if (operation == text("get_StoryUnique"))
            ++asked == 1 ? server.fail(operation, E_FAIL) : server.mend();
    };
    EXPECT_EQ(find(), text("5:1:2"));
    server.onCall = nullptr;
    EXPECT_EQ(cached(4), QString());
    EXPECT_EQ(cached(0), QString());
}

TEST_F(StoryLookup, ReadsAMissingIdentifierAsZeros)
{
    server.queues[mail()].append({std::make_shared<FakeServer::StoryData>(QString())});
    add("5:1:2");
    EXPECT_EQ(find(), text("5:1:2"));
    const StoryID zeros{0, 0, 0};
    EXPECT_TRUE(session->GetCachedStory(mail(), &zeros, true));
}

// ---- the end of the walk --------------------------------------------------------------------------------------------

TEST_F(StoryLookup, AsksTheServerDirectlyAfterTheEnd)
{
    add("4:8:9");
    server.direct[5] = std::make_shared<FakeServer::StoryData>(text("5:1:2"));
    EXPECT_EQ(find(), text("5:1:2"));
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 0)", "MAIL#4.get_StoryUnique()", "MAIL.get_Item(VT_INT 1)",
                              "get_Connected()", "GetStory(MAIL, 5, 0, 0)"}));
    EXPECT_EQ(cached(5), text("5:1:2"));
}

TEST_F(StoryLookup, TakesWhatTheServerGivesDirectlyWhateverItsIdentifier)
{
    server.direct[5] = std::make_shared<FakeServer::StoryData>(text("77:7:7"));
    EXPECT_EQ(find(), text("77:7:7"));
}

TEST_F(StoryLookup, EndsAtAPositionThatHoldsNoObject)
{
    for (const QueueEntry::Form form : noObjects) {
        server.queues[mail()] = {{nullptr, form}};
        add("5:1:2");
        server.storiesExist = false;
        EXPECT_EQ(find(), QString()) << form;
        EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 0)", "get_Connected()", "GetStory(MAIL, 5, 0, 0)"})) << form;
    }
}

TEST_F(StoryLookup, EndsAtAnObjectThatIsNoStory)
{
    server.queues[mail()] = {{nullptr}};
    add("5:1:2");
    server.storiesExist = false;
    EXPECT_EQ(find(), QString());
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 0)", "get_Connected()", "GetStory(MAIL, 5, 0, 0)"}));
}

TEST_F(StoryLookup, EndsAtAnUnknownThatIsNoDispatch)
{
    add("5:1:2");
    server.queues[mail()][0].form = QueueEntry::Unknown;
    server.refuse(Kind::Story, __uuidof(IDispatch), E_NOINTERFACE);
    server.storiesExist = false;
    EXPECT_EQ(find(), QString());
    EXPECT_TRUE(askedDirectly());
}

TEST_F(StoryLookup, AsksDirectlyWhenThePathIsADirectory)
{
    server.direct[5] = std::make_shared<FakeServer::StoryData>(text("5:1:2"));
    session->GetCachedDir(text("NEWS"));
    EXPECT_EQ(find(wanted, text("NEWS")), text("5:1:2"));
    EXPECT_EQ(calls(), texts({"get_Connected()", "GetStory(NEWS, 5, 0, 0)"}));
}

TEST_F(StoryLookup, AsksDirectlyWhenThePathIsNotThere)
{
    server.direct[5] = std::make_shared<FakeServer::StoryData>(text("5:1:2"));
    EXPECT_EQ(find(wanted, text("NOWHERE")), text("5:1:2"));
    EXPECT_EQ(calls().last(), text("GetStory(NOWHERE, 5, 0, 0)"));
}

TEST_F(StoryLookup, AsksDirectlyWhenTheQueueIsNoQueueHere)
{
    add("5:1:2");
    server.direct[5] = std::make_shared<FakeServer::StoryData>(text("5:3:3"));
    server.refuse(Kind::Queue, __uuidof(Orvex::IQueue2), E_NOINTERFACE);
    EXPECT_EQ(find(), text("5:3:3"));
}

TEST_F(StoryLookup, FindsNothingWhenTheServerHasNoSuchStory)
{
    server.storiesExist = false;
    EXPECT_EQ(find(), QString());
}

TEST_F(StoryLookup, FindsNothingWhenNotSignedOn)
{
    add("5:1:2");
    session->Disconnect();
    EXPECT_EQ(find(), QString());
    EXPECT_EQ(calls().filter(text("get_Connected()")), calls());
}

TEST_F(StoryLookup, KeepsADirectHandleThatIsNoStory)
{
    server.direct[5] = nullptr;
    Story story = open(wanted);
    EXPECT_FALSE(story.IsLoaded());
    EXPECT_TRUE(StoryProbe::handle(story));
    add("5:1:2");
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(server.calls(), QStringList()); // known, and not looked for again
}

// ---- failures -------------------------------------------------------------------------------------------------------

TEST_F(StoryLookup, EndsWithNothingWhereverAnItemFails)
{
    for (const HRESULT failure : failures) {
        for (int position = 0; position < 4; ++position) {
            server.queues[mail()].clear();
            session->RemoveStoriesFromCache(mail());
            for (const char *identifier : {"2:7:7", "3:8:8", "4:9:9", "5:1:2"})
                add(identifier);
            server.queues[mail()][position].result = failure;
            EXPECT_EQ(find(), QString());
            EXPECT_FALSE(askedDirectly());
            EXPECT_EQ(calls().last(), QStringLiteral("MAIL.get_Item(VT_INT %1)").arg(position));
            for (int number = 2; number < 5; ++number) // what was passed before stays
                EXPECT_EQ(!cached(number).isNull(), number - 2 < position) << number << ", " << position;
        }
    }
}

TEST_F(StoryLookup, EndsWithNothingAtAnEndThatIsAFailure)
{
    add("4:8:9");
    server.endOfQueue = hresult(0x8004040B);
    EXPECT_EQ(find(), QString());
    EXPECT_FALSE(askedDirectly());
    EXPECT_EQ(cached(4), text("4:8:9"));
}

TEST_F(StoryLookup, EndsWithNothingWhenACallRaises)
{
    for (const char *operation : {"get_Item", "get_StoryUnique"}) {
        server.queues[mail()].clear();
        add("4:8:9");
        server.raise(text(operation), E_FAIL);
        EXPECT_EQ(find(), QString()) << operation;
        EXPECT_FALSE(askedDirectly()) << operation;
        server.mend();
    }
}

TEST_F(StoryLookup, EndsWithNothingWhenTheDirectCallFails)
{
    for (const HRESULT failure : failures) {
        server.fail(text("GetStory"), failure);
        EXPECT_EQ(find(), QString());
    }
}

TEST_F(StoryLookup, EndsWithNothingWhenTheDirectCallRaises)
{
    server.raise(text("GetStory"), E_FAIL);
    EXPECT_EQ(find(), QString());
}

TEST_F(StoryLookup, EndsWithNothingWhenTheQueueCannotBeAsked)
{
    add("5:1:2");
    server.refuse(Kind::Queue, __uuidof(Orvex::IQueue2), E_FAIL);
    EXPECT_EQ(find(), QString());
    EXPECT_EQ(calls(), QStringList());
}

TEST_F(StoryLookup, EndsWithNothingWhenFindingTheQueueRaises)
{
    server.raise(text("GetDirectory"), E_FAIL);
    EXPECT_EQ(find(wanted, text("NOWHERE")), QString());
    EXPECT_FALSE(askedDirectly());
}

TEST_F(StoryLookup, EndsWithNothingWhenAnEntryCannotBeAsked)
{
    for (const HRESULT failure : failures) {
        add("5:1:2");
        server.refuse(Kind::Story, __uuidof(Orvex::IStory2), failure);
        EXPECT_EQ(find(), QString());
        EXPECT_FALSE(askedDirectly());
        server.mend();
    }
}

TEST_F(StoryLookup, EndsWithNothingWhenAnUnknownCannotBeAsked)
{
    add("5:1:2");
    server.queues[mail()][0].form = QueueEntry::Unknown;
    server.refuse(Kind::Story, __uuidof(IDispatch), E_FAIL);
    EXPECT_EQ(find(), QString());
    EXPECT_FALSE(askedDirectly());
}

TEST_F(StoryLookup, SwallowsAKnownHandleThatCannotBeAsked)
{
    add("5:1:2", "");
    Story story = open(wanted);
    server.refuse(Kind::Story, __uuidof(Orvex::IStory2), E_FAIL);
    QString value = text("old");
    EXPECT_NO_THROW(story.GetField(text("title"), value));
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), 0);
    server.mend();
    server.forgetCalls();
    story.GetField(text("title"), value);
    EXPECT_EQ(server.calls(), texts({"MAIL#5.get_Field(title)"})); // the handle was kept
}

TEST_F(StoryLookup, IsRepeatedAfterAFailure)
{
    add("5:1:2");
    server.queues[mail()][0].result = E_FAIL;
    Story story = open(wanted);
    EXPECT_FALSE(StoryProbe::handle(story));
    server.queues[mail()][0].result = S_OK;
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(server.calls().last(), text("MAIL#5.get_Field(title)"));
}

// ---- with an index --------------------------------------------------------------------------------------------------

TEST_F(StoryLookupAt, TakesTheEntryAtTheIndexAndAsksForNoOther)
{
    bool notFound = true;
    EXPECT_EQ(find(2, &notFound), text("5:1:2"));
    EXPECT_FALSE(notFound);
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 2)", "MAIL#5.get_StoryUnique()"}));
    EXPECT_EQ(find(2, nullptr), text("5:1:2"));
}

TEST_F(StoryLookupAt, IsUnderItsLabel)
{
    const LockDebugging labels;
    Story::GetStory(mail(), wanted, 2, nullptr);
    EXPECT_EQ(callsWithLabels(),
              texts({"MAIL.get_Item(VT_INT 2) under Orvex GetStory", "MAIL#5.get_StoryUnique() under Orvex GetStory"}));
}

TEST_F(StoryLookupAt, WrongIndexIsNotFoundWithoutASearch)
{
    bool notFound = false;
    EXPECT_EQ(find(1, &notFound), QString());
    EXPECT_TRUE(notFound);
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 1)", "MAIL#4.get_StoryUnique()"}));
}

TEST_F(StoryLookupAt, WrongIndexWithoutNotFoundSearchesFromTheBeginning)
{
    EXPECT_EQ(find(1, nullptr), text("5:1:2"));
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 1)", "MAIL#4.get_StoryUnique()", "MAIL.get_Item(VT_INT 0)",
                              "MAIL#3.get_StoryUnique()", "MAIL.get_Item(VT_INT 1)", "MAIL#4.get_StoryUnique()",
                              "MAIL.get_Item(VT_INT 2)", "MAIL#5.get_StoryUnique()"}));
}

TEST_F(StoryLookupAt, NegativeIndexIsNotFoundWithoutACall)
{
    bool notFound = false;
    EXPECT_EQ(find(-1, &notFound), QString());
    EXPECT_TRUE(notFound);
    EXPECT_EQ(calls(), QStringList());
}

TEST_F(StoryLookupAt, NegativeIndexWithoutNotFoundSearches)
{
    EXPECT_EQ(find(-7, nullptr), text("5:1:2"));
    EXPECT_EQ(calls().first(), text("MAIL.get_Item(VT_INT 0)"));
}

TEST_F(StoryLookupAt, IndexBehindTheEndIsNotFound)
{
    bool notFound = false;
    EXPECT_EQ(find(3, &notFound), QString());
    EXPECT_TRUE(notFound);
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 3)"}));
}

TEST_F(StoryLookupAt, LargestIndexIsPassedOn)
{
    bool notFound = false;
    EXPECT_EQ(find(2147483647, &notFound), QString());
    EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 2147483647)"}));
}

TEST_F(StoryLookupAt, SearchThatReachesTheEndIsEmptyAndDoesNotAskDirectly)
{
    server.queues[mail()].removeLast();
    EXPECT_EQ(find(-1, nullptr), QString()); // find() sees to it that GetStory is not called
    EXPECT_EQ(calls().last(), text("MAIL.get_Item(VT_INT 2)"));
}

TEST_F(StoryLookupAt, KeepsTheOtherEntryUnderTheWantedNumber)
{
    bool notFound = false;
    find(0, &notFound);
    EXPECT_EQ(cached(5), text("3:7:8")); // not under its own
    EXPECT_EQ(cached(3), QString());
}

TEST_F(StoryLookupAt, KeepsTheOtherEntryOfAnotherNumberAloneUnderTheWantedNumber)
{
    server.queues[mail()][0].story->unique = text("3:1:2");
    bool notFound = false;
    find(0, &notFound);
    EXPECT_EQ(cached(5), text("3:1:2"));
}

TEST_F(StoryLookupAt, DoesNotKeepAnEntryOfWhichOneLaterPartDiffers)
{
    server.queues[mail()][0].story->unique = text("3:1:9");
    server.queues[mail()][1].story->unique = text("4:9:2");
    for (const int index : {0, 1}) {
        bool notFound = false;
        EXPECT_EQ(find(index, &notFound), QString());
        EXPECT_TRUE(notFound);
        for (const qint32 number : {3, 4, 5})
            EXPECT_EQ(cached(number), QString());
    }
}

TEST_F(StoryLookupAt, SearchKeepsPassedStoriesUnderTheirOwnNumbers)
{
    find(-1, nullptr);
    EXPECT_EQ(cached(3), text("3:7:8"));
    EXPECT_EQ(cached(4), text("4:9:9"));
    EXPECT_EQ(cached(5), QString());
}

TEST_F(StoryLookupAt, SearchAfterAWrongIndexKeepsBoth)
{
    find(0, nullptr);
    EXPECT_EQ(cached(3), text("3:7:8"));
    EXPECT_EQ(cached(4), text("4:9:9"));
    EXPECT_EQ(cached(5), text("3:7:8"));
}

TEST_F(StoryLookupAt, EntryThatDoesNotTellItsIdentifierIsNotTheStory)
{
    server.fail(text("get_StoryUnique"), E_FAIL);
    bool notFound = false;
    EXPECT_FALSE(Story::GetStory(mail(), wanted, 2, &notFound));
    EXPECT_TRUE(notFound);
    server.mend();
    EXPECT_EQ(cached(5), QString());
}

TEST_F(StoryLookupAt, EntryThatIsNoStoryIsNotFound)
{
    for (const QueueEntry::Form form : noObjects) {
        server.queues[mail()][1] = {nullptr, form};
        bool notFound = false;
        EXPECT_EQ(find(1, &notFound), QString());
        EXPECT_TRUE(notFound);
    }
    server.queues[mail()][1] = {nullptr};
    bool notFound = false;
    EXPECT_EQ(find(1, &notFound), QString());
    EXPECT_TRUE(notFound);
}

TEST_F(StoryLookupAt, NoQueueIsEmptyAndNotCalledNotFound)
{
    for (const char *path : {"NEWS", "NOWHERE", ""}) {
        bool notFound = true;
        EXPECT_EQ(find(2, &notFound, text(path)), QString());
        EXPECT_FALSE(notFound);
    }
}

TEST_F(StoryLookupAt, NotSignedOnIsEmptyAndNotCalledNotFound)
{
    session->Disconnect();
    bool notFound = true;
    EXPECT_EQ(find(2, &notFound), QString());
    EXPECT_FALSE(notFound);
}

TEST_F(StoryLookupAt, FailingEntryIsEmptyAndNotCalledNotFound)
{
    for (const HRESULT failure : failures) {
        server.queues[mail()][1].result = failure;
        bool notFound = true;
        EXPECT_EQ(find(1, &notFound), QString());
        EXPECT_FALSE(notFound);
        EXPECT_EQ(find(1, nullptr), QString()); // and the search is off
        EXPECT_EQ(calls(), texts({"MAIL.get_Item(VT_INT 1)"}));
    }
}

TEST_F(StoryLookupAt, FailureDuringTheSearchIsEmpty)
{
    for (int position = 0; position < 3; ++position) {
        server.queues[mail()][position].result = E_FAIL;
        EXPECT_EQ(find(-1, nullptr), QString());
        EXPECT_EQ(calls().last(), QStringLiteral("MAIL.get_Item(VT_INT %1)").arg(position));
        server.queues[mail()][position].result = S_OK;
    }
}

TEST_F(StoryLookupAt, FailureAtTheEndOfTheSearchIsEmpty)
{
    server.queues[mail()].removeLast();
    server.endOfQueue = hresult(0x8004040B);
    EXPECT_EQ(find(-1, nullptr), QString());
}

TEST_F(StoryLookupAt, RaisingCallsAreSwallowed)
{
    for (const char *operation : {"get_Item", "get_StoryUnique"}) {
        server.raise(text(operation), E_FAIL);
        bool notFound = true;
        EXPECT_FALSE(Story::GetStory(mail(), wanted, 2, &notFound)) << operation;
        EXPECT_FALSE(notFound) << operation;
        EXPECT_FALSE(Story::GetStory(mail(), wanted, -1, nullptr)) << operation;
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
        server.mend();
    }
}

TEST_F(StoryLookupAt, ObjectsThatCannotBeAskedAreSwallowed)
{
    for (const Kind kind : {Kind::Queue, Kind::Story}) {
        server.refuse(kind, kind == Kind::Queue ? __uuidof(Orvex::IQueue2) : __uuidof(Orvex::IStory2), E_FAIL);
        bool notFound = true;
        EXPECT_EQ(find(2, &notFound), QString());
        EXPECT_FALSE(notFound);
        server.mend();
    }
}

TEST_F(StoryLookupAt, HandsOutAReferenceOfItsOwn)
{
    const auto story = server.queues[mail()].at(2).story;
    {
        const Orvex::IStory2Ptr found = Story::GetStory(mail(), wanted, 2, nullptr);
        EXPECT_EQ(story->references, 1);
    }
    EXPECT_EQ(story->references, 0);
}
