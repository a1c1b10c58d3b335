#include "failing/FailureLoop.h"

#include <quire/tree/QueueUpdateMgr.h>

// The stories of a queue, its form, and its reports of changes.

using namespace Quire;

namespace Failing::QueueCalls {

namespace {

// ---- the stories of a queue -----------------------------------------------------------------------------------------

void openFullQueue(World &world)
{
    keepStories(world);
    openQueue(world);
}

QString described(Story *story)
{
    const std::unique_ptr<Story> owner(story);
    if (!story)
        return text("none");
    return text(story->IsLoaded() ? "a story" : "a story that is not there");
}

QString storyByIndex(World &world)
{
    return described(world.queue->GetStory(1));
}

QString storyByIdentifier(World &world)
{
    const StoryID id{212, 1, 1};
    return described(world.queue->GetStory(&id));
}

QString createStory(World &world)
{
    return described(world.queue->CreateStory(0));
}

QString deleteStory(World &world)
{
    return yes(world.queue->Delete(2));
}

QString deleteAll(World &world)
{
    return yes(world.queue->DeleteAll());
}

QString retrieveFields(World &world)
{
    std::vector<Attribute> fields{{text("before"), QString(), 0}};
    const QString result = attempt(world, [&] {
        world.queue->RetrieveFields(fields);
        return text("done");
    });
    return result + text(": %1").arg(fields.size());
}

QString findField(World &world)
{
    return given(world.queue->FindField(text("TITLE")));
}

// ---- reports of changes ---------------------------------------------------------------------------------------------

QString switchOn(World &world)
{
    world.queue->SetUpdate(true);
    return text("done");
}

QString switchOff(World &world)
{
    world.queue->SetUpdate(false);
    return text("done");
}

QString isOn(World &world)
{
    return yes(world.queue->GetUpdate());
}

/// Whether the server reports changes of the queue to this session.
QString heldUpdate(World &world)
{
    return yes(world.queue->GetUpdate());
}

/// Whether the manager watches the queue after the call, also when that raises.
template<typename Call>
QString withWatching(World &world, const Call &call)
{
    const QString result = attempt(world, [&] {
        call(world.queue.get());
        return text("done");
    });
    world.disarm();
    QueueUpdateMgr::Update(world.queue->QueueID());
    return result + text(QueueUpdateMgr::NeedsRefresh(world.queue.get(), true) ? ", watched" : ", not watched");
}

QString beginUpdates(World &world)
{
    return withWatching(world, QueueUpdateMgr::BeginQueueUpdates);
}

QString endUpdates(World &world)
{
    return withWatching(world, QueueUpdateMgr::EndQueueUpdates);
}

QString complete(World &world)
{
    return withWatching(world, [](Queue *queue) { queue->Completed(); });
}

// ---- what is documented ---------------------------------------------------------------------------------------------

/// A story of a queue is opened: it raises until the story is known; then it finds the story again, as a Story does,
/// which does not raise.
std::vector<Documented> story(std::vector<Documented> own)
{
    const std::string notThere = "a story that is not there";
    const std::vector<Documented> all{
        {"get_Connected", Throws, "= | - | raised H | out of memory"},
        {"get_Connected", Fails | Empty, "= | -"},
        {"get_SysReadRate", Fails | Raised, "raised H"},
        {"get_SysReadRate", Empty, "="},
        {"IQueue2::get_Name", AnyFault, "="},
        {"IQueue2::get_Item", NoInterface | Empty, "= | -"},
        {"IQueue2::get_Item", Fails | Raised, "raised H | " + notThere},
        {"IQueue2::get_Item", OutOfMemory, "out of memory | " + notThere},
        {"get_StoryUnique", Fails | Raised, "raised H | = | " + notThere},
        {"get_StoryUnique", OutOfMemory, "out of memory | = | " + notThere},
        {"get_StoryUnique", Empty, "= | " + notThere},
        {"get_SectionXml get_FormName", Fails | Empty, "="},
        {"IQueue2::QueryInterface IStory2::QueryInterface", NoInterface, "= | - | " + notThere},
        {"IQueue2::QueryInterface IStory2::QueryInterface", Fails, "= | raised H | " + notThere},
    };
    own.insert(own.end(), all.begin(), all.end());
    return byPath(own);
}

/// One call to the queue that the path leads to. Nothing happens when that is no queue.
std::vector<Documented> call(std::vector<Documented> own, const std::string &thrown = "")
{
    const std::vector<Documented> all{
        {"get_Connected", Raised, "= | - | raised H" + thrown},
        {"get_Connected", OutOfMemory, "= | - | out of memory" + thrown},
        {"IQueue2::get_Name", AnyFault, "="},
        {"IQueue2::QueryInterface", NoInterface, "= | -"},
        {"QueryInterface", Fails, "= | raised H" + thrown},
        {"*", Raised, "raised H" + thrown},
        {"*", OutOfMemory, "out of memory" + thrown},
    };
    own.insert(own.end(), all.begin(), all.end());
    const std::vector<Documented> way = byPath({});
    own.insert(own.begin(), way.begin() + 1, way.end() - 1);
    return own;
}

const std::vector<Operation> operations{
    {"Queue::GetStory(index)", anyState, openFullQueue, storyByIndex, "a story", "none", story({})},
    {"Queue::GetStory(id)", anyState, openFullQueue, storyByIdentifier, "a story", "none", story({})},
    {"Queue::CreateStory",
     anyState,
     openFullQueue,
     createStory,
     "a story",
     "none",
     story({{"CreateStory", Fails, "raised H"}, {"CreateStory", Empty, "-"}}),
     {"CreateStory", heldStories}},
    {"Queue::Delete",
     anyState,
     openFullQueue,
     deleteStory,
     "true",
     "false",
     call({{"IQueue2::get_Item", NoInterface | Empty, "="},
           {"IQueue2::get_Item", Fails, "raised H"},
           {"get_StoryUnique", Fails | Empty, "="},
           {"Delete", Fails, "-"},
           {"Delete", Empty, "="},
           {"IStory2::QueryInterface", NoInterface, "="}}),
     {"Delete", heldStories}},
    {"Queue::DeleteAll",
     anyState,
     openFullQueue,
     deleteAll,
     "true",
     "false",
     call({{"DeleteAll", Fails, "-"}, {"DeleteAll", Empty, "="}}),
     {"DeleteAll", heldStories}},
    {"Queue::RetrieveFields", anyState, openFullQueue, retrieveFields, "done: 1", "done: 0",
     call({{"get_FormName", Fails, "raised H: 0"}, {"get_FormName GetSystemForm", Fails | Empty, "-"}}, ": 0")},
    {"Queue::FindField", anyState, openFullQueue, findField, "some", "none",
     call({{"get_FormName", Fails, "raised H"}, {"get_FormName GetSystemForm", Fails | Empty, "-"}})},

    {"Queue::SetUpdate(true)",
     anyState,
     openFullQueue,
     switchOn,
     "done",
     "done",
     call({{"put_Update", Fails, "raised H"}, {"put_Update", Empty, "="}}),
     {"put_Update", heldUpdate}},
    {"Queue::SetUpdate(false)",
     anyState & ~Connected,
     openLiveQueue,
     switchOff,
     "done",
     "done",
     call({{"put_Update", Fails, "raised H"}, {"put_Update", Empty, "="}}),
     {"put_Update", heldUpdate}},
    {"Queue::GetUpdate", anyState & ~Connected, // where the server has ended the reports
     openLiveQueue, isOn, "true", "false", call({{"get_Update", Fails, "raised H"}, {"get_Update", Empty, "-"}})},
    {"QueueUpdateMgr::BeginQueueUpdates",
     anyState,
     openFullQueue,
     beginUpdates,
     "done, watched",
     "done, watched",
     call({{"put_Update", Fails, "raised H, not watched"}, {"put_Update", Empty, "="}}, ", not watched"),
     {"put_Update", heldUpdate}},
    {"Queue::Completed", anyState, openLiveQueue, complete, "done, watched", "done, watched",
     call({{"put_Update", Fails, "raised H, watched"}, {"put_Update", Empty, "="}}, ", watched")},
    {"QueueUpdateMgr::EndQueueUpdates",
     anyState,
     openLiveQueue,
     endUpdates,
     "done, not watched",
     "done, not watched",
     call({{"put_Update", Fails, "raised H, not watched"}, {"put_Update", Empty, "="}}, ", not watched"),
     {"put_Update", heldUpdate}},
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Queue, FailureLoop, ::testing::ValuesIn(operations), nameOfTest);

} // namespace Failing::QueueCalls
