// `quire edit`.

#include "Editing.h"
#include "RegisteredServer.h"

#include <QDir>

namespace {

// ---- the built program

class EditCommandTest : public ProgramTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(quire("--built-in newsroom export nr").code, 0);
        m_environment.remove(QStringLiteral("VISUAL"));
        // Whatever is left behind is found here.
        ASSERT_TRUE(QDir(path("")).mkdir(QStringLiteral("temp")));
        for (const char *name : {"TMPDIR", "TEMP", "TMP"})
            m_environment.insert(QLatin1String(name), QDir::toNativeSeparators(path("temp")));
    }

    void setEditor(const char *arguments)
    {
        m_environment.insert(QStringLiteral("EDITOR"), editorCommand(QString::fromUtf8(arguments)));
    }
    Outcome edit(const char *arguments)
    {
        return quire(QByteArray("--newsroom nr edit ").append(arguments).constData());
    }
    QString section(const char *arguments)
    {
        return quire(QByteArray("--newsroom nr story --markup ").append(arguments).constData()).output.trimmed();
    }
    int filesLeft() const { return QDir(path("temp")).entryList({QStringLiteral("quire-*")}, QDir::Dirs).size(); }
};

const char cup[] = "SPORT.RESULTS.CUP #1";
const char cupBody[] = "SPORT.RESULTS.CUP #1 --section body";

TEST_F(EditCommandTest, SavesWhatTheEditorMadeOfThePlainText)
{
    setEditor("replace Half-time Pause");
    const Outcome run = edit(cup);
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(run.output, QStringLiteral("saved story 1571 of SPORT.RESULTS.CUP\n"));
    EXPECT_TRUE(section(cupBody).startsWith(QLatin1String("<body><p>Pause 2:0. ")));
    EXPECT_EQ(filesLeft(), 0);
}

TEST_F(EditCommandTest, EachLineOfThePlainTextIsAParagraph)
{
    setEditor("write \"one ; two\\n\\nthree\\n\"");
    ASSERT_EQ(edit(cup).code, 0);
    EXPECT_EQ(section(cupBody), QStringLiteral("<body><p>one ; two</p><p></p><p>three</p></body>"));
}

TEST_F(EditCommandTest, AnUnchangedTextIsNotSaved)
{
    const QString before = section(cup);
    setEditor("leave");
    const Outcome run = edit(cup);
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(run.output, QStringLiteral("nothing changed in story 1571 of SPORT.RESULTS.CUP\n"));
    EXPECT_EQ(section(cup), before);
    EXPECT_EQ(filesLeft(), 0);
}

TEST_F(EditCommandTest, ABodyThatPlainTextCannotHoldIsEditedAsMarkup)
{
    setEditor("replace \"Roll titles\" \"Start titles\"");
    ASSERT_EQ(edit("SHOWS.EVENING.RUNDOWN 1002").code, 0);
    EXPECT_TRUE(section("SHOWS.EVENING.RUNDOWN 1002 --section body").contains(QLatin1String("<b>Start titles.</b>")));
}

TEST_F(EditCommandTest, TheFormCanBeChosen)
{
    setEditor("leave");
    const QString form = QStringLiteral("form");
    EXPECT_EQ(edit("SPORT.RESULTS.CUP #1 --json").json().value(form).toString(), QStringLiteral("text"));
    EXPECT_EQ(edit("SPORT.RESULTS.CUP #1 --json --markup").json(),
              (QJsonObject{{QStringLiteral("path"), QStringLiteral("SPORT.RESULTS.CUP")},
                           {QStringLiteral("number"), 1571},
                           {QStringLiteral("section"), QStringLiteral("body")},
                           {form, QStringLiteral("markup")},
                           {QStringLiteral("saved"), false}}));
    EXPECT_EQ(edit("SHOWS.EVENING.RUNDOWN 1002 --json --text").json().value(form).toString(), QStringLiteral("text"));
    expectFailure(edit("SPORT.RESULTS.CUP #1 --text --section fields"), 2, "only the body");
    expectFailure(edit("SPORT.RESULTS.CUP #1 --section foot"), 2, "there is no section \"foot\"");
}

TEST_F(EditCommandTest, AnotherSectionIsEditedAsMarkup)
{
    setEditor("replace 2:3 4:4");
    ASSERT_EQ(edit("SPORT.RESULTS.CUP #1 --section fields").code, 0);
    EXPECT_TRUE(section("SPORT.RESULTS.CUP #1 --section fields").contains(QLatin1String("<f id=score>4:4</f>")));
}

TEST_F(EditCommandTest, WhenTheEditorFailsNothingIsSavedAndTheEditIsKept)
{
    setEditor("failing append words");
    const Outcome run = edit(cup);
    expectFailure(run, 1, "failed (exit code 3)");
    EXPECT_TRUE(takeKept(run).endsWith("for remarks.\nwords"));
    EXPECT_FALSE(section(cupBody).contains(QLatin1String("words")));
}

