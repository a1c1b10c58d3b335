// Whole text files: every encoding that a mark tells or that can be guessed, and replacing a file whole or not at all.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextCodec>

#include <gtest/gtest.h>

#include "src/story/TextFile.h"
#include "support/DebugCapture.h"
#include "support/QtPrinting.h"

#ifndef _WIN32
#include <csignal>
#include <fcntl.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#endif

using Quire::readTextFile;
using Quire::writeTextFile;

namespace {

const QString sample =
    QString::fromUtf8("<story>\xC3\x89lection \xE2\x80\x93 \xE9\x81\xB8 \xF0\x9F\x93\xB0\r\n</story>\n");

class TextFileTest : public ::testing::Test
{
protected:
    QString path(const char *name = "story.zko") const { return m_folder.filePath(QLatin1String(name)); }

    QString write(const QByteArray &bytes, const char *name = "story.zko") const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path(name);
    }

    QByteArray bytes(const char *name = "story.zko") const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    /// What the file holds that \a content was written to, as text.
    QString read(const QByteArray &content) const { return readTextFile(write(content)); }

    /// Everything in the folder, hidden files too.
    QStringList entries() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir m_folder;
};

/// Another encoding of the system for one scope.
class SystemEncoding
{
public:
    explicit SystemEncoding(const char *name)
        : m_before(QTextCodec::codecForLocale())
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(name));
    }
    ~SystemEncoding() { QTextCodec::setCodecForLocale(m_before); }

private:
    Q_DISABLE_COPY(SystemEncoding)
    QTextCodec *m_before;
};

enum class Order { LittleEndian, BigEndian };

/// \a unit in as many bytes as its type has.
template<class Unit>
void append(QByteArray &bytes, Unit unit, Order order)
{
    const int count = int(sizeof unit);
    for (int index = 0; index < count; ++index) {
        const int place = order == Order::LittleEndian ? index : count - 1 - index;
        bytes += static_cast<char>((unit >> (8 * place)) & 0xFF);
    }
}

/// \a text with its byte-order mark.
QByteArray utf16(const QString &text, Order order)
{
    QByteArray bytes;
    for (const QChar unit : QChar(QChar::ByteOrderMark) + text)
        append(bytes, unit.unicode(), order);
    return bytes;
}

/// \a text with its byte-order mark.
QByteArray utf32(const QString &text, Order order)
{
    QByteArray bytes;
    for (const uint character : (QChar(QChar::ByteOrderMark) + text).toUcs4())
        append(bytes, character, order);
    return bytes;
}

QByteArray withMark(const QString &text)
{
    return "\xEF\xBB\xBF" + text.toUtf8();
}

} // namespace

// ---- reading --------------------------------------------------------------------------------------------------------

TEST_F(TextFileTest, WithoutPathNothingIsReadWrittenOrLogged)
{
    const FrameworkLog log;
    EXPECT_EQ(readTextFile(QString()), QString());
    EXPECT_FALSE(writeTextFile(QString(), sample));
    EXPECT_EQ(log.texts(), QStringList());
}

TEST_F(TextFileTest, Utf8WithoutMarkIsRead)
{
    EXPECT_EQ(read(sample.toUtf8()), sample);
}

TEST_F(TextFileTest, Utf8WithMarkIsReadWithoutIt)
{
    EXPECT_EQ(read(withMark(sample)), sample);
}

TEST_F(TextFileTest, Utf16LittleEndianIsReadByItsMark)
{
    EXPECT_EQ(read(utf16(sample, Order::LittleEndian)), sample);
}

TEST_F(TextFileTest, Utf16BigEndianIsReadByItsMark)
{
    EXPECT_EQ(read(utf16(sample, Order::BigEndian)), sample);
}

TEST_F(TextFileTest, Utf32LittleEndianIsReadByItsMark)
{
    EXPECT_EQ(read(utf32(sample, Order::LittleEndian)), sample);
}

TEST_F(TextFileTest, Utf32BigEndianIsReadByItsMark)
{
    EXPECT_EQ(read(utf32(sample, Order::BigEndian)), sample);
}

TEST_F(TextFileTest, MarksAloneAreEmptyTexts)
{
    for (const Order order : {Order::LittleEndian, Order::BigEndian}) {
        EXPECT_EQ(read(utf16(QString(), order)), QString());
        EXPECT_EQ(read(utf32(QString(), order)), QString());
    }
    EXPECT_EQ(read(withMark(QString())), QString());
}

TEST_F(TextFileTest, OtherThanUtf8IsReadInTheSystemsEncoding)
{
    const SystemEncoding russian("KOI8-R");
    EXPECT_EQ(read("\xD0\xD2\xC9"), QString::fromUtf8("при"));
}

