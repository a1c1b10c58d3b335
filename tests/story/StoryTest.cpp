// Making a story, what is known of it, and its fields.

#include <gmock/gmock.h>

#include <quire/forms/FormCache.h>
#include <quire/session/Dispatch2.h>

#include "story/StoryFixture.h"

using namespace Quire;

namespace {

const StoryID noStory{0, 0, 0};

QString identifier(Story &story)
{
    QString id;
    story.GetIDStr(id, true);
    return id;
}

/// Stories where there is no session.
class StoryWithoutSession : public ::testing::Test
{
protected:
    void SetUp() override { QuireCOM::UnloadCOM(); }
};

class StoryTest : public StoryFixture
{};

} // namespace

// ---- without a session ----------------------------------------------------------------------------------------------

TEST_F(StoryWithoutSession, DefaultStoryIsEmpty)
{
    Story story;
    EXPECT_EQ(identifier(story), text("0:0:0"));
    EXPECT_FALSE(StoryProbe::handle(story));
    EXPECT_EQ(StoryProbe::headerStoryId(story), QString());
    EXPECT_EQ(StoryProbe::queuePath(story), QString());
    EXPECT_EQ(StoryProbe::keyLock(story), QString());
    EXPECT_EQ(story.FormName(), QString());
    EXPECT_FALSE(story.IsLoaded());
    EXPECT_FALSE(story.GetConfirmEdit());
    EXPECT_FALSE(story.HasKeylock());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryWithoutSession, IdentifiersAreComparedAsEverywhere)
{
    StoryID a{1, 2, 3};
    for (StoryID b : {StoryID{1, 2, 3}, StoryID{9, 2, 3}, StoryID{1, 9, 3}, StoryID{1, 2, 9}, StoryID{1, 9, 9}})
        EXPECT_EQ(Story::CmpStoryID(&a, &b), CmpStoryID(&a, &b));
    EXPECT_EQ(Story::CmpStoryID(&a, &a), SID_Identical);
    EXPECT_EQ(Story::CmpStoryID(&a, nullptr), SID_Different);
}

TEST_F(StoryWithoutSession, ReadRateIs18)
{
    EXPECT_EQ(Story().GetReadRate(), 18);
    EXPECT_EQ(Story(mail(), &fifth).GetReadRate(), 18);
}

TEST_F(StoryWithoutSession, StoryKeepsPathAndIdentifierAndIsNotLoaded)
{
    Story story(mail(), &fifth);
    EXPECT_EQ(StoryProbe::queuePath(story), mail());
    EXPECT_EQ(identifier(story), text("5:1:2"));
    EXPECT_FALSE(story.IsLoaded());
    EXPECT_FALSE(story.HasKeylock());
    EXPECT_EQ(story.FormName(), QString());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryWithoutSession, EveryOperationDoesNothing)
{
    Story story(mail(), &fifth);
    const auto clean = [&story] {
        const long error = story.GetError();
        StoryProbe::setLastError(story, E_FAIL);
        return error == 0;
    };
    QString value = text("old");
    story.GetSection(8, value, true);
    EXPECT_EQ(value, QString());
    EXPECT_TRUE(clean());
    QString written = text("new");
    EXPECT_FALSE(story.PutSection(8, written, true));
    EXPECT_EQ(written, text("new"));
    EXPECT_TRUE(clean());
    value = text("old");
    story.GetField(text("title"), value);
    EXPECT_EQ(value, QString());
    EXPECT_TRUE(clean());
    story.SetField(text("title"), text("new"));
    EXPECT_TRUE(clean());
    EXPECT_FALSE(story.Save(true));
    EXPECT_TRUE(clean());
    value = text("old");
    EXPECT_FALSE(story.Lock(1, value));
    EXPECT_EQ(value, QString());
    EXPECT_TRUE(clean());
    EXPECT_FALSE(story.Unlock());
    EXPECT_TRUE(clean());
    EXPECT_FALSE(story.IsLocked(1));
    EXPECT_TRUE(clean());
    value = text("old");
    StoryProbe::getFormName(story, value);
    EXPECT_EQ(value, QString());
    EXPECT_TRUE(clean());
}

TEST_F(StoryWithoutSession, HeaderIsNotNew)
{
    Story story(mail(), &fifth);
    StoryProbe::setLastError(story, E_FAIL);
    EXPECT_FALSE(story.UpdateHeaderID());
    EXPECT_EQ(story.GetError(), asLong(E_FAIL));
}

