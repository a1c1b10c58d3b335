/// \file
/// The seeds of the fuzz targets, asked the same as there.

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include "fuzz/markup/MarkupChecks.h"
#include "markup/Support.h"

namespace {

/// Asks \a check for every file in the corpus of \a target.
void replay(const char *target, QString (*check)(const QString &))
{
    const QDir folder(QStringLiteral(MARKUP_FUZZ_CORPUS "/") + QLatin1String(target));
    const QFileInfoList files = folder.entryInfoList(QDir::Files, QDir::Name);
    EXPECT_GE(files.size(), 5);
    for (const QFileInfo &info : files) {
        QFile file(info.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const auto *data = reinterpret_cast<const unsigned char *>(bytes.constData());
        EXPECT_EQ(check(MarkupFuzz::textOf(data, std::size_t(bytes.size()))), QString())
            << info.fileName().toStdString();
    }
}

} // namespace

TEST(FuzzCorpus, OfDocumentsHolds)
{
    replay("document", MarkupFuzz::checkDocument);
}

TEST(FuzzCorpus, OfParamsHolds)
{
    replay("params", MarkupFuzz::checkParams);
}

TEST(FuzzCorpus, OfEntitiesHolds)
{
    replay("entities", MarkupFuzz::checkEntities);
}

TEST(FuzzCorpus, BytesBehindFFAreUtf16)
{
    const unsigned char bytes[] = {0xFF, 'a', 0, 0x00, 0xD8, 'x'};
    const QString text = MarkupFuzz::textOf(bytes, sizeof bytes);
    ASSERT_EQ(text.size(), 2);
    EXPECT_EQ(text[0], QLatin1Char('a'));
    EXPECT_EQ(text[1].unicode(), 0xD800);
}
