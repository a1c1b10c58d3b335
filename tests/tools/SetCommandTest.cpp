// `quire set`.

#include "RegisteredServer.h"

#include <QJsonArray>

namespace {

// ---- the built program, on a newsroom folder so that a change outlives the run

class SetCommandTest : public ProgramTest
{
protected:
    void SetUp() override { ASSERT_EQ(quire("--built-in newsroom export nr").code, 0); }

    Outcome set(const QStringList &changes)
    {
        return quire(QStringList{QStringLiteral("--newsroom"), QStringLiteral("nr"), QStringLiteral("set"),
                                 QStringLiteral("SHOWS.EVENING.RUNDOWN"), QStringLiteral("1001")} +
                     changes);
    }
    QString value(const char *field)
    {
        const QJsonArray fields = quire("--newsroom nr --json story SHOWS.EVENING.RUNDOWN 1001")
                                      .json()
                                      .value(QStringLiteral("fields"))
                                      .toArray();
        for (const QJsonValue &entry : fields)
            if (entry[QStringLiteral("field")].toString() == QLatin1String(field))
                return entry[QStringLiteral("value")].toString();
        return QString();
    }
};

TEST_F(SetCommandTest, ChangesFieldsAndSaysFromWhatToWhat)
{
    const Outcome run = set({QStringLiteral("title=Die Lage — jetzt"), QStringLiteral("TAPE-TIME=1:20")});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    EXPECT_EQ(run.output, QStringLiteral("Title  Headlines → Die Lage — jetzt\n"
                                         "Tape   0:20 → 1:20\n"
                                         "saved story 1001 of SHOWS.EVENING.RUNDOWN\n"));
    EXPECT_EQ(value("title"), QStringLiteral("Die Lage — jetzt"));
    EXPECT_EQ(value("tape-time"), QStringLiteral("1:20"));
    EXPECT_EQ(value("modify-by"), QStringLiteral("journalist"));
}

TEST_F(SetCommandTest, AValueMayHaveEverySignAndMayBeEmpty)
{
    ASSERT_EQ(set({QStringLiteral("title=a=b <c> & \"d\" [e]"), QStringLiteral("graphics=")}).code, 0);
    EXPECT_EQ(value("title"), QStringLiteral("a=b <c> & \"d\" [e]"));
    EXPECT_EQ(value("graphics"), QString());
}

TEST_F(SetCommandTest, AnArgumentInBracketsIsNotTakenApart)
{
    ProgramTest::expectFailure(set({QStringLiteral("[title=New]")}), 4, "there is no field \"[title\"");
    ProgramTest::expectFailure(set({QStringLiteral("[title=New,graphics=x]")}), 4, "there is no field \"[title\"");
    ProgramTest::expectFailure(set({QStringLiteral("[]")}), 2, "\"[]\" is no change");
    EXPECT_EQ(value("title"), QStringLiteral("Headlines"));
}

TEST_F(SetCommandTest, AnArgumentInBracketsIsNamedAsItStands)
{
    expectFailure(quire({QStringLiteral("cat"), QStringLiteral("[Q]"), QStringLiteral("1")}), 4, "\"[Q]\"");
    expectFailure(quire({QStringLiteral("info"), QStringLiteral("[x]")}), 2, "no place for \"[x]\" (see");
    expectFailure(quire({QStringLiteral("tree"), QStringLiteral("--depth"), QStringLiteral("[1]")}), 2,
                  "from 0 on, not [1] (see");
}

TEST_F(SetCommandTest, JsonHasTheDocumentedKeys)
{
    const QJsonObject object = set({QStringLiteral("title=New"), QStringLiteral("--json")}).json();
    EXPECT_EQ(object, (QJsonObject{{QStringLiteral("path"), QStringLiteral("SHOWS.EVENING.RUNDOWN")},
                                   {QStringLiteral("number"), 1001},
                                   {QStringLiteral("changes"),
                                    QJsonArray{QJsonObject{{QStringLiteral("field"), QStringLiteral("title")},
                                                           {QStringLiteral("before"), QStringLiteral("Headlines")},
                                                           {QStringLiteral("after"), QStringLiteral("New")}}}}}));
}

TEST_F(SetCommandTest, WhatIsNoChangeIsWrongUsage)
{
    expectFailure(set({QStringLiteral("title")}), 2, "\"title\" is no change");
    expectFailure(set({QStringLiteral("=x")}), 2, "\"=x\" is no change");
    expectFailure(set({QStringLiteral("title=a"), QStringLiteral("Title=b")}), 2, "the field \"Title\" is named twice");
    expectFailure(set({}), 2, "CHANGE");
}

TEST_F(SetCommandTest, ATimeThatCannotBeUnderstoodIsWrongUsageAndChangesNothing)
{
    expectFailure(set({QStringLiteral("title=a"), QStringLiteral("tape-time=soon")}), 2,
                  "\"soon\" is no time for the field \"tape-time\"; write SECONDS, M:SS or H:MM:SS");
    EXPECT_EQ(value("title"), QStringLiteral("Headlines"));
}

// ---- within the process, where the test sees what the server is asked for

class SetOnServerTest : public RegisteredServerTest
{};

TEST_F(SetOnServerTest, GivesTheLockBack)
{
    const Outcome run = runAsProducer("set SHOWS.EVENING.RUNDOWN 1001 title=New");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(field(1001, "title"), QStringLiteral("New"));
    EXPECT_FALSE(isLocked(1001));
}

TEST_F(SetOnServerTest, ARefusedLockNamesTheHolder)
{
    const Outcome run = runAsProducer("set SHOWS.EVENING.RUNDOWN 1003 title=New");
    ProgramTest::expectFailure(run, 1,
                               "cannot lock story 1003 of SHOWS.EVENING.RUNDOWN: journalist is editing it (Story "
                               "currently being edited.)");
    EXPECT_EQ(field(1003, "title"), QStringLiteral("Harbour tunnel floods"));
    EXPECT_TRUE(isLocked(1003));
}

TEST_F(SetOnServerTest, AReadOnlyFieldIsRefusedBeforeAnythingIsLocked)
{
    m_server.faults().failEvery(QStringLiteral("IStory2::Lock"), Newsroom::Fault::hresult(E_FAIL));
    ProgramTest::expectFailure(runAsProducer("set SHOWS.EVENING.RUNDOWN 1001 title=New total-time=5"), 1,
                               "the field \"total-time\" of story 1001 of SHOWS.EVENING.RUNDOWN is read-only");
    EXPECT_EQ(m_server.faults().faultsDone(), 0);
    EXPECT_EQ(field(1001, "title"), QStringLiteral("Headlines"));
}

TEST_F(SetOnServerTest, AnUnknownFieldIsRefusedBeforeAnythingIsLocked)
{
    m_server.faults().failEvery(QStringLiteral("IStory2::Lock"), Newsroom::Fault::hresult(E_FAIL));
    ProgramTest::expectFailure(runAsProducer("set SPORT.RESULTS.CUP #1 title=New slug=x"), 4,
                               "; it has title, competition, venue, score, create-by, create-date");
    EXPECT_EQ(m_server.faults().faultsDone(), 0);
}

TEST_F(SetOnServerTest, WithoutAFormTheStorysOwnFieldsCanBeSet)
{
    ProgramTest::expectFailure(runAsProducer("set ARCHIVE.LOOSE 2203 title=x"), 4, "it has slug, note");
    EXPECT_EQ(runAsProducer("set ARCHIVE.LOOSE 2203 note=x").code, 0);
    EXPECT_EQ(field(2203, "note"), QStringLiteral("x"));
}

TEST_F(SetOnServerTest, WhenTheSecondFieldIsRefusedNothingIsSavedAndTheLockIsGivenBack)
{
    m_server.faults().failNext(QStringLiteral("IStory2::put_Field"),
                               Newsroom::Fault::hresult(static_cast<HRESULT>(0x80040405)), 2);
    ProgramTest::expectFailure(
        runAsProducer("set SHOWS.EVENING.RUNDOWN 1001 title=New format=LIVE"), 1,
        "cannot set format of story 1001 of SHOWS.EVENING.RUNDOWN: Command is not authorized. Nothing was saved.");
    EXPECT_EQ(field(1001, "title"), QStringLiteral("Headlines"));
    EXPECT_FALSE(isLocked(1001));
}

TEST_F(SetOnServerTest, WhenTheSaveIsRefusedTheLockIsGivenBack)
{
    m_server.faults().failNext(QStringLiteral("IStory2::Save"),
                               Newsroom::Fault::hresult(static_cast<HRESULT>(0x8004040F)));
    ProgramTest::expectFailure(runAsProducer("set SHOWS.EVENING.RUNDOWN 1001 title=New"), 1,
                               "cannot save story 1001 of SHOWS.EVENING.RUNDOWN: Story/directory/queue locked. Nothing "
                               "was saved.");
    EXPECT_EQ(field(1001, "title"), QStringLiteral("Headlines"));
    EXPECT_FALSE(isLocked(1001));
}

TEST_F(SetOnServerTest, ALockThatCannotBeGivenBackIsAFailure)
{
    m_server.faults().failEvery(QStringLiteral("IStory2::Unlock"),
                                Newsroom::Fault::hresult(static_cast<HRESULT>(0x8004040F)));
    ProgramTest::expectFailure(runAsProducer("set SHOWS.EVENING.RUNDOWN 1001 title=New"), 1,
                               "cannot give back the lock of story 1001");
    EXPECT_EQ(field(1001, "title"), QStringLiteral("New"));
}

// ---- whom to sign on

TEST_F(SetOnServerTest, OnARegisteredServerTheUserMustBeNamed)
{
    ProgramTest::expectFailure(run({QStringLiteral("info")}), 2, "--user");
    EXPECT_EQ(run({QStringLiteral("info"), QStringLiteral("--built-in")}).code, 0);
}

} // namespace