TEST_F(StoryWithoutSession, StaticGetStoryIsEmptyAndFoundAllTheSame)
{
    bool notFound = true;
    EXPECT_FALSE(Story::GetStory(mail(), fifth, 0, &notFound));
    EXPECT_FALSE(notFound);
    EXPECT_FALSE(Story::GetStory(mail(), fifth, 0, nullptr));
}

TEST_F(StoryWithoutSession, FormsAreUnknown)
{
    Story story;
    EXPECT_EQ(story.FindField(text("title")), nullptr);
    std::vector<Attribute> attributes{{text("title"), text("kept"), 3}};
    story.GetFieldValues(attributes);
    ASSERT_EQ(attributes.size(), 1u);
    EXPECT_EQ(attributes[0].value, text("kept"));
    story.GetAllFieldNames(attributes);
    EXPECT_TRUE(attributes.empty());
}

TEST_F(StoryWithoutSession, AnEmptyHandleGivesNothing)
{
    const Orvex::IStory2Ptr none;
    QString value = text("old");
    Story::GetField(none, text("title"), value);
    EXPECT_EQ(value, QString());

    StoryID id = fifth;
    Story::GetStoryID(none, id);
    EXPECT_EQ(StoryID2String(id, true), text("5:1:2"));

    value = text("old");
    EXPECT_FALSE(Story::GetHeaderMetaValue(none, text("rate"), value));
    EXPECT_EQ(value, text("old"));

    EXPECT_TRUE(Story::GetStoryFields(none).empty());
    EXPECT_EQ(StoryProbe::headerStoryID(none), QString());

    value = text("old");
    StoryProbe::getSection(none, 1, value, true);
    EXPECT_EQ(value, QString());
}

TEST_F(StoryWithoutSession, HeaderOfAnEmptyHandleIsTheDefaultWithoutKeyLock)
{
    QString headerStoryId = text("old");
    QString keyLock = text("old");
    int rate = 7;
    Story::GetHeaderInfo(nullptr, &headerStoryId, &rate, &keyLock);
    EXPECT_EQ(headerStoryId, QString());
    EXPECT_EQ(rate, 18);
    EXPECT_EQ(keyLock, QString());
    Story::GetHeaderInfo(nullptr, nullptr, nullptr, nullptr);
}

// ---- read rates -----------------------------------------------------------------------------------------------------

TEST_F(StoryTest, ReadRateIsATenthOfTheSystems)
{
    server.readRate = 239;
    EXPECT_EQ(Story().GetReadRate(), 23);
}

TEST_F(StoryTest, ReadRateWithoutSignOnIsThatOfTheSessionsDefault)
{
    session->Disconnect();
    EXPECT_EQ(Story().GetReadRate(), 18);
}

TEST_F(StoryTest, ReadRateOfANegativeSystemRateIsThatOfTheSessionsDefault)
{
    server.readRate = -99;
    EXPECT_EQ(Story().GetReadRate(), 18);
}

TEST_F(StoryTest, ReadRateOfAStoryThatIsNotFoundIsTheSystems)
{
    server.readRate = 200;
    server.storiesExist = false;
    const Story story(mail(), &fifth);
    EXPECT_FALSE(story.IsLoaded());
    EXPECT_EQ(story.GetReadRate(), 20);
}

TEST_F(StoryTest, ReadRateOfAStoryThatIsFoundIs18WhateverTheSystems)
{
    server.readRate = 200;
    add("5:1:2", "<meta words=7>");
    EXPECT_EQ(Story(mail(), &fifth).GetReadRate(), 18);
}

TEST_F(StoryTest, ReadRateOfAStoryWithoutHeaderIs18WhateverTheSystems)
{
    server.readRate = 200;
    add("5:1:2");
    EXPECT_EQ(Story(mail(), &fifth).GetReadRate(), 18);
}

TEST_F(StoryTest, ReadRateIsATenthOfTheHeaders)
{
    add("5:1:2", "<meta rate=175>");
    EXPECT_EQ(Story(mail(), &fifth).GetReadRate(), 17);
}

TEST_F(StoryTest, RaisingSystemRateRaises)
{
    server.fail(text("get_SysReadRate"), E_FAIL);
    EXPECT_THROW(Story(), _com_error);
    EXPECT_THROW(Story(mail(), &fifth), _com_error);
}

