// `quire tree`. Runs the built program.

#include "Program.h"

#include <QJsonArray>
#include <QProcess>
#include <QRegularExpression>

#include "TextWidth.h"

namespace {

class TreeCommandTest : public ProgramTest
{
protected:
    QJsonArray entries(const char *arguments)
    {
        return quire((QByteArray("--built-in --json tree ") + arguments).constData())
            .json()
            .value(QStringLiteral("entries"))
            .toArray();
    }

    /// The value of \a key of every entry that is of \a kind.
    static QStringList values(const QJsonArray &entries, const char *kind, const char *key)
    {
        QStringList found;
        for (const QJsonValue &entry : entries)
            if (entry[QStringLiteral("kind")].toString() == QLatin1String(kind))
                found += entry[QLatin1String(key)].toVariant().toString();
        return found;
    }
};

TEST_F(TreeCommandTest, DrawsEveryEntryOnALineOfItsOwnAndCountsThem)
{
    const QJsonArray all = entries("");
    const Outcome run = quire("--built-in tree");
    EXPECT_EQ(run.code, 0);
    const QStringList lines = run.lines();
    ASSERT_EQ(lines.size(), all.size() + 3); // an empty line, the sum, and the end of the last line
    EXPECT_EQ(lines.first(), QStringLiteral("."));
    for (int i = 1; i < all.size(); ++i)
        EXPECT_TRUE(lines.at(i).contains(all.at(i)[QStringLiteral("name")].toString())) << qPrintable(lines.at(i));

    qint64 stories = 0;
    for (const QString &count : values(all, "queue", "stories"))
        stories += count.toInt();
    const QString &sum = lines.at(all.size() + 1);
    EXPECT_TRUE(sum.startsWith(QString::number(values(all, "directory", "path").size() - 1))) << qPrintable(sum);
    EXPECT_TRUE(sum.contains(QStringLiteral(", %1 queue").arg(values(all, "queue", "path").size())));
    EXPECT_TRUE(sum.contains(QStringLiteral(", %1 stor").arg(stories)));
}

TEST_F(TreeCommandTest, JsonHasTheDocumentedKeys)
{
    const QJsonArray all = entries("");
    const QStringList common{QStringLiteral("depth"), QStringLiteral("flags"), QStringLiteral("kind"),
                             QStringLiteral("marks"), QStringLiteral("name"),  QStringLiteral("path")};
    ASSERT_FALSE(all.isEmpty());
    for (const QJsonValue &entry : all) {
        const QStringList keys = entry.toObject().keys();
        for (const QString &key : common)
            EXPECT_TRUE(keys.contains(key)) << qPrintable(key);
        const bool isQueue = entry[QStringLiteral("kind")].toString() == QLatin1String("queue");
        EXPECT_EQ(keys.contains(QStringLiteral("entries")), !isQueue);
        for (const char *key : {"stories", "form", "number"})
            EXPECT_EQ(keys.contains(QLatin1String(key)), isQueue) << key;
        EXPECT_EQ(entry[QStringLiteral("flags")].toArray().size(), 3);
    }
    EXPECT_EQ(all.first()[QStringLiteral("path")].toString(), QStringLiteral("."));
    EXPECT_EQ(all.first()[QStringLiteral("depth")].toInt(), 0);
}

TEST_F(TreeCommandTest, PathsNameTheirParents)
{
    for (const QString &path : values(entries(""), "queue", "path"))
        EXPECT_EQ(quire({QStringLiteral("--built-in"), QStringLiteral("tree"), path}).code, 0) << qPrintable(path);
}

TEST_F(TreeCommandTest, BeginsAtAnyPathInAnyLetterCase)
{
    const QString path = values(entries(""), "directory", "path").value(1);
    ASSERT_FALSE(path.isEmpty());
    const Outcome run = quire({QStringLiteral("--built-in"), QStringLiteral("tree"), path.toLower()});
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.lines().first().startsWith(path)) << qPrintable(run.output);
}

TEST_F(TreeCommandTest, AQueueIsATreeOfItsOwn)
{
    const QString path = values(entries(""), "queue", "path").value(0);
    const Outcome run = quire({QStringLiteral("--built-in"), QStringLiteral("tree"), path});
    EXPECT_TRUE(run.lines().first().startsWith(path));
    EXPECT_TRUE(run.output.contains(QStringLiteral("0 directories, 1 queue, ")));
}

TEST_F(TreeCommandTest, DepthLimitsTheLevels)
{
    EXPECT_EQ(entries("--depth 0").size(), 1);
    for (const QJsonValue entry : entries("--depth 1"))
        EXPECT_LE(entry[QStringLiteral("depth")].toInt(), 1);
    EXPECT_LT(entries("--depth 1").size(), entries("").size());
    EXPECT_EQ(entries("--depth 1").size(), entries("--depth 0").first()[QStringLiteral("entries")].toInt() + 1);
}

