/// \file
/// The seeds of the fuzz targets, asked the same as there.

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include "fuzz/markup/MarkupChecks.h"
#include "fuzz/story/StoryChecks.h"
#include "session/QtPrinting.h"

namespace {

/// Asks \a check for every file in the corpus of \a target.
void replay(const char *target, QString (*check)(const QString &))
{
    const QDir folder(QStringLiteral(STORY_FUZZ_CORPUS "/") + QLatin1String(target));
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

TEST(StoryFuzzCorpus, OfSectionsHolds)
{
    replay("sections", StoryFuzz::checkSections);
}

TEST(StoryFuzzCorpus, OfLocalStoriesHolds)
{
    replay("local", StoryFuzz::checkLocalStory);
}

TEST(StoryFuzzCorpus, OfItemsHolds)
{
    replay("item", StoryFuzz::checkItem);
}
