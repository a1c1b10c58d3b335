#pragma once

/// \file
/// The hits of one search.

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <vector>

#include <quire/platform/Export.h>
#include <quire/tree/ItemList.h>

namespace Quire {

/// The stories that one search of the server has found so far: its number is the list's identifier, its text the list's
/// name.
///
/// Made, filled and owned by Search, which lends it to the host; see Search::AccessSearchResults. Any thread may call
/// any operation.
class QUIRE_EXPORT SearchList : public ItemList
{
public:
    /// The running search \a searchId for \a searchStr, without hits.
    SearchList(int searchId, const QString &searchStr);
    ~SearchList() override;

    /// The search's number.
    int SearchID();
    /// The search's text, as the server got it.
    QString SearchStr();
    /// The number of stories that the server found, which may be more than it sent; 0 until the search is complete.
    long GetTotalHits();
    /// See GetTotalHits().
    void SetTotalHits(long totalHits);
    /// The search has ended or was stopped.
    bool IsSearchComplete();
    /// Marks the search as ended.
    void SetSearchComplete();
    /// Moves \a hits to the end and sets the change flag, all under one lock.
    void AddHits(std::vector<Item> &hits);
    /// Marks the search as ended with \a totalHits found on the server, sorts the hits, drops double ones and sets the
    /// change flag: all under one lock, so that nobody reads the hits of an ended search before they are sorted.
    void Complete(long totalHits);
    /// Has the server stop the search, unless it is complete or there is no session, and marks it as ended.
    void StopSearch();

private:
    Q_DISABLE_COPY(SearchList)

    std::atomic<bool> m_searchComplete{false};
    std::atomic<qint32> m_totalHits{0};
};

} // namespace Quire