TEST_F(TreeCommandTest, FlagsShowsTheThreeWords)
{
    EXPECT_FALSE(quire("--built-in tree").output.contains(QStringLiteral("00000000 00000000")));
    const QStringList lines = quire("--built-in tree --flags").lines();
    const QRegularExpression words(QStringLiteral("  [0-9a-f]{8} [0-9a-f]{8} [0-9a-f]{8}"));
    for (int i = 0; i < lines.size() - 3; ++i)
        EXPECT_TRUE(words.match(lines.at(i)).hasMatch()) << qPrintable(lines.at(i));
}

TEST_F(TreeCommandTest, StoriesListsTheNumbersThatCatTakes)
{
    const QJsonArray all = entries("--stories");
    for (const QJsonValue &entry : all) {
        const QJsonArray stories = entry[QStringLiteral("storyList")].toArray();
        EXPECT_EQ(stories.size(), entry[QStringLiteral("stories")].toInt());
        if (stories.isEmpty())
            continue;
        const QJsonObject first = stories.first().toObject();
        EXPECT_EQ(first.keys(), (QStringList{QStringLiteral("form"), QStringLiteral("id"), QStringLiteral("name"),
                                             QStringLiteral("number"), QStringLiteral("position")}));
        const QString number = QString::number(first.value(QStringLiteral("number")).toInt());
        const Outcome cat = quire(
            {QStringLiteral("--built-in"), QStringLiteral("cat"), entry[QStringLiteral("path")].toString(), number});
        EXPECT_EQ(cat.code, 0) << qPrintable(cat.errors);
        const Outcome drawn = quire({QStringLiteral("--built-in"), QStringLiteral("tree"), QStringLiteral("--stories"),
                                     entry[QStringLiteral("path")].toString()});
        EXPECT_TRUE(drawn.output.contains(QStringLiteral(" %1  ").arg(number))) << qPrintable(drawn.output);
        return;
    }
    FAIL() << "no queue has a story";
}

TEST_F(TreeCommandTest, FitsIntoTheColumnsOfTheEnvironment)
{
    for (const char *columns : {"80", "40"}) {
        m_environment.insert(QStringLiteral("COLUMNS"), QLatin1String(columns));
        const Outcome run = quire("--built-in tree --stories --flags");
        EXPECT_EQ(run.code, 0);
        QStringList lines = run.lines();
        lines.erase(lines.end() - 2, lines.end()); // the sum is a sentence
        for (const QString &line : lines)
            EXPECT_LE(Tool::textWidth(line), QString::fromLatin1(columns).toInt()) << qPrintable(line);
    }
}

TEST_F(TreeCommandTest, APathThatIsNotThereIsNotFound)
{
    expectFailure(quire("--built-in tree NO.SUCH.PLACE"), 4, "\"NO.SUCH.PLACE\"");
    expectFailure(quire("--built-in tree --json NO.SUCH.PLACE"), 4, "\"NO.SUCH.PLACE\"");
}

TEST_F(TreeCommandTest, OddPathsAreRefusedInOneLine)
{
    for (const char *path : {"..", "a b", "NEWS..X", "\xc3\xa9\xe6\x97\xa5", "'; rm"}) {
        const Outcome run = quire({QStringLiteral("--built-in"), QStringLiteral("tree"), QString::fromUtf8(path)});
        expectFailure(run, 4, path);
    }
}

TEST_F(TreeCommandTest, AControlCharacterInAPathIsShownNotSent)
{
    const Outcome run = quire({QStringLiteral("--built-in"), QStringLiteral("tree"), QStringLiteral("A\u001bB")});
    expectFailure(run, 4, "A\u241bB");
}

#ifndef Q_OS_WIN
TEST_F(TreeCommandTest, AReaderThatGoesAwayEndsItQuietly)
{
    QProcess shell;
    const QString program = programPath();
    shell.start(QStringLiteral("bash"), {QStringLiteral("-c"), QStringLiteral("'%1' --built-in tree --stories | true; "
                                                                              "echo \"${PIPESTATUS[0]}\"")
                                                                   .arg(program)});
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_EQ(shell.readAllStandardOutput(), QByteArray("0\n"));
    EXPECT_EQ(shell.readAllStandardError(), QByteArray());
}

TEST_F(TreeCommandTest, AFullDiskIsAFailure)
{
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(programPath(), {QStringLiteral("--built-in"), QStringLiteral("tree")});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().startsWith("quire: cannot write the output: "));
}
#endif

} // namespace
