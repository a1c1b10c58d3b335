// Searches everything below a directory. The server answers with a number at once and sends its hits later, so a host
// asks from time to time whether the search has ended, and may show what has arrived so far.
//
//     search [WORDS]

#include <memory>

#include <quire/platform/System.h>

#include "Session.h"

namespace {

void printHits(Quire::Search &searcher, long id)
{
    Quire::ItemList *hits = searcher.AccessSearchResults(id); // locked until EndAccessSearchResults
    for (int index = 0; hits && index < hits->u_Size(); ++index) {
        const Quire::Item &hit = *hits->u_Nth(index);
        Quire::Attribute queue;
        hit.FindAttr(Quire::Attr_Queue, queue);
        print(QString("%1  %2").arg(queue.value, -21).arg(hit.name));
    }
    searcher.EndAccessSearchResults(id);
}

} // namespace

int main(int argc, char **argv)
{
    const QString words = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString("tunnel pumps");
    return withSession([&](Newsroom::Server &) {
        Quire::NotificationInit(nullptr, nullptr, nullptr); // hits are notices
        Quire::Search &searcher = *Quire::Search::GetSearcher();
        const std::unique_ptr<Quire::Directory> everything(Quire::Directory::NewDirectory(QString(".")));
        Quire::SearchList *search = everything ? everything->StartSearch(words) : nullptr;
        if (!search)
            return print("The server does not search.");
        const long id = search->SearchID();
        while (!searcher.IsSearchDone(id))
            Sleep(1);
        print(QString("%1 stories have \"%2\":").arg(search->GetTotalHits()).arg(words));
        printHits(searcher, id);
        searcher.DeleteSearch(id);
    });
}
