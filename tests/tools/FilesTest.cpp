#include "Files.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "Failure.h"
#include "Output.h"

using namespace Tool;

namespace {

class FilesTest : public testing::Test
{
protected:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    ExitCode codeOf(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const Failure &failure) {
            m_message = failure.message();
            return failure.code();
        }
        return ExitCode::Done;
    }

    QTemporaryDir m_folder;
    Output m_output;
    QString m_message;
};

TEST_F(FilesTest, WhatWasWrittenIsReadAgainByteForByte)
{
    const QByteArray bytes("a\0b\r\n\xff", 6);
    writeFile(path("f"), bytes, m_output);
    EXPECT_EQ(readFile(path("f")), bytes);
    writeFile(path("f"), QByteArray(), m_output);
    EXPECT_EQ(readFile(path("f")), QByteArray());
}

TEST_F(FilesTest, WritingLeavesNothingElseBehind)
{
    writeFile(path("f"), "x", m_output);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
              QStringList{QStringLiteral("f")});
}

TEST_F(FilesTest, AMissingFileIsNamedInTheFailure)
{
    EXPECT_EQ(codeOf([&] { readFile(path("none")); }), ExitCode::Failed);
    EXPECT_TRUE(m_message.contains(path("none"))) << qPrintable(m_message);
}

TEST_F(FilesTest, AFileThatIsTooLargeIsRefusedAndNotTakenForEmpty)
{
    QFile file(path("big"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    if (!file.resize(qint64{2200} * 1024 * 1024)) // takes no room where the file system knows gaps
        GTEST_SKIP() << "no room for a large file";
    EXPECT_EQ(codeOf([&] { readFile(path("big")); }), ExitCode::Failed);
    EXPECT_TRUE(m_message.contains(path("big"))) << qPrintable(m_message);
    EXPECT_TRUE(m_message.contains(QStringLiteral("of its 2306867200 bytes"))) << qPrintable(m_message);
}

TEST_F(FilesTest, AFolderIsNeitherReadNorWritten)
{
    EXPECT_EQ(codeOf([&] { readFile(m_folder.path()); }), ExitCode::Failed);
    EXPECT_TRUE(m_message.contains(QStringLiteral("it is a folder")));
    EXPECT_EQ(codeOf([&] { writeFile(m_folder.path(), "x", m_output); }), ExitCode::Failed);
    EXPECT_TRUE(m_message.contains(QStringLiteral("it is a folder")));
}

TEST_F(FilesTest, AFileInAMissingFolderCannotBeWritten)
{
    EXPECT_EQ(codeOf([&] { writeFile(path("no/f"), "x", m_output); }), ExitCode::Failed);
    EXPECT_FALSE(QFileInfo::exists(path("no")));
}

#ifndef Q_OS_WIN
TEST_F(FilesTest, ADeviceIsWrittenToAndNotReplaced)
{
    writeFile(QStringLiteral("/dev/null"), "x", m_output);
    EXPECT_FALSE(QFileInfo(QStringLiteral("/dev/null")).isFile());
}

TEST_F(FilesTest, ADeviceThatTellsNoSizeIsReadToItsEnd)
{
    EXPECT_EQ(readFile(QStringLiteral("/dev/null")), QByteArray());
}
#endif

} // namespace
