// --trace: a line for every call to the server, and nothing that was not called.

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

#include <quire/newsroom/sample/Sample.h>
#include <quire/newsroom/server/Server.h>
#include <quire/session/QuireCOMMutex.h>

#include "CommandLine.h"
#include "Program.h"
#include "RegisteredServer.h"
#include "TraceLines.h"
#include "Words.h"
#include "trace/Tracing.h"

namespace {

using testing::Contains;

// ---- the option -----------------------------------------------------------------------------------------------------

class TraceOptionTest : public ProgramTest
{
protected:
    Outcome traced(const char *arguments)
    {
        return quire(("--built-in --trace t.jsonl " + QByteArray(arguments)).constData());
    }
    QByteArray trace() const { return read("t.jsonl"); }
};

TEST_F(TraceOptionTest, WritesALineForEachCallFromSigningOnToSigningOff)
{
    ASSERT_EQ(traced("tree").code, 0);
    const std::vector<QString> lines = texts(trace());
    EXPECT_EQ(lines.front(), QStringLiteral(" IClassFactory::CreateInstance 0x00000000"));
    EXPECT_THAT(lines, Contains(QStringLiteral("QuireCOM::Connect ISignon4::Connect 0x00000000")));
    EXPECT_THAT(lines, Contains(QStringLiteral("quire::readChild IDirectory2::get_Item 0x00000000")));
    EXPECT_THAT(lines, Contains(QStringLiteral("quire::readChild IQueue2::get_QueueID 0x00000000")));
    EXPECT_EQ(lines.back(), QStringLiteral("QuireCOM::Disconnect ISignon4::Disconnect 0x00000000"));
}

TEST_F(TraceOptionTest, SaysFourThingsOfACall)
{
    ASSERT_EQ(traced("info").code, 0);
    expectFourThingsOfEachCall(trace());
}

TEST_F(TraceOptionTest, ChangesNothingOfWhatIsPrinted)
{
    for (const char *verb : {"tree --stories", "story WIRES.WORLD #1", "ls WIRES.WORLD"}) {
        const Outcome plain = quire((QByteArray("--built-in ") + verb).constData());
        const Outcome run = traced(verb);
        EXPECT_EQ(run.code, 0) << verb;
        EXPECT_EQ(run.output, plain.output) << verb;
        EXPECT_EQ(run.errors, QString()) << verb;
    }
}

TEST_F(TraceOptionTest, ChangesNothingOfWhatASearchFinds)
{
    const Outcome plain = quire("--built-in search . rain"); // as the server finds it, in one order or another
    const Outcome run = traced("search . rain");
    EXPECT_EQ(run.code, 0);
    EXPECT_THAT(run.lines(), testing::UnorderedElementsAreArray(plain.lines()));
    EXPECT_EQ(run.errors, QString());
}

TEST_F(TraceOptionTest, HasTheCallThatFailed)
{
    expectFailure(traced("--user nobody --password secret-word info"), 3, "nobody");
    EXPECT_THAT(texts(trace()), Contains(testing::Truly([](const QString &line) {
                    return line.startsWith(QLatin1String("QuireCOM::Connect ISignon4::Connect 0x8"));
                })));
    EXPECT_FALSE(trace().contains("secret-word"));
}

TEST_F(TraceOptionTest, TakesThePlaceOfAnOlderTrace)
{
    write("t.jsonl", "old\n");
    ASSERT_EQ(traced("info").code, 0);
    EXPECT_FALSE(trace().contains("old"));
}

TEST_F(TraceOptionTest, IsEmptyWithoutAServer)
{
    ASSERT_EQ(traced("error 0x80040405").code, 0);
    EXPECT_EQ(trace(), QByteArray());
}

TEST_F(TraceOptionTest, ThatCannotBeWrittenIsAFailure)
{
    expectFailure(quire("--built-in --trace no/such/folder info"), 1, "no/such/folder");
}

#ifndef Q_OS_WIN
TEST_F(TraceOptionTest, OnAFullDiskIsAFailureAfterTheWork)
{
    const Outcome run = quire("--built-in --trace /dev/full info");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.output, quire("--built-in info").output);
    EXPECT_TRUE(run.hasOneErrorLine()) << qPrintable(run.errors);
}
#endif

// ---- held against the server's own record ---------------------------------------------------------------------------

/// A sample newsroom behind a traced class object; the command line takes it for a registered server.
class TracedServerTest : public ProgramTest
{
protected:
    TracedServerTest()
        : m_server(Newsroom::sampleModel())
    {
        m_server.calls().start();
    }

    /// Runs the command line in this process, and answers the trace.
    QByteArray run(const char *arguments, int code = 0)
    {
        {
            const auto trace = std::make_shared<Tool::CallTrace>(path("t.jsonl"));
            const Newsroom::Registration registration(__uuidof(Orvex::Signon),
                                                      Tool::tracedFactory(m_server.classFactory(), trace));
            testing::internal::CaptureStdout();
            testing::internal::CaptureStderr();
            const QStringList words = QString::fromUtf8(arguments).split(QLatin1Char(' '));
            EXPECT_EQ(static_cast<int>(Tool::CommandLine().run(m_who + words)), code) << arguments;
            testing::internal::GetCapturedStdout();
            testing::internal::GetCapturedStderr();
        }
        EXPECT_EQ(m_server.census()->live(), 0) << qPrintable(m_server.census()->text());
        return read("t.jsonl");
    }

