#include <gtest/gtest.h>

#include <limits>

#include <quire/notify/Search.h>

#include "failing/World.h"
#include "support/QtPrinting.h"

// Numbers from outside that no server and no list has: each operation gives what its header says, and works on.

using namespace Quire;

namespace Failing {

namespace {

/// An operation that takes a number, and what it gives for the smallest one, -1 and the largest one.
struct Extreme
{
    const char *name;
    World::Prepare prepare;
    QString (*run)(World &, int);
    const char *smallest;
    const char *negative;
    const char *largest;
};

void PrintTo(const Extreme &extreme, std::ostream *out)
{
    *out << extreme.name;
}

template<bool Markup>
QString getSection(World &world, int section)
{
    QString read = text("before");
    world.story->GetSection(section, read, Markup);
    return text("%1 %2").arg(read.size()).arg(world.code(world.story->GetError()));
}

template<bool Markup>
QString putSection(World &world, int section)
{
    QString written = text("<body><p>New</p></body>");
    const bool done = world.story->PutSection(section, written, Markup);
    return text("%1 %2").arg(yes(done), world.code(world.story->GetError()));
}

QString lock(World &world, int type)
{
    QString holder;
    return yes(world.story->Lock(type, holder));
}

QString isLocked(World &world, int type)
{
    return yes(world.story->IsLocked(type));
}

QString lookUp(World &world, int index)
{
    const Orvex::IStory2Ptr story = Story::GetStory(worldPath(), *storyID(), index, nullptr);
    world.disarm();
    return given(story);
}

QString storyDirect(World &world, int number)
{
    const StoryID id{number, number, number};
    return given(world.session().GetStoryDirect(worldPath(), &id));
}

QString deleteDirect(World &world, int number)
{
    const StoryID id{number, number, number};
    return yes(world.session().DeleteStoryDirect(worldPath(), &id));
}

QString subDirectory(World &world, int index)
{
    return given(std::unique_ptr<Directory>(world.directory->GetSubDir(index)).get());
}

QString storyOf(World &world, int index)
{
    return given(std::unique_ptr<Story>(world.queue->GetStory(index)).get());
}

QString createStory(World &world, int position)
{
    return given(std::unique_ptr<Story>(world.queue->CreateStory(position)).get());
}

QString deleteStory(World &world, int index)
{
    return yes(world.queue->Delete(index));
}

QString item(World &world, int index)
{
    world.queue->Lock();
    QString both = text("%1 %2").arg(given(world.queue->Nth(index)), given(world.queue->u_Nth(index)));
    world.queue->Unlock();
    return both;
}

QString attribute(World &world, int index)
{
    Attribute found{text("before"), QString(), 0};
    const bool isThere = world.queue->Nth(0)->GetAttr(index, found);
    return text("%1 %2").arg(yes(isThere), found.name);
}

QString saveBlob(World &world, int size)
{
    // What is negative is refused; so many bytes nobody has.
    return size > 0 ? text("false") : yes(world.session().SaveBlob(text("NEW"), "", size));
}

QString loadIncrement(World &world, int increment)
{
    Queue::setLoadIncrement(increment);
    world.queue->Refresh();
    return itemsOf(*world.queue);
}

QString stopSearch(World &world, int id)
{
    return yes(world.session().StopSearch(id));
}

QString searchResults(World &, int id)
{
    Search &searcher = *Search::GetSearcher();
    searcher.SetNotification(true);
    searcher.StopSearch(id);
    searcher.DeleteSearch(id);
    searcher.EndAccessSearchResults(id);
    return text("%1 %2").arg(given(searcher.AccessSearchResults(id)), yes(searcher.IsSearchDone(id)));
}

const Extreme extremes[] = {
    {"Story::GetSection", openFoundStory, getSection<false>, "0 0x80070057", "0 0x80070057", "0 0x80070057"},
    {"Story::GetSection, markup", openFoundStory, getSection<true>, "0 0x80070057", "0 0x80070057", "0 0x80070057"},
    {"Story::PutSection", openFoundStory, putSection<false>, "false 0x80070057", "false 0x80070057",
     "false 0x80070057"},
    {"Story::PutSection, markup", openFoundStory, putSection<true>, "false 0x80070057", "false 0x80070057",
     "false 0x80070057"},
    {"Story::Lock", openFoundStory, lock, "true", "true", "true"},
    {"Story::IsLocked", openFoundStory, isLocked, "false", "false", "false"},
    {"Story::GetStory", nullptr, lookUp, "some", "some", "none"},
    {"QuireCOM::GetStoryDirect", nullptr, storyDirect, "none", "none", "none"},
    {"QuireCOM::DeleteStoryDirect", nullptr, deleteDirect, "false", "false", "false"},
    {"Directory::GetSubDir", openDirectory, subDirectory, "none", "none", "raised 0x8004040b"},
    {"Queue::GetStory", openQueue, storyOf, "none", "none", "none"},
    {"Queue::CreateStory", openQueue, createStory, "some", "some", "some"},
    {"Queue::Delete", openQueue, deleteStory, "raised 0x80070057", "raised 0x80070057", "raised 0x8004040b"},
    {"ItemList::Nth", openQueue, item, "none none", "none none", "none none"},
    {"Item::GetAttr", openQueue, attribute, "false before", "false before", "false before"},
    {"QuireCOM::SaveBlob", nullptr, saveBlob, "false", "false", "false"},
    {"Queue::setLoadIncrement", openQueue, loadIncrement, "3 items", "3 items", "3 items"},
    {"QuireCOM::StopSearch", nullptr, stopSearch, "false", "false", "false"},
    {"Search", nullptr, searchResults, "none true", "none true", "none true"},
};

/// What it gives for the number, in a world of its own.
QString given(const Extreme &extreme, int number)
{
    World world(Cached, extreme.prepare);
    const QStringList before = world.possessions();
    QString result = attempt(world, [&] { return extreme.run(world, number); });
    EXPECT_EQ(world.heldLocks(), QStringList());
    EXPECT_EQ(world.possessions().mid(0, before.size()), before);
    EXPECT_TRUE(world.session().IsConnected());
    EXPECT_EQ(world.leftovers(), QStringList());
    return result;
}

class ExtremeNumber : public ::testing::TestWithParam<Extreme>
{};

} // namespace

TEST_P(ExtremeNumber, IsRefusedOrTakenAsDocumented)
{
    const Extreme &extreme = GetParam();
    EXPECT_EQ(given(extreme, std::numeric_limits<int>::min()), text(extreme.smallest));
    EXPECT_EQ(given(extreme, -1), text(extreme.negative));
    EXPECT_EQ(given(extreme, std::numeric_limits<int>::max()), text(extreme.largest));
}

INSTANTIATE_TEST_SUITE_P(Each, ExtremeNumber, ::testing::ValuesIn(extremes),
                         [](const ::testing::TestParamInfo<Extreme> &each) { return testName(each.param.name); });

} // namespace Failing
