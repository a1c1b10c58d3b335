#include "newsroom/server/ServerFixture.h"

namespace Newsroom {

class DirectoryObjectTest : public ServerFixture
{
protected:
    Orvex::ISignon4Ptr signon = signOn();
    Orvex::IDirectory2Ptr news = directory(signon, "NEWS");
    Orvex::IDirectory2Ptr sport = directory(signon, "NEWS.SPORT");
};

TEST_F(DirectoryObjectTest, NameIsTheFullDottedPath)
{
    EXPECT_EQ(QStringLiteral("NEWS.SPORT"), nameOf(sport));
}

TEST_F(DirectoryObjectTest, NameOfTheRootIsADot)
{
    EXPECT_EQ(QStringLiteral("."), nameOf(directory(signon, ".")));
    EXPECT_EQ(QStringLiteral("."), nameOf(directory(signon, "")));
}

TEST_F(DirectoryObjectTest, NameHasItsOwnLetterCase)
{
    EXPECT_EQ(QStringLiteral("NEWS.SPORT"), nameOf(directory(signon, "news.Sport")));
}

TEST_F(DirectoryObjectTest, CountIsTheNumberOfEntries)
{
    LONG count = -1;
    EXPECT_EQ(S_OK, news->get_Count(&count));
    EXPECT_EQ(2, count);
}

TEST_F(DirectoryObjectTest, FlagsAreTheThreeWords)
{
    LONG flags1 = -1;
    LONG flags2 = -1;
    LONG flags3 = -1;
    EXPECT_EQ(S_OK, news->get_Flags(&flags1, &flags2, &flags3));
    EXPECT_EQ(0, flags1);
    EXPECT_EQ(0, flags2);
    EXPECT_EQ(1 << 6, flags3);
    EXPECT_EQ(S_OK, sport->get_Flags(&flags1, &flags2, &flags3));
    EXPECT_EQ(1 << 6, flags1);
    EXPECT_EQ(0, flags3);
}

TEST_F(DirectoryObjectTest, ItemIsASubDirectoryOrAQueue)
{
    Platform::Variant item;
    EXPECT_EQ(S_OK, news->get_Item(index(0), item.out()));
    EXPECT_EQ(VT_DISPATCH, item.type());
    EXPECT_TRUE(Orvex::IDirectory2Ptr(item.toDispatch()));
    EXPECT_FALSE(Orvex::IQueue2Ptr(item.toDispatch()));
    EXPECT_EQ(QStringLiteral("NEWS.SPORT"), nameOf(item.toDispatch()));

    EXPECT_EQ(S_OK, news->get_Item(index(1), item.out()));
    EXPECT_FALSE(Orvex::IDirectory2Ptr(item.toDispatch()));
    EXPECT_TRUE(Orvex::IQueue2Ptr(item.toDispatch()));
    EXPECT_EQ(QStringLiteral("NEWS.EMPTY"), nameOf(item.toDispatch()));
}

TEST_F(DirectoryObjectTest, ItemPastTheEndDoesNotExist)
{
    Platform::Variant item(1);
    EXPECT_EQ(Gone, news->get_Item(index(2), item.out()));
    EXPECT_EQ(VT_EMPTY, item.type());
    EXPECT_TRUE(LastError().isSet);
}

TEST_F(DirectoryObjectTest, ItemBeforeTheFirstIsInvalid)
{
    Platform::Variant item;
    EXPECT_EQ(E_INVALIDARG, news->get_Item(index(-1), item.out()));
    EXPECT_EQ(VT_EMPTY, item.type());
}

TEST_F(DirectoryObjectTest, ItemByTextIsATypeMismatch)
{
    Platform::Variant byName;
    VARIANT *const name = byName.out();
    name->bstrVal = Platform::toBstr(QStringLiteral("SPORT"));
    name->vt = VT_BSTR;
    Platform::Variant item;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, news->get_Item(byName.get(), item.out()));
}

TEST_F(DirectoryObjectTest, ListHoldsTheEntriesInOrder)
{
    Platform::Variant list;
    EXPECT_EQ(S_OK, sport->GetList(0, 3, list.out()));
    EXPECT_EQ(QStringList({QStringLiteral("NEWS.SPORT.TODAY"), QStringLiteral("NEWS.SPORT.WIRE"),
                           QStringLiteral("NEWS.SPORT.ARCHIVE")}),
              namesOf(list));
    LONG lowerBound = -1;
    EXPECT_EQ(S_OK, SafeArrayGetLBound(list.get().parray, 1, &lowerBound));
    EXPECT_EQ(0, lowerBound);
}