TEST_F(StoryTest, ReadRateCanBeSet)
{
    Story story;
    story.SetReadRate(-3);
    EXPECT_EQ(story.GetReadRate(), -3);
}

// ---- opening --------------------------------------------------------------------------------------------------------

TEST_F(StoryTest, OpensTheStoryAtOnce)
{
    const auto data = add("5:1:2", "<storyid>0005:00000001</storyid><meta rate=150 locked=ann>");
    data->formName = text("RUNDOWN");
    Story story(mail(), &fifth);
    EXPECT_TRUE(story.IsLoaded());
    EXPECT_EQ(StoryProbe::headerStoryId(story), text("0005:00000001"));
    EXPECT_EQ(story.GetReadRate(), 15);
    EXPECT_EQ(StoryProbe::keyLock(story), text("ann"));
    EXPECT_TRUE(story.HasKeylock());
    EXPECT_EQ(story.FormName(), text("RUNDOWN"));
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, OpensWithTheseCalls)
{
    add("5:1:2", "");
    session->GetSysReadRate(); // fetched once
    server.forgetCalls();
    const Story story(mail(), &fifth);
    EXPECT_EQ(server.calls(), QStringList({text("MAIL.get_Item(VT_INT 0)"), text("MAIL#5.get_StoryUnique()"),
                                           text("MAIL#5.get_SectionXml(1)"), text("MAIL#5.get_FormName()")}));
}

TEST_F(StoryTest, OpensUnderTheseLabels)
{
    add("5:1:2", "");
    session->GetSysReadRate();
    server.forgetCalls();
    const LockDebugging labels;
    const Story story(mail(), &fifth);
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL.get_Item(VT_INT 0) under Orvex GetStory"),
                                              text("MAIL#5.get_StoryUnique() under Orvex GetStory"),
                                              text("MAIL#5.get_SectionXml(1) under static::GetSection"),
                                              text("MAIL#5.get_FormName() under Story::GetFormName")}));
}

TEST_F(StoryTest, WithoutHeaderHasTheKeyLockLock)
{
    add("5:1:2");
    const Story story(mail(), &fifth);
    EXPECT_TRUE(story.IsLoaded());
    EXPECT_EQ(StoryProbe::keyLock(story), text("lock"));
    EXPECT_TRUE(story.HasKeylock());
    EXPECT_EQ(StoryProbe::headerStoryId(story), QString());
}

TEST_F(StoryTest, WhoseHeaderFailsHasTheKeyLockLock)
{
    add("5:1:2", "<meta rate=150>");
    server.fail(text("get_SectionXml"), E_FAIL);
    const Story story(mail(), &fifth);
    EXPECT_TRUE(story.IsLoaded());
    EXPECT_EQ(StoryProbe::keyLock(story), text("lock"));
    EXPECT_EQ(story.GetReadRate(), 18);
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, WithoutKeyLockInItsHeaderHasNone)
{
    add("5:1:2", "<meta rate=150>");
    EXPECT_FALSE(Story(mail(), &fifth).HasKeylock());
}

TEST_F(StoryTest, WhoseFormNameFailsKeepsTheErrorAndHasNoForm)
{
    add("5:1:2", "")->formName = text("RUNDOWN");
    server.fail(text("get_FormName"), hresult(0x8004040B));
    const Story story(mail(), &fifth);
    EXPECT_TRUE(story.IsLoaded());
    EXPECT_EQ(story.FormName(), QString());
    EXPECT_EQ(story.GetError(), asLong(0x8004040B));
}

TEST_F(StoryTest, ThatIsNotFoundIsNotLoaded)
{
    server.storiesExist = false;
    Story story(mail(), &fifth);
    EXPECT_FALSE(story.IsLoaded());
    EXPECT_EQ(identifier(story), text("5:1:2"));
    EXPECT_EQ(StoryProbe::queuePath(story), mail());
    EXPECT_FALSE(story.HasKeylock());
    EXPECT_EQ(story.FormName(), QString());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, ThatIsNotFoundIsLookedForAgainByTheNextOperation)
{
    server.storiesExist = false;
    Story story(mail(), &fifth);
    add("5:1:2")->fields[text("title")] = text("Now");
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(value, text("Now"));
    EXPECT_FALSE(story.IsLoaded()); // that was the constructor's
}

