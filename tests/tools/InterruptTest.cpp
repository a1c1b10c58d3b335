// Ctrl-C while a verb waits for the server. Within this process, so that the tests see what the server saw; elsewhere
// than on Windows, where a program without a console gets none, also as the signal that a terminal sends.

#include "RegisteredServer.h"

#include <algorithm>
#include <csignal>
#include <thread>

#ifndef Q_OS_WIN
#include <signal.h>
#endif

#include <quire/newsroom/server/Delivery.h>

#include "tree/Waiting.h"

namespace {

class InterruptTest : public RegisteredServerTest
{
protected:
    InterruptTest() { m_server.calls().start(); }

    bool saw(const char *beginning)
    {
        m_seen += m_server.calls().takeTexts();
        return std::any_of(m_seen.begin(), m_seen.end(),
                           [&](const QString &call) { return call.startsWith(QLatin1String(beginning)); });
    }

    /// Runs the verb and presses Ctrl-C once the server has had a call that begins with \a call.
    Outcome interruptedAfter(const char *call, const char *arguments)
    {
        bool pressed = false;
        std::thread person([&] {
            pressed = comesTrue([&] { return saw(call); });
            if (pressed)
                return static_cast<void>(std::raise(SIGINT));
            m_server.delivery().resume();
            m_server.triggerLogout(); // a verb that asks for nothing would go on for ever
        });
        Outcome run = runAsProducer(arguments);
        person.join();
        EXPECT_TRUE(pressed);
        return run;
    }

    QStringList m_seen; // the calls, as texts
};

TEST_F(InterruptTest, CtrlCStopsTheSearchOnTheServer)
{
    m_server.delivery().pause(); // the search never ends by itself
    const Outcome run = interruptedAfter("ISignon4::Search(", "search . *");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.errors, QStringLiteral("quire: stopped after 0 stories\n"));
    EXPECT_TRUE(saw("ISignon4::StopSearch("));
}

TEST_F(InterruptTest, ASearchThatHasEndedIsNotStoppedOnTheServer)
{
    EXPECT_EQ(runAsProducer("search . *").code, 0);
    EXPECT_TRUE(saw("ISignon4::Search("));
    EXPECT_FALSE(saw("ISignon4::StopSearch("));
}

TEST_F(InterruptTest, CtrlCEndsWatchingAndTheReports)
{
    const Outcome run = interruptedAfter("IQueue2::put_Update(true)", "watch SPORT.FOOTBALL");
    EXPECT_EQ(run.code, 0);
    EXPECT_FALSE(run.errors.contains(QLatin1String("quire: "))) << qPrintable(run.errors); // the library's log apart
    EXPECT_EQ(run.output, QStringLiteral("watching SPORT.FOOTBALL, 5 stories\n"));
    EXPECT_TRUE(saw("IQueue2::put_Update(false)"));
}

TEST_F(InterruptTest, AfterwardsCtrlCIsWhatItWas)
{
    const auto former = std::signal(SIGINT, SIG_IGN);
    EXPECT_EQ(runAsProducer("search SPORT.FOOTBALL *").code, 0);
    EXPECT_EQ(std::signal(SIGINT, former), SIG_IGN);
}

#ifndef Q_OS_WIN

using InterruptedProgramTest = ProgramTest;

TEST_F(InterruptedProgramTest, WatchEndsWithExitCode0)
{
    QProcess process;
    process.start(programPath(), {QStringLiteral("--built-in"), QStringLiteral("watch"), QStringLiteral("--busy"),
                                  QStringLiteral("SPORT.FOOTBALL")});
    ASSERT_TRUE(process.waitForStarted(patience));
    QByteArray output;
    ASSERT_TRUE(comesTrue([&] {
        process.waitForReadyRead(10);
        output += process.readAllStandardOutput();
        return output.contains("  new  ");
    })) << output.constData();
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(process.readAllStandardError(), QByteArray());
}

#endif

} // namespace
