/// \file
/// The seeds of the fuzz targets, asked the same as there.

#include <gtest/gtest.h>

#include "fuzz/markup/MarkupChecks.h"
#include "fuzz/story/StoryChecks.h"
#include "fuzzing/CorpusReplay.h"
#include "support/QtPrinting.h"

namespace {

void replay(const char *target, QString (*check)(const QString &))
{
    replayCorpus(QStringLiteral(STORY_FUZZ_CORPUS "/") + QLatin1String(target), 5, check);
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
