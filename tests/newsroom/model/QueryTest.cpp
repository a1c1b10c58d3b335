#include <gtest/gtest.h>

#include <quire/newsroom/model/Query.h>
#include <quire/newsroom/model/Story.h>

#include "Printers.h"

using namespace Newsroom;

namespace {

Story story()
{
    Story::Identity identity;
    identity.id = {1, 1, 0};
    StoryText text;
    text.setField(QStringLiteral("title"), QString::fromUtf8("Thunderstorm over Łódź"));
    text.setField(QStringLiteral("writer"), QStringLiteral("nora"));
    text.setField(QStringLiteral("empty"), QString());
    text.setPlainBody(QString::fromUtf8("Rain fell & fell.\nالمطر غزير. 大雨です。 Ünder 12:30 <here>"));
    return Story(identity, text);
}

Query parsed(const QString &text)
{
    const Answer<Query> query = Query::parse(text);
    EXPECT_TRUE(query.ok()) << text.toStdString();
    return query.value;
}

bool finds(const char *words)
{
    return parsed(QStringLiteral("{[S].*}((%1))").arg(QString::fromUtf8(words))).matches(story());
}

} // namespace

TEST(QueryTest, ReadsTheWholeScope)
{
    const Query query = parsed(QStringLiteral("{MaxFound=500 [NEWSROOM-A]NEWS.SPORT}((Q))"));
    EXPECT_EQ(query.maxFound(), 500);
    EXPECT_EQ(query.server(), QStringLiteral("NEWSROOM-A"));
    EXPECT_EQ(query.path(), QStringLiteral("NEWS.SPORT"));
    EXPECT_FALSE(query.isSubtree());
}

TEST(QueryTest, WithoutMaxFoundThereIsNoLimit)
{
    EXPECT_EQ(parsed(QStringLiteral("{[S]P}((Q))")).maxFound(), 0);
}

TEST(QueryTest, AnEmptyServerAndPathMeanEverything)
{
    const Query query = parsed(QStringLiteral("{[]}((Q))"));
    EXPECT_EQ(query.server(), QString());
    EXPECT_EQ(query.path(), QString());
    EXPECT_TRUE(query.isSubtree());
    EXPECT_TRUE(parsed(QStringLiteral("{}((Q))")).isSubtree());
}

TEST(QueryTest, DotStarSearchesBelow)
{
    EXPECT_TRUE(parsed(QStringLiteral("{[S].*}((Q))")).isSubtree());
    EXPECT_EQ(parsed(QStringLiteral("{[S].*}((Q))")).path(), QString());
    EXPECT_TRUE(parsed(QStringLiteral("{[S]NEWS.*}((Q))")).isSubtree());
    EXPECT_EQ(parsed(QStringLiteral("{[S]NEWS.*}((Q))")).path(), QStringLiteral("NEWS"));
}

TEST(QueryTest, PathsMayHaveBlanks)
{
    EXPECT_EQ(parsed(QStringLiteral("{MaxFound=5 [S]MY NEWS.A B}((Q))")).path(), QStringLiteral("MY NEWS.A B"));
}

TEST(QueryTest, MalformedScopesAreRefused)
{
    for (const char *text : {"", "Q", "((Q))", "{}", "{}(Q)", "{[S}((Q))", "{MaxFound= [S]}((Q))",
                             "{MaxFound=x [S]}((Q))", "{MaxFound=-1 [S]}((Q))", "{}((Q)", "[S]P((Q))", "{}()", "{}(()"})
        EXPECT_EQ(Query::parse(QLatin1String(text)).refusal, Refusal::BadSyntax) << text;
}

TEST(QueryTest, MalformedWordsAreRefused)
{
    for (const char *words : {"", "  ", "\"", "\"a", "(a", "a)", "()", "OR", "a OR", "OR a", "a AND", "NOT", "a NOT",
                              "a OR OR b", "title:", "title: x", "\"\"", "a (", "(a))("})
        EXPECT_EQ(Query::parse(QStringLiteral("{}((%1))").arg(QLatin1String(words))).refusal, Refusal::BadSyntax)
            << words;
}

TEST(QueryTest, FindsWordsInNameFieldsAndTextIgnoringLetterCase)
{
    EXPECT_TRUE(finds("thunderstorm"));
    EXPECT_TRUE(finds("NORA"));
    EXPECT_TRUE(finds("rain"));
    EXPECT_FALSE(finds("snow"));
}