TEST_F(DirectoryObjectTest, ListIsClippedAtTheEnd)
{
    Platform::Variant list;
    EXPECT_EQ(S_OK, sport->GetList(2, 20, list.out()));
    EXPECT_EQ(QStringList(QStringLiteral("NEWS.SPORT.ARCHIVE")), namesOf(list));
}

TEST_F(DirectoryObjectTest, ListPastTheEndIsAnEmptyArray)
{
    Platform::Variant list;
    EXPECT_EQ(S_OK, sport->GetList(3, 20, list.out()));
    EXPECT_EQ(QStringList(), namesOf(list));
    EXPECT_EQ(S_OK, sport->GetList(2000000000, 2000000000, list.out()));
    EXPECT_EQ(QStringList(), namesOf(list));
}

TEST_F(DirectoryObjectTest, ListOfNoneIsAnEmptyArray)
{
    Platform::Variant list;
    EXPECT_EQ(S_OK, sport->GetList(0, 0, list.out()));
    EXPECT_EQ(QStringList(), namesOf(list));
}

TEST_F(DirectoryObjectTest, ListFromANegativePlaceOrOfANegativeCountIsInvalid)
{
    Platform::Variant list;
    EXPECT_EQ(E_INVALIDARG, sport->GetList(-1, 2, list.out()));
    EXPECT_EQ(VT_EMPTY, list.type());
    EXPECT_EQ(E_INVALIDARG, sport->GetList(0, -1, list.out()));
    EXPECT_EQ(VT_EMPTY, list.type());
}

TEST_F(DirectoryObjectTest, ListElementsCanBeOfOtherTypes)
{
    Platform::Variant list;
    server->options().listElements = VT_UNKNOWN;
    EXPECT_EQ(S_OK, news->GetList(0, 2, list.out()));
    ASSERT_EQ(VT_ARRAY | VT_UNKNOWN, list.type());
    EXPECT_EQ(QStringLiteral("NEWS.SPORT"), nameOf(Platform::SafeArrayAccess(list.get().parray).as<IUnknown *>()[0]));

    server->options().listElements = VT_VARIANT;
    EXPECT_EQ(S_OK, news->GetList(0, 2, list.out()));
    ASSERT_EQ(VT_ARRAY | VT_VARIANT, list.type());
    const Platform::SafeArrayAccess access(list.get().parray);
    EXPECT_EQ(VT_DISPATCH, access.as<VARIANT>()[1].vt);
    EXPECT_EQ(QStringLiteral("NEWS.EMPTY"), nameOf(access.as<VARIANT>()[1].pdispVal));
}

TEST_F(DirectoryObjectTest, RemovedDirectoryNoLongerExists)
{
    ASSERT_EQ(Refusal::None, server->model()->removeEntry(QStringLiteral("NEWS.SPORT")));
    LONG number = 5;
    Platform::Bstr name;
    Platform::Variant value;
    EXPECT_EQ(Gone, sport->get_Count(&number));
    EXPECT_EQ(0, number);
    EXPECT_EQ(Gone, sport->get_Flags(&number, &number, &number));
    EXPECT_EQ(Gone, sport->get_Name(name.out()));
    EXPECT_EQ(Gone, sport->get_Item(index(0), value.out()));
    EXPECT_EQ(Gone, sport->GetList(0, 1, value.out()));
}

TEST_F(DirectoryObjectTest, NullOutValuesAreRefused)
{
    LONG flags1 = 7;
    LONG flags3 = 7;
    EXPECT_EQ(E_POINTER, news->get_Item(index(0), nullptr));
    EXPECT_EQ(E_POINTER, news->get_Count(nullptr));
    EXPECT_EQ(E_POINTER, news->GetList(0, 1, nullptr));
    EXPECT_EQ(E_POINTER, news->get_Name(nullptr));
    EXPECT_EQ(E_POINTER, news->get_Flags(&flags1, nullptr, &flags3));
    EXPECT_EQ(0, flags1);
    EXPECT_EQ(0, flags3);
}

TEST_F(DirectoryObjectTest, ObjectsOfAnEndedSessionAreRefused)
{
    signon->Disconnect();
    LONG count = 7;
    EXPECT_EQ(NotSignedOn, news->get_Count(&count));
    EXPECT_EQ(0, count);
    Platform::Variant value;
    EXPECT_EQ(NotSignedOn, news->GetList(0, 1, value.out()));
    EXPECT_EQ(NotSignedOn, news->get_Item(index(0), value.out()));
}

} // namespace Newsroom