TEST_F(TextFileTest, Utf8IsReadAsSuchWhateverTheSystemsEncoding)
{
    const SystemEncoding russian("KOI8-R");
    EXPECT_EQ(read(sample.toUtf8()), sample);
}

TEST_F(TextFileTest, NoByteIsLostOfWhatIsInNoKnownEncoding)
{
    const SystemEncoding utf8("UTF-8");
    QByteArray every;
    for (int value = 0; value < 256; ++value)
        every += static_cast<char>(value);
    EXPECT_EQ(read(every), QString::fromLatin1(every.constData(), every.size()));
}

TEST_F(TextFileTest, Utf8CutOffInACharacterLosesNoByte)
{
    const SystemEncoding utf8("UTF-8");
    EXPECT_EQ(read("caf\xC3"), QString::fromLatin1("caf\xC3"));
}

TEST_F(TextFileTest, ZerosAreKept)
{
    const QByteArray bytes("<a>\0\0x</a>\0", 11);
    EXPECT_EQ(read(bytes), QString::fromLatin1(bytes.constData(), bytes.size()));
}

TEST_F(TextFileTest, ZerosAtTheEndAreKeptInEveryEncoding)
{
    const QByteArray zeros(3, '\0');
    EXPECT_EQ(read(zeros), QString(3, QChar()));
    EXPECT_EQ(read("\xC3\xA9" + zeros), QString::fromUtf8("é") + QString(3, QChar()));
    EXPECT_EQ(read("\xE9" + zeros).size(), 4);
    const SystemEncoding russian("KOI8-R");
    EXPECT_EQ(read("\xD0" + zeros), QString::fromUtf8("п") + QString(3, QChar()));
}

TEST_F(TextFileTest, LineEndsAreKept)
{
    EXPECT_EQ(read("a\r\nb\nc\rd"), QStringLiteral("a\r\nb\nc\rd"));
}

TEST_F(TextFileTest, EmptyFileIsAnEmptyText)
{
    EXPECT_EQ(read(QByteArray()), QString());
}

TEST_F(TextFileTest, MissingFileIsAnEmptyText)
{
    EXPECT_EQ(readTextFile(path()), QString());
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(TextFileTest, FolderIsAnEmptyText)
{
    EXPECT_EQ(readTextFile(m_folder.path()), QString());
}

TEST_F(TextFileTest, NoPathIsAnEmptyText)
{
    EXPECT_EQ(readTextFile(QString()), QString());
}

TEST_F(TextFileTest, PathMayHoldAnyLetter)
{
    const QString file = m_folder.filePath(QString::fromUtf8("Élection 選挙 %1.zko"));
    EXPECT_TRUE(writeTextFile(file, sample));
    EXPECT_EQ(readTextFile(file), sample);
}

// ---- writing --------------------------------------------------------------------------------------------------------

TEST_F(TextFileTest, IsWrittenInUtf8WithMark)
{
    EXPECT_TRUE(writeTextFile(path(), sample));
    EXPECT_EQ(bytes(), withMark(sample));
}

TEST_F(TextFileTest, EmptyTextIsAnEmptyFile)
{
    write("old");
    EXPECT_TRUE(writeTextFile(path(), QString()));
    EXPECT_EQ(bytes(), QByteArray());
}

TEST_F(TextFileTest, ShorterTextLeavesNothingOfTheLonger)
{
    write(QByteArray(100000, 'x'));
    EXPECT_TRUE(writeTextFile(path(), QStringLiteral("short")));
    EXPECT_EQ(bytes(), withMark(QStringLiteral("short")));
}

TEST_F(TextFileTest, WhatWasWrittenIsReadAgain)
{
    const QString zeros = QString::fromLatin1("\0a\0", 3);
    for (const QString &text : {sample, zeros, QStringLiteral(" "), sample.repeated(10000)}) {
        EXPECT_TRUE(writeTextFile(path(), text));
        EXPECT_TRUE(readTextFile(path()) == text);
    }
}

TEST_F(TextFileTest, CharactersBeyondTheBasicPlaneSurviveEveryPlaceInALongText)
{
    const QString pairs = QString::fromUtf8("\xF0\x9F\x93\xB0").repeated(40000);
    for (const QString &text : {pairs, QLatin1Char('x') + pairs}) {
        EXPECT_TRUE(writeTextFile(path(), text));
        EXPECT_TRUE(readTextFile(path()) == text);
    }
}

TEST_F(TextFileTest, NothingElseIsLeftInTheFolder)
{
    EXPECT_TRUE(writeTextFile(path(), sample));
    EXPECT_TRUE(writeTextFile(path(), sample));
    EXPECT_EQ(entries(), QStringList(QStringLiteral("story.zko")));
}

TEST_F(TextFileTest, HundredMegabytesComeAndGo)
{
    const QByteArray line = "<p>Words that fill a line of a very long story, \xC3\xA9t\xC3\xA9</p>\n";
    const int lines = 100 * 1024 * 1024 / line.size() + 1;
    write(line.repeated(lines));
    QString text = readTextFile(path());
    EXPECT_EQ(text.size(), QString::fromUtf8(line).size() * lines);
    EXPECT_TRUE(writeTextFile(path(), text));
    text = QString();
    EXPECT_EQ(QFileInfo(path()).size(), qint64(line.size()) * lines + 3);
}

TEST_F(TextFileTest, NoPathIsNotWritten)
{
    EXPECT_FALSE(writeTextFile(QString(), sample));
}

TEST_F(TextFileTest, FolderIsNotWritten)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("story.zko")));
    EXPECT_FALSE(writeTextFile(path(), sample));
    EXPECT_TRUE(QFileInfo(path()).isDir());
    EXPECT_EQ(entries(), QStringList(QStringLiteral("story.zko")));
}