TEST_F(StoryTest, KeepsItsHandle)
{
    add("5:1:2", "")->fields[text("title")] = text("Here");
    Story story = open(fifth);
    QString value;
    story.GetField(text("title"), value);
    story.GetField(text("slug"), value);
    EXPECT_EQ(server.calls(), QStringList({text("MAIL#5.get_Field(title)"), text("MAIL#5.get_Field(slug)")}));
}

TEST_F(StoryTest, FindsItsHandleWhenFirstNeeded)
{
    add("5:1:2", "");
    Story story;
    StoryID id = fifth;
    EXPECT_EQ(identifierOf(StoryProbe::getStory(story, mail(), &id)), text("5:1:2"));
    server.forgetCalls();
    id = noStory;
    EXPECT_TRUE(StoryProbe::getStory(story, text("ELSEWHERE"), &id)); // what is known is not looked for
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(StoryTest, ReleasesItsHandleWhenItGoes)
{
    const auto data = add("5:1:2", "");
    {
        const Story story(mail(), &fifth);
        EXPECT_EQ(data->references, 1);
    }
    EXPECT_EQ(data->references, 0);
}

TEST_F(StoryTest, OperationsLeaveTheHandlesReferencesAsTheyWere)
{
    const auto data = add("5:1:2", "<storyid>1</storyid>");
    data->holder = text("is ann here");
    Story story = open(fifth);
    QString value;
    story.GetSection(8, value, true);
    story.PutSection(8, value, false);
    story.GetField(text("title"), value);
    story.SetField(text("title"), value);
    story.Lock(1, value);
    story.IsLocked(1);
    story.Save(true);
    story.Unlock();
    story.UpdateHeaderID();
    EXPECT_EQ(data->references, 1);
    EXPECT_EQ(data->objects, 1);
}

TEST_F(StoryTest, IsLookedForUnderTheOperationsOwnLabel)
{
    server.storiesExist = false;
    Story story = open(fifth);
    server.storiesExist = true;
    add("5:1:2");
    const LockDebugging labels;
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL.get_Item(VT_INT 0) under Story::GetField"),
                                              text("MAIL#5.get_StoryUnique() under Story::GetField"),
                                              text("MAIL#5.get_Field(title) under Story::GetField")}));
}

// ---- copies ---------------------------------------------------------------------------------------------------------

TEST_F(StoryTest, CopiesShareTheHandle)
{
    const auto data = add("5:1:2", "");
    Story story = open(fifth);
    EXPECT_EQ(data->references, 1);
    {
        Story copy(story);
        EXPECT_EQ(data->references, 2);
        EXPECT_EQ(data->objects, 1);
        EXPECT_EQ(StoryProbe::handle(copy).GetInterfacePtr(), StoryProbe::handle(story).GetInterfacePtr());
    }
    EXPECT_EQ(data->references, 1);
}

TEST_F(StoryTest, AssignmentSharesTheHandleAndReleasesTheOneBefore)
{
    const auto fourth = add("4:1:2", "");
    const auto data = add("5:1:2", "");
    Story story = open(fifth);
    const StoryID id{4, 1, 2};
    Story other = open(id);
    const int before = fourth->references;
    other = story;
    EXPECT_EQ(data->references, 2);
    EXPECT_EQ(fourth->references, before - 1);
}

TEST_F(StoryTest, AssignmentToItselfChangesNothing)
{
    const auto data = add("5:1:2", "");
    Story story = open(fifth);
    const Story &same = story;
    story = same;
    EXPECT_EQ(data->references, 1);
    EXPECT_TRUE(story.IsLoaded());
}

TEST_F(StoryTest, CopiesHaveEveryMember)
{
    add("5:1:2", "<storyid>77</storyid><meta rate=150 locked=ann>")->formName = text("RUNDOWN");
    Story story(mail(), &fifth);
    story.SetConfirmEdit(true);
    StoryProbe::setLastError(story, E_FAIL);
    Story constructed(story);
    Story assigned;
    assigned = story;
    for (Story *copy : {&constructed, &assigned}) {
        EXPECT_EQ(identifier(*copy), text("5:1:2"));
        EXPECT_EQ(StoryProbe::headerStoryId(*copy), text("77"));
        EXPECT_EQ(StoryProbe::queuePath(*copy), mail());
        EXPECT_EQ(StoryProbe::keyLock(*copy), text("ann"));
        EXPECT_EQ(copy->GetReadRate(), 15);
        EXPECT_TRUE(copy->IsLoaded());
        EXPECT_TRUE(copy->GetConfirmEdit());
        EXPECT_EQ(copy->FormName(), text("RUNDOWN"));
        EXPECT_EQ(copy->GetError(), asLong(E_FAIL));
    }
}

