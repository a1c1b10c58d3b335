/// \file
/// The virtual functions of stories and items keep their order: hosts compiled against one build of the library run
/// with the next.

#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include <quire/story/Story.h>
#include <quire/tree/Item.h>

using Quire::Item;
using Quire::Story;

static_assert(!std::has_virtual_destructor<Story>::value, "the table of a story begins with GetSection");
static_assert(std::has_virtual_destructor<Item>::value, "the table of an item begins with the destructor");

#if defined(__GXX_ABI_VERSION)

namespace {

/// The place of a virtual function among those of its class, counted from 0 without regard to a destructor. Compilers
/// of the Itanium C++ ABI store it in the pointer, in bytes plus 1.
template<class Function>
int slotOf(Function function)
{
    std::ptrdiff_t place = 0;
    std::memcpy(&place, &function, sizeof place);
    return int((place - 1) / std::ptrdiff_t(sizeof(void *)));
}

/// Names the protected function.
class Opened : public Story
{
public:
    using Story::GetFormName;
};

} // namespace

TEST(StorySlots, AreInOrder)
{
    EXPECT_EQ(slotOf(static_cast<void (Story::*)(int, QString &, bool)>(&Story::GetSection)), 0);
    EXPECT_EQ(slotOf(&Story::PutSection), 1);
    EXPECT_EQ(slotOf(static_cast<void (Story::*)(const QString &, QString &)>(&Story::GetField)), 2);
    EXPECT_EQ(slotOf(&Story::SetField), 3);
    EXPECT_EQ(slotOf(&Story::Save), 4);
    EXPECT_EQ(slotOf(&Story::GetID), 5);
    EXPECT_EQ(slotOf(&Story::GetIDStr), 6);
    EXPECT_EQ(slotOf(&Story::UpdateHeaderID), 7);
    EXPECT_EQ(slotOf(&Story::GetAllFieldNames), 8);
    EXPECT_EQ(slotOf(&Story::GetFieldValues), 9);
    EXPECT_EQ(slotOf(&Story::FindField), 10);
    EXPECT_EQ(slotOf(&Story::Lock), 11);
    EXPECT_EQ(slotOf(&Story::Unlock), 12);
    EXPECT_EQ(slotOf(&Story::IsLocked), 13);
    EXPECT_EQ(slotOf(&Opened::GetFormName), 14);
}

TEST(ItemSlots, RetrieveAttrsFollowsTheDestructor)
{
    EXPECT_EQ(slotOf(&Item::RetrieveAttrs), 2); // a destructor has two places
}

#endif