    /// "IQueue2::GetList 0x00000000" for each of the server's objects' calls.
    std::vector<QString> recorded()
    {
        std::vector<QString> result;
        for (const Newsroom::Call &call : m_server.calls().take()) {
            const bool isContainer = call.operation == QLatin1String("FindConnectionPoint");
            const QString name =
                isContainer ? QStringLiteral("IConnectionPointContainer::FindConnectionPoint") : call.name();
            result.push_back(name + QLatin1Char(' ') + Tool::hexCode(call.hresult));
        }
        return result;
    }

    static std::vector<QString> withoutLabels(const QByteArray &trace)
    {
        std::vector<QString> result;
        for (const QString &line : texts(trace))
            result.push_back(line.section(QLatin1Char(' '), -2));
        return result;
    }

    const Tool::Apartment m_apartment;
    Newsroom::Server m_server;
    const QStringList m_who{QStringLiteral("--user"), QStringLiteral("producer"), QStringLiteral("--password"),
                            QStringLiteral("air")};
};

TEST_F(TracedServerTest, EveryCallThatTheServerSawStandsInTheTrace)
{
    for (const char *verb :
         {"info", "tree --stories", "ls", "ls WIRES.WORLD --all", "story WIRES.WORLD #1", "cat SPORT.RESULTS.CUP #1",
          "search . rain", "form STORY", "set SPORT.RESULTS.CUP #1 title=New", "new SPORT.RESULTS.CUP title=Newer",
          "rm SPORT.RESULTS.CUP #1 --yes", "watch WIRES.WORLD --seconds 1", "blob get nothing"}) {
        m_server.calls().take();
        const QByteArray trace = run(verb, QByteArray(verb) == "blob get nothing" ? 4 : 0);
        const std::vector<QString> seen = recorded();
        EXPECT_GT(seen.size(), 3U) << verb;
        EXPECT_THAT(withoutLabels(trace), testing::UnorderedElementsAreArray(seen)) << verb;
    }
}

TEST_F(TracedServerTest, HasTheLabelUnderWhichTheLibraryCalls)
{
    const std::vector<QString> lines = texts(run("set SPORT.RESULTS.CUP #1 title=New"));
    EXPECT_THAT(lines, Contains(QStringLiteral("Story::Save IStory2::Save 0x00000000")));
    EXPECT_THAT(lines, Contains(QStringLiteral("QuireCOM::Connect ISignon4::get_ServerName 0x00000000")));
}

TEST_F(TracedServerTest, HasTheCallsThatFailAndThoseThatRaise)
{
    m_server.faults().failNext(QStringLiteral("ISignon4::get_SysReadRate"),
                               Newsroom::Fault::raise(static_cast<HRESULT>(0x80040409)));
    const std::vector<QJsonObject> lines = linesOf(run("info", 1));
    const auto raised = std::find_if(lines.begin(), lines.end(), [](const QJsonObject &line) {
        return line.value(QStringLiteral("raised")).toBool();
    });
    ASSERT_NE(raised, lines.end());
    EXPECT_EQ(text(*raised), QStringLiteral("QuireCOM::GetSysReadRate ISignon4::get_SysReadRate 0x80040409"));

    m_server.faults().failNext(QStringLiteral("IDirectory2::get_Count"),
                               Newsroom::Fault::hresult(static_cast<HRESULT>(0x80040405)));
    EXPECT_THAT(withoutLabels(run("tree", 1)), Contains(QStringLiteral("IDirectory2::get_Count 0x80040405")));
}

TEST_F(TracedServerTest, LeavesWhatTheServerRefusesToBeUnchanged)
{
    m_server.faults().failNext(QStringLiteral("ISignon4::GetDirectory"), Newsroom::Fault::nullResult());
    run("tree NO.SUCH", 4);
    m_server.faults().failNext(QStringLiteral("IQueue2::GetList"), Newsroom::Fault::strangers());
    run("ls WIRES.WORLD");
    m_server.faults().failNext(QStringLiteral("IQueue2::GetList"), Newsroom::Fault::nullElements());
    run("ls WIRES.WORLD");
}

TEST_F(TracedServerTest, TheLibraryKeepsNoLabelsAfterwards)
{
    run("info");
    EXPECT_FALSE(Quire::QuireCOMMutex::sMutexDebugging);
}

/// Every object is asked for what it is through the object that stands before it.
TEST_F(TracedServerTest, AnswersForInterfacesAsTheServerDoes)
{
    const auto trace = std::make_shared<Tool::CallTrace>(path("t.jsonl"));
    const IClassFactoryPtr factory = Tool::tracedFactory(m_server.classFactory(), trace);
    Orvex::ISignon4Ptr signon;
    ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(Orvex::ISignon4), reinterpret_cast<void **>(&signon)), S_OK);
    EXPECT_TRUE(IUnknownPtr(signon) == IUnknownPtr(IDispatchPtr(signon)));
    EXPECT_TRUE(IConnectionPointContainerPtr(signon));
    EXPECT_FALSE(Orvex::IStory2Ptr(signon));
    UINT count = 99;
    EXPECT_EQ(signon->GetTypeInfoCount(&count), S_OK);
    EXPECT_LE(count, 1U);
    void *object = this;
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(Orvex::IQueue2), &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

using TraceBesideAServerTest = RegisteredServerTest;

TEST_F(TraceBesideAServerTest, IsRefusedWhereItWouldStayEmpty)
{
    const QTemporaryDir folder;
    const Outcome outcome =
        run({QStringLiteral("--trace"), folder.filePath(QStringLiteral("t")), QStringLiteral("info")});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(outcome.errors.contains(QLatin1String("cannot trace"))) << qPrintable(outcome.errors);
}

} // namespace
