// Colours: on terminals only, and not where they are unwelcome. A terminal of its own runs the program.

#include "Shell.h"

#ifndef Q_OS_WIN

namespace {

const QLatin1String escape("\x1b[");

/// What the program writes to a terminal, in an environment with \a settings ("TERM=xterm").
QString onTerminal(const char *settings, const char *arguments)
{
    const QString command =
        QStringLiteral("env -u NO_COLOR %1 quire --built-in %2").arg(QLatin1String(settings), QLatin1String(arguments));
    const ShellOutcome run =
        runForeign(QStringLiteral("script"), {QStringLiteral("-qec"), command, QStringLiteral("/dev/null")});
    EXPECT_TRUE(run.found);
    return run.lines.join(QLatin1Char('\n'));
}

TEST(Colour, IsOnTerminals)
{
    EXPECT_TRUE(onTerminal("TERM=xterm", "ls SPORT.RESULTS.CUP").contains(escape));
    EXPECT_TRUE(onTerminal("TERM=xterm", "form STORY").contains(QLatin1String("\x1b[1mfield ")));
    EXPECT_TRUE(onTerminal("TERM=xterm", "error 1x").contains(QLatin1String("\x1b[1;31mquire:\x1b[0m \"1x\"")));
}

TEST(Colour, IsOffWithNoColorAndOnDumbTerminals)
{
    for (const char *settings : {"TERM=xterm NO_COLOR=1", "TERM=dumb"}) {
        const QString list = onTerminal(settings, "ls SPORT.RESULTS.CUP");
        EXPECT_TRUE(list.contains(QLatin1String("number  lock"))) << qPrintable(list);
        EXPECT_FALSE(list.contains(escape)) << settings;
        EXPECT_FALSE(onTerminal(settings, "error 1x").contains(escape)) << settings;
    }
}

TEST(Colour, IsOnWhileNoColorIsEmpty)
{
    EXPECT_TRUE(onTerminal("TERM=xterm NO_COLOR=", "form STORY").contains(escape));
}

using ColourInPipesTest = ProgramTest;

TEST_F(ColourInPipesTest, IsOff)
{
    m_environment.insert(QStringLiteral("TERM"), QStringLiteral("xterm"));
    m_environment.remove(QStringLiteral("NO_COLOR"));
    for (const char *arguments : {"--built-in ls SPORT.RESULTS.CUP", "--built-in form STORY", "error 1x"}) {
        const Outcome run = quire(arguments);
        EXPECT_FALSE(run.output.contains(escape)) << arguments;
        EXPECT_FALSE(run.errors.contains(escape)) << arguments;
    }
}

} // namespace

#endif
