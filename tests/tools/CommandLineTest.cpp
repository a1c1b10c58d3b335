// The frame of the command line: help, version, wrong usage, exit codes. Runs the built program.

#include "Program.h"

#include "CommandLine.h"
#include "TextWidth.h"

namespace {

using CommandLineTest = ProgramTest;

TEST_F(CommandLineTest, HelpNamesEveryVerbOptionAndExitCode)
{
    const Outcome run = quire("--help");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    const Tool::VerbText program = Tool::CommandLine().describe();
    QStringList words{QStringLiteral("QUIRE_PASSWORD"), QStringLiteral("Examples:")};
    for (const Tool::VerbText &verb : program.verbs)
        words += QStringLiteral("\n  %1 ").arg(verb.name);
    for (const Tool::ArgumentText &option : program.options)
        words += option.names.last() + QLatin1Char(' ');
    for (const Tool::ExitCodeText &each : Tool::exitCodeTexts)
        words += QStringLiteral("\n  %1 %2\n").arg(static_cast<int>(each.code)).arg(QLatin1String(each.brief));
    for (const QString &word : words)
        EXPECT_TRUE(run.output.contains(word)) << qPrintable(word);
}

TEST_F(CommandLineTest, WithoutArgumentsTheHelpIsShown)
{
    const Outcome run = quire("");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.output, quire("--help").output);
}

/// The words that call each verb and each verb of a family: "tree", "blob put".
QStringList allVerbs()
{
    QStringList paths;
    for (const Tool::VerbText &verb : Tool::CommandLine().describe().verbs) {
        paths += verb.path;
        for (const Tool::VerbText &child : verb.verbs)
            paths += child.path;
    }
    return paths;
}

TEST_F(CommandLineTest, EveryHelpHasExamplesAndFitsIntoEightyColumns)
{
    for (const QString &verb : QStringList(QString()) + allVerbs()) {
        const Outcome run =
            quire(verb.split(QLatin1Char(' '), Qt::SkipEmptyParts) + QStringList(QStringLiteral("--help")));
        EXPECT_EQ(run.code, 0) << qPrintable(verb);
        EXPECT_TRUE(run.output.contains(QLatin1String("Examples:\n  "))) << qPrintable(verb);
        for (const char *jargon : {"Excludes", "REQUIRED", "NONNEGATIVE"})
            EXPECT_FALSE(run.output.contains(QLatin1String(jargon))) << qPrintable(verb) << ": " << jargon;
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

TEST_F(CommandLineTest, AnEmptyFileNameIsWrongUsage)
{
    const QString none;
    expectFailure(quire({QStringLiteral("parse"), none}), 2, "FILE: wants the name of a file or folder");
    expectFailure(quire({QStringLiteral("local"), none}), 2, "FILE: wants");
    expectFailure(quire({QStringLiteral("--trace"), none, QStringLiteral("info")}), 2, "--trace: wants");
    expectFailure(quire({QStringLiteral("manual"), QStringLiteral("--into"), none}), 2, "--into: wants");
}

TEST_F(CommandLineTest, AWrongDepthIsWrongUsage)
{
    expectFailure(quire("tree --depth x"), 2, "--depth: wants a whole number from 0 on, not x (");
    expectFailure(quire("tree --depth -1"), 2, "--depth: wants a whole number from 0 on, not -1 (");
    expectFailure(quire("tree --depth 1.5"), 2, "--depth: wants a whole number from 0 on, not 1.5 (");
    expectFailure(quire("ls Q --limit 99999999999"), 2, "--limit: wants a whole number from 1 on, not 99999999999 (");
    expectFailure(quire("watch Q --seconds 0"), 2, "--seconds: wants a number of seconds above 0, not 0 (");
    expectFailure(quire("watch Q --seconds inf"), 2, "--seconds: wants a number of seconds above 0, not inf (");
}

} // namespace
