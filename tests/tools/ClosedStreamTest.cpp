// Standard streams that are closed when the program starts. A shell closes them.

#include "Shell.h"

#ifndef Q_OS_WIN

namespace {

ShellOutcome inShell(const char *command)
{
    ShellOutcome run = runForeign(QStringLiteral("sh"), {QStringLiteral("-c"), QLatin1String(command)});
    EXPECT_TRUE(run.found);
    return run;
}

TEST(ClosedStream, OfOutputIsAFailureThatSaysSo)
{
    const ShellOutcome run = inShell("LC_ALL=C exec quire --built-in tree SPORT >&-");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.errors, QStringLiteral("quire: cannot write the output: Bad file descriptor\n"));
}

TEST(ClosedStream, NeverBecomesAFileOfTheProgram)
{
    const ShellOutcome run = inShell("quire --built-in newsroom export nr && { quire --newsroom nr set "
                                     "SPORT.RESULTS.CUP '#1' title=New <&- >&- 2>&-; quire newsroom check nr; }");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
}

TEST(ClosedStream, OfInputIsAFailureThatSaysSo)
{
    const ShellOutcome run = inShell("exec quire parse - <&-");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.errors, QStringLiteral("quire: cannot read the standard input: it cannot be read\n"));
}

TEST(ClosedStream, OfErrorsLeavesTheExitCode)
{
    EXPECT_EQ(inShell("exec quire --built-in tree NO.SUCH 2>&-").code, 4);
    EXPECT_EQ(inShell("exec quire --built-in tree SPORT 2>&-").code, 0);
}

} // namespace

#endif
