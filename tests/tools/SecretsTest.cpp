// The password given to the command line is not seen again: not in its output, machine form, complaints or debug log,
// and not in the environment of what it starts.

#include "Editing.h"
#include "Program.h"

#include <quire/newsroom/model/Model.h>
#include <quire/newsroom/store/Store.h>

namespace {

const QString password = QStringLiteral("Un1que-Opens3same");
const QString wrongPassword = QStringLiteral("Un1que-Nearlys3same");
const QString mark = QStringLiteral("Un1que"); // in both

const char *const newsroomText =
    "server HUB\n"
    "user ann password=Un1que-Opens3same\n"
    "form STORY\n"
    "  <zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell></zeko:row></zeko:form>\n"
    "directory NEWS\n"
    "  queue WORLD form=STORY\n"
    "    story id=1:1:1\n"
    "      title: A title\n";

/// Runs the program with its debug log on, on a newsroom whose one user has a password that nothing else looks like.
class ToolSecretsTest : public ProgramTest
{
protected:
    void SetUp() override
    {
        const auto model = Newsroom::Model::fromText(QString::fromUtf8(newsroomText));
        ASSERT_NE(model, nullptr);
        QString error;
        ASSERT_TRUE(Newsroom::Store::save(*model, path("nr"), &error)) << qPrintable(error);
        m_environment.insert(QStringLiteral("QUIRE_DEBUG"), QStringLiteral("1"));
    }

    /// Runs `quire` on the newsroom as ann, and expects that it writes nothing like a password.
    Outcome silently(const QStringList &arguments)
    {
        const QStringList all =
            QStringList{QStringLiteral("--newsroom"), path("nr"), QStringLiteral("--user"), QStringLiteral("ann")} +
            arguments;
        Outcome run = quire(all);
        EXPECT_FALSE(run.output.contains(mark)) << qPrintable(run.output);
        EXPECT_FALSE(run.errors.contains(mark)) << qPrintable(run.errors);
        return run;
    }
    Outcome silently(const QString &option, const QString &secret, const char *verb)
    {
        return silently(QStringList{option, secret} + QString::fromUtf8(verb).split(QLatin1Char(' ')));
    }
};

const QString option = QStringLiteral("--password");

} // namespace

TEST_F(ToolSecretsTest, NoVerbShowsThePasswordThatItSignedOnWith)
{
    for (const char *verb :
         {"info", "info --json", "tree", "tree --stories --json", "ls NEWS.WORLD --json", "story NEWS.WORLD 1",
          "story NEWS.WORLD 1 --json", "form STORY", "search NEWS title", "search NEWS title --json"})
        EXPECT_EQ(silently(option, password, verb).code, 0) << verb;
}

TEST_F(ToolSecretsTest, TheTraceOfTheCallsDoesNotHoldThePassword)
{
    EXPECT_EQ(silently({QStringLiteral("--trace"), path("trace"), option, password, QStringLiteral("tree")}).code, 0);
    const QByteArray trace = read("trace");
    EXPECT_TRUE(trace.contains("Connect")) << trace.constData();
    EXPECT_FALSE(trace.contains(mark.toUtf8())) << trace.constData();
}

TEST_F(ToolSecretsTest, ARefusalDoesNotRepeatThePassword)
{
    for (const char *verb : {"info", "tree --json", "ls"})
        EXPECT_EQ(silently(option, wrongPassword, verb).code, 3) << verb;
}

TEST_F(ToolSecretsTest, AFailureDoesNotRepeatThePassword)
{
    for (const char *verb : {"tree NOWHERE", "story NEWS.WORLD 99", "story NEWS 1 --json", "ls NOWHERE"})
        EXPECT_NE(silently(option, password, verb).code, 0) << verb;
}

TEST_F(ToolSecretsTest, APasswordOutOfTheEnvironmentIsUsedAndNotShown)
{
    m_environment.insert(QStringLiteral("QUIRE_PASSWORD"), password);
    EXPECT_EQ(silently({QStringLiteral("info")}).code, 0);
    m_environment.insert(QStringLiteral("QUIRE_PASSWORD"), wrongPassword);
    EXPECT_EQ(silently({QStringLiteral("info")}).code, 3);
    EXPECT_EQ(silently({QStringLiteral("tree"), QStringLiteral("--json")}).code, 3);
}

TEST_F(ToolSecretsTest, WrongUsageDoesNotRepeatThePassword)
{
    const QStringList attempts[] = {
        {option, password, QStringLiteral("--nonsense")},
        {option, password, QStringLiteral("nonsense")},
        {option, password, option, password, QStringLiteral("tree")},
        {option, password, QStringLiteral("tree"), option},
        {QStringLiteral("--pasword"), password, QStringLiteral("tree")},
        {QStringLiteral("--pasword=") + password, QStringLiteral("tree")},
        {QStringLiteral("tree"), QStringLiteral("--pasword"), password},
        {QStringLiteral("tree"), QStringLiteral("NEWS"), QStringLiteral("--pasword"), password},
        {QStringLiteral("tree"), QStringLiteral("NEWS"), QStringLiteral("--pasword=") + password},
        {QStringLiteral("tree"), QStringLiteral("NEWS"), QStringLiteral("-p") + password},
    };
    for (const QStringList &attempt : attempts)
        EXPECT_EQ(silently(attempt).code, 2) << qPrintable(attempt.join(QLatin1Char(' ')));
}

TEST_F(ToolSecretsTest, TheEditorDoesNotInheritThePassword)
{
    m_environment.insert(QStringLiteral("QUIRE_PASSWORD"), password);
    m_environment.insert(QStringLiteral("EDITOR"), editorCommand(QStringLiteral("environment QUIRE_PASSWORD")));
    m_environment.remove(QStringLiteral("VISUAL"));
    const Outcome run = silently({QStringLiteral("edit"), QStringLiteral("NEWS.WORLD"), QStringLiteral("1")});
    EXPECT_EQ(run.code, 0) << qPrintable(run.errors);
    const Outcome story = quire({QStringLiteral("--newsroom"), path("nr"), QStringLiteral("story"),
                                 QStringLiteral("NEWS.WORLD"), QStringLiteral("1"), option, password});
    EXPECT_TRUE(story.output.contains(QLatin1String("QUIRE_PASSWORD is ()"))) << qPrintable(story.output);
}
