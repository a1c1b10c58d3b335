// `quire ls`, `new`, `rm` and `watch`. Runs the built program.

#include "Program.h"

#include <QJsonArray>

#include "tree/Waiting.h"

namespace {

class QueueCommandsTest : public ProgramTest
{
protected:
    /// A newsroom folder of the test's own, with the sample in it.
    QString newsroom()
    {
        QString folder = path("nr");
        const QStringList arguments{QStringLiteral("--built-in"), QStringLiteral("newsroom"), QStringLiteral("export"),
                                    folder};
        EXPECT_EQ(quire(arguments).code, 0);
        return folder;
    }

    Outcome in(const QString &folder, const char *arguments)
    {
        return quire(QStringList{QStringLiteral("--newsroom"), folder} +
                     QString::fromLatin1(arguments).split(QLatin1Char(' ')));
    }

    Outcome builtIn(const char *arguments)
    {
        return quire(QStringList{QStringLiteral("--built-in")} +
                     QString::fromLatin1(arguments).split(QLatin1Char(' ')));
    }
};

// ---- ls -------------------------------------------------------------------------------------------------------------

TEST_F(QueueCommandsTest, LsShowsTheEntriesOfTheRootWithKindCountAndFlags)
{
    const Outcome run = builtIn("ls");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    const QStringList lines = run.lines();
    EXPECT_EQ(lines.first().simplified(), QStringLiteral("name kind entries flags"));
    EXPECT_TRUE(
        lines.filter(QStringLiteral("SPORT")).value(0).simplified().startsWith(QStringLiteral("SPORT directory 4")))
        << qPrintable(run.output);
}

TEST_F(QueueCommandsTest, LsOfADirectoryHasTheDocumentedKeys)
{
    const QJsonObject listing = builtIn("ls SHOWS --json").json();
    EXPECT_EQ(listing.keys(), (QStringList{QStringLiteral("entries"), QStringLiteral("path")}));
    const QJsonArray entries = listing.value(QStringLiteral("entries")).toArray();
    ASSERT_GT(entries.size(), 0);
    EXPECT_EQ(entries.at(0)[QStringLiteral("path")].toString(), QStringLiteral("SHOWS.EVENING"));
    EXPECT_EQ(entries.at(0)[QStringLiteral("kind")].toString(), QStringLiteral("directory"));
}

TEST_F(QueueCommandsTest, LsShowsTheStoriesOfAQueueInItsOrder)
{
    const QJsonObject listing = builtIn("ls SHOWS.EVENING.RUNDOWN --json").json();
    const QJsonArray stories = listing.value(QStringLiteral("stories")).toArray();
    ASSERT_EQ(stories.size(), 28);
    EXPECT_EQ(stories.at(0)[QStringLiteral("number")].toInt(), 1001);
    EXPECT_EQ(stories.at(0)[QStringLiteral("name")].toString(), QStringLiteral("Headlines"));
    EXPECT_EQ(stories.at(0)[QStringLiteral("fields")][QStringLiteral("page-number")].toString(), QStringLiteral("A0"));
    EXPECT_EQ(stories.at(0)[QStringLiteral("fields")][QStringLiteral("total-time")].toString(), QStringLiteral("0:45"));
    EXPECT_FALSE(listing.value(QStringLiteral("more")).toBool());
}

TEST_F(QueueCommandsTest, LsStopsAtTheLimitAndSaysThatThereAreMore)
{
    const QJsonObject listing = builtIn("ls SHOWS.EVENING.RUNDOWN --limit 3 --json").json();
    EXPECT_EQ(listing.value(QStringLiteral("stories")).toArray().size(), 3);
    EXPECT_TRUE(listing.value(QStringLiteral("more")).toBool());
    EXPECT_TRUE(builtIn("ls SHOWS.EVENING.RUNDOWN --limit 3").output.contains(QStringLiteral("--all shows them")));
    EXPECT_FALSE(builtIn("ls SHOWS.EVENING.RUNDOWN --all").output.contains(QStringLiteral("--all shows them")));
}

TEST_F(QueueCommandsTest, LsFitsTheTerminal)
{
    m_environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("60"));
    for (const QString &line : builtIn("ls SHOWS.EVENING.RUNDOWN").lines())
        EXPECT_LE(line.size(), 80) << qPrintable(line); // the closing sentences apart, which are wider than a row
    const Outcome run = builtIn("ls SHOWS.EVENING.RUNDOWN --limit 5");
    for (const QString &line : run.lines().mid(0, 6))
        EXPECT_LE(line.size(), 60) << qPrintable(line);
    EXPECT_TRUE(run.output.contains(QStringLiteral("not shown for want of room")));
}

TEST_F(QueueCommandsTest, LsChoosesAndSortsColumns)
{
    const Outcome run = builtIn("ls SHOWS.EVENING.RUNDOWN --columns Title,page-number --sort -page-number --csv");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.lines().first(), QStringLiteral("#,name,number,lock,title,page-number"));
    QStringList pages;
    for (const QString &line : run.lines().mid(1))
        if (!line.isEmpty())
            pages += line.section(QLatin1Char(','), -1);
    EXPECT_EQ(pages.size(), 28);
    EXPECT_EQ(pages.last(), QStringLiteral("A0"));
}