// ---- what is known --------------------------------------------------------------------------------------------------

TEST_F(StoryTest, GetIDCopiesTheIdentifier)
{
    Story story(mail(), &fifth);
    StoryID id = noStory;
    EXPECT_TRUE(story.GetID(&id));
    EXPECT_EQ(StoryID2String(id, true), text("5:1:2"));
}

TEST_F(StoryTest, GetIDOfANullPointerIsFalseAndChangesNothing)
{
    Story story(mail(), &fifth);
    StoryProbe::setLastError(story, E_FAIL);
    EXPECT_FALSE(story.GetID(nullptr));
    EXPECT_EQ(identifier(story), text("5:1:2"));
    EXPECT_EQ(story.GetError(), asLong(E_FAIL));
}

TEST_F(StoryTest, GetIDStrHasTwoPartsOrThree)
{
    Story story(mail(), &fifth);
    QString id = text("old");
    story.GetIDStr(id, false);
    EXPECT_EQ(id, text("5:1"));
    story.GetIDStr(id, true);
    EXPECT_EQ(id, text("5:1:2"));
}

TEST_F(StoryTest, WhatIsKnownTakesNoCall)
{
    add("5:1:2", "");
    Story story = open(fifth);
    StoryID id{};
    QString value;
    story.GetID(&id);
    story.GetIDStr(value, true);
    story.SetReadRate(story.GetReadRate());
    story.SetConfirmEdit(story.GetConfirmEdit());
    story.HasKeylock();
    story.IsLoaded();
    story.GetError();
    story.FormName();
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(StoryTest, ConfirmEditIsTheHosts)
{
    Story story;
    EXPECT_FALSE(story.GetConfirmEdit());
    story.SetConfirmEdit(true);
    EXPECT_TRUE(story.GetConfirmEdit());
    story.SetConfirmEdit(false);
    EXPECT_FALSE(story.GetConfirmEdit());
}

TEST_F(StoryTest, GetErrorIs32BitsAndSigned)
{
    Story story;
    StoryProbe::setLastError(story, hresult(0x80004005));
    EXPECT_EQ(story.GetError(), -2147467259L);
}

// ---- reading fields -------------------------------------------------------------------------------------------------

TEST_F(StoryTest, GetFieldReadsUnderItsLabel)
{
    add("5:1:2", "")->fields[text("title")] = text("Floods");
    Story story = open(fifth);
    const LockDebugging labels;
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(value, text("Floods"));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_Field(title) under Story::GetField")}));
}

TEST_F(StoryTest, GetFieldShowsWhatIsStored)
{
    add("5:1:2", "")->fields[text("audio-time")] = text("90");
    Story story = open(fifth);
    QString value;
    story.GetField(text("audio-time"), value);
    EXPECT_EQ(value, text("1:30"));
}

TEST_F(StoryTest, GetFieldWithoutTextIsEmpty)
{
    add("5:1:2", "");
    Story story = open(fifth);
    QString value = text("old");
    story.GetField(text("cume-time"), value);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, GetFieldThatFailsIsEmptyWithTheError)
{
    add("5:1:2", "")->fields[text("title")] = text("Floods");
    Story story = open(fifth);
    server.fail(text("get_Field"), hresult(0x80040405));
    server.failsWithAnswer = true;
    QString value = text("old");
    story.GetField(text("title"), value);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), asLong(0x80040405));
}

TEST_F(StoryTest, GetFieldKeepsACodeThatIsNoFailure)
{
    add("5:1:2", "")->fields[text("title")] = text("Floods");
    Story story = open(fifth);
    server.fail(text("get_Field"), S_FALSE);
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(value, text("Floods"));
    EXPECT_EQ(story.GetError(), 1);
}