TEST_F(TextFileTest, FileInAMissingFolderIsNotWritten)
{
    EXPECT_FALSE(writeTextFile(path("missing/story.zko"), sample));
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(TextFileTest, FileThatAnotherReadsIsWritten)
{
    write("old");
    QFile reader(path());
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    EXPECT_TRUE(writeTextFile(path(), sample));
    EXPECT_EQ(bytes(), withMark(sample));
    reader.close();
    EXPECT_EQ(entries(), QStringList(QStringLiteral("story.zko")));
}

#ifndef _WIN32

namespace {

/// No rights beyond those of an ordinary user for files on this thread, also when the tests run as root. What is in
/// the folder belongs to that user.
class OrdinaryUser
{
public:
    explicit OrdinaryUser(const QString &folder)
    {
        if (geteuid() != 0)
            return;
        const QByteArray name = QFile::encodeName(folder);
        EXPECT_EQ(chown(name.constData(), nobody, nobody), 0);
        for (const QFileInfo &info : QDir(folder).entryInfoList(QDir::Files))
            EXPECT_EQ(chown(QFile::encodeName(info.filePath()).constData(), nobody, nobody), 0);
        setfsuid(nobody);
    }
    ~OrdinaryUser()
    {
        if (geteuid() == 0)
            setfsuid(0);
    }

private:
    Q_DISABLE_COPY(OrdinaryUser)
    static constexpr uid_t nobody = 65534;
};

/// No file grows beyond \a size bytes, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t size)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        rlimit limit = m_before;
        limit.rlim_cur = size;
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    Q_DISABLE_COPY(FullDisk)
    void (*m_handler)(int);
    rlimit m_before{};
};

} // namespace

TEST_F(TextFileTest, LinkToTheFileStaysOne)
{
    write("old", "real");
    ASSERT_TRUE(QFile::link(QStringLiteral("real"), path("first")));
    ASSERT_TRUE(QFile::link(QStringLiteral("first"), path("second")));
    EXPECT_TRUE(writeTextFile(path("second"), sample));
    EXPECT_EQ(QFile::symLinkTarget(path("second")), path("first"));
    EXPECT_EQ(QFile::symLinkTarget(path("first")), path("real"));
    EXPECT_EQ(bytes("real"), withMark(sample));
    EXPECT_EQ(entries().size(), 3);
}

TEST_F(TextFileTest, LinkToNothingGetsItsFile)
{
    ASSERT_TRUE(QFile::link(QStringLiteral("real"), path("link")));
    EXPECT_TRUE(writeTextFile(path("link"), sample));
    EXPECT_EQ(QFile::symLinkTarget(path("link")), path("real"));
    EXPECT_EQ(bytes("real"), withMark(sample));
}

TEST_F(TextFileTest, PermissionsStay)
{
    write("old");
    for (const mode_t mode : {0600u, 0640u, 0664u, 0755u}) {
        ASSERT_EQ(chmod(QFile::encodeName(path()).constData(), mode), 0);
        EXPECT_TRUE(writeTextFile(path(), sample));
        struct stat after = {};
        ASSERT_EQ(stat(QFile::encodeName(path()).constData(), &after), 0);
        EXPECT_EQ(after.st_mode & 07777, mode);
    }
}

TEST_F(TextFileTest, NewFileHasTheUsualPermissions)
{
    const mode_t before = umask(027);
    EXPECT_TRUE(writeTextFile(path(), sample));
    umask(before);
    struct stat made = {};
    ASSERT_EQ(stat(QFile::encodeName(path()).constData(), &made), 0);
    EXPECT_EQ(made.st_mode & 07777, 0640u);
}

TEST_F(TextFileTest, FileThatMayNotBeWrittenStays)
{
    write("old");
    ASSERT_EQ(chmod(QFile::encodeName(path()).constData(), 0444), 0);
    {
        const OrdinaryUser user(m_folder.path());
        EXPECT_FALSE(writeTextFile(path(), sample));
    }
    EXPECT_EQ(bytes(), QByteArray("old"));
    EXPECT_EQ(entries(), QStringList(QStringLiteral("story.zko")));
}