TEST_F(QueueCommandsTest, LsDoesNotSortTenBeforeTwoInTheCLocale)
{
    m_environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    const QStringList lines = builtIn("ls SHOWS.EVENING.RUNDOWN --sort # --csv").lines();
    QStringList positions;
    for (const QString &line : lines.mid(1, 28))
        positions += line.section(QLatin1Char(','), 0, 0);
    QStringList expected;
    for (int position = 1; position <= 28; ++position)
        expected += QString::number(position);
    EXPECT_EQ(positions, expected);
}

TEST_F(QueueCommandsTest, LsQuotesWhatCsvNeedsQuoted)
{
    const Outcome run = builtIn("ls WIRES.WORLD --limit 1 --csv --columns title");
    EXPECT_TRUE(run.output.contains(QStringLiteral("\"Oru quake: one night in the cinema, for four hundred people\"")))
        << qPrintable(run.output);
}

TEST_F(QueueCommandsTest, LsOfWhatIsNotThereIsNotFound)
{
    expectFailure(builtIn("ls NOWHERE"), 4, "NOWHERE");
    expectFailure(builtIn("ls SHOWS.EVENING.RUNDOWN --columns nonsense"), 4, "nonsense");
    expectFailure(builtIn("ls SHOWS.EVENING.RUNDOWN --sort nonsense"), 4, "nonsense");
}

TEST_F(QueueCommandsTest, LsOfADirectoryTakesNoColumns)
{
    expectFailure(builtIn("ls SHOWS --csv"), 2, "is a directory");
    EXPECT_EQ(builtIn("ls SHOWS.EVENING.RUNDOWN --limit 0").code, 2);
    EXPECT_EQ(builtIn("ls SHOWS.EVENING.RUNDOWN --limit 3 --all").code, 2);
}

// ---- new and rm -----------------------------------------------------------------------------------------------------

TEST_F(QueueCommandsTest, NewMakesAStoryWithFieldsThatIsThereAfterwards)
{
    const QString folder = newsroom();
    const Outcome run = in(folder, "new SHOWS.EVENING.RUNDOWN --at 2 title=Weather --json");
    ASSERT_EQ(run.code, 0) << qPrintable(run.errors);
    const int number = run.json().value(QStringLiteral("number")).toInt();
    const QJsonArray stories =
        in(folder, "ls SHOWS.EVENING.RUNDOWN --json").json().value(QStringLiteral("stories")).toArray();
    ASSERT_EQ(stories.size(), 29);
    EXPECT_EQ(stories.at(1)[QStringLiteral("number")].toInt(), number);
    EXPECT_EQ(stories.at(1)[QStringLiteral("fields")][QStringLiteral("title")].toString(), QStringLiteral("Weather"));
}

TEST_F(QueueCommandsTest, NewWithoutPositionGoesToTheEnd)
{
    const QString folder = newsroom();
    const int number = in(folder, "new SHOWS.EVENING.RUNDOWN --json").json().value(QStringLiteral("number")).toInt();
    const QJsonArray stories =
        in(folder, "ls SHOWS.EVENING.RUNDOWN --json").json().value(QStringLiteral("stories")).toArray();
    ASSERT_EQ(stories.size(), 29);
    EXPECT_EQ(stories.at(28)[QStringLiteral("number")].toInt(), number);
}

TEST_F(QueueCommandsTest, NewInAWireQueueIsRefusedInWords)
{
    expectFailure(in(newsroom(), "new WIRES.WORLD"), 1, "WIRES.WORLD");
}

TEST_F(QueueCommandsTest, RmDeletesThoseThatAreNamed)
{
    const QString folder = newsroom();
    const Outcome run = in(folder, "rm SHOWS.EVENING.RUNDOWN 1004 #1");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_TRUE(run.output.contains(QStringLiteral("deleted story 1004"))) << qPrintable(run.output);
    EXPECT_TRUE(run.output.contains(QStringLiteral("deleted story 1001"))) << qPrintable(run.output);
    const Outcome listing = in(folder, "ls SHOWS.EVENING.RUNDOWN --csv");
    EXPECT_FALSE(listing.output.contains(QStringLiteral(",1004,")));
    EXPECT_FALSE(listing.output.contains(QStringLiteral(",1001,")));
    EXPECT_TRUE(listing.output.contains(QStringLiteral(",1002,")));
}

TEST_F(QueueCommandsTest, RmOfOneThatIsNotThereDeletesNothing)
{
    const QString folder = newsroom();
    EXPECT_EQ(in(folder, "rm SHOWS.EVENING.RUNDOWN 1002 999999").code, 4);
    EXPECT_TRUE(in(folder, "ls SHOWS.EVENING.RUNDOWN --csv").output.contains(QStringLiteral(",1002,")));
    expectFailure(in(folder, "rm SHOWS.EVENING.RUNDOWN"), 2, "--all");
}

