#pragma once

#include <quire/notify/Search.h>

namespace Quire {

/// The searcher's end, for tests.
struct SearchProbe
{
    /// As if there had never been a searcher.
    static void destroy()
    {
        delete Search::TheSearcher;
        Search::sSearchLimit = 500;
    }
};

} // namespace Quire

using Quire::SearchProbe;
