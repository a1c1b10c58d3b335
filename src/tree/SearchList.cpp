#include <quire/tree/SearchList.h>

#include <utility>

#include <quire/session/QuireCOM.h>
#include <quire/tree/ListMutexLocker.h>

namespace Quire {

SearchList::SearchList(int searchId, const QString &searchStr)
{
    ItemList::SetID(searchId);
    ItemList::SetName(searchStr);
}

SearchList::~SearchList() = default;

int SearchList::SearchID()
{
    return ID();
}

QString SearchList::SearchStr()
{
    return Name();
}

long SearchList::GetTotalHits()
{
    return m_totalHits;
}

void SearchList::SetTotalHits(long totalHits)
{
    m_totalHits = static_cast<qint32>(totalHits);
}

bool SearchList::IsSearchComplete()
{
    return m_searchComplete;
}

void SearchList::SetSearchComplete()
{
    m_searchComplete = true;
}

void SearchList::AddHits(std::vector<Item> &hits)
{
    const ListMutexLocker lock("SearchList::AddHits()", listMutex().get());
    u_Expect(u_Size()); // doubled when full: hits that move do so while the searcher waits, with all who ask it
    for (Item &hit : hits)
        u_Append(std::move(hit));
    SetChanged();
}

void SearchList::Complete(long totalHits)
{
    const ListMutexLocker lock("SearchList::Complete()", listMutex().get());
    SetTotalHits(totalHits); // first: who sees an ended search, without the lock, sees its total
    SetSearchComplete();
    SortUnique();
    SetChanged();
}

void SearchList::StopSearch()
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (!session || IsSearchComplete())
        return;
    session->StopSearch(SearchID());
    SetSearchComplete();
}

} // namespace Quire
