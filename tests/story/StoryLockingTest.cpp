// Locking, saving, and noticing that somebody else saved.

#include "story/StoryFixture.h"

using namespace Quire;

namespace {

class StoryLocking : public StoryFixture
{
protected:
    void SetUp() override
    {
        StoryFixture::SetUp();
        data = add("5:1:2", "<storyid>1</storyid>");
    }

    /// The answer of Lock to a server that answers \a result.
    bool lock(quint32 result)
    {
        server.fail(text("Lock"), hresult(result));
        Story story = open(fifth);
        holder = text("old");
        const bool locked = story.Lock(3, holder);
        EXPECT_EQ(story.GetError(), asLong(result));
        EXPECT_EQ(server.calls(), QStringList({text("MAIL#5.Lock(3)")}));
        return locked;
    }

    /// A story that is not there.
    Story missing()
    {
        server.queues.clear();
        server.storiesExist = false;
        Story story = open(fifth);
        StoryProbe::setLastError(story, E_FAIL);
        return story;
    }

    FakeServer::StoryDataPtr data;
    QString holder;
};

} // namespace

// ---- locking --------------------------------------------------------------------------------------------------------

TEST_F(StoryLocking, LocksUnderItsLabel)
{
    Story story = open(fifth);
    const LockDebugging labels;
    holder = text("old");
    EXPECT_TRUE(story.Lock(7, holder));
    EXPECT_EQ(holder, QString());
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.Lock(7) under Story::Lock")}));
}

TEST_F(StoryLocking, PassesLockTypesOnAsTheyAre)
{
    Story story = open(fifth);
    for (const int type : {0, 1, -1, 2147483647}) {
        story.Lock(type, holder);
        EXPECT_EQ(server.calls().last(), QStringLiteral("MAIL#5.Lock(%1)").arg(type));
        story.IsLocked(type);
        EXPECT_EQ(server.calls().last(), QStringLiteral("MAIL#5.IsLocked(%1)").arg(type));
    }
}

TEST_F(StoryLocking, IsGrantedBy0)
{
    EXPECT_TRUE(lock(0));
}

TEST_F(StoryLocking, IsGrantedByAnyCodeOfFacility0)
{
    for (const quint32 result : {0x80004005u, 0x80004001u, 0x8000FFFFu, 0x00000001u, 0x80000000u, 0xE0000005u}) {
        EXPECT_TRUE(lock(result)) << std::hex << result;
        EXPECT_EQ(holder, QString());
    }
}

TEST_F(StoryLocking, IsRefusedByAnyCodeOfAnotherFacility)
{
    for (const quint32 result :
         {0x80070005u, 0x80040405u, 0x00040000u, 0x00010000u, 0x10000000u, 0x90000000u, 0xFFFFFFFFu, 0x800706BAu}) {
        EXPECT_FALSE(lock(result)) << std::hex << result;
        EXPECT_EQ(holder, QString());
    }
}

TEST_F(StoryLocking, IsRefusedByTheCodeOfAnotherEditorInAnyFacility)
{
    for (const quint32 result : {0x8004040Eu, 0x8007040Eu, 0x8000040Eu, 0x0000040Eu, 0x1FFF040Eu, 0xFFFF040Eu}) {
        EXPECT_FALSE(lock(result)) << std::hex << result;
        EXPECT_EQ(holder, text("unknown"));
    }
}

TEST_F(StoryLocking, IsNotTheCodeOfAnotherEditorWhenMoreBitsAreSet)
{
    EXPECT_TRUE(lock(0x8000140E));
    EXPECT_EQ(holder, QString());
    EXPECT_FALSE(lock(0x8004840E));
    EXPECT_EQ(holder, QString());
}

TEST_F(StoryLocking, HolderIsTheSecondWord)
{
    const QPair<const char *, const char *> answers[] = {
        {"locked ann today", "ann"},
        {"locked ann", "ann"},
        {"a b c d", "b"},
        {"locked", ""},
        {"", ""},
        {" ann x", "ann"},
        {"by  ann", ""},
        {" ", ""},
        {"a\tb c", "c"},
        {"x \xc3\xa4nn y", "änn"},
    };
    for (const auto &answer : answers) {
        data->holder = text(answer.first);
        EXPECT_FALSE(lock(0x8004040E));
        EXPECT_EQ(holder, text(answer.second)) << answer.first;
    }
}

TEST_F(StoryLocking, TextOfAGrantedLockIsNotTheHolder)
{
    data->holder = text("locked ann today");
    EXPECT_TRUE(lock(0));
    EXPECT_EQ(holder, QString());
}

TEST_F(StoryLocking, TextOfAnyOtherRefusalIsNotTheHolder)
{
    data->holder = text("locked ann today");
    EXPECT_FALSE(lock(0x80070005));
    EXPECT_EQ(holder, QString());
}

