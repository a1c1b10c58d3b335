/// \file
/// The seeds of the fuzz targets, asked the same as there.

#include <gtest/gtest.h>

#include "fuzz/forms/FormChecks.h"
#include "fuzz/markup/MarkupChecks.h"
#include "fuzzing/CorpusReplay.h"
#include "support/QtPrinting.h"

namespace {

void replay(const char *target, QString (*check)(const QString &))
{
    replayCorpus(QStringLiteral(FORMS_FUZZ_CORPUS "/") + QLatin1String(target), 10, check);
}

} // namespace

TEST(FormsFuzzCorpus, OfFormsHolds)
{
    replay("form", FormFuzz::checkForm);
}

TEST(FormsFuzzCorpus, OfFieldValuesHolds)
{
    replay("codec", FormFuzz::checkCodec);
}
