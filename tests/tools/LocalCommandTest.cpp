// `quire local`. Runs the built program.

#include "Editing.h"

#include <QDir>
#include <QJsonArray>

namespace {

class LocalCommandTest : public ProgramTest
{
protected:
    void SetUp() override
    {
        const Outcome run = quire("--built-in cat SPORT.RESULTS.CUP #1");
        ASSERT_EQ(run.code, 0);
        write("cup.xml", run.bytes);
        m_environment.remove(QStringLiteral("VISUAL"));
    }

    void setEditor(const QString &arguments)
    {
        m_environment.insert(QStringLiteral("EDITOR"), editorCommand(arguments));
    }
};

TEST_F(LocalCommandTest, ShowsHeaderFieldsAndText)
{
    const Outcome run = quire("local cup.xml show");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(quire("local cup.xml").output, run.output);
    EXPECT_TRUE(run.output.startsWith(QLatin1String("cup.xml\n\nidentifier  1571:125:0, in the header 623:7d:0:1\n"
                                                    "form        RESULT\nwords       23\n")))
        << qPrintable(run.output);
    EXPECT_TRUE(run.output.contains(QLatin1String("\nscore        2:3\n"))) << qPrintable(run.output);
    EXPECT_TRUE(run.output.contains(QLatin1String("\n\nHalf-time 2:0. Scorers: "))) << qPrintable(run.output);
}

TEST_F(LocalCommandTest, ShowsFieldsAlone)
{
    EXPECT_TRUE(quire("local cup.xml fields").output.startsWith(QLatin1String("title        Sarrow ")));
    const QJsonObject object = quire("local cup.xml fields --json").json();
    EXPECT_EQ(object.keys(), (QStringList{QStringLiteral("fields"), QStringLiteral("file")}));
    EXPECT_EQ(object.value(QStringLiteral("fields")).toArray().size(), 6);
}

TEST_F(LocalCommandTest, PrintsASectionsMarkup)
{
    EXPECT_TRUE(quire("local cup.xml section body").output.startsWith(QLatin1String("<body><p>Half-time ")));
    EXPECT_EQ(quire("local cup.xml section all").bytes, read("cup.xml"));
    expectFailure(quire("local cup.xml section foot"), 2, "there is no section \"foot\"");
}

TEST_F(LocalCommandTest, SetWritesTheFile)
{
    const Outcome run = quire({QStringLiteral("local"), QStringLiteral("cup.xml"), QStringLiteral("set"),
                               QStringLiteral("score=4:4"), QStringLiteral("venue=<Tom & Ann>")});
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(run.output, QStringLiteral("score  2:3 → 4:4\n"
                                         "venue  Institute Park, Sarrow → <Tom & Ann>\n"
                                         "saved cup.xml\n"));
    EXPECT_TRUE(read("cup.xml").contains("<f id=venue>&lt;Tom &amp; Ann&gt;</f><f id=score>4:4</f>"));
}

TEST_F(LocalCommandTest, FieldsOfTheServerAreReadOnlyAndUnknownOnesAreNotFound)
{
    const QByteArray before = read("cup.xml");
    expectFailure(quire("local cup.xml set score=4:4 create-by=me"), 1,
                  "the field \"create-by\" of cup.xml is read-only");
    expectFailure(quire("local cup.xml set score=4:4 slug=me"), 4, "there is no field \"slug\" in cup.xml");
    EXPECT_EQ(read("cup.xml"), before);
}

TEST_F(LocalCommandTest, AFieldThatCannotBeReplacedIsAFailure)
{
    const QByteArray quoted = "<story><fields><f id=\"title\">a</f></fields><body></body></story>";
    write("quoted.xml", quoted);
    expectFailure(quire("local quoted.xml set title=b"), 1,
                  "cannot set title of quoted.xml: the file does not write it as <f id=title>...</f>");
    EXPECT_EQ(read("quoted.xml"), quoted);
}

TEST_F(LocalCommandTest, EditWritesTheFile)
{
    setEditor(QStringLiteral("replace Half-time Pause"));
    const Outcome run = quire("local cup.xml edit");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(run.output, QStringLiteral("saved cup.xml\n"));
    EXPECT_TRUE(read("cup.xml").contains("<body><p>Pause 2:0. "));
}

TEST_F(LocalCommandTest, AFileThatCannotBeWrittenIsAFailureAndTheEditIsKept)
{
    setEditor(QStringLiteral("unlink \"%1\"").arg(QDir::toNativeSeparators(path("cup.xml"))));
    const Outcome run = quire("local cup.xml edit");
    expectFailure(run, 1, "cup.xml: it is a folder; your edit is kept in ");
    EXPECT_TRUE(takeKept(run).endsWith("edit"));
}

TEST_F(LocalCommandTest, WhatIsNoStoryIsRefused)
{
    expectFailure(quire("local none.xml"), 1, "cannot read none.xml: ");
    write("empty.xml", "");
    expectFailure(quire("local empty.xml"), 1, "empty.xml is no story");
    write("text.txt", "hello");
    expectFailure(quire("local text.txt"), 1, "text.txt is no story");
    expectFailure(quire("local"), 2, "FILE");
}

} // namespace