TEST_F(StoryTest, GetFieldThatRaisesRaisesWithTheLastErrorCleared)
{
    add("5:1:2", "");
    Story story = open(fifth);
    server.raise(text("get_Field"), E_FAIL);
    StoryProbe::setLastError(story, E_ABORT);
    QString value = text("old");
    EXPECT_THROW(story.GetField(text("title"), value), _com_error);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, GetFieldOfAStoryThatIsNotThereIsEmptyWithoutError)
{
    server.storiesExist = false;
    Story story = open(fifth);
    StoryProbe::setLastError(story, E_ABORT);
    QString value = text("old");
    story.GetField(text("title"), value);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, GetFieldKeepsEmbeddedNulsAndPairs)
{
    const QString odd = text("a\xf0\x9f\x98\x80") + QChar(0) + text("b");
    add("5:1:2", "")->fields[text("title")] = odd;
    Story story = open(fifth);
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(value, odd);
}

TEST_F(StoryTest, GetFieldTakesOneTextAsNameAndValue)
{
    const auto data = add("5:1:2", "");
    data->fields[text("title")] = text("Floods");
    data->fields[text("audio-time")] = text("90");
    Story story = open(fifth);
    QString both = text("title");
    story.GetField(both, both);
    EXPECT_EQ(both, text("Floods"));
    both = text("audio-time");
    story.GetField(both, both);
    EXPECT_EQ(both, text("1:30"));
}

TEST_F(StoryTest, StaticGetFieldTakesOneTextAsNameAndValue)
{
    add("5:1:2")->fields[text("audio-time")] = text("90");
    QString both = text("audio-time");
    Story::GetField(fetch(0), both, both);
    EXPECT_EQ(both, text("1:30"));
}

TEST_F(StoryTest, StaticGetFieldReadsUnderItsLabel)
{
    add("5:1:2")->fields[text("tape-time")] = text("90");
    const Orvex::IStory2Ptr story = fetch(0);
    const LockDebugging labels;
    QString value = text("old");
    Story::GetField(story, text("tape-time"), value);
    EXPECT_EQ(value, text("1:30"));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_Field(tape-time) under Story::GetField")}));
}

TEST_F(StoryTest, StaticGetFieldThatFailsIsEmpty)
{
    add("5:1:2")->fields[text("title")] = text("Floods");
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_Field"), E_FAIL);
    server.failsWithAnswer = true;
    QString value = text("old");
    Story::GetField(story, text("title"), value);
    EXPECT_EQ(value, QString());
}

TEST_F(StoryTest, StaticOperationsReleaseTheHandle)
{
    const auto data = add("5:1:2", "<storyid>1</storyid><meta rate=150>");
    {
        const Orvex::IStory2Ptr story = fetch(0);
        QString value;
        int rate = 0;
        StoryID id{};
        Story::GetField(story, text("title"), value);
        Story::GetHeaderInfo(story, &value, &rate, &value);
        Story::GetHeaderMetaValue(story, text("rate"), value);
        Story::GetStoryID(story, id);
        Story::GetStoryFields(story);
        StoryProbe::headerStoryID(story);
        StoryProbe::getSection(story, 1, value, true);
        EXPECT_EQ(data->references, 1);
    }
    EXPECT_EQ(data->references, 0);
}

// ---- writing fields -------------------------------------------------------------------------------------------------

TEST_F(StoryTest, SetFieldWritesUnderItsLabel)
{
    add("5:1:2", "");
    Story story = open(fifth);
    const LockDebugging labels;
    story.SetField(text("title"), text("Floods"));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.put_Field(title, Floods) under Story::SetField")}));
}

TEST_F(StoryTest, SetFieldStoresWhatIsShown)
{
    add("5:1:2", "");
    Story story = open(fifth);
    const QString shown = text("1:30");
    story.SetField(text("audio-time"), shown);
    EXPECT_EQ(server.calls(), QStringList({text("MAIL#5.put_Field(audio-time, 90)")}));
    EXPECT_EQ(shown, text("1:30"));
}

TEST_F(StoryTest, SetFieldOfANullTextSendsAnEmptyOne)
{
    add("5:1:2", "");
    Story story = open(fifth);
    story.SetField(text("title"), QString());
    EXPECT_EQ(server.calls(), QStringList({text("MAIL#5.put_Field(title, )")}));
}

