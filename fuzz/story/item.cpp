#include <cstdio>
#include <cstdlib>

#include "../markup/MarkupChecks.h"
#include "StoryChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString wrong = StoryFuzz::checkItem(MarkupFuzz::textOf(data, size));
    if (!wrong.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(wrong));
        std::abort();
    }
    return 0;
}
