#pragma once

/// \file
/// Results that arrive before their search is known.

#include <QtGlobal>

#include <memory>
#include <vector>

#include <quire/tree/SearchList.h>

namespace Quire {

/// Keeps the results of searches whose numbers are not known yet: the server may send hits of a search, even all of
/// them, before the call that starts it has returned the number.
///
/// While at least one search is being started, results with an unknown number are collected; each start that ends takes
/// what came under its number, and what none of the running starts can still claim is dropped. Not thread-safe: Search
/// guards it.
class StartingSearches
{
public:
    /// A search is about to be started. Returns the ticket for end().
    quint64 begin();
    /// The start with that ticket has ended. Returns what came for the search \a id meanwhile, null when nothing did;
    /// \a id is 0 when there is no search.
    std::unique_ptr<SearchList> end(quint64 ticket, qint32 id);

    /// Whether results of the search \a id are collected.
    bool takes(qint32 id) const;
    /// Where results of the search \a id go; null when no search is being started.
    SearchList *listFor(qint32 id);

private:
    struct Early
    {
        quint64 lastTicket; // the youngest start that could have caused it
        std::unique_ptr<SearchList> list;
    };

    SearchList *find(qint32 id) const;

    quint64 m_lastTicket = 0;
    std::vector<quint64> m_running; // tickets, the oldest first
    std::vector<Early> m_early;
};

} // namespace Quire
