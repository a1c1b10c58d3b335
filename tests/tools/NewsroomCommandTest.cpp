// `quire newsroom` and --newsroom. Runs the built program.

#include "Program.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>

namespace {

class NewsroomCommandTest : public ProgramTest
{
protected:
    /// A folder of texts: one at the top, two below.
    void writeTexts()
    {
        QDir().mkpath(path("texts/Sport News"));
        write("texts/readme.txt", "First line\n\nSecond line\n");
        write("texts/Sport News/final.txt", "Caf\xC3\xA9 \xF0\x9F\x98\x80\n");
        write("texts/Sport News/page.html", "<html><body><p>A page</p></body></html>");
        write("texts/Sport News/image.png", QByteArray("\x89PNG\r\n\x1A\n\0\0", 10));
    }
};

TEST_F(NewsroomCommandTest, ImportMakesAFolderThatOpens)
{
    writeTexts();
    const Outcome run = quire("newsroom import texts nr");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_TRUE(run.output.startsWith(QLatin1String("nr: "))) << qPrintable(run.output);
    EXPECT_TRUE(run.output.contains(QLatin1String("3 stories"))) << qPrintable(run.output);
    EXPECT_TRUE(run.output.contains(QLatin1String("left out: 1 binary"))) << qPrintable(run.output);
    const Outcome tree = quire("--newsroom nr tree --stories");
    EXPECT_EQ(tree.code, 0) << qPrintable(tree.errors);
    EXPECT_TRUE(tree.output.contains(QLatin1String("final.txt"))) << qPrintable(tree.output);
}

TEST_F(NewsroomCommandTest, ImportTellsItsCountsAsJson)
{
    writeTexts();
    const QJsonObject report = quire("newsroom import texts nr --json").json();
    EXPECT_EQ(report.value(QStringLiteral("stories")).toInt(), 3);
    EXPECT_EQ(report.value(QStringLiteral("skippedBinary")).toInt(), 1);
    EXPECT_EQ(report.value(QStringLiteral("folder")).toString(), QStringLiteral("nr"));
}

TEST_F(NewsroomCommandTest, ImportAndCheckCountTheSame)
{
    writeTexts();
    const QJsonObject imported = quire("newsroom import texts nr --json").json();
    QJsonObject checked = quire("newsroom check nr --json").json();
    EXPECT_EQ(checked.take(QStringLiteral("strays")), QJsonArray());
    ASSERT_EQ(checked.size(), 4);
    for (const QString &key : checked.keys())
        EXPECT_EQ(imported.value(key), checked.value(key)) << qPrintable(key);
}

TEST_F(NewsroomCommandTest, ImportOfAMissingFolderFailsAndMakesNothing)
{
    expectFailure(quire("newsroom import nowhere nr"), 1, "nowhere");
    EXPECT_FALSE(exists("nr"));
}

TEST_F(NewsroomCommandTest, ImportIntoAFolderInUseFailsAndLeavesItAlone)
{
    writeTexts();
    QDir().mkpath(path("nr"));
    write("nr/mine.txt", "mine");
    expectFailure(quire("newsroom import texts nr"), 1, "nr");
    EXPECT_EQ(read("nr/mine.txt"), QByteArray("mine"));
}

TEST_F(NewsroomCommandTest, ExportWritesTheSampleSoThatItReadsTheSame)
{
    ASSERT_EQ(quire("--built-in newsroom export nr").code, 0);
    const Outcome original = quire("--built-in tree --stories");
    const Outcome copy = quire("--newsroom nr tree --stories");
    EXPECT_EQ(copy.code, 0) << qPrintable(copy.errors);
    EXPECT_EQ(copy.output, original.output);
}

TEST_F(NewsroomCommandTest, ExportIntoAFolderInUseFails)
{
    QDir().mkpath(path("nr"));
    write("nr/mine.txt", "mine");
    expectFailure(quire("--built-in newsroom export nr"), 1, "nr");
    EXPECT_EQ(read("nr/mine.txt"), QByteArray("mine"));
}

TEST_F(NewsroomCommandTest, GenerateMakesAsManyStoriesAndQueuesAsToldTo)
{
    const Outcome run = quire("newsroom generate nr --stories 7 --queues 3");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(run.output, QStringLiteral("nr: 1 directory, 3 queues, 7 stories\n"));
    EXPECT_EQ(quire("newsroom check nr").output, QStringLiteral("nr is in order: 1 directory, 3 queues, 7 stories\n"));
    const Outcome listing = quire("--newsroom nr ls WIRES.W1 --csv --columns urgency");
    EXPECT_EQ(listing.code, 0) << qPrintable(listing.errors);
    EXPECT_EQ(listing.lines().size(), 5) << qPrintable(listing.output); // the headings, three stories, the end
}

TEST_F(NewsroomCommandTest, GenerateMakesAThousandStoriesInOneQueueUnlessToldOtherwise)
{
    EXPECT_EQ(quire("newsroom generate nr").output, QStringLiteral("nr: 1 directory, 1 queue, 1000 stories\n"));
}

TEST_F(NewsroomCommandTest, GenerateIntoAFolderInUseFails)
{
    QDir().mkpath(path("nr"));
    write("nr/mine.txt", "mine");
    expectFailure(quire("newsroom generate nr"), 1, "nr");
    EXPECT_EQ(read("nr/mine.txt"), QByteArray("mine"));
    EXPECT_EQ(quire("newsroom generate new --stories -1").code, 2);
    EXPECT_EQ(quire("newsroom generate new --queues 0").code, 2);
    EXPECT_FALSE(exists("new"));
}

TEST_F(NewsroomCommandTest, CheckCountsWhatIsInAFolder)
{
    ASSERT_EQ(quire("--built-in newsroom export nr").code, 0);
    const Outcome run = quire("newsroom check nr");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_TRUE(run.output.startsWith(QLatin1String("nr is in order: "))) << qPrintable(run.output);
    EXPECT_GT(quire("newsroom check nr --json").json().value(QStringLiteral("stories")).toInt(), 0);
}

TEST_F(NewsroomCommandTest, CheckNamesWhatIsNoPartOfTheNewsroom)
{
    ASSERT_EQ(quire("newsroom generate nr --stories 2").code, 0);
    write("nr/tree/WIRES/W1/000003.zeko", "A story that no queue came to name");
    const Outcome run = quire("newsroom check nr");
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_EQ(run.output, QStringLiteral("nr is in order: 1 directory, 1 queue, 2 stories\n"
                                         "no part of it: tree/WIRES/W1/000003.zeko\n"));
    EXPECT_EQ(quire("newsroom check nr --json").json().value(QStringLiteral("strays")).toArray(),
              QJsonArray{QStringLiteral("tree/WIRES/W1/000003.zeko")});
}

TEST_F(NewsroomCommandTest, CheckNamesOnlyTheFirstOfManyThatAreNoPart)
{
    ASSERT_EQ(quire("newsroom generate nr --stories 2").code, 0);
    for (int number = 101; number <= 112; ++number)
        write(qPrintable(QStringLiteral("nr/tree/WIRES/W1/000%1.zeko").arg(number)), "A story");
    const QStringList lines = quire("newsroom check nr").lines();
    ASSERT_EQ(lines.size(), 13);
    EXPECT_EQ(lines.at(10), QStringLiteral("no part of it: tree/WIRES/W1/000110.zeko"));
    EXPECT_EQ(lines.at(11), QStringLiteral("no part of it: 2 more files"));
    EXPECT_EQ(quire("newsroom check nr --json").json().value(QStringLiteral("strays")).toArray().size(), 12);
}

TEST_F(NewsroomCommandTest, CheckNamesTheFileThatIsWrong)
{
    ASSERT_EQ(quire("--built-in newsroom export nr").code, 0);
    write("nr/newsroom.json", "{ this is no JSON");
    expectFailure(quire("newsroom check nr"), 1, "newsroom.json");
    expectFailure(quire("--newsroom nr tree"), 1, "newsroom.json");
    EXPECT_EQ(read("nr/newsroom.json"), QByteArray("{ this is no JSON"));
}

TEST_F(NewsroomCommandTest, AFolderThatIsNotThereIsOneClearLine)
{
    expectFailure(quire("--newsroom nowhere tree"), 1, "nowhere");
    expectFailure(quire("newsroom check nowhere"), 1, "nowhere");
}

TEST_F(NewsroomCommandTest, AnEmptyFolderNameIsWrongUsage)
{
    const QString newsroom = QStringLiteral("newsroom");
    const auto expectRefused = [&](const QStringList &arguments) {
        const Outcome run = quire(arguments);
        ASSERT_EQ(run.code, 2) << qPrintable(run.errors);
        expectFailure(run, 2, "DIR: wants the name of a file or folder");
    };
    // What would come to nothing anyway goes first: an empty name must never lead to the root of the file system.
    ASSERT_NO_FATAL_FAILURE(expectRefused({newsroom, QStringLiteral("check"), QString()}));
    ASSERT_NO_FATAL_FAILURE(expectRefused({newsroom, QStringLiteral("import"), QStringLiteral("nowhere"), QString()}));
    ASSERT_NO_FATAL_FAILURE(expectRefused(
        {QStringLiteral("--newsroom"), QStringLiteral("nowhere"), newsroom, QStringLiteral("export"), QString()}));
    expectRefused({newsroom, QStringLiteral("generate"), QString()});
    expectFailure(quire({newsroom, QStringLiteral("import"), QString(), QStringLiteral("nr")}), 2, "SRC: wants");
    EXPECT_FALSE(exists("nr"));
}

TEST_F(NewsroomCommandTest, InfoNamesTheFolder)
{
    ASSERT_EQ(quire("--built-in newsroom export nr").code, 0);
    EXPECT_EQ(quire("--newsroom nr info --json").json().value(QStringLiteral("folder")).toString(),
              QStringLiteral("nr"));
}

} // namespace
