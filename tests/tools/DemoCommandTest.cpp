// `quire demo`. Runs the built program.

#include "Program.h"

#include <QJsonArray>

#include "TextWidth.h"

namespace {

using DemoCommandTest = ProgramTest;

TEST_F(DemoCommandTest, TellsEveryStepAndSucceeds)
{
    const Outcome run = quire("demo");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    for (const char *title :
         {"1. Sign on\n", "\n2. Walk the tree\n",
          "\n3. Load a queue on a thread of its own\n  SHOWS.EVENING.RUNDOWN: 28 stories arrived",
          "\n4. Read a story\n",
          "\n5. Lock a story, set a field, save, unlock\n  before  Headlines\n  after   Headlines (second edition)\n",
          "The server tells that the queue has changed", "\n6. Search everywhere\n  \"lighthouse\" is in ",
          "\n7. Store a blob and fetch it\n", "\n8. Sign on with a wrong password\n", "Invalid user name or password.",
          "\n9. Be logged out\n"})
        EXPECT_TRUE(run.output.contains(QLatin1String(title))) << title;
}

TEST_F(DemoCommandTest, FitsIntoEightyColumns)
{
    for (const QString &line : quire("demo").lines())
        EXPECT_LE(Tool::textWidth(line), 80) << qPrintable(line);
}

TEST_F(DemoCommandTest, IsReadOnTwoScreensAndSaysWhatItLeavesOut)
{
    const Outcome run = quire("demo");
    EXPECT_LE(run.lines().size(), 58);
    const int entries = quire("--built-in tree --json").json().value(QStringLiteral("entries")).toArray().size();
    EXPECT_TRUE(run.output.contains(
        QStringLiteral("... and %1 more directories and queues, which quire tree shows\n").arg(entries - 14)));
}

TEST_F(DemoCommandTest, JsonListsTheSteps)
{
    const Outcome run = quire("demo --json");
    EXPECT_EQ(run.code, 0);
    QStringList steps;
    for (const QJsonValue step : run.json().value(QStringLiteral("steps")).toArray())
        steps += step[QStringLiteral("step")].toString();
    EXPECT_EQ(steps, (QStringList{QStringLiteral("sign on"), QStringLiteral("walk"), QStringLiteral("load"),
                                  QStringLiteral("read"), QStringLiteral("edit"), QStringLiteral("search"),
                                  QStringLiteral("blob"), QStringLiteral("refused"), QStringLiteral("logged out")}));
}

TEST_F(DemoCommandTest, FailsWhenItCannotSignOn)
{
    expectFailure(quire("demo --server NOWHERE --json"), 3, "News server not found.");
}

TEST_F(DemoCommandTest, LeavesAFolderAlone)
{
    expectFailure(quire("demo --newsroom nr"), 2, "--newsroom");
}

} // namespace