TEST_F(StoryTest, SetFieldThatIsRefusedLeavesTheError)
{
    add("5:1:2", "");
    Story story = open(fifth);
    server.fail(text("put_Field"), hresult(0x80040405));
    story.SetField(text("title"), text("Floods"));
    EXPECT_EQ(story.GetError(), asLong(0x80040405));
    server.mend();
    story.SetField(text("title"), text("Floods"));
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, SetFieldThatRaisesRaises)
{
    add("5:1:2", "");
    Story story = open(fifth);
    server.raise(text("put_Field"), E_FAIL);
    EXPECT_THROW(story.SetField(text("title"), text("Floods")), _com_error);
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryTest, SetFieldOfAStoryThatIsNotThereWritesNothing)
{
    server.storiesExist = false;
    Story story = open(fifth);
    StoryProbe::setLastError(story, E_ABORT);
    story.SetField(text("title"), text("Floods"));
    EXPECT_EQ(story.GetError(), 0);
}

// ---- the form's name ------------------------------------------------------------------------------------------------

TEST_F(StoryTest, GetFormNameReadsUnderItsLabel)
{
    add("5:1:2", "")->formName = text("RUNDOWN");
    Story story = open(fifth);
    const LockDebugging labels;
    QString name;
    StoryProbe::getFormName(story, name);
    EXPECT_EQ(name, text("RUNDOWN"));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_FormName() under Story::GetFormName")}));
}

TEST_F(StoryTest, GetFormNameThatFailsIsEmptyWithTheError)
{
    add("5:1:2", "")->formName = text("RUNDOWN");
    Story story = open(fifth);
    server.fail(text("get_FormName"), E_FAIL);
    server.failsWithAnswer = true;
    QString name = text("old");
    StoryProbe::getFormName(story, name);
    EXPECT_EQ(name, QString());
    EXPECT_EQ(story.GetError(), asLong(E_FAIL));
}

TEST_F(StoryTest, GetFormNameClearsTheLastError)
{
    add("5:1:2", "");
    Story story = open(fifth);
    StoryProbe::setLastError(story, E_FAIL);
    QString name = text("old");
    StoryProbe::getFormName(story, name);
    EXPECT_EQ(name, QString());
    EXPECT_EQ(story.GetError(), 0);
}

// ---- the form's fields ----------------------------------------------------------------------------------------------

namespace {

class StoryForm : public StoryFixture
{
protected:
    void SetUp() override
    {
        StoryFixture::SetUp();
        server.form = text("<zeko:form><zeko:row>"
                           "<zeko:cell idref=slug>Slug</zeko:cell><zeko:cell idref=audio-time>Audio</zeko:cell>"
                           "<zeko:cell idref=Slug>Second</zeko:cell><zeko:cell idref=bare></zeko:cell>"
                           "</zeko:row></zeko:form>");
        StoryProbe::setFormName(story, text("RUNDOWN"));
        server.forgetCalls();
    }

    Story story;
};

QStringList shown(const std::vector<Attribute> &attributes)
{
    QStringList all;
    for (const Attribute &attribute : attributes)
        all.append(QStringLiteral("%1=%2/%3").arg(attribute.name, attribute.value).arg(attribute.flags));
    return all;
}

/// A story that finds every field in its own way.
class OwnFields : public Story
{
public:
    Field *FindField(const QString &name) override
    {
        asked.append(name);
        return name == text("none") ? nullptr : &field;
    }

    Field field;
    QStringList asked;
};

} // namespace

TEST_F(StoryForm, FindsAFieldWhateverItsCase)
{
    Field *const field = story.FindField(text("SLUG"));
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->m_Id, text("slug"));
    EXPECT_EQ(field->m_Label, text("Slug"));
}

TEST_F(StoryForm, FindsTheFirstOfSeveralFields)
{
    Field *const field = story.FindField(text("Slug"));
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->m_Label, text("Slug"));
}

TEST_F(StoryForm, FindsNoFieldByItsBeginning)
{
    EXPECT_EQ(story.FindField(text("slu")), nullptr);
}

TEST_F(StoryForm, FindsNoFieldByMoreThanItsName)
{
    EXPECT_EQ(story.FindField(text("slugs")), nullptr);
}

TEST_F(StoryForm, FindsNoFieldByAnEmptyName)
{
    EXPECT_EQ(story.FindField(QString()), nullptr);
    EXPECT_EQ(story.FindField(text("")), nullptr);
}

