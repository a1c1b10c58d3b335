#include "failing/FailureLoop.h"

#include <quire/notify/Notification.h>
#include <quire/notify/Search.h>
#include <quire/tree/SearchList.h>

#include "tree/Waiting.h"

// Notices, and searches with them.

using namespace Quire;

namespace Failing::NotifyCalls {

namespace {

// ---- notices --------------------------------------------------------------------------------------------------------

QString startNotices(World &)
{
    NotificationInit(nullptr, nullptr, nullptr);
    return text(Search::TheSearcher->CanSearch() ? "can search" : "cannot search");
}

QString endNotices(World &)
{
    NotificationRelease();
    return text("done");
}

void endNotices()
{
    NotificationRelease();
}

void withoutNotices(World &)
{
    endNotices();
}

/// Signs on and starts notices for that session.
void withNotices(World &)
{
    endNotices();
    NotificationInit(nullptr, nullptr, nullptr);
}

// ---- searches -------------------------------------------------------------------------------------------------------

/// A search that is held back, so that it does not end by itself; three hits are waiting.
void withSearch(World &world)
{
    withNotices(world);
    world.server().delivery().pause();
    world.search = Search::TheSearcher->StartSearch(text("NEWS.WORLD"), text("Rain"));
    ASSERT_TRUE(world.search);
}

QString described(World &world, SearchList *list)
{
    world.search = list;
    return given(list);
}

QString startSearch(World &world)
{
    return described(world, Search::GetSearcher()->StartSearch(text("NEWS.*"), text("Rain")));
}

/// All that a search finds, told by the server's own thread, which is at its end then.
QString searchToTheEnd(World &world)
{
    SearchList *const list = Search::GetSearcher()->StartSearch(text("NEWS.*"), text("Rain"));
    if (!list)
        return text("none");
    if (!world.server().waitForEvents())
        return text("the server hangs");
    world.disarm();
    const QString found = text("%1 of %2").arg(itemsOf(*list)).arg(list->GetTotalHits());
    const bool isComplete = list->IsSearchComplete();
    Search::GetSearcher()->DeleteSearch(list->SearchID());
    return isComplete ? found : text("unfinished");
}

QString searchDirectory(World &world)
{
    return described(world, world.directory->StartSearch(text("Rain")));
}

void openSearchableDirectory(World &world)
{
    withNotices(world);
    openDirectory(world);
}

QString searchQueue(World &world)
{
    return described(world, world.queue->StartSearch(text("Rain")));
}

void openSearchableQueue(World &world)
{
    withNotices(world);
    openQueue(world);
}

QString stopSearch(World &world)
{
    Search::GetSearcher()->StopSearch(world.search->SearchID());
    return text(world.search->IsSearchComplete() ? "stopped" : "running");
}

QString stopList(World &world)
{
    const QString result = attempt(world, [&world] {
        world.search->StopSearch();
        return text("done");
    });
    return result + text(world.search->IsSearchComplete() ? ", stopped" : ", running");
}

QString deleteSearch(World &world)
{
    const long id = world.search->SearchID();
    world.search = nullptr;
    Search::GetSearcher()->DeleteSearch(id);
    const bool isGone = !Search::GetSearcher()->AccessSearchResults(id);
    return text(isGone ? "gone" : "there");
}

const std::vector<Operation> operations{
    {"NotificationInit, without a server",
     NoSession | Unloaded,
     withoutNotices,
     startNotices,
     "can search",
     "cannot search",
     {}},
    {"NotificationInit",
     Disconnected | signedOn,
     withoutNotices,
     startNotices,
     "can search",
     "can search",
     {{"Advise", Empty, "="}, {"*", AnyFault, "= | cannot search"}}}, // of the two points the first one counts
    {"NotificationRelease", anyState, withNotices, endNotices, "done", "done", {{"*", AnyFault, "="}}},

    {"Search::StartSearch", anyState, withNotices, startSearch, "some", "none", {{"*", Fails | Raised | Empty, "-"}}},
    {"Search::StartSearch, to its end",
     signedOn,
     withNotices,
     searchToTheEnd,
     "2 items of 2",
     "none",
     {{"*", Fails | Raised | Empty, "- | unfinished"}}}, // a server without memory tells nothing
    {"Directory::StartSearch",
     anyState,
     openSearchableDirectory,
     searchDirectory,
     "some",
     "none",
     {{"*", Fails | Raised | Empty, "-"}}},
    {"Queue::StartSearch",
     anyState,
     openSearchableQueue,
     searchQueue,
     "some",
     "none",
     {{"*", Fails | Raised | Empty, "-"}}},
    {"Search::StopSearch",
     anyState,
     withSearch,
     stopSearch,
     "stopped",
     "stopped",
     {{"*", AnyFault & ~OutOfMemory, "="}}},
    {"Search::DeleteSearch", anyState, withSearch, deleteSearch, "gone", "gone", {{"*", AnyFault & ~OutOfMemory, "="}}},
    {"SearchList::StopSearch, not loaded",
     Unloaded,
     withSearch,
     stopList,
     "done, stopped",
     "raised 0x80004003, running",
     {}},
    {"SearchList::StopSearch, without a session",
     NoSession,
     withSearch,
     stopList,
     "done, stopped",
     "done, running",
     {}},
    {"SearchList::StopSearch",
     Disconnected | signedOn,
     withSearch,
     stopList,
     "done, stopped",
     "done, stopped",
     {{"*", Fails | Empty, "="}, {"*", Raised, "raised H, running"}, {"*", OutOfMemory, "out of memory, running"}}},
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Notify, FailureLoop, ::testing::ValuesIn(operations), nameOfTest);

} // namespace Failing::NotifyCalls
