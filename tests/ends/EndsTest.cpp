// Nobody signs off in these: the host lets go of the library, or the process ends, in the middle of something.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

constexpr int deadline = 60000; // ms; the server hangs for longer
constexpr int repeats = 2;

QString besideThis(const char *name)
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(QLatin1String(name));
}

/// What the host has begun, whether the server hangs, and how the host ends.
using Case = std::tuple<const char *, const char *, const char *>;

class Ends : public ::testing::TestWithParam<Case>
{
protected:
    /// Fails unless the host ends in time and in order.
    void run()
    {
        const auto &[step, server, way] = GetParam();
        QProcess host;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0")); // it destroys nothing
        environment.insert(QStringLiteral("QUIRE_ENDS_RECORD"), m_folder.filePath(QStringLiteral("saved")));
        host.setProcessEnvironment(environment);
        host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        host.start(besideThis(QUIRE_ENDS_HOST), {besideThis(QUIRE_ENDS_SERVER), besideThis(QUIRE_ENDS_SCENE),
                                                 QLatin1String(step), QLatin1String(server), QLatin1String(way)});
        ASSERT_TRUE(host.waitForStarted(deadline)) << qPrintable(host.errorString());
        if (!host.waitForFinished(deadline)) {
            host.kill();
            host.waitForFinished(deadline);
            FAIL() << "it hangs";
        }
        EXPECT_EQ(host.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(host.exitCode(), 0);
    }

    /// The names of the stories that the host has saved, a line each.
    QByteArray saved() const
    {
        QFile file(m_folder.filePath(QStringLiteral("saved")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    const QTemporaryDir m_folder;
};

using EndsWithAnEdit = Ends;

std::string nameOf(const ::testing::TestParamInfo<Case> &info)
{
    const auto &[step, server, way] = info.param;
    std::string name = std::string(step) + "_" + server + "_" + way;
    for (char &character : name) {
        if (character == '-' || character == ',')
            character = '_';
    }
    return name;
}

} // namespace

TEST_P(Ends, WithoutCrashOrHang)
{
    for (int round = 0; round < repeats; ++round)
        ASSERT_NO_FATAL_FAILURE(run());
}

TEST_P(EndsWithAnEdit, AndItIsSaved)
{
    ASSERT_NO_FATAL_FAILURE(run());
    EXPECT_EQ(saved(), QByteArray("Set at the end\n"));
}

INSTANTIATE_TEST_SUITE_P(OnAnAnsweringServer, Ends,
                         ::testing::Combine(::testing::Values("sign-on", "sign-on,walk", "sign-on,walk,load",
                                                              "sign-on,loads", "sign-on,listen", "sign-on,load,listen",
                                                              "sign-on,listen,search", "sign-on,listen,loads,search",
                                                              "sign-on,listen,loads,search,sign-off", "sign-on,models",
                                                              "sign-on,listen,models,loads"),
                                            ::testing::Values("answer"), ::testing::Values("exit", "return", "free")),
                         nameOf);
// Not with the library let go of: the scene's code would go, too, which the workers run.
INSTANTIATE_TEST_SUITE_P(WhereLoadsBeginLoads, Ends,
                         ::testing::Combine(::testing::Values("sign-on,chain"), ::testing::Values("answer"),
                                            ::testing::Values("exit", "return")),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(OnAHangingServer, Ends,
                         ::testing::Combine(::testing::Values("sign-on,one-load", "sign-on,listen,one-load",
                                                              "sign-on,models"),
                                            ::testing::Values("hang"), ::testing::Values("exit", "return", "free")),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(OnASlowServer, EndsWithAnEdit,
                         ::testing::Combine(::testing::Values("sign-on,edit"), ::testing::Values("slow"),
                                            ::testing::Values("exit", "return")),
                         nameOf);
