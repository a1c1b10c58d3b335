#include "failing/FailureLoop.h"

#include <QScopeGuard>

#include "tree/Waiting.h"

// Directories and queues: made, listed, opened and loaded.

using namespace Quire;

namespace Failing::TreeCalls {

namespace {

// ---- directories ----------------------------------------------------------------------------------------------------

/// What a directory or queue turns out to be, and what it lists.
QString described(std::unique_ptr<Directory> directory)
{
    if (!directory)
        return text("none");
    return text("%1: %2").arg(directory->Name(), itemsOf(*directory));
}

void loadAtOnce(World &world)
{
    Queue::useThreading = false;
    world.session().Disconnect(); // the session's handles go
}

QString newDirectory(World &)
{
    return described(std::unique_ptr<Directory>(Directory::NewDirectory(text("NEWS"))));
}

QString newQueue(World &)
{
    return described(std::unique_ptr<Directory>(Directory::NewDirectory(worldPath())));
}

void fetchQueue(World &world)
{
    world.handle = world.session().GetCachedDir(worldPath());
}

void fetchQueueAtOnce(World &world)
{
    Queue::useThreading = false;
    fetchQueue(world);
}

QString newByObject(World &world)
{
    return described(std::unique_ptr<Directory>(Directory::NewDirectory(world.handle)));
}

QString directoryOfObject(World &world)
{
    return described(std::make_unique<Directory>(world.handle));
}

QString subDirectory(World &world)
{
    return described(std::unique_ptr<Directory>(world.directory->GetSubDir(text("news.sport"))));
}

QString subQueue(World &world)
{
    return described(std::unique_ptr<Directory>(world.directory->GetSubDir(1)));
}

QString refreshDirectory(World &world)
{
    world.directory->Refresh();
    return text("done: ") + itemsOf(*world.directory);
}

QString flagOfObject(World &world)
{
    return yes(Directory::FlagCheck(world.handle, Attr_Indexed));
}

void fetchDirectory(World &world)
{
    world.handle = world.session().GetCachedDir(text("NEWS"));
}

// ---- loading a queue ------------------------------------------------------------------------------------------------

/// How a load ended: "more, error H" or what is there.
QString stateOf(World &world, Queue &queue)
{
    if (queue.GetError() == S_OK && !queue.MoreStoriesAvailable())
        return itemsOf(queue);
    return text(queue.MoreStoriesAvailable() ? "more, error " : "no more, error ") + world.code(queue.GetError());
}

/// Waits for the end of a load on a thread; what it came to.
QString endOfLoad(World &world, Queue &queue)
{
    if (!comesTrue([&queue] { return queue.IsFinished(); }))
        return text("does not end");
    return stateOf(world, queue) + text(queue.IsComplete() ? ", complete" : ", not complete");
}

/// The server's object; none without a session.
IDispatchPtr objectOf(const QString &path)
{
    return QuireCOM::TheQuireCOM ? QuireCOM::TheQuireCOM->GetCachedDir(path) : IDispatchPtr();
}

/// Makes a queue that loads on its own thread, and waits for the end of that.
QString loadThreaded(World &world)
{
    Queue::useThreading = true;
    const auto reset = qScopeGuard([] { Queue::useThreading = false; });
    Queue queue(objectOf(worldPath()));
    return endOfLoad(world, queue);
}

/// The same of a queue that is watched once it is loaded.
QString loadLive(World &world)
{
    Queue::useThreading = true;
    Queue queue(objectOf(text("NEWS.LIVE")));
    return endOfLoad(world, queue);
}

QString loadLiveAtOnce(World &)
{
    return described(std::unique_ptr<Directory>(Directory::NewDirectory(text("NEWS.LIVE"))));
}

QString letGo(World &world)
{
    world.queue.reset();
    return text("done");
}

QString refreshQueue(World &world)
{
    const QString result = attempt(world, [&] {
        world.queue->Refresh();
        return text("done");
    });
    return result + text(": ") + stateOf(world, *world.queue);
}

/// A queue of which one chunk is loaded and three stories are left.
void openLongQueue(World &world)
{
    for (int number = 0; number < 20; ++number) {
        Newsroom::Model::NewStory story;
        story.queueNumber = 21;
        story.id = {1000 + number, 1, 1};
        world.server().model()->addStory(story);
    }
    Queue::sLoadIncrement = 20;
    Queue::useThreading = true;
    world.queue = std::make_unique<Queue>(world.session().GetCachedDir(worldPath()));
    ASSERT_TRUE(comesTrue([&world] { return world.queue->IsComplete(); }));
    ASSERT_TRUE(world.queue->MoreStoriesAvailable());
}

QString loadMore(World &world)
{
    const QString result = attempt(world, [&world] {
        world.queue->LoadMore();
        return text("done");
    });
    return result + text(": ") + endOfLoad(world, *world.queue);
}

/// A queue with a thread that loads it anew.
void openThreadedQueue(World &world)
{
    openQueue(world);
    Queue::useThreading = true;
}

QString refreshThreaded(World &world)
{
    const QString result = attempt(world, [&world] {
        world.queue->Refresh();
        return text("done");
    });
    return result + text(": ") + endOfLoad(world, *world.queue);
}

// ---- what is documented ---------------------------------------------------------------------------------------------

/// The directory \a name with \a count entries is made, or read anew. What it is itself must be known; what an entry
/// does not tell, its item lacks.
std::vector<Documented> directory(const std::string &name, const std::string &count)
{
    const std::string unnamed = name + ": " + count + " items, 1 without a name";
    const std::string other = name + ": 1 items, 1 without a name";
    return byPath({
        {"get_Name", Fails | Raised, "= | raised H"},
        {"get_Name", OutOfMemory, "= | out of memory"},
        {"get_Name", Empty, "= | : " + count + " items | " + unnamed},
        {"get_Flags get_Count", Fails | Raised, "= | raised H"},
        {"get_Flags", Empty, "="},
        {"get_Count", Empty, "= | " + name + ": 0 items"},
        {"GetList", Fails | Raised, "raised H"},
        {"GetList", Empty, name + ": 0 items | " + other},
        {"QueryInterface", NoInterface, "= | - | : 0 items | " + name + ": 0 items | " + unnamed},
        {"QueryInterface", Fails, "= | raised H"},
    });
}

/// The same made of the server's object, which may turn out to be neither.
std::vector<Documented> ofObject(std::vector<Documented> own)
{
    for (Documented &line : own) {
        if (line.faults == NoInterface)
            line.outcome += " | none";
    }
    return own;
}

/// An entry of a directory or queue is opened. That is not the short cut that finding a path is.
std::vector<Documented> entry(std::vector<Documented> own)
{
    const std::vector<Documented> shared{
        {"get_Item", NoInterface | Empty, "= | -"},
        {"get_Item", Fails | Raised, "= | raised H"},
        {"get_Item", OutOfMemory, "= | out of memory"},
        {"IDirectory2::QueryInterface", NoInterface, "= | - | : 0 items | NEWS.SPORT: 0 items"},
        {"IDirectory2::QueryInterface", Fails, "= | raised H"},
    };
    own.insert(own.begin(), shared.begin(), shared.end());
    return own;
}

/// The stories of a list called \a name, of \a count: what a story does not tell, its item lacks.
std::vector<Documented> stories(const std::string &name, const std::string &end, std::vector<Documented> own,
                                int before = 0)
{
    const auto items = [&](int count, const char *lacking) {
        return name + std::to_string(before + count) + " items" + lacking + end;
    };
    const std::vector<Documented> shared{
        {"GetList", Empty, items(0, "") + " | " + items(1, ", 1 without a name, 1 unknown")},
        {"get_StoryName", Fails | Empty, items(3, ", 1 without a name")},
        {"get_StoryUnique", Fails | Empty, items(3, ", 1 unknown")},
        {"get_SectionXml", Fails | Empty, items(3, ", 1 locked")},
        {"IStory2::QueryInterface", NoInterface, items(3, ", 1 without a name, 1 unknown")},
    };
    own.insert(own.end(), shared.begin(), shared.end());
    return own;
}

/// The queue \a name with three stories is made, and loaded at once.
std::vector<Documented> queue(const std::string &name)
{
    return byPath(stories(name + ": ", "",
                          {
                              {"IQueue2::get_Name", Fails | Raised, "= | raised H"},
                              {"IQueue2::get_Name", OutOfMemory, "= | out of memory"},
                              {"IQueue2::get_Name", Empty, "= | : 3 items"},
                              {"get_QueueID IQueue2::get_Flags GetList", Fails | Raised, "raised H"},
                              {"get_QueueID IQueue2::get_Flags", Empty, "="},
                              {"IQueue2::QueryInterface", NoInterface, "= | - | : 0 items | " + name + ": 0 items"},
                              {"IQueue2::QueryInterface", Fails, "= | raised H"},
                              {"IStory2::QueryInterface", Plain | Refused | BeingEdited, "raised H"},
                          }));
}

/// It is read anew: what goes wrong in the load is told, and that there is more.
std::vector<Documented> again()
{
    return byPath(stories("done: ", "",
                          {
                              {"get_Connected", Raised, "- | raised H: 0 items"},
                              {"get_Connected", OutOfMemory, "- | out of memory: 0 items"},
                              {"GetList IStory2::*", Raised, "raised H: more, error H"},
                              {"GetList IStory2::*", OutOfMemory, "out of memory: more, error H"},
                              {"GetList", Fails, "raised H: more, error H"},
                              {"IQueue2::get_Name", AnyFault, "="},
                              {"IQueue2::QueryInterface", NoInterface, "= | -"},
                              {"IQueue2::QueryInterface", Fails, "= | raised H: 0 items"},
                              {"IStory2::QueryInterface", Plain | Refused | BeingEdited, "raised H: more, error H"},
                          }));
}

/// A load on a thread: it ends when the server refuses, and tells. What is asked for before it begins raises.
std::vector<Documented> onThread(const std::string &before, int there, const std::string &unchanged)
{
    return byPath(
        stories(before, ", complete",
                {
                    {"get_Connected", Raised, "- | raised H" + unchanged},
                    {"get_Connected", OutOfMemory, "- | out of memory" + unchanged},
                    {"GetList", Fails | Throws, before + "more, error H, complete"},
                    {"IStory2::*", Throws, before + "more, error H, complete"},
                    {"IStory2::QueryInterface", Plain | Refused | BeingEdited, before + "more, error H, complete"},
                    {"IQueue2::get_Name", Fails | Raised, "= | raised H"},
                    {"IQueue2::get_Name", OutOfMemory, "= | out of memory"},
                    {"IQueue2::get_Name get_QueueID IQueue2::get_Flags", Empty, "="},
                    {"get_QueueID IQueue2::get_Flags", Fails, "raised H"},
                    {"IQueue2::QueryInterface", NoInterface, "= | -"},
                    {"IQueue2::QueryInterface", Fails, "= | raised H | raised H" + unchanged},
                },
                there));
}

/// The same of a queue that is watched: at the end of the load the server is asked for reports, and when the queue goes
/// to end them, which tells nothing.
std::vector<Documented> live()
{
    std::vector<Documented> all{
        {"put_Update", Fails | Throws, "= | no more, error H, complete"},
        {"put_Update", Empty, "="},
        {"IQueue2::QueryInterface", Plain | Refused | BeingEdited, "= | raised H | no more, error H, complete"},
    };
    const std::vector<Documented> loading = onThread("", 0, "");
    all.insert(all.end(), loading.begin(), loading.end());
    return all;
}

std::vector<Documented> liveAtOnce()
{
    std::vector<Documented> all{
        {"put_Update", Fails | Raised, "= | raised H"},
        {"put_Update", OutOfMemory, "= | out of memory"},
        {"put_Update", Empty, "="},
    };
    const std::vector<Documented> loading = queue("NEWS.LIVE");
    all.insert(all.end(), loading.begin(), loading.end());
    return all;
}

const std::vector<Operation> operations{
    {"Directory::NewDirectory(path)", anyState, loadAtOnce, newDirectory, "NEWS: 3 items", "none",
     directory("NEWS", "3")},
    {"Directory::NewDirectory(path), a queue", anyState, loadAtOnce, newQueue, "NEWS.WORLD: 3 items", "none",
     queue("NEWS.WORLD")},
    {"Directory::NewDirectory(object)", anyState & ~Connected, fetchDirectory, newByObject, "NEWS: 3 items",
     "raised 0x80040416", ofObject(directory("NEWS", "3"))},
    {"Directory::NewDirectory(object), a queue", anyState & ~Connected, fetchQueueAtOnce, newByObject,
     "NEWS.WORLD: 3 items", "raised 0x80040416", ofObject(queue("NEWS.WORLD"))},
    {"Directory::Directory(object)", anyState & ~Connected, fetchDirectory, directoryOfObject, "NEWS: 3 items",
     "raised 0x80040416", directory("NEWS", "3")},
    {"Directory::FlagCheck(object, key)",
     anyState & ~Connected,
     fetchDirectory,
     flagOfObject,
     "true",
     "false",
     {{"IQueue2::QueryInterface IDirectory2::QueryInterface", NoInterface, "= | -"},
      {"get_Flags QueryInterface", Fails | Raised | Empty, "-"}}},
    {"Directory::FlagCheck(object, key), a queue",
     anyState & ~Connected,
     fetchQueue,
     flagOfObject,
     "false",
     "false",
     {{"get_Flags QueryInterface", Fails | Raised | Empty, "-"}}},
    {"Directory::GetSubDir(name)", anyState, openDirectory, subDirectory, "NEWS.SPORT: 1 items", "none",
     entry(directory("NEWS.SPORT", "1"))},
    {"Directory::GetSubDir(index), a queue", anyState, openDirectory, subQueue, "NEWS.WORLD: 3 items", "none",
     entry(queue("NEWS.WORLD"))},
    {"Directory::Refresh",
     anySession,
     openDirectory,
     refreshDirectory,
     "done: 3 items",
     "done: 0 items",
     directory("done", "3"),
     {},
     true},
    {"Directory::Refresh, without a session", NoSession, openDirectory, refreshDirectory, "done: 3 items",
     "done: 3 items", directory("done", "3")},

    {"Queue::Queue", anyState, loadAtOnce, loadThreaded, "3 items, complete", "0 items, not complete",
     onThread("", 0, "")},
    {"Queue::Queue, live", anyState, loadAtOnce, loadLive, "3 items, complete", "0 items, not complete", live()},
    {"Queue::Queue, live, at once", anyState, loadAtOnce, loadLiveAtOnce, "NEWS.LIVE: 3 items", "none", liveAtOnce()},
    {"Queue::~Queue, live", anyState, openLiveQueue, letGo, "done", "done", {{"*", AnyFault, "done"}}},
    {"Queue::Refresh", anySession, openQueue, refreshQueue, "done: 3 items", "done: 0 items", again(), {}, true},
    {"Queue::Refresh, without a session", NoSession, openQueue, refreshQueue, "done: 3 items", "done: 3 items",
     again()},
    {"Queue::Refresh, on a thread",
     anySession,
     openThreadedQueue,
     refreshThreaded,
     "done: 3 items, complete",
     "done: 0 items, not complete",
     onThread("done: ", 0, ": 0 items, not complete"),
     {},
     true},
    {"Queue::LoadMore", anyState, openLongQueue, loadMore, "done: 23 items, complete", "done: 20 items, complete",
     onThread("done: ", 20, ": more, error 0, complete")},
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Tree, FailureLoop, ::testing::ValuesIn(operations), nameOfTest);

} // namespace Failing::TreeCalls
