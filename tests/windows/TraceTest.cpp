// `quire --trace` on a server that the registry names: the program finds the DLL itself and puts the trace before it.

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <quire/Quire.h>

#include "tools/Program.h"
#include "tools/TraceLines.h"
#include "windows/ServerFolder.h"

using Quire::QuireCOM;
using testing::Contains;

namespace {

class RegisteredServerTrace : public ProgramTest
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QuireCOM::registerCOM(m_folder.path()));
        m_environment.insert(QStringLiteral("QUIRE_PASSWORD"), QStringLiteral("news"));
    }

    Outcome traced(const QByteArray &arguments)
    {
        return quire(QByteArray("--trace t.jsonl --user journalist " + arguments).constData());
    }
    QByteArray trace() const { return read("t.jsonl"); }

private:
    int m_argc = 1;
    char m_name[13] = "windows_test";
    char *m_argv[2] = {m_name, nullptr};
    const QCoreApplication m_application{m_argc, m_argv}; // which knows where the programs lie
    const ServerFolder m_folder;
};

/// A line under whatever label.
auto endsWith(const char *call)
{
    return testing::Truly(
        [call](const QString &line) { return line.endsWith(QLatin1Char(' ') + QLatin1String(call)); });
}

} // namespace

TEST_F(RegisteredServerTrace, HasALineForEachCallFromSigningOnToSigningOff)
{
    const Outcome run = traced("tree");
    ASSERT_EQ(run.code, 0) << qPrintable(run.errors);
    const std::vector<QString> lines = texts(trace());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), QStringLiteral(" IClassFactory::CreateInstance 0x00000000"));
    EXPECT_THAT(lines, Contains(QStringLiteral("QuireCOM::Connect ISignon4::Connect 0x00000000")));
    EXPECT_THAT(lines, Contains(QStringLiteral("quire::readChild IDirectory2::get_Item 0x00000000")));
    EXPECT_THAT(lines, Contains(QStringLiteral("quire::readChild IQueue2::get_QueueID 0x00000000")));
    EXPECT_EQ(lines.back(), QStringLiteral("QuireCOM::Disconnect ISignon4::Disconnect 0x00000000"));
}

TEST_F(RegisteredServerTrace, SaysFourThingsOfACall)
{
    const Outcome run = traced("info");
    ASSERT_EQ(run.code, 0) << qPrintable(run.errors);
    EXPECT_TRUE(run.output.contains(QLatin1String("registered server"))) << qPrintable(run.output);
    expectFourThingsOfEachCall(trace());
}

TEST_F(RegisteredServerTrace, ChangesNothingOfWhatIsPrinted)
{
    for (const char *verb : {"info", "tree --stories", "ls WIRES.WORLD", "story WIRES.WORLD #1", "search . rain"}) {
        const Outcome plain = quire((QByteArray("--user journalist ") + verb).constData());
        const Outcome run = traced(verb);
        EXPECT_EQ(run.code, 0) << verb;
        EXPECT_EQ(run.output, plain.output) << verb;
        EXPECT_EQ(run.errors, QString()) << verb;
    }
}

TEST_F(RegisteredServerTrace, HasTheCallsOfAnEditUnderTheirLabels)
{
    const Outcome run = traced("set SPORT.RESULTS.CUP #1 title=New");
    ASSERT_EQ(run.code, 0) << qPrintable(run.errors);
    const std::vector<QString> lines = texts(trace());
    EXPECT_THAT(lines, Contains(QStringLiteral("Story::Lock IStory2::Lock 0x00000000")));
    EXPECT_THAT(lines, Contains(QStringLiteral("Story::Save IStory2::Save 0x00000000")));
    EXPECT_THAT(lines, Contains(QStringLiteral("Story::Unlock IStory2::Unlock 0x00000000")));
}

TEST_F(RegisteredServerTrace, HasTheCallThatFailedWithoutThePassword)
{
    expectFailure(traced("--password secret-word info"), 3, "journalist");
    const QString connect = QStringLiteral("QuireCOM::Connect ISignon4::Connect 0x8");
    EXPECT_THAT(texts(trace()),
                Contains(testing::Truly([&](const QString &line) { return line.startsWith(connect); })));
    EXPECT_FALSE(trace().contains("secret-word"));
}

TEST_F(RegisteredServerTrace, HasWhatTheServerTellsOfItsOwnAccord)
{
    const Outcome run = traced("watch WIRES.WORLD --seconds 1");
    ASSERT_EQ(run.code, 0) << qPrintable(run.errors);
    const std::vector<QString> lines = texts(trace());
    EXPECT_THAT(lines, Contains(endsWith("IConnectionPoint::Advise 0x00000000")));
    EXPECT_THAT(lines, Contains(endsWith("IConnectionPoint::Unadvise 0x00000000")));
}
