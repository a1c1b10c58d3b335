// `quire search`. Runs the built program.

#include "Program.h"

#include <QJsonArray>

namespace {

using SearchCommandTest = ProgramTest;

TEST_F(SearchCommandTest, ShowsEachHitAndCountsThem)
{
    const Outcome run = quire("--built-in search SPORT.FOOTBALL *");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    const QStringList lines = run.lines();
    ASSERT_EQ(lines.size(), 8) << qPrintable(run.output); // five hits, an empty line, the count, the end
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(lines.at(i).startsWith(QLatin1String("SPORT.FOOTBALL "))) << qPrintable(lines.at(i));
    EXPECT_EQ(lines.at(5), QString());
    EXPECT_EQ(lines.at(6), QStringLiteral("5 stories"));
}

TEST_F(SearchCommandTest, AHitIsWhatStoryTakes)
{
    const QString line = quire("--built-in search SPORT.FOOTBALL * --limit 1").lines().constFirst();
    const QStringList words = line.split(QLatin1Char(' '));
    ASSERT_GE(words.size(), 4);
    const Outcome run = quire({QStringLiteral("--built-in"), QStringLiteral("story"), words.at(0), words.at(1)});
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
}

TEST_F(SearchCommandTest, ADirectoryIsSearchedWithAllBelow)
{
    const QJsonObject found = quire("--built-in search sport * --json").json();
    EXPECT_EQ(found.value(QStringLiteral("scope")).toString(), QStringLiteral("SPORT.*"));
    EXPECT_EQ(found.value(QStringLiteral("count")).toInt(), 19);
}

TEST_F(SearchCommandTest, TheRootIsEverything)
{
    const QJsonObject found = quire("--built-in search . * --limit 0 --json").json();
    EXPECT_EQ(found.value(QStringLiteral("scope")).toString(), QStringLiteral(".*"));
    EXPECT_GT(found.value(QStringLiteral("count")).toInt(), 100);
}

TEST_F(SearchCommandTest, TheLimitIsTheServers)
{
    EXPECT_TRUE(quire("--built-in search . * --limit 3").output.endsWith(QLatin1String("\n3 stories\n")));
    EXPECT_TRUE(quire("--built-in search . * --limit 1").output.endsWith(QLatin1String("\n1 story\n")));
}

TEST_F(SearchCommandTest, JsonHasDocumentedKeys)
{
    const QJsonObject found = quire("--built-in search SPORT.FOOTBALL * --json").json();
    EXPECT_EQ(found.keys(), (QStringList{QStringLiteral("count"), QStringLiteral("hits"), QStringLiteral("limit"),
                                         QStringLiteral("query"), QStringLiteral("scope")}));
    EXPECT_EQ(found.value(QStringLiteral("limit")).toInt(), 500);
    EXPECT_EQ(found.value(QStringLiteral("query")).toString(), QStringLiteral("*"));
    const QJsonArray hits = found.value(QStringLiteral("hits")).toArray();
    ASSERT_EQ(hits.size(), 5);
    EXPECT_EQ(hits.at(0).toObject().keys(), (QStringList{QStringLiteral("fields"), QStringLiteral("name"),
                                                         QStringLiteral("number"), QStringLiteral("queue")}));
}

TEST_F(SearchCommandTest, NothingFoundIsNoFailure)
{
    const Outcome run = quire("--built-in search . no-such-word-anywhere");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.output, QStringLiteral("\n0 stories\n"));
}

TEST_F(SearchCommandTest, AnUnknownPathIsNotFound)
{
    expectFailure(quire("--built-in search NO.SUCH rain"), 4, "NO.SUCH");
}

TEST_F(SearchCommandTest, ARefusedQueryFails)
{
    expectFailure(quire({QStringLiteral("--built-in"), QStringLiteral("search"), QStringLiteral("."),
                         QStringLiteral("\"unfinished")}),
                  1, "does not search");
}

TEST_F(SearchCommandTest, PathAndQueryAreNeeded)
{
    EXPECT_EQ(quire("search").code, 2);
    EXPECT_EQ(quire("search SPORT").code, 2);
    EXPECT_EQ(quire("search SPORT rain --limit -1").code, 2);
}

} // namespace