TEST_F(StoryLocking, OfAStoryThatIsNotThereIsFalseWithoutError)
{
    Story story = missing();
    holder = text("old");
    EXPECT_FALSE(story.Lock(1, holder));
    EXPECT_EQ(holder, QString());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryLocking, KeepsNothingHere)
{
    Story story = open(fifth);
    EXPECT_TRUE(story.Lock(1, holder));
    EXPECT_FALSE(story.HasKeylock());
    EXPECT_FALSE(story.IsLocked(1)); // it is the server's to say
    EXPECT_TRUE(story.Unlock());
    EXPECT_EQ(server.calls().size(), 3);
}

// ---- unlocking ------------------------------------------------------------------------------------------------------

TEST_F(StoryLocking, UnlocksUnderItsLabel)
{
    Story story = open(fifth);
    StoryProbe::setLastError(story, E_FAIL);
    const LockDebugging labels;
    EXPECT_TRUE(story.Unlock());
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.Unlock() under Story::Unlock")}));
}

TEST_F(StoryLocking, RefusedUnlockIsFalseWithTheError)
{
    Story story = open(fifth);
    for (const quint32 result : {0x8004040Fu, 0x80004005u}) {
        server.fail(text("Unlock"), hresult(result));
        EXPECT_FALSE(story.Unlock());
        EXPECT_EQ(story.GetError(), asLong(result));
    }
}

TEST_F(StoryLocking, UnlockIsTrueForACodeThatIsNoFailure)
{
    Story story = open(fifth);
    server.fail(text("Unlock"), hresult(0x00070005));
    EXPECT_TRUE(story.Unlock());
    EXPECT_EQ(story.GetError(), 0x00070005);
}

TEST_F(StoryLocking, UnlockOfAStoryThatIsNotThereIsFalseWithoutError)
{
    Story story = missing();
    EXPECT_FALSE(story.Unlock());
    EXPECT_EQ(story.GetError(), 0);
}

// ---- asking ---------------------------------------------------------------------------------------------------------

TEST_F(StoryLocking, AsksUnderItsLabel)
{
    Story story = open(fifth);
    StoryProbe::setLastError(story, E_FAIL);
    const LockDebugging labels;
    EXPECT_FALSE(story.IsLocked(2));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.IsLocked(2) under Story::IsLocked")}));
}

TEST_F(StoryLocking, IsLockedForAnyAnswerBut0)
{
    Story story = open(fifth);
    for (const VARIANT_BOOL answer : {VARIANT_TRUE, VARIANT_BOOL(1), VARIANT_BOOL(-32768)}) {
        data->locked = answer;
        EXPECT_TRUE(story.IsLocked(2)) << answer;
    }
}

TEST_F(StoryLocking, IsNotLockedWhenTheCallFails)
{
    data->locked = VARIANT_TRUE;
    Story story = open(fifth);
    server.fail(text("IsLocked"), E_FAIL);
    EXPECT_FALSE(story.IsLocked(2));
    EXPECT_EQ(story.GetError(), asLong(E_FAIL));
}

TEST_F(StoryLocking, IsWhatACallSaysThatFailsAndAnswersAllTheSame)
{
    data->locked = VARIANT_TRUE;
    Story story = open(fifth);
    server.fail(text("IsLocked"), E_FAIL);
    server.failsWithAnswer = true;
    EXPECT_TRUE(story.IsLocked(2));
    EXPECT_EQ(story.GetError(), asLong(E_FAIL));
}

TEST_F(StoryLocking, StoryThatIsNotThereIsNotLockedWithoutError)
{
    Story story = missing();
    EXPECT_FALSE(story.IsLocked(2));
    EXPECT_EQ(story.GetError(), 0);
}

// ---- saving ---------------------------------------------------------------------------------------------------------

TEST_F(StoryLocking, SavesUnderItsLabelWithTheFlag)
{
    Story story = open(fifth);
    const LockDebugging labels;
    EXPECT_TRUE(story.Save(true));
    EXPECT_TRUE(story.Save(false));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(callsWithLabels(),
              QStringList({text("MAIL#5.Save(-1) under Story::Save"), text("MAIL#5.Save(0) under Story::Save")}));
}

TEST_F(StoryLocking, RefusedSaveIsFalseWithTheError)
{
    Story story = open(fifth);
    for (const quint32 result : {0x8004040Eu, 0x80004005u}) {
        server.fail(text("Save"), hresult(result));
        EXPECT_FALSE(story.Save(true));
        EXPECT_EQ(story.GetError(), asLong(result));
    }
    server.mend();
    EXPECT_TRUE(story.Save(true));
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryLocking, SaveIsTrueForACodeThatIsNoFailure)
{
    Story story = open(fifth);
    server.fail(text("Save"), S_FALSE);
    EXPECT_TRUE(story.Save(true));
    EXPECT_EQ(story.GetError(), 1);
}

