/// \file
/// The seeds of the fuzz targets, asked the same as there.

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include "fuzz/Input.h"
#include "fuzz/Targets.h"
#include "support/QtPrinting.h"

namespace {

QString corpusOf(const Fuzz::Target &target)
{
    return QString::fromLatin1(target.name).replace(QLatin1Char('/'), QLatin1String("/corpus/"));
}

std::string testName(const testing::TestParamInfo<Fuzz::Target> &info)
{
    QByteArray name = info.param.name;
    name.replace('/', '_');
    return name.toStdString();
}

class FuzzCorpus : public testing::TestWithParam<Fuzz::Target>
{};

} // namespace

namespace Fuzz {

static void PrintTo(const Target &target, std::ostream *out)
{
    *out << target.name;
}

} // namespace Fuzz

TEST_P(FuzzCorpus, Holds)
{
    const QDir folder(QStringLiteral(QUIRE_FUZZ_DIR "/") + corpusOf(GetParam()));
    const QFileInfoList files = folder.entryInfoList(QDir::Files, QDir::Name);
    EXPECT_GE(files.size(), 5) << folder.path().toStdString();
    for (const QFileInfo &info : files) {
        QFile file(info.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(GetParam().check(file.readAll()).toStdString(), "") << info.fileName().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzCorpus, testing::ValuesIn(Fuzz::targets()), testName);

TEST(FuzzTargets, AllSeedsBelongToATarget)
{
    QStringList expected;
    for (const Fuzz::Target &target : Fuzz::targets())
        expected.append(corpusOf(target));
    QStringList found;
    const QDir root(QStringLiteral(QUIRE_FUZZ_DIR));
    for (const QString &subsystem : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString corpus = subsystem + QLatin1String("/corpus");
        for (const QString &name : QDir(root.filePath(corpus)).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            found.append(corpus + QLatin1Char('/') + name);
    }
    found.sort();
    expected.sort();
    EXPECT_EQ(found, expected);
}

TEST(FuzzTargets, AreFoundByTheirNames)
{
    for (const Fuzz::Target &target : Fuzz::targets())
        EXPECT_EQ(Fuzz::findTarget(target.name), &target);
    EXPECT_EQ(Fuzz::findTarget("story"), nullptr);
}

TEST(FuzzInput, BytesBehindFFAreUtf16)
{
    const QString text = Fuzz::textOf(QByteArray("\xFF\x61\0\0\xD8x", 6));
    ASSERT_EQ(text.size(), 2);
    EXPECT_EQ(text[0], QLatin1Char('a'));
    EXPECT_EQ(text[1].unicode(), 0xD800);
}

TEST(FuzzInput, LinesThatAreMissingAreEmpty)
{
    EXPECT_EQ(Fuzz::linesOf(QStringLiteral("a"), 2), (QStringList{QStringLiteral("a"), QString(), QString()}));
    EXPECT_EQ(Fuzz::linesOf(QStringLiteral("a\nb\nc\nd"), 2),
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c\nd")}));
}

TEST(FuzzInput, IsTakenApartFromItsBeginning)
{
    Fuzz::Input input(QByteArray("\x05\x01\x02\x03\x84\x02hi\xFF\x7Fx", 11));
    EXPECT_EQ(input.byte(), 5);
    EXPECT_EQ(quint32(input.number()), 0x84030201u);
    EXPECT_EQ(input.text(), QStringLiteral("hi"));
    EXPECT_TRUE(input.text().isNull());
    EXPECT_EQ(input.bytes(), QByteArray("x"));
    EXPECT_TRUE(input.atEnd());
    EXPECT_EQ(input.number(), 0);
    EXPECT_FALSE(input.text().isNull());
}
