// The frame of the command line: help, version, wrong usage, exit codes. Runs the built program.

#include "Program.h"

#include "TextWidth.h"

namespace {

using CommandLineTest = ProgramTest;

TEST_F(CommandLineTest, HelpNamesEveryVerbAndExitCode)
{
    const Outcome run = quire("--help");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    for (const char *word :
         {"info",       "tree",           "cat",       "blob",       "parse",      "error",      "newsroom",
          "demo",       "story",          "form",      "search",     "--newsroom", "--built-in", "--user",
          "--password", "QUIRE_PASSWORD", "--server",  "--json",     "--version",  "Examples:",  "0 done",
          "1 failed",   "2 wrong",        "3 sign-on", "4 not found"})
        EXPECT_TRUE(run.output.contains(QLatin1String(word))) << word;
}

TEST_F(CommandLineTest, WithoutArgumentsTheHelpIsShown)
{
    const Outcome run = quire("");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.output, quire("--help").output);
}

TEST_F(CommandLineTest, EveryHelpHasExamplesAndFitsIntoEightyColumns)
{
    for (const char *verb : {"",
                             "info",
                             "tree",
                             "story",
                             "search",
                             "cat",
                             "form",
                             "set",
                             "edit",
                             "local",
                             "local show",
                             "local fields",
                             "local section",
                             "local set",
                             "local edit",
                             "blob put",
                             "blob get",
                             "blob rm",
                             "parse",
                             "error",
                             "newsroom import",
                             "newsroom export",
                             "newsroom check",
                             "demo"}) {
        const Outcome run = quire((QByteArray(verb) + " --help").constData());
        EXPECT_EQ(run.code, 0) << verb;
        EXPECT_TRUE(run.output.contains(QLatin1String("Examples:\n  "))) << verb;
        for (const char *jargon : {"Excludes", "REQUIRED", "NONNEGATIVE"})
            EXPECT_FALSE(run.output.contains(QLatin1String(jargon))) << verb << ": " << jargon;
        for (const QString &line : run.lines())
            EXPECT_LE(Tool::textWidth(line), 80) << qPrintable(line);
    }
}

TEST_F(CommandLineTest, VersionIsOneLine)
{
    const Outcome run = quire("--version");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.output, QStringLiteral("quire " QUIRE_VERSION "\n"));
}

TEST_F(CommandLineTest, AnUnknownVerbIsWrongUsage)
{
    expectFailure(quire("walk"), 2, "walk");
    expectFailure(quire("walk"), 2, "quire --help");
}

TEST_F(CommandLineTest, AnUnknownOptionIsWrongUsageAndNamesTheVerbsHelp)
{
    expectFailure(quire("tree --nonsense"), 2, "--nonsense");
    expectFailure(quire("tree --nonsense"), 2, "quire tree --help");
}

TEST_F(CommandLineTest, AnUnknownOptionWithoutAVerbIsCalledAnOption)
{
    expectFailure(quire("--nonsense"), 2, "there is no option \"--nonsense\"");
}

TEST_F(CommandLineTest, AMissingArgumentIsWrongUsage)
{
    expectFailure(quire("cat"), 2, "PATH");
    expectFailure(quire("cat NEWS"), 2, "NUMBER");
    expectFailure(quire("blob"), 2, "subcommand");
    expectFailure(quire("error"), 2, "CODE");
}

TEST_F(CommandLineTest, TwoVerbsAreWrongUsage)
{
    expectFailure(quire("info info"), 2, "info");
}

TEST_F(CommandLineTest, AFolderAndTheSampleAtOnceAreWrongUsage)
{
    expectFailure(quire("--newsroom nr --built-in info"), 2, "--built-in");
}

TEST_F(CommandLineTest, AnEmptyFolderNameIsWrongUsage)
{
    expectFailure(quire({QStringLiteral("--newsroom"), QString(), QStringLiteral("info")}), 2, "--newsroom");
}

TEST_F(CommandLineTest, AWrongDepthIsWrongUsage)
{
    expectFailure(quire("tree --depth x"), 2, "--depth");
    expectFailure(quire("tree --depth -1"), 2, "--depth");
}

} // namespace
