// `quire cat`. Runs the built program.

#include "Program.h"

#include <QJsonArray>

namespace {

class CatCommandTest : public ProgramTest
{
protected:
    /// A queue of the sample with at least two stories.
    QString queue()
    {
        const QJsonObject tree = quire("--built-in --json tree").json();
        for (const QJsonValue entry : tree.value(QStringLiteral("entries")).toArray())
            if (entry[QStringLiteral("stories")].toInt() > 1)
                return entry[QStringLiteral("path")].toString();
        return QString();
    }

    Outcome cat(const QString &path, const QString &number, const QStringList &more = {})
    {
        return quire(QStringList{QStringLiteral("--built-in"), QStringLiteral("cat"), path, number} + more);
    }
};

TEST_F(CatCommandTest, PrintsTheWholeMarkupByNumberAndByPosition)
{
    const QString path = queue();
    const QJsonObject story = cat(path, QStringLiteral("#2"), {QStringLiteral("--json")}).json();
    const QString number = QString::number(story.value(QStringLiteral("number")).toInt());
    const Outcome byNumber = cat(path, number);
    EXPECT_EQ(byNumber.code, 0);
    EXPECT_EQ(byNumber.errors, QString());
    EXPECT_EQ(byNumber.output, story.value(QStringLiteral("markup")).toString() + QLatin1Char('\n'));
    EXPECT_EQ(cat(path, QStringLiteral("#2")).output, byNumber.output);
    for (const char *part : {"<story>", "<head>", "<fields>", "<body>", "</story>"})
        EXPECT_TRUE(byNumber.output.contains(QLatin1String(part))) << part;
}

TEST_F(CatCommandTest, JsonHasTheDocumentedKeys)
{
    const QString path = queue();
    const QJsonObject story = cat(path, QStringLiteral("#1"), {QStringLiteral("--json")}).json();
    EXPECT_EQ(story.keys(), (QStringList{QStringLiteral("form"), QStringLiteral("id"), QStringLiteral("markup"),
                                         QStringLiteral("name"), QStringLiteral("number"), QStringLiteral("path")}));
    EXPECT_EQ(story.value(QStringLiteral("path")).toString(), path);
    EXPECT_TRUE(story.value(QStringLiteral("id"))
                    .toString()
                    .startsWith(QString::number(story.value(QStringLiteral("number")).toInt()) + QLatin1Char(':')));
}

TEST_F(CatCommandTest, ThePathMayHaveAnyLetterCase)
{
    const QString path = queue();
    EXPECT_EQ(cat(path.toLower(), QStringLiteral("#1")).output, cat(path, QStringLiteral("#1")).output);
}

TEST_F(CatCommandTest, AQueueThatIsNotThereIsNotFound)
{
    expectFailure(cat(QStringLiteral("NO.SUCH"), QStringLiteral("1")), 4, "\"NO.SUCH\"");
}

TEST_F(CatCommandTest, ADirectoryIsNoQueue)
{
    expectFailure(cat(QStringLiteral("."), QStringLiteral("1")), 4, "is a directory");
}

TEST_F(CatCommandTest, AStoryThatIsNotThereIsNotFound)
{
    const QString path = queue();
    expectFailure(cat(path, QStringLiteral("2147483647")), 4, "there is no story 2147483647");
    expectFailure(cat(path, QStringLiteral("-5")), 4, "there is no story -5");
    expectFailure(cat(path, QStringLiteral("#0")), 4, "there is no story #0");
    expectFailure(cat(path, QStringLiteral("#2000000000")), 4, "there is no story #2000000000");
}

TEST_F(CatCommandTest, AStoryOfAnotherQueueIsNotFound)
{
    const QJsonArray entries =
        quire("--built-in --json tree --stories").json().value(QStringLiteral("entries")).toArray();
    QString path;
    int number = 0;
    for (const QJsonValue &entry : entries) {
        const QJsonArray stories = entry[QStringLiteral("storyList")].toArray();
        if (stories.isEmpty())
            continue;
        if (path.isEmpty())
            path = entry[QStringLiteral("path")].toString();
        else
            number = stories.first()[QStringLiteral("number")].toInt();
    }
    ASSERT_GT(number, 0);
    expectFailure(cat(path, QString::number(number)), 4, "there is no story");
}

TEST_F(CatCommandTest, WhatIsNoNumberIsWrongUsage)
{
    for (const char *number : {"abc", "1.5", "12:345", "0x10", "#", "#x", "99999999999"})
        expectFailure(cat(QStringLiteral("NEWS"), QLatin1String(number)), 2, number);
}

} // namespace