TEST_F(StoryLocking, SaveOfAStoryThatIsNotThereIsFalseWithoutError)
{
    Story story = missing();
    EXPECT_FALSE(story.Save(true));
    EXPECT_EQ(story.GetError(), 0);
}

// ---- what raises ----------------------------------------------------------------------------------------------------

TEST_F(StoryLocking, RaisesWhatTheServerRaisesWithTheLastErrorCleared)
{
    Story story = open(fifth);
    const auto raises = [&](const char *operation, const auto &call) {
        server.raise(text(operation), E_FAIL);
        StoryProbe::setLastError(story, E_ABORT);
        EXPECT_THROW(call(), _com_error) << operation;
        EXPECT_EQ(story.GetError(), 0) << operation;
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u) << operation;
    };
    holder = text("old");
    raises("Lock", [&] { story.Lock(1, holder); });
    EXPECT_EQ(holder, QString());
    raises("Unlock", [&] { story.Unlock(); });
    raises("IsLocked", [&] { story.IsLocked(1); });
    raises("Save", [&] { story.Save(true); });
}

// ---- the header's identifier ----------------------------------------------------------------------------------------

TEST_F(StoryLocking, HeaderIsNotNewWhenNobodySaved)
{
    Story story = open(fifth);
    EXPECT_FALSE(story.UpdateHeaderID());
    EXPECT_FALSE(story.UpdateHeaderID());
}

TEST_F(StoryLocking, HeaderIsNewOnceAfterASave)
{
    Story story = open(fifth);
    data->markup[1] = text("<head><storyid>2</storyid></head>");
    EXPECT_TRUE(story.UpdateHeaderID());
    EXPECT_EQ(StoryProbe::headerStoryId(story), text("2"));
    EXPECT_FALSE(story.UpdateHeaderID());
}

TEST_F(StoryLocking, HeaderIsReadUnderItsLabel)
{
    Story story = open(fifth);
    const LockDebugging labels;
    story.UpdateHeaderID();
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_SectionXml(1) under static::HasNewHeaderID")}));
}

TEST_F(StoryLocking, HeaderIsComparedCaseSensitively)
{
    data->markup[1] = text("<head><storyid>0005abcd</storyid></head>");
    Story story = open(fifth);
    data->markup[1] = text("<head><storyid>0005ABCD</storyid></head>");
    EXPECT_TRUE(story.UpdateHeaderID());
}

TEST_F(StoryLocking, HeaderThatBecomesUnreadableIsNewAndEmpty)
{
    Story story = open(fifth);
    server.fail(text("get_SectionXml"), E_FAIL);
    EXPECT_TRUE(story.UpdateHeaderID());
    EXPECT_EQ(StoryProbe::headerStoryId(story), QString());
    EXPECT_FALSE(story.UpdateHeaderID());
    server.mend();
    EXPECT_TRUE(story.UpdateHeaderID());
}

TEST_F(StoryLocking, HeaderQuestionDoesNotTouchTheLastError)
{
    Story story = open(fifth);
    StoryProbe::setLastError(story, E_ABORT);
    data->markup[1] = text("<head><storyid>2</storyid></head>");
    EXPECT_TRUE(story.UpdateHeaderID());
    EXPECT_EQ(story.GetError(), asLong(E_ABORT));
    server.fail(text("get_SectionXml"), E_FAIL);
    story.UpdateHeaderID();
    EXPECT_EQ(story.GetError(), asLong(E_ABORT));
}

TEST_F(StoryLocking, HeaderOfAStoryThatIsNotThereIsNotNew)
{
    Story story = missing();
    EXPECT_FALSE(story.UpdateHeaderID());
    EXPECT_EQ(story.GetError(), asLong(E_FAIL));
}

TEST_F(StoryLocking, HeaderQuestionThatRaisesRaisesAndKeepsWhatWasKnown)
{
    Story story = open(fifth);
    server.raise(text("get_SectionXml"), E_FAIL);
    EXPECT_THROW(story.UpdateHeaderID(), _com_error);
    EXPECT_EQ(StoryProbe::headerStoryId(story), text("1"));
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST_F(StoryLocking, HeaderQuestionLeavesRateAndKeyLockAlone)
{
    data->markup[1] = text("<head><meta rate=150 locked=ann></head>");
    Story story = open(fifth);
    data->markup[1] = text("<head><storyid>2</storyid><meta rate=200></head>");
    EXPECT_TRUE(story.UpdateHeaderID());
    EXPECT_EQ(story.GetReadRate(), 15);
    EXPECT_TRUE(story.HasKeylock());
}
