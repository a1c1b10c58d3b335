// `quire story`. Runs the built program.

#include "Program.h"

#include <QJsonArray>

#include "TextWidth.h"

namespace {

class StoryCommandTest : public ProgramTest
{
protected:
    Outcome story(const char *arguments)
    {
        return quire(QByteArray("--built-in story ").append(arguments).constData());
    }
};

TEST_F(StoryCommandTest, ShowsHeaderFieldsAndText)
{
    m_environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("80"));
    const Outcome run = story("SHOWS.EVENING.RUNDOWN 1003");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    EXPECT_EQ(run.output,
              QStringLiteral("story 1003 of SHOWS.EVENING.RUNDOWN\n"
                             "\n"
                             "identifier  1003:101:0, in the header 3eb:65:0:9\n"
                             "form        RUNDOWN\n"
                             "words       97\n"
                             "read rate   180 words a minute\n"
                             "lock        being edited\n"
                             "\n"
                             "Page        A2\n"
                             "Title       Harbour tunnel floods\n"
                             "Seg         A\n"
                             "Format      PKG\n"
                             "Presenter   Jonas\n"
                             "Audio       0:25\n"
                             "Tape        2:05\n"
                             "Total       2:30\n"
                             "Back time   18:01:00\n"
                             "Cume        +0:03:30\n"
                             "Graphics    L3 SOLHEIM-PIKE\n"
                             "Ready\n"
                             "Changed by  journalist\n"
                             "\n"
                             "The tunnel under the harbour will not open again this week. That is the word\n"
                             "tonight from the engineer in charge of the pumps, a day after sea water broke\n"
                             "through a joint near the eastern portal.\n"
                             "\n"
                             "Nobody was hurt. Forty-one cars were led out in the dark, most of them by one\n"
                             "bus driver with a torch.\n"
                             "\n"
                             "Nora Vale has spent the day with the people who have to find the hole.\n"
                             "\n"
                             "TAPE IN: \"You hear it before you see it.\"\n"
                             "\n"
                             "TAPE OUT: \"... and then we do it all again on the other side.\" 2:05\n"));
}

TEST_F(StoryCommandTest, FitsIntoEightyColumnsWhateverTheStory)
{
    m_environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("80"));
    const QJsonArray entries =
        quire("--built-in --json tree --stories").json().value(QStringLiteral("entries")).toArray();
    for (const QJsonValue &entry : entries) {
        if (entry[QStringLiteral("storyList")].toArray().isEmpty())
            continue;
        const Outcome run = quire({QStringLiteral("--built-in"), QStringLiteral("story"),
                                   entry[QStringLiteral("path")].toString(), QStringLiteral("#1")});
        EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
        for (const QString &line : run.lines())
            EXPECT_LE(Tool::textWidth(line), 80) << qPrintable(line);
    }
}

TEST_F(StoryCommandTest, WithoutAFormTheFieldsStandUnderTheirNames)
{
    const QString page = story("ARCHIVE.LOOSE 2203").output;
    EXPECT_TRUE(page.contains(QLatin1String("\nform        none\n"))) << qPrintable(page);
    EXPECT_TRUE(page.contains(QLatin1String("\n\nslug  phone-list-portal\nnote  not for air\n\n"))) << qPrintable(page);
}

TEST_F(StoryCommandTest, AKeyLockIsShown)
{
    EXPECT_TRUE(story("ARCHIVE.DRAFTS 2223").output.contains(QLatin1String("\nlock        key lock\n")));
    EXPECT_TRUE(story("ARCHIVE.DRAFTS 2224").output.contains(QLatin1String("\nlock        none\nmarks       hold\n")));
    EXPECT_EQ(story("ARCHIVE.DRAFTS 2223 --json").json().value(QStringLiteral("keyLock")), QJsonValue(true));
}

TEST_F(StoryCommandTest, ASectionIsShownAloneInBothForms)
{
    const Outcome body = story("SPORT.RESULTS.CUP #1 --section body");
    EXPECT_TRUE(body.output.startsWith(QLatin1String("Half-time 2:0. Scorers: "))) << qPrintable(body.output);
    const Outcome markup = story("SPORT.RESULTS.CUP #1 --section body --markup");
    EXPECT_EQ(markup.output, QLatin1String("<body><p>") + body.output.trimmed() + QLatin1String("</p></body>\n"));
    EXPECT_TRUE(story("SPORT.RESULTS.CUP #1 --section FIELDS").output.contains(QLatin1String("score: 2:3\n")));
}

TEST_F(StoryCommandTest, EverySectionHasItsName)
{
    for (const char *name : {"head", "look", "fields", "body", "aeset", "field-atts", "aeset-atts"}) {
        const Outcome run = story(QByteArray("SPORT.RESULTS.CUP #1 --markup --section ").append(name).constData());
        EXPECT_TRUE(run.output.startsWith(QLatin1Char('<') + QLatin1String(name) + QLatin1Char('>'))) << name;
    }
    expectFailure(story("SPORT.RESULTS.CUP #1 --section foot"), 2,
                  "there is no section \"foot\"; the sections are head, look, fields, body, aeset, field-atts, "
                  "aeset-atts, all");
}

TEST_F(StoryCommandTest, MarkupWithoutASectionIsTheWholeStory)
{
    const QString whole = quire("--built-in cat SPORT.RESULTS.CUP #1").output;
    EXPECT_EQ(story("SPORT.RESULTS.CUP #1 --markup").output, whole);
    EXPECT_EQ(story("SPORT.RESULTS.CUP #1 --markup --section all").output, whole);
}

TEST_F(StoryCommandTest, JsonHasTheDocumentedKeys)
{
    const QJsonObject page = story("SHOWS.EVENING.RUNDOWN 1003 --json").json();
    QStringList keys;
    for (const char *key : {"beingEdited", "fields", "form", "headerId", "id", "keyLock", "meta", "name", "number",
                            "path", "readRate", "text"})
        keys += QLatin1String(key);
    EXPECT_EQ(page.keys(), keys);
    EXPECT_EQ(page.value(QStringLiteral("beingEdited")).toBool(), true);
    EXPECT_EQ(page.value(QStringLiteral("keyLock")).toBool(), false);
    EXPECT_EQ(page.value(QStringLiteral("readRate")).toInt(), 180);
    EXPECT_EQ(page.value(QStringLiteral("fields")).toArray().at(7).toObject(),
              (QJsonObject{{QStringLiteral("field"), QStringLiteral("total-time")},
                           {QStringLiteral("inForm"), true},
                           {QStringLiteral("label"), QStringLiteral("Total")},
                           {QStringLiteral("readOnly"), true},
                           {QStringLiteral("value"), QStringLiteral("2:30")}}));
    const QJsonObject section = story("SPORT.RESULTS.CUP #1 --json --section body --markup").json();
    EXPECT_EQ(section.keys(), (QStringList{QStringLiteral("markup"), QStringLiteral("name"), QStringLiteral("number"),
                                           QStringLiteral("path"), QStringLiteral("section")}));
}

TEST_F(StoryCommandTest, WhatIsNotThereIsNotFound)
{
    expectFailure(story("SPORT.RESULTS.CUP 1"), 4, "there is no story 1 in SPORT.RESULTS.CUP");
    expectFailure(story("SPORT.RESULTS #1"), 4, "is a directory");
    expectFailure(story("NO.SUCH #1"), 4, "there is no \"NO.SUCH\"");
    expectFailure(story("SPORT.RESULTS.CUP one"), 2, "\"one\" is no story number");
}

} // namespace
