/// \file
/// The seeds of the fuzz targets, asked the same as there.

#include <gtest/gtest.h>

#include "fuzz/markup/MarkupChecks.h"
#include "fuzzing/CorpusReplay.h"
#include "markup/Support.h"

namespace {

void replay(const char *target, QString (*check)(const QString &))
{
    replayCorpus(QStringLiteral(MARKUP_FUZZ_CORPUS "/") + QLatin1String(target), 5, check);
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
