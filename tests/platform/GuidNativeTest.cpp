#include <gtest/gtest.h>

#include <quire/platform/Automation.h>

TEST(GuidNative, TextHasBracesAndCapitals)
{
    const GUID guid = {0x01234567, 0x89ab, 0xcdef, {0xfe, 0xdc, 0xba, 0x98, 0x76, 0x54, 0x32, 0x10}};
    OLECHAR text[39] = {};
    EXPECT_EQ(StringFromGUID2(guid, text, 39), 39);
    EXPECT_EQ(std::u16string_view(text), u"{01234567-89AB-CDEF-FEDC-BA9876543210}");
}

TEST(GuidNative, TextNeedsRoomWithItsNul)
{
    OLECHAR text[38] = {u'?'};
    EXPECT_EQ(StringFromGUID2(IID_IUnknown, text, 38), 0);
    EXPECT_EQ(text[0], u'?');
    EXPECT_EQ(StringFromGUID2(IID_IUnknown, nullptr, 39), 0);
}