TEST_F(QueueCommandsTest, RmOfAStoryThatIsNamedTwiceDeletesNothing)
{
    const QString folder = newsroom();
    expectFailure(in(folder, "rm SPORT.RESULTS.CUP #1 #1"), 2, "story 1571 is named twice");
    expectFailure(in(folder, "rm SPORT.RESULTS.CUP 1571 #2 #1"), 2, "story 1571 is named twice");
    EXPECT_EQ(in(folder, "story SPORT.RESULTS.CUP 1571").code, 0);
}

TEST_F(QueueCommandsTest, RmOfALockedStoryIsRefused)
{
    expectFailure(builtIn("--user editor --password desk rm SHOWS.EVENING.RUNDOWN 1003"), 1, "1003");
}

TEST_F(QueueCommandsTest, RmAllAsksFirst)
{
    const QString folder = newsroom();
    const QStringList all{QStringLiteral("--newsroom"), folder, QStringLiteral("rm"), QStringLiteral("DESKS.WORLD"),
                          QStringLiteral("--all")};
    const auto count = [&] {
        return in(folder, "ls DESKS.WORLD --json").json().value(QStringLiteral("stories")).toArray().size();
    };
    const int before = count();
    ASSERT_GT(before, 0);
    const Outcome refused = quire(all, "n\n");
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(refused.errors.contains(QStringLiteral("[y/N]")));
    EXPECT_EQ(count(), before);
    EXPECT_EQ(quire(all, QByteArray()).code, 1);
    EXPECT_EQ(count(), before);
    EXPECT_EQ(quire(all, "y\n").code, 0);
    EXPECT_EQ(count(), 0);
}

TEST_F(QueueCommandsTest, RmAllWithYesDoesNotAsk)
{
    const QString folder = newsroom();
    const Outcome run = in(folder, "rm DESKS.WORLD --all --yes");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    EXPECT_TRUE(run.output.startsWith(QStringLiteral("deleted "))) << qPrintable(run.output);
}

// ---- watch ----------------------------------------------------------------------------------------------------------

TEST_F(QueueCommandsTest, WatchTellsWhatAColleagueMakesChangesAndDeletes)
{
    const Outcome run = builtIn("watch --busy --seconds 4 SHOWS.EVENING.RUNDOWN");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    EXPECT_EQ(run.lines().first(), QStringLiteral("watching SHOWS.EVENING.RUNDOWN, 28 stories"));
    EXPECT_TRUE(run.output.contains(QStringLiteral("  new  "))) << qPrintable(run.output);
    EXPECT_TRUE(run.output.contains(QStringLiteral("  changed  "))) << qPrintable(run.output);
    EXPECT_TRUE(run.output.contains(QStringLiteral("  gone  "))) << qPrintable(run.output);
}

TEST_F(QueueCommandsTest, WatchWithoutChangesSaysNothingMore)
{
    const Outcome run = builtIn("watch --seconds 0.3 SHOWS.EVENING.RUNDOWN WIRES.WORLD");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.lines().size(), 3) << qPrintable(run.output); // two queues, and the end of the last line
}

TEST_F(QueueCommandsTest, WatchOfAFolderTellsWhatOtherProcessesChange)
{
    const QString folder = newsroom();
    QProcess watch;
    watch.start(programPath(), {QStringLiteral("--newsroom"), folder, QStringLiteral("watch"),
                                QStringLiteral("--seconds"), QStringLiteral("60"), QStringLiteral("SPORT.FOOTBALL")});
    ASSERT_TRUE(watch.waitForStarted(patience));
    QByteArray told;
    const auto tells = [&](const char *words) {
        return comesTrue([&] {
            watch.waitForReadyRead(10);
            told += watch.readAllStandardOutput();
            return told.contains(words);
        });
    };
    ASSERT_TRUE(tells("watching SPORT.FOOTBALL, 5 stories"));
    EXPECT_EQ(in(folder, "set SPORT.FOOTBALL 1502 title=Draw").code, 0);
    EXPECT_TRUE(tells("  SPORT.FOOTBALL  changed  1502 Draw")) << told.constData();
    const int number =
        in(folder, "new SPORT.FOOTBALL title=Late --json").json().value(QStringLiteral("number")).toInt();
    EXPECT_TRUE(tells(QStringLiteral("%1 Late").arg(number).toUtf8().constData())) << told.constData();
    EXPECT_EQ(in(folder, "rm SPORT.FOOTBALL 1501").code, 0);
    EXPECT_TRUE(tells("  SPORT.FOOTBALL  gone  1501 ")) << told.constData();
    watch.kill();
    watch.waitForFinished(patience);
}

TEST_F(QueueCommandsTest, WatchOfWhatIsNoQueueIsNotFound)
{
    expectFailure(builtIn("watch SHOWS"), 4, "SHOWS");
}

} // namespace
