// The exit codes of every verb: a row a verb, and no verb without one.

#include <QDir>

#include <set>
#include <vector>

#include "CommandLine.h"
#include "Program.h"

namespace {

/// How a verb comes to each exit code. Null where it cannot.
struct Row
{
    const char *verb;
    const char *done;
    const char *failed;
    const char *notFound;
    bool needsServer;
};

const Row rows[] = {
    {"info", "", nullptr, nullptr, true},
    {"tree", "SPORT", nullptr, "NO.SUCH", true},
    {"ls", "SPORT", nullptr, "NO.SUCH", true},
    {"story", "SPORT.RESULTS.CUP #1", nullptr, "SPORT.RESULTS.CUP 99", true},
    {"search", "SPORT cup", nullptr, "NO.SUCH cup", true},
    {"set", "SPORT.RESULTS.CUP #1 title=New", nullptr, "SPORT.RESULTS.CUP 99 title=New", true},
    {"edit", nullptr, nullptr, "SPORT.RESULTS.CUP 99", true},
    {"local show", "story.xml", "nothing.xml", nullptr, false},
    {"local fields", "story.xml", "nothing.xml", nullptr, false},
    {"local section", "story.xml body", "nothing.xml body", nullptr, false},
    {"local set", "story.xml title=New", "nothing.xml title=New", "story.xml no-such=1", false},
    {"local edit", nullptr, "nothing.xml", nullptr, false},
    {"new", "SPORT.RESULTS.CUP title=New", nullptr, "NO.SUCH title=New", true},
    {"rm", "SPORT.RESULTS.CUP #1 --yes", nullptr, "SPORT.RESULTS.CUP 99 --yes", true},
    {"watch", "SPORT.RESULTS.CUP --seconds 1", nullptr, "NO.SUCH --seconds 1", true},
    {"cat", "SPORT.RESULTS.CUP #1", nullptr, "SPORT.RESULTS.CUP 99", true},
    {"form", "STORY", nullptr, "NO-SUCH", true},
    {"blob put", "prefs story.xml", "prefs nothing.xml", nullptr, true},
    {"blob get", nullptr, nullptr, "no-such", true},
    {"blob rm", "--mine", nullptr, "no-such", true},
    {"parse", "story.xml", "nothing.xml", nullptr, false},
    {"error", "0x80040405", nullptr, "0x80040403", false},
    {"newsroom import", "texts nr", "nothing nr2", nullptr, false},
    {"newsroom generate", "nr4 --stories 3", "story.xml", nullptr, false},
    {"newsroom export", "nr3", "story.xml", nullptr, false},
    {"newsroom check", "nr3", "nothing", nullptr, false},
    {"demo", "", nullptr, nullptr, true},
    {"completion", "bash", nullptr, nullptr, false},
    {"manual", "tree", "--into story.xml/man", "no-such", false},
};

class ExitCodeTest : public ProgramTest
{
protected:
    void SetUp() override
    {
        write("story.xml", quire("--built-in cat SPORT.RESULTS.CUP #1").bytes);
        QDir(path("")).mkdir(QStringLiteral("texts"));
        write("texts/one.txt", "A text.\n");
    }

    /// Runs the verb with \a options before it; \a arguments of a family's verb stand where the family wants them.
    Outcome run(const Row &row, const char *options, const char *arguments)
    {
        QByteArray words(row.verb);
        QByteArray rest(arguments);
        if (words.startsWith("local ")) { // the file stands before the verb
            const int end = rest.indexOf(' ') < 0 ? rest.size() : rest.indexOf(' ');
            words.insert(6, rest.left(end) + ' ');
            rest.remove(0, end);
        }
        return quire((QByteArray(options) + ' ' + words + ' ' + rest).constData());
    }

    void expect(const Row &row, const char *options, const char *arguments, int code)
    {
        if (!arguments)
            return;
        const Outcome outcome = run(row, options, arguments);
        EXPECT_EQ(outcome.code, code) << row.verb << ' ' << arguments << ": " << qPrintable(outcome.errors);
        EXPECT_EQ(outcome.hasOneErrorLine(), code != 0) << row.verb << ": " << qPrintable(outcome.errors);
    }

    static const char *fitting(const Row &row)
    {
        return row.done ? row.done : row.notFound ? row.notFound : row.failed;
    }
};

TEST_F(ExitCodeTest, EveryVerbHasARow)
{
    std::set<QString> tested;
    for (const Row &row : rows)
        tested.insert(QLatin1String(row.verb));
    std::set<QString> verbs;
    for (const Tool::VerbText &verb : Tool::CommandLine().describe().verbs) {
        if (verb.verbs.empty())
            verbs.insert(verb.path);
        for (const Tool::VerbText &child : verb.verbs)
            verbs.insert(child.path);
    }
    EXPECT_EQ(tested, verbs);
}

TEST_F(ExitCodeTest, IsDoneWhenAllIsDone)
{
    for (const Row &row : rows)
        expect(row, "--built-in", row.done, 0);
}

TEST_F(ExitCodeTest, IsFailedForAFileOrFolderThatIsNotThere)
{
    for (const Row &row : rows) {
        expect(row, "--built-in", row.failed, 1);
        if (row.needsServer && QByteArray(row.verb) != "demo")
            expect(row, "--newsroom no-such-folder", fitting(row), 1);
    }
}

TEST_F(ExitCodeTest, IsWrongUsageForAnOptionThatThereIsNot)
{
    for (const Row &row : rows)
        expect(row, "--nonsense", fitting(row), 2);
}

TEST_F(ExitCodeTest, IsSignOnRefusedForAUserThatThereIsNot)
{
    for (const Row &row : rows) {
        if (row.needsServer)
            expect(row, "--built-in --user nobody", fitting(row), 3);
    }
}

TEST_F(ExitCodeTest, IsNotFoundForWhatIsNotThere)
{
    for (const Row &row : rows)
        expect(row, "--built-in", row.notFound, 4);
}

} // namespace
