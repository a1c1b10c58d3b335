/// \file
/// The virtual functions keep their order: hosts compiled against one build of the library run with the next.

#include <cstring>

#include <gtest/gtest.h>

#include "markup/Support.h"

using XML::ExtraTag;
using XML::NamedTag;
using XML::Parser;
using XML::Tag;
using XML::TextTag;

#if defined(__GXX_ABI_VERSION)

namespace {

/// The place of a virtual function among those of its class, counted from 1; the destructor is the first. Compilers of
/// the Itanium C++ ABI store it in the pointer, in bytes plus 1, with two places for the destructor.
template<class Function>
int slotOf(Function function)
{
    std::ptrdiff_t place = 0;
    std::memcpy(&place, &function, sizeof place);
    return int((place - 1) / std::ptrdiff_t(sizeof(void *)));
}

/// Names the private functions of Tag, which have their places too.
class Opened : public Tag
{
public:
    bool TestFlag(TagFlag_t) override { return false; }
    void SetFlag(TagFlag_t, bool) override {}
};

} // namespace

TEST(Slots, OfTagAreInOrder)
{
    EXPECT_EQ(slotOf(&Tag::DeleteChildren), 2);
    EXPECT_EQ(slotOf(&Tag::AddTag), 3);
    EXPECT_EQ(slotOf(&Tag::AddSiblingTag), 4);
    EXPECT_EQ(slotOf(&Tag::ReplaceChildTag), 5);
    EXPECT_EQ(slotOf(&Tag::AdoptChildren), 6);
    EXPECT_EQ(slotOf(&Tag::TagToText), 7);
    EXPECT_EQ(slotOf(&Tag::FindTag), 8);
    EXPECT_EQ(slotOf(&Tag::FindChildTag), 9);
    EXPECT_EQ(slotOf(&Tag::TagMatch), 10);
    EXPECT_EQ(slotOf(&Tag::FindNthTag), 11);
    EXPECT_EQ(slotOf(&Tag::FindTagAttribute), 12);
    EXPECT_EQ(slotOf(&Tag::FindAttribute), 13);
    EXPECT_EQ(slotOf(&Tag::AddAttribute), 14);
    EXPECT_EQ(slotOf(&Tag::DeleteAttribute), 15);
    EXPECT_EQ(slotOf(&Tag::ClearAttributes), 16);
    EXPECT_EQ(slotOf(&Tag::FindTagText), 17);
    EXPECT_EQ(slotOf(&Tag::Is_or_IsChildOf), 18);
    EXPECT_EQ(slotOf(&Tag::IsChildOf), 19);
    EXPECT_EQ(slotOf(&Tag::TestSkip), 20);
    EXPECT_EQ(slotOf(&Tag::SetSkip), 21);
    EXPECT_EQ(slotOf(&Tag::ClearAllSkip), 22);
    EXPECT_EQ(slotOf(&Tag::TestInvisible), 23);
    EXPECT_EQ(slotOf(&Tag::SetInvisible), 24);
    EXPECT_EQ(slotOf(&Tag::GetEnclosedTextItem), 25);
    EXPECT_EQ(slotOf(&Tag::GetName), 26);
    EXPECT_EQ(slotOf(&Tag::Duplicate), 27);
    EXPECT_EQ(slotOf(&Tag::Copy), 28);
    EXPECT_EQ(slotOf(&Tag::ChildSort), 29);
    EXPECT_EQ(slotOf(&Tag::ForEachTag), 30);
    EXPECT_EQ(slotOf(&Opened::TestFlag), 31);
    EXPECT_EQ(slotOf(&Opened::SetFlag), 32);
}

TEST(Slots, OfNamedTagFollow)
{
    EXPECT_EQ(slotOf(&NamedTag::TagToText), 7);
    EXPECT_EQ(slotOf(&NamedTag::Copy), 28);
    EXPECT_EQ(slotOf(&NamedTag::ReName), 33);
    EXPECT_EQ(slotOf(&NamedTag::SetParams), 34);
    EXPECT_EQ(slotOf(&NamedTag::HasAttribute), 35);
    EXPECT_EQ(slotOf(&NamedTag::AttributeCount), 36);
    EXPECT_EQ(slotOf(&NamedTag::FirstAttribute), 37);
    EXPECT_EQ(slotOf(&NamedTag::NextAttribute), 38);
    EXPECT_EQ(slotOf(&NamedTag::TagToTextNoCB), 39);
}

TEST(Slots, OfTextTagFollow)
{
    EXPECT_EQ(slotOf(&TextTag::SetText), 33);
    EXPECT_EQ(slotOf(&TextTag::GetText), 34);
}

TEST(Slots, OfExtraTagFollow)
{
    EXPECT_EQ(slotOf(&ExtraTag::SetText), 33);
    EXPECT_EQ(slotOf(&ExtraTag::GetText), 34);
}

TEST(Slots, OfParserAreTheDestructorAndParse)
{
    EXPECT_EQ(slotOf(&Parser::Parse), 2);
}

#endif