TEST_F(StoryForm, FindsNoFieldWithoutTheForm)
{
    server.form = QString();
    EXPECT_EQ(story.FindField(text("slug")), nullptr);
}

TEST_F(StoryForm, FieldBelongsToTheCache)
{
    FormData *const form = FormCache::getForm(text("RUNDOWN"));
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(story.FindField(text("slug")), &form->m_Fields.front());
}

TEST_F(StoryForm, AllFieldNamesComeInTheFormsOrder)
{
    std::vector<Attribute> attributes{{text("old"), text("old"), 9}};
    story.GetAllFieldNames(attributes);
    EXPECT_EQ(shown(attributes),
              QStringList({text("slug=Slug/0"), text("audio-time=Audio/0"), text("Slug=Second/0"), text("bare=/0")}));
}

TEST_F(StoryForm, AllFieldNamesOfAnUnknownFormAreNone)
{
    server.form = QString();
    std::vector<Attribute> attributes{{text("old"), text("old"), 9}};
    story.GetAllFieldNames(attributes);
    EXPECT_TRUE(attributes.empty());
}

TEST_F(StoryForm, AllFieldNamesAreNoneWhenTheServerRaises)
{
    server.raise(text("GetSystemForm"), E_FAIL);
    std::vector<Attribute> attributes{{text("old"), text("old"), 9}};
    EXPECT_THROW(story.GetAllFieldNames(attributes), _com_error);
    EXPECT_TRUE(attributes.empty());
}

TEST_F(StoryForm, FieldValuesAreTheLabelsAndTheRestStays)
{
    std::vector<Attribute> attributes{
        {text("AUDIO-TIME"), text("old"), 4}, {text("unknown"), text("kept"), 5}, {text("bare"), text("old"), 6}};
    story.GetFieldValues(attributes);
    EXPECT_EQ(shown(attributes), QStringList({text("AUDIO-TIME=Audio/4"), text("unknown=kept/5"), text("bare=/6")}));
}

TEST_F(StoryForm, FieldValuesAskTheOverride)
{
    OwnFields own;
    own.field.m_Label = text("Own");
    std::vector<Attribute> attributes{
        {text("b"), QString(), 0}, {text("none"), text("kept"), 0}, {text("a"), QString(), 0}};
    own.GetFieldValues(attributes);
    EXPECT_EQ(shown(attributes), QStringList({text("b=Own/0"), text("none=kept/0"), text("a=Own/0")}));
    EXPECT_EQ(own.asked, QStringList({text("b"), text("none"), text("a")}));
}

TEST_F(StoryForm, IsFetchedOnceAndNoStoryIsAsked)
{
    std::vector<Attribute> attributes{{text("slug"), QString(), 0}, {text("bare"), QString(), 0}};
    story.GetFieldValues(attributes);
    story.GetAllFieldNames(attributes);
    story.FindField(text("slug"));
    EXPECT_EQ(server.calls().filter(text("GetSystemForm")), QStringList({text("GetSystemForm(RUNDOWN)")}));
    EXPECT_EQ(server.calls().filter(text("MAIL")), QStringList());
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StoryForm, DoesNotTouchTheLastError)
{
    StoryProbe::setLastError(story, E_FAIL);
    std::vector<Attribute> attributes;
    story.FindField(text("slug"));
    story.GetAllFieldNames(attributes);
    story.GetFieldValues(attributes);
    EXPECT_EQ(story.GetError(), asLong(E_FAIL));
}

// ---- all fields of a story ------------------------------------------------------------------------------------------

TEST_F(StoryTest, StoryFieldsAreReadFromSection4)
{
    add("5:1:2")->markup[4] = text("<fields><f id=title uec=1>Floods</f><f id=audio-time>90</f></fields>");
    const Orvex::IStory2Ptr story = fetch(0);
    const LockDebugging labels;
    EXPECT_EQ(shown(Story::GetStoryFields(story)),
              QStringList({text("title=Floods/4"), text("audio-time=1:30/0"), text("total-time=1:30/0")}));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_SectionXml(4) under static::GetSection")}));
}

TEST_F(StoryTest, StoryFieldsOfAFailingServerAreNone)
{
    add("5:1:2")->markup[4] = text("<fields><f id=title>Floods</f></fields>");
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_SectionXml"), E_FAIL);
    server.failsWithAnswer = true;
    EXPECT_TRUE(Story::GetStoryFields(story).empty());
}
