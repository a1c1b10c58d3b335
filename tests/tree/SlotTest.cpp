/// \file
/// The virtual functions of lists, directories and queues keep their order: hosts compiled against one build of the
/// library run with the next.

#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include <quire/tree/Directory.h>
#include <quire/tree/Queue.h>
#include <quire/tree/SearchList.h>

using namespace Quire;

static_assert(std::has_virtual_destructor<ItemList>::value, "the table of a list begins with the destructor");

#if defined(__GXX_ABI_VERSION)

namespace {

/// The number of a virtual function among those of its class. Compilers of the Itanium C++ ABI store its place in the
/// pointer, in bytes plus 1; the destructor, number 0, has two places.
template<class Function>
int slotOf(Function function)
{
    std::ptrdiff_t place = 0;
    std::memcpy(&place, &function, sizeof place);
    return int((place - 1) / std::ptrdiff_t(sizeof(void *))) - 1;
}

/// Names the protected functions.
class ProtectedDirectory : public Directory
{
public:
    static int populateObject()
    {
        return slotOf(static_cast<void (Directory::*)(IDispatchPtr)>(&ProtectedDirectory::Populate));
    }
    static int populate() { return slotOf(static_cast<void (Directory::*)()>(&ProtectedDirectory::Populate)); }
};

class ProtectedQueue : public Queue
{
public:
    static int getFormA() { return slotOf(&ProtectedQueue::GetFormA); }
    static int populateObject()
    {
        return slotOf(static_cast<void (Queue::*)(IDispatchPtr)>(&ProtectedQueue::Populate));
    }
    static int populate() { return slotOf(static_cast<void (Queue::*)()>(&ProtectedQueue::Populate)); }
};

} // namespace

TEST(ItemListSlots, AreInOrder)
{
    EXPECT_EQ(slotOf(&ItemList::SetID), 1);
    EXPECT_EQ(slotOf(&ItemList::ID), 2);
    EXPECT_EQ(slotOf(&ItemList::SetName), 3);
    EXPECT_EQ(slotOf(&ItemList::Name), 4);
    EXPECT_EQ(slotOf(&ItemList::Size), 5);
    EXPECT_EQ(slotOf(&ItemList::Append), 6);
    EXPECT_EQ(slotOf(&ItemList::Find), 7);
    EXPECT_EQ(slotOf(&ItemList::Nth), 8);
    EXPECT_EQ(slotOf(&ItemList::FindByAttribute), 9);
    EXPECT_EQ(slotOf(&ItemList::Clear), 10);
    EXPECT_EQ(slotOf(&ItemList::SortUnique), 11);
    EXPECT_EQ(slotOf(&ItemList::u_Size), 12);
    EXPECT_EQ(slotOf(&ItemList::u_Nth), 13);
    EXPECT_EQ(slotOf(&ItemList::HasChanged), 14);
    EXPECT_EQ(slotOf(&ItemList::SetChanged), 15);
}

TEST(DirectorySlots, FollowThoseOfTheList)
{
    EXPECT_EQ(slotOf(&Directory::IsDirectory), 16);
    EXPECT_EQ(slotOf(&Directory::IsQueue), 17);
    EXPECT_EQ(slotOf(&Directory::Refresh), 18);
    EXPECT_EQ(slotOf(static_cast<Directory *(Directory::*)(const QString &)>(&Directory::GetSubDir)), 19);
    EXPECT_EQ(slotOf(static_cast<Directory *(Directory::*)(int)>(&Directory::GetSubDir)), 20);
    EXPECT_EQ(slotOf(&Directory::StartSearch), 21);
    EXPECT_EQ(ProtectedDirectory::populateObject(), 22);
    EXPECT_EQ(ProtectedDirectory::populate(), 23);
}

TEST(QueueSlots, FollowThoseOfTheDirectory)
{
    EXPECT_EQ(slotOf(&Queue::IsComplete), 24);
    EXPECT_EQ(slotOf(&Queue::Completed), 25);
    EXPECT_EQ(slotOf(&Queue::IsFinished), 26);
    EXPECT_EQ(slotOf(&Queue::RetrieveFields), 27);
    EXPECT_EQ(slotOf(static_cast<Story *(Queue::*)(const StoryID *)>(&Queue::GetStory)), 28);
    EXPECT_EQ(slotOf(static_cast<Story *(Queue::*)(int)>(&Queue::GetStory)), 29);
    EXPECT_EQ(slotOf(&Queue::CreateStory), 30);
    EXPECT_EQ(slotOf(&Queue::Delete), 31);
    EXPECT_EQ(slotOf(&Queue::DeleteAll), 32);
    EXPECT_EQ(slotOf(&Queue::SetUpdate), 33);
    EXPECT_EQ(slotOf(&Queue::GetUpdate), 34);
    EXPECT_EQ(slotOf(&Queue::GetLiveRefresh), 35);
    EXPECT_EQ(slotOf(&Queue::MoreStoriesAvailable), 36);
    EXPECT_EQ(slotOf(&Queue::LoadMore), 37);
    EXPECT_EQ(ProtectedQueue::getFormA(), 38);
}

TEST(QueueSlots, OverrideThoseOfTheDirectory)
{
    EXPECT_EQ(slotOf(&Queue::IsDirectory), 16);
    EXPECT_EQ(slotOf(&Queue::IsQueue), 17);
    EXPECT_EQ(slotOf(&Queue::Refresh), 18);
    EXPECT_EQ(slotOf(&Queue::StartSearch), 21);
    EXPECT_EQ(ProtectedQueue::populateObject(), 22);
    EXPECT_EQ(ProtectedQueue::populate(), 23);
}

#endif
