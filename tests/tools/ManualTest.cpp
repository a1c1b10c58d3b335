// The manual, and that docs/cli.md says the same of verbs, options, environment and exit codes.

#include <QDir>
#include <QFile>

#include "CommandLine.h"
#include "Environment.h"
#include "Shell.h"
#include "shell/Manual.h"
#include "shell/Roff.h"

namespace {

using Tool::VerbText;

/// All pages: that of the command line first.
QStringList pages()
{
    const VerbText program = Tool::CommandLine().describe();
    QStringList result{Tool::manualPage(program)};
    for (const VerbText &verb : program.verbs)
        result += Tool::manualPage(program, verb);
    return result;
}

/// docs/cli.md with every run of white space as one blank.
QString document()
{
    QFile file(QStringLiteral(QUIRE_DOCS_DIR "/cli.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll()).simplified();
}

TEST(Roff, PrintsSignsAsTheyStand)
{
    EXPECT_EQ(Tool::Roff::plain(QStringLiteral("a-b 'c' ~d `e` ^f \\g")),
              QStringLiteral("a\\-b \\(aqc\\(aq \\(tid \\(gae\\(ga \\(haf \\eg"));
    EXPECT_EQ(Tool::Roff::plain(QStringLiteral(".x")), QStringLiteral("\\&.x"));
}

TEST(Manual, HasEveryVerbOptionVariableAndExitCode)
{
    const VerbText program = Tool::CommandLine().describe();
    const QString page = Tool::manualPage(program);
    for (const VerbText &verb : program.verbs)
        EXPECT_TRUE(page.contains(Tool::Roff::bold(verb.name))) << qPrintable(verb.name);
    for (const Tool::ArgumentText &option : program.options)
        EXPECT_TRUE(page.contains(Tool::Roff::bold(option.names.last()))) << qPrintable(option.names.last());
    for (const Tool::EnvironmentText &variable : Tool::environmentTexts)
        EXPECT_TRUE(page.contains(Tool::Roff::bold(QLatin1String(variable.name)))) << variable.name;
    for (const Tool::ExitCodeText &exitCode : Tool::exitCodeTexts)
        EXPECT_TRUE(page.contains(Tool::Roff::bold(QString::number(static_cast<int>(exitCode.code)))))
            << exitCode.meaning;
}

TEST(Manual, OfAVerbHasItsArgumentsOptionsAndExamples)
{
    const VerbText program = Tool::CommandLine().describe();
    for (const VerbText &verb : program.verbs) {
        const QString page = Tool::manualPage(program, verb);
        EXPECT_TRUE(verb.verbs.empty() ? !verb.examples.isEmpty() : true) << qPrintable(verb.name);
        for (const VerbText *each = &verb; each;
             each = each == &verb && !verb.verbs.empty() ? &verb.verbs[0] : nullptr) {
            for (const Tool::ArgumentText &argument : each->positionals)
                EXPECT_TRUE(page.contains(Tool::Roff::italic(argument.names[0]))) << qPrintable(verb.name);
            for (const Tool::ArgumentText &option : each->options) {
                const QString name = option.names.last();
                EXPECT_EQ(page.contains(Tool::Roff::bold(name)), name != QLatin1String("--help")) << qPrintable(name);
            }
        }
    }
}

using ManualCommandTest = ProgramTest;

TEST_F(ManualCommandTest, PrintsThePageOfTheCommandLineOrOfAVerb)
{
    EXPECT_EQ(quire("manual").output, pages().first());
    EXPECT_TRUE(quire("manual blob").output.startsWith(QLatin1String(".TH \"QUIRE\\-BLOB\" 1 ")));
}

TEST_F(ManualCommandTest, AVerbThatIsNotThereIsNotFound)
{
    expectFailure(quire("manual walk"), 4, "walk");
}

TEST_F(ManualCommandTest, WritesAllPagesIntoAFolder)
{
    EXPECT_EQ(quire("manual --into man").code, 0);
    EXPECT_EQ(QDir(path("man")).entryList(QDir::Files).size(), pages().size());
    EXPECT_EQ(read("man/quire.1"), pages().first().toUtf8());
    EXPECT_TRUE(exists("man/quire-tree.1"));
    expectFailure(quire("manual tree --into man"), 2, "--into");
}

#ifndef Q_OS_WIN

TEST(Manual, IsFormattedWithoutWarnings)
{
    for (const QString &page : pages()) {
        const ShellOutcome run =
            runForeign(QStringLiteral("groff"),
                       {QStringLiteral("-man"), QStringLiteral("-ww"), QStringLiteral("-Tutf8")}, page.toUtf8());
        if (!run.found)
            GTEST_SKIP() << "no groff here";
        EXPECT_EQ(run.errors, QString()) << qPrintable(page);
        EXPECT_EQ(run.code, 0);
        EXPECT_GT(run.lines.size(), 8);
    }
}

#endif

TEST(CommandLineDocument, HasEveryVerb)
{
    const QString text = document();
    for (const VerbText &verb : Tool::CommandLine().describe().verbs)
        EXPECT_TRUE(text.contains(QStringLiteral("| [`%1").arg(verb.name))) << qPrintable(verb.name);
}

TEST(CommandLineDocument, HasEveryOptionOfAllVerbs)
{
    const QString text = document();
    for (const Tool::ArgumentText &option : Tool::CommandLine().describe().options) {
        const QString value = option.value.isEmpty() ? QString() : QLatin1Char(' ') + option.value;
        EXPECT_TRUE(text.contains(QStringLiteral("`%1%2` |").arg(option.names.last(), value)))
            << qPrintable(option.names.last());
    }
}

TEST(CommandLineDocument, SaysOfExitCodesWhatTheManualSays)
{
    const QString text = document();
    for (const Tool::ExitCodeText &exitCode : Tool::exitCodeTexts)
        EXPECT_TRUE(text.contains(
            QStringLiteral("| %1 | %2 |").arg(static_cast<int>(exitCode.code)).arg(QLatin1String(exitCode.meaning))))
            << exitCode.meaning;
}

TEST(CommandLineDocument, SaysOfEnvironmentVariablesWhatTheManualSays)
{
    const QString text = document().remove(QLatin1Char('`'));
    for (const Tool::EnvironmentText &variable : Tool::environmentTexts) {
        const QString row =
            QStringLiteral("| %1 | %2 |").arg(QLatin1String(variable.name), QLatin1String(variable.meaning));
        EXPECT_TRUE(text.contains(row)) << variable.name;
    }
}

} // namespace
