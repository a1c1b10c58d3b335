// Completion: what can stand for the last word, and that the shells really offer it.

#include "shell/Completion.h"
#include "CommandLine.h"
#include "Shell.h"

namespace {

using Tool::Completion;

/// The words offered for the last of \a typed.
QStringList offered(const QStringList &typed, Completion::Files files = Completion::Files::None)
{
    const Completion completion = Tool::complete(Tool::CommandLine().describe(), typed);
    EXPECT_EQ(completion.files, files);
    QStringList words;
    for (const Completion::Word &word : completion.words)
        words += word.text;
    return words;
}

/// The same with \a typed separated by blanks; a blank at the end begins a new word.
QStringList offered(const char *typed, Completion::Files files = Completion::Files::None)
{
    return offered(QString::fromLatin1(typed).split(QLatin1Char(' ')), files);
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

TEST(Completion, OffersEveryVerb)
{
    QStringList all;
    for (const Tool::VerbText &verb : Tool::CommandLine().describe().verbs)
        all += verb.name;
    EXPECT_GE(all.size(), 20);
    EXPECT_EQ(offered(""), all);
}

TEST(Completion, OffersTheVerbsThatBeginAsTheWordDoes)
{
    EXPECT_EQ(offered("tre"), words("tree"));
    EXPECT_EQ(offered("e"), words("edit error"));
    EXPECT_EQ(offered("x"), QStringList());
}

TEST(Completion, OffersTheVerbsOfAFamily)
{
    EXPECT_EQ(offered("blob "), words("put get rm"));
    EXPECT_EQ(offered("newsroom e"), words("export"));
}

TEST(Completion, OffersTheVerbsOfAFamilyBehindItsArgument)
{
    EXPECT_EQ(offered("local cup.xml s"), words("show section set"));
    EXPECT_EQ(offered("local cup.xml section h"), words("head"));
}

TEST(Completion, OffersTheOptionsOfTheVerbAndOfAllVerbs)
{
    EXPECT_EQ(offered("tree --depth"), words("--depth"));
    EXPECT_EQ(offered("tree --new"), words("--newsroom"));
    EXPECT_EQ(offered("tree --h"), words("--help"));
    EXPECT_EQ(offered("blob put --mi"), words("--mine"));
    EXPECT_EQ(offered("--depth"), QStringList());
}

TEST(Completion, OffersOptionsWhereNoArgumentIsLeft)
{
    EXPECT_TRUE(offered("info ").contains(QStringLiteral("--json")));
    EXPECT_TRUE(offered("tree NEWS ").contains(QStringLiteral("--flags")));
}

TEST(Completion, FindsTheVerbBehindOptionsWithTheirValues)
{
    EXPECT_EQ(offered("--newsroom tree --json tree --st"), words("--stories"));
    EXPECT_EQ(offered("--newsroom=nr tr"), words("tree"));
}

TEST(Completion, OffersTheValuesOfAnOption)
{
    EXPECT_EQ(offered("story P 1 --section f"), words("fields field-atts"));
    EXPECT_EQ(offered("story P 1 --section=b"), words("--section=body"));
    EXPECT_EQ(offered("completion "), words("bash zsh fish"));
}

TEST(Completion, OffersNothingForAValueThatCannotBeKnown)
{
    EXPECT_EQ(offered("tree --depth "), QStringList());
    EXPECT_EQ(offered("--user "), QStringList());
    EXPECT_EQ(offered("tree --depth tree"), QStringList());
}

TEST(Completion, LeavesFilesAndFoldersToTheShell)
{
    EXPECT_EQ(offered("parse ", Completion::Files::Any), QStringList());
    EXPECT_EQ(offered("blob put prefs ", Completion::Files::Any), QStringList());
    EXPECT_EQ(offered("--newsroom ", Completion::Files::Directories), QStringList());
    EXPECT_EQ(offered("newsroom import ", Completion::Files::Directories), QStringList());
}

TEST(Completion, RepeatsTheLastArgumentThatMayBeRepeated)
{
    EXPECT_EQ(offered("watch A B "), QStringList());
    EXPECT_TRUE(offered("cat A 1 ").contains(QStringLiteral("--json")));
}

TEST(Completion, TakesNoOptionsBehindTwoDashes)
{
    EXPECT_EQ(offered("tree -- --fl"), QStringList());
    EXPECT_EQ(offered("-- tr"), QStringList());
}

TEST(Completion, OfNothingIsThatOfAnEmptyWord)
{
    EXPECT_EQ(offered(QStringList()), offered(""));
}

using CompletionCommandTest = ProgramTest;

TEST_F(CompletionCommandTest, PrintsAScriptForEachShell)
{
    EXPECT_TRUE(quire("completion bash").output.contains(QLatin1String("complete -F _quire quire")));
    EXPECT_TRUE(quire("completion zsh").output.startsWith(QLatin1String("#compdef quire\n")));
    EXPECT_TRUE(quire("completion fish").output.contains(QLatin1String("complete --command quire")));
}

TEST_F(CompletionCommandTest, KnowsNoOtherShell)
{
    expectFailure(quire("completion csh"), 2, "bash, zsh, fish");
    expectFailure(quire("completion"), 2, "SHELL");
}

TEST_F(CompletionCommandTest, TakesAnyWordsToComplete)
{
    const QStringList call = words("completion bash --");
    EXPECT_EQ(quire(call + words("tree --dep")).output,
              QStringLiteral("--depth\tShow only so many levels below PATH\n"));
    EXPECT_EQ(quire(call + QStringList{QStringLiteral("blob"), QString()}).output.count(QLatin1Char('\n')), 3);
    EXPECT_EQ(quire(call + words("parse --nonsense x --newsroom")).code, 0);
    EXPECT_EQ(quire(call + QStringList{QStringLiteral("[a b]"), QStringLiteral("{}"), QStringLiteral("x")}).code, 0);
    EXPECT_EQ(quire(call + QStringList{QStringLiteral("--newsroom"), QString()}).output,
              QStringLiteral(":directories\n"));
}

#ifndef Q_OS_WIN

/// What a shell offers: the script is loaded into it, and its own completion called.
QStringList offeredByBash(const char *typed)
{
    const QString script = QStringLiteral("source <(quire completion bash); complete -p quire >&2\n"
                                          "COMP_WORDS=(quire %1); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _quire\n"
                                          "printf '%s\\n' \"${COMPREPLY[@]}\"");
    const ShellOutcome run =
        runForeign(QStringLiteral("bash"), {QStringLiteral("--norc"), QStringLiteral("--noprofile"),
                                            QStringLiteral("-c"), script.arg(QString::fromLatin1(typed))});
    EXPECT_EQ(run.errors, QStringLiteral("complete -F _quire quire\n"));
    return run.lines;
}

TEST(BashCompletion, CompletesVerbsAndOptions)
{
    EXPECT_EQ(offeredByBash("tre"), words("tree"));
    EXPECT_EQ(offeredByBash("blob ''"), words("get put rm"));
    EXPECT_EQ(offeredByBash("tree --d"), words("--depth"));
    EXPECT_EQ(offeredByBash("edit P 1 --section f"), words("field-atts fields"));
    EXPECT_EQ(offeredByBash("nonsense"), QStringList());
}

TEST(BashCompletion, CompletesFilesAndFolders)
{
    EXPECT_EQ(offeredByBash("parse /et").join(QLatin1Char(' ')), QStringLiteral("/etc"));
    EXPECT_EQ(offeredByBash("--newsroom /us").join(QLatin1Char(' ')), QStringLiteral("/usr"));
    EXPECT_EQ(offeredByBash("--newsroom /etc/passw"), QStringList());
}

/// What the script hands to the shell's own functions.
QStringList offeredByZsh(const char *typed)
{
    const QString script = QStringLiteral("compdef() { }; source <(quire completion zsh)\n"
                                          "_describe() { print -l -- ${(P)2} }; _files() { print -- files $* }\n"
                                          "words=(quire %1); CURRENT=${#words}; _quire");
    return runForeign(QStringLiteral("zsh"),
                      {QStringLiteral("-f"), QStringLiteral("-c"), script.arg(QString::fromLatin1(typed))})
        .lines;
}

TEST(ZshCompletion, CompletesVerbsOptionsAndFiles)
{
    if (!runForeign(QStringLiteral("zsh"), {QStringLiteral("--version")}).found)
        GTEST_SKIP() << "no zsh here";
    EXPECT_EQ(offeredByZsh("tre"), QStringList(QStringLiteral("tree:Draw the directories and queues")));
    EXPECT_EQ(offeredByZsh("blob ''").size(), 3);
    EXPECT_EQ(offeredByZsh("tree --fl"), QStringList(QStringLiteral("--flags:Show the three flag words, hexadecimal")));
    EXPECT_EQ(offeredByZsh("parse ''"), words("files"));
    EXPECT_EQ(offeredByZsh("--newsroom ''").join(QLatin1Char(' ')), QStringLiteral("files -/"));
}

QStringList offeredByFish(const char *typed)
{
    const QString script = QStringLiteral("quire completion fish | source; complete -C 'quire %1'");
    return runForeign(QStringLiteral("fish"),
                      {QStringLiteral("--no-config"), QStringLiteral("-c"), script.arg(QString::fromLatin1(typed))})
        .lines;
}

TEST(FishCompletion, CompletesVerbsOptionsAndFiles)
{
    if (!runForeign(QStringLiteral("fish"), {QStringLiteral("--version")}).found)
        GTEST_SKIP() << "no fish here";
    EXPECT_EQ(offeredByFish("tre"), QStringList(QStringLiteral("tree\tDraw the directories and queues")));
    EXPECT_EQ(offeredByFish("blob ").size(), 3);
    EXPECT_EQ(offeredByFish("tree --fl"),
              QStringList(QStringLiteral("--flags\tShow the three flag words, hexadecimal")));
    EXPECT_TRUE(offeredByFish("--newsroom /us").join(QLatin1Char(' ')).startsWith(QLatin1String("/usr/")));
}

#endif

} // namespace
