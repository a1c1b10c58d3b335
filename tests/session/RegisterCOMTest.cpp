#include <quire/session/QuireCOM.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifndef Q_OS_WIN
#include <cerrno>
#include <csignal>

#include "support/QtPrinting.h"
#endif

using Quire::QuireCOM;

TEST(RegisterCOM, TakesAMissingLibraryForDone)
{
    const QTemporaryDir folder;
    EXPECT_TRUE(QuireCOM::registerCOM(folder.path()));
    EXPECT_TRUE(QuireCOM::registerCOM(folder.filePath(QStringLiteral("no such folder"))));
}

#ifndef Q_OS_WIN

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

/// A folder with both of the server's libraries, and a regsvr32 that a test writes, first on the path of programs.
class NativeOnlyRegisterCOM : public ::testing::Test
{
protected:
    NativeOnlyRegisterCOM()
        : m_path(qgetenv("PATH"))
    {
        for (const char *name : {"OrvexCOMU_64.dll", "OrvexCOM.dll"})
            writeFile(m_libraries.filePath(QString::fromLatin1(name)), "library");
        qputenv("PATH", QFile::encodeName(m_programs.path()) + ':' + m_path);
    }
    ~NativeOnlyRegisterCOM() override
    {
        QuireCOM::SetUnicode(true);
        qputenv("PATH", m_path);
    }

    /// A regsvr32 that leaves its arguments, one a line, and its process number, then does \a rest.
    void writeProgram(const QByteArray &rest)
    {
        const QString program = m_programs.filePath(QStringLiteral("regsvr32"));
        const QByteArray folder = QFile::encodeName(m_programs.path());
        writeFile(program, "#!/bin/sh\n"
                           "for argument in \"$@\"; do echo \"$argument\"; done > '" +
                               folder +
                               "/arguments'\n"
                               "echo $$ > '" +
                               folder + "/process'\n" + rest + '\n');
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString left(const char *name) const
    {
        QFile file(m_programs.filePath(QString::fromLatin1(name)));
        return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()) : QString();
    }

    QString libraries() const { return m_libraries.path(); }

private:
    QByteArray m_path;
    QTemporaryDir m_libraries;
    QTemporaryDir m_programs;
};

} // namespace

TEST_F(NativeOnlyRegisterCOM, RunsRegsvr32SilentlyWithTheQuotedPath)
{
    writeProgram("exit 0");
    EXPECT_TRUE(QuireCOM::registerCOM(libraries()));
    EXPECT_EQ(left("arguments"), QStringLiteral("/s\n\"%1/OrvexCOMU_64.dll\"\n").arg(libraries()));
}

TEST_F(NativeOnlyRegisterCOM, RegistersTheOtherLibraryWithoutUnicode)
{
    writeProgram("exit 0");
    QuireCOM::SetUnicode(false);
    EXPECT_TRUE(QuireCOM::registerCOM(libraries()));
    EXPECT_EQ(left("arguments"), QStringLiteral("/s\n\"%1/OrvexCOM.dll\"\n").arg(libraries()));
}

TEST_F(NativeOnlyRegisterCOM, PassesAFolderWithBlanksAndOtherLettersAsOneArgument)
{
    writeProgram("exit 0");
    const QString folder = libraries() + QString::fromUtf8("/Grüße 日本 %1");
    ASSERT_TRUE(QDir().mkpath(folder));
    writeFile(folder + QStringLiteral("/OrvexCOMU_64.dll"), "library");
    EXPECT_TRUE(QuireCOM::registerCOM(folder));
    EXPECT_EQ(left("arguments"), QStringLiteral("/s\n\"") + folder + QStringLiteral("/OrvexCOMU_64.dll\"\n"));
}

TEST_F(NativeOnlyRegisterCOM, StartsNothingForAMissingLibrary)
{
    writeProgram("exit 0");
    const QTemporaryDir empty;
    EXPECT_TRUE(QuireCOM::registerCOM(empty.path()));
    EXPECT_EQ(left("process"), QString());
}

TEST_F(NativeOnlyRegisterCOM, DoesNotLookAtTheExitCode)
{
    writeProgram("exit 3");
    EXPECT_TRUE(QuireCOM::registerCOM(libraries()));
    EXPECT_NE(left("process"), QString());
}

TEST_F(NativeOnlyRegisterCOM, KillsARegistrationThatDoesNotEndWithinASecond)
{
    writeProgram("exec sleep 60");
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(QuireCOM::registerCOM(libraries()));
    EXPECT_GE(timer.elapsed(), 1000);
    EXPECT_LT(timer.elapsed(), 30000);
    const int process = left("process").toInt();
    ASSERT_GT(process, 0);
    EXPECT_EQ(::kill(process, 0), -1);
    EXPECT_EQ(errno, ESRCH);
}

TEST_F(NativeOnlyRegisterCOM, TakesAProgramThatCannotBeStartedForDone)
{
    const QTemporaryDir empty;
    qputenv("PATH", QFile::encodeName(empty.path()));
    EXPECT_TRUE(QuireCOM::registerCOM(libraries()));
}

#endif