TEST_F(EditCommandTest, WhenTheEditorFailsWithoutAChangeNoFileIsLeft)
{
    setEditor("failing leave");
    expectFailure(edit(cup), 1, "; nothing was changed");
    EXPECT_EQ(filesLeft(), 0);
}

TEST_F(EditCommandTest, AnEditorThatIsNotThereIsNamed)
{
    m_environment.insert(QStringLiteral("EDITOR"), QStringLiteral("no-such-editor"));
    const Outcome run = edit(cup);
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.errors.contains(QLatin1String("the editor \"no-such-editor\" failed"))) << qPrintable(run.errors);
    EXPECT_EQ(filesLeft(), 0);
}

TEST_F(EditCommandTest, VisualComesBeforeEditor)
{
    setEditor("failing leave");
    m_environment.insert(QStringLiteral("VISUAL"), editorCommand(QStringLiteral("leave")));
    EXPECT_EQ(edit(cup).code, 0);
}

TEST_F(EditCommandTest, MarkupThatTheServerRefusesIsKept)
{
    setEditor("replace /body /nobody");
    const Outcome run = edit("SPORT.RESULTS.CUP #1 --markup");
    expectFailure(run, 1, "cannot change story 1571 of SPORT.RESULTS.CUP: ");
    EXPECT_TRUE(takeKept(run).endsWith("</nobody>\n"));
}

TEST_F(EditCommandTest, WhatIsNotInUtf8IsKeptAndNotSaved)
{
    setEditor("write \"\\xff\"");
    const Outcome run = edit(cup);
    expectFailure(run, 1, "what the editor wrote is not in UTF-8; your edit is kept in ");
    EXPECT_EQ(takeKept(run), QByteArray("\xff"));
}

TEST_F(EditCommandTest, ANulIsKeptAndNotSaved)
{
    setEditor("write \"one\\0two\"");
    const Outcome run = edit(cup);
    expectFailure(run, 1, "what the editor wrote has a NUL in it; your edit is kept in ");
    EXPECT_EQ(takeKept(run), QByteArray("one\0two", 7));
    EXPECT_TRUE(section(cupBody).startsWith(QLatin1String("<body><p>Half-time")));
}

TEST_F(EditCommandTest, AFileThatTheEditorRemovesIsNoEditThatIsKept)
{
    setEditor("remove");
    expectFailure(edit(cup), 1, "; nothing was changed");
    EXPECT_EQ(filesLeft(), 0);
}

// ---- within the process, where the test sees what the server is asked for

class EditOnServerTest : public RegisteredServerTest
{
protected:
    EditOnServerTest()
    {
        setEditor("append words");
        qunsetenv("VISUAL");
    }
    ~EditOnServerTest() override { qunsetenv("EDITOR"); }

    static void setEditor(const char *arguments)
    {
        qputenv("EDITOR", editorCommand(QString::fromUtf8(arguments)).toUtf8());
    }
    Outcome edit() { return runAsProducer("edit SPORT.RESULTS.CUP 1571"); }
};

TEST_F(EditOnServerTest, GivesTheLockBack)
{
    const Outcome run = edit();
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_TRUE(body(1571).endsWith(QLatin1String("<p>words</p>"))) << qPrintable(body(1571));
    EXPECT_FALSE(isLocked(1571));
}

TEST_F(EditOnServerTest, ARefusedLockOpensNoEditor)
{
    setEditor("failing leave");
    ProgramTest::expectFailure(runAsProducer("edit SHOWS.EVENING.RUNDOWN 1003"), 1, "journalist is editing it");
    EXPECT_TRUE(isLocked(1003));
}

TEST_F(EditOnServerTest, ARefusedSaveKeepsTheEditAndGivesTheLockBack)
{
    m_server.faults().failNext(QStringLiteral("IStory2::Save"),
                               Newsroom::Fault::hresult(static_cast<HRESULT>(0x80040405)));
    const Outcome run = edit();
    ProgramTest::expectFailure(run, 1,
                               "cannot save story 1571 of SPORT.RESULTS.CUP: Command is not authorized. Nothing was "
                               "saved; your edit is kept in ");
    EXPECT_TRUE(takeKept(run).endsWith("words"));
    EXPECT_FALSE(body(1571).contains(QLatin1String("words")));
    EXPECT_FALSE(isLocked(1571));
}

TEST_F(EditOnServerTest, ABrokenConnectionKeepsTheEdit)
{
    m_server.faults().failEvery(QStringLiteral("IStory2::put_SectionXml"),
                                Newsroom::Fault::raise(static_cast<HRESULT>(0x800706BA)));
    const Outcome run = edit();
    ProgramTest::expectFailure(run, 1, "the server failed: ");
    EXPECT_TRUE(takeKept(run).endsWith("words"));
    EXPECT_FALSE(isLocked(1571));
}

} // namespace