TEST_F(TextFileTest, FileInAFolderThatTakesNoNewOneIsOverwritten)
{
    write("old, and longer than what comes");
    const QByteArray folder = QFile::encodeName(m_folder.path());
    {
        const OrdinaryUser user(m_folder.path());
        ASSERT_EQ(chmod(folder.constData(), 0555), 0);
        EXPECT_TRUE(writeTextFile(path(), QStringLiteral("new")));
    }
    ASSERT_EQ(chmod(folder.constData(), 0755), 0);
    EXPECT_EQ(bytes(), withMark(QStringLiteral("new")));
    EXPECT_EQ(entries(), QStringList(QStringLiteral("story.zko")));
}

TEST_F(TextFileTest, FullDiskLeavesTheOldFileAlsoInAFolderThatTakesNoNewOne)
{
    write("old");
    const QByteArray folder = QFile::encodeName(m_folder.path());
    {
        const OrdinaryUser user(m_folder.path());
        const FullDisk disk(65536);
        ASSERT_EQ(chmod(folder.constData(), 0555), 0);
        EXPECT_FALSE(writeTextFile(path(), sample.repeated(10000)));
    }
    ASSERT_EQ(chmod(folder.constData(), 0755), 0);
    EXPECT_EQ(bytes(), QByteArray("old"));
}

TEST_F(TextFileTest, NoFileIsMadeInAFolderThatTakesNone)
{
    const QByteArray folder = QFile::encodeName(m_folder.path());
    {
        const OrdinaryUser user(m_folder.path());
        ASSERT_EQ(chmod(folder.constData(), 0555), 0);
        EXPECT_FALSE(writeTextFile(path(), sample));
    }
    ASSERT_EQ(chmod(folder.constData(), 0755), 0);
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(TextFileTest, FileThatMayNotBeReadIsAnEmptyText)
{
    write("secret");
    ASSERT_EQ(chmod(QFile::encodeName(path()).constData(), 0), 0);
    const OrdinaryUser user(m_folder.path());
    EXPECT_EQ(readTextFile(path()), QString());
}

TEST_F(TextFileTest, FullDiskLeavesTheOldFileAndNoOther)
{
    write("old");
    {
        const FullDisk disk(65536);
        EXPECT_FALSE(writeTextFile(path(), sample.repeated(10000)));
    }
    EXPECT_EQ(bytes(), QByteArray("old"));
    EXPECT_EQ(entries(), QStringList(QStringLiteral("story.zko")));
}

TEST_F(TextFileTest, FullDiskMakesNoNewFile)
{
    {
        const FullDisk disk(65536);
        EXPECT_FALSE(writeTextFile(path(), sample.repeated(10000)));
    }
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(TextFileTest, DiskThatIsFullFromTheStartLeavesTheOldFile)
{
    write("old");
    {
        const FullDisk disk(0);
        EXPECT_FALSE(writeTextFile(path(), QStringLiteral("x")));
    }
    EXPECT_EQ(bytes(), QByteArray("old"));
    EXPECT_EQ(entries(), QStringList(QStringLiteral("story.zko")));
}

TEST_F(TextFileTest, PipeIsWrittenToAndStaysOne)
{
    const QByteArray name = QFile::encodeName(path("pipe"));
    ASSERT_EQ(mkfifo(name.constData(), 0600), 0);
    const int reader = open(name.constData(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_TRUE(writeTextFile(path("pipe"), QStringLiteral("news")));
    char received[16] = {};
    EXPECT_EQ(::read(reader, received, sizeof received), 7);
    EXPECT_STREQ(received, "\xEF\xBB\xBFnews");
    close(reader);
    struct stat after = {};
    ASSERT_EQ(lstat(name.constData(), &after), 0);
    EXPECT_TRUE(S_ISFIFO(after.st_mode));
    EXPECT_EQ(entries().size(), 1);
}

TEST_F(TextFileTest, DeviceThatTakesNothingIsNoSuccessAndStaysOne)
{
    const QByteArray name = QFile::encodeName(path("full"));
    if (mknod(name.constData(), S_IFCHR | 0600, makedev(1, 7)) != 0 || access(name.constData(), W_OK) != 0)
        GTEST_SKIP() << "this user makes no devices";
    ASSERT_TRUE(QFile::link(QStringLiteral("full"), path("link")));
    EXPECT_FALSE(writeTextFile(path("link"), sample));
    struct stat after = {};
    ASSERT_EQ(stat(name.constData(), &after), 0);
    EXPECT_TRUE(S_ISCHR(after.st_mode));
    EXPECT_EQ(entries().size(), 2);
}

#endif