TEST(QueryTest, FindsWordsOfAnyScript)
{
    EXPECT_TRUE(finds("łódź"));
    EXPECT_TRUE(finds("المطر"));
    EXPECT_TRUE(finds("大雨"));
    EXPECT_TRUE(finds("ünder"));
}

TEST(QueryTest, AWordIsFoundWithinAnother)
{
    EXPECT_TRUE(finds("storm"));
}

TEST(QueryTest, TextIsSearchedWithoutItsMarkup)
{
    EXPECT_TRUE(finds("\"fell & fell\""));
    EXPECT_TRUE(finds("<here>"));
    EXPECT_FALSE(finds("<p>"));
    EXPECT_FALSE(finds("amp"));
}

TEST(QueryTest, WordsSideBySideMustAllBeFound)
{
    EXPECT_TRUE(finds("rain storm"));
    EXPECT_TRUE(finds("rain AND storm"));
    EXPECT_FALSE(finds("rain snow"));
}

TEST(QueryTest, OrBindsWeakerThanAnd)
{
    EXPECT_TRUE(finds("snow OR rain"));
    EXPECT_TRUE(finds("snow ice OR rain storm"));
    EXPECT_FALSE(finds("(snow OR rain) ice"));
    EXPECT_TRUE(finds("rain OR snow ice"));
}

TEST(QueryTest, NotAndMinusExclude)
{
    EXPECT_FALSE(finds("-rain"));
    EXPECT_TRUE(finds("rain -snow"));
    EXPECT_FALSE(finds("rain NOT storm"));
    EXPECT_TRUE(finds("NOT NOT rain"));
    EXPECT_TRUE(finds("NOT (snow OR ice)"));
    EXPECT_FALSE(finds("-(rain OR ice) storm"));
}

TEST(QueryTest, LowerCaseOrIsAWord)
{
    EXPECT_FALSE(finds("rain or snow"));
}

TEST(QueryTest, PhrasesStandAsOneWord)
{
    EXPECT_TRUE(finds("\"Rain fell\""));
    EXPECT_FALSE(finds("\"fell Rain\""));
}

TEST(QueryTest, AStarWantsTheBeginningOfAWord)
{
    EXPECT_TRUE(finds("thunder*"));
    EXPECT_FALSE(finds("storm*"));
    EXPECT_TRUE(finds("\"rain fe\"*"));
    EXPECT_TRUE(finds("大雨*"));
}

TEST(QueryTest, AStarAloneFindsEverything)
{
    EXPECT_TRUE(finds("*"));
    EXPECT_FALSE(finds("-*"));
}

TEST(QueryTest, FieldsAreSearchedByName)
{
    EXPECT_TRUE(finds("title:storm"));
    EXPECT_TRUE(finds("TITLE:storm"));
    EXPECT_FALSE(finds("writer:storm"));
    EXPECT_TRUE(finds("title:\"over Łódź\""));
    EXPECT_FALSE(finds("title:storm*"));
    EXPECT_FALSE(finds("unknown:storm"));
    EXPECT_TRUE(finds("body:rain"));
    EXPECT_FALSE(finds("body:storm"));
    EXPECT_TRUE(finds("name:thunder*"));
    EXPECT_FALSE(finds("-title:storm"));
}

TEST(QueryTest, FieldStarWantsTheFieldNotToBeEmpty)
{
    EXPECT_TRUE(finds("title:*"));
    EXPECT_FALSE(finds("empty:*"));
    EXPECT_FALSE(finds("unknown:*"));
}

TEST(QueryTest, ATimeIsAWordAndNoField)
{
    EXPECT_TRUE(finds("12:30"));
}

TEST(QueryTest, AMinusAloneIsAWord)
{
    EXPECT_FALSE(finds("-"));
}

TEST(QueryTest, DeepQueriesNeedNoStack)
{
    const int depth = 100000;
    const QString text = QStringLiteral("{}((") + QString(depth, QLatin1Char('(')) + QStringLiteral("rain") +
                         QString(depth, QLatin1Char(')')) + QStringLiteral("))");
    EXPECT_TRUE(parsed(text).matches(story()));
    const QString nots = QStringLiteral("{}((") + QStringLiteral("NOT ").repeated(depth) + QStringLiteral("rain))");
    EXPECT_TRUE(parsed(nots).matches(story()));
}

TEST(QueryTest, ADefaultQueryFindsNothing)
{
    EXPECT_FALSE(Query().matches(story()));
}
