#include "newsroom/server/ServerFixture.h"

namespace Newsroom {

class QueueObjectTest : public ServerFixture
{
protected:
    QStringList names(const Orvex::IQueue2Ptr &of)
    {
        Platform::Variant list;
        EXPECT_EQ(S_OK, of->GetList(0, 100, list.out()));
        return namesOf(list);
    }

    Orvex::ISignon4Ptr signon = signOn();
    Orvex::IQueue2Ptr today = queue(signon);
};

const QString Rain = QStringLiteral("Rain delays the final");
const QString Sprint = QStringLiteral("Sprint record falls");
const QString Coach = QStringLiteral("Coach resigns");

// ---- reading

TEST_F(QueueObjectTest, NameCountFormAndFlags)
{
    EXPECT_EQ(QStringLiteral("NEWS.SPORT.TODAY"), nameOf(today));
    EXPECT_EQ(QStringLiteral("STORY"), textOf([&](BSTR *name) { return today->get_FormName(name); }));
    LONG numbers[3] = {};
    EXPECT_EQ(S_OK, today->get_Count(&numbers[0]));
    EXPECT_EQ(3, numbers[0]);
    EXPECT_EQ(S_OK, today->get_Flags(&numbers[0], &numbers[1], &numbers[2]));
    EXPECT_EQ(0, numbers[0]);
    EXPECT_EQ(1 << 7, numbers[1]);
    EXPECT_EQ(1 << 0, numbers[2]);
}

TEST_F(QueueObjectTest, QueueIdStartsWithTheNumber)
{
    Orvex::QueueIdentifier id = {7, 7, 7, 7};
    EXPECT_EQ(S_OK, today->get_QueueID(&id));
    EXPECT_EQ(12, id.number);
    EXPECT_EQ(0, id.word2);
    EXPECT_EQ(0, id.word3);
    EXPECT_EQ(0, id.word4);
}

TEST_F(QueueObjectTest, QueueWithoutFormHasAnEmptyFormName)
{
    const auto archive = queue(signon, "NEWS.SPORT.ARCHIVE");
    EXPECT_EQ(QString(), textOf([&](BSTR *name) { return archive->get_FormName(name); }));
}

TEST_F(QueueObjectTest, ItemIsTheStoryAtThePosition)
{
    EXPECT_EQ(Rain, nameOf(story(today, 0)));
    EXPECT_EQ(Coach, nameOf(story(today, 2)));
}

TEST_F(QueueObjectTest, ItemTakesEveryKindOfPosition)
{
    Platform::Variant item;
    EXPECT_EQ(S_OK, today->get_Item(Platform::Variant::ofInt(1).get(), item.out()));
    EXPECT_EQ(Sprint, nameOf(item.toDispatch()));
}

TEST_F(QueueObjectTest, ItemPastTheEndDoesNotExist)
{
    Platform::Variant item(1);
    EXPECT_EQ(Gone, today->get_Item(index(3), item.out()));
    EXPECT_EQ(VT_EMPTY, item.type());
    EXPECT_EQ(E_INVALIDARG, today->get_Item(index(-1), item.out()));
}

TEST_F(QueueObjectTest, ListIsClippedAndPastTheEndEmpty)
{
    Platform::Variant list;
    EXPECT_EQ(S_OK, today->GetList(1, 20, list.out()));
    EXPECT_EQ(QStringList({Sprint, Coach}), namesOf(list));
    EXPECT_EQ(S_OK, today->GetList(0, 2, list.out()));
    EXPECT_EQ(QStringList({Rain, Sprint}), namesOf(list));
    EXPECT_EQ(S_OK, today->GetList(3, 20, list.out()));
    EXPECT_EQ(QStringList(), namesOf(list));
    EXPECT_EQ(QStringList(), names(queue(signon, "NEWS.EMPTY")));
}

TEST_F(QueueObjectTest, ListFromANegativePlaceOrOfANegativeCountIsInvalid)
{
    Platform::Variant list;
    EXPECT_EQ(E_INVALIDARG, today->GetList(-1, 1, list.out()));
    EXPECT_EQ(E_INVALIDARG, today->GetList(0, -1, list.out()));
    EXPECT_EQ(VT_EMPTY, list.type());
}

TEST_F(QueueObjectTest, QueueAnswersTheOlderInterfaceWithTheSameObject)
{
    const Orvex::IQueuePtr older = today;
    ASSERT_TRUE(older);
    EXPECT_EQ(older.GetInterfacePtr(), today.GetInterfacePtr());
    LONG count = 0;
    EXPECT_EQ(S_OK, older->get_Count(&count));
    EXPECT_EQ(3, count);
}

// ---- changing

TEST_F(QueueObjectTest, CreateStoryPutsAnEmptyStoryAtThePosition)
{
    Platform::Variant created;
    EXPECT_EQ(S_OK, today->CreateStory(1, created.out()));
    ASSERT_EQ(VT_DISPATCH, created.type());
    const Orvex::IStory2Ptr story = created.toDispatch();
    ASSERT_TRUE(story);
    EXPECT_EQ(QString(), textOf([&](BSTR *text) { return story->get_Field(In("title"), text); }));
    EXPECT_EQ(QStringLiteral("STORY"), textOf([&](BSTR *name) { return story->get_FormName(name); }));
    const QString unique = textOf([&](BSTR *text) { return story->get_StoryUnique(text); });
    EXPECT_EQ(unique, textOf([&](BSTR *text) { return this->story(today, 1)->get_StoryUnique(text); }));
    EXPECT_EQ(4, names(today).size());
}

TEST_F(QueueObjectTest, CreateStoryAtANegativePositionOrPastTheEndPutsItLast)
{
    Platform::Variant created;
    EXPECT_EQ(S_OK, today->CreateStory(-1, created.out()));
    const QString first =
        textOf([&](BSTR *text) { return Orvex::IStory2Ptr(created.toDispatch())->get_StoryUnique(text); });
    EXPECT_EQ(first, textOf([&](BSTR *text) { return story(today, 3)->get_StoryUnique(text); }));
    EXPECT_EQ(S_OK, today->CreateStory(1000, created.out()));
    const QString second =
        textOf([&](BSTR *text) { return Orvex::IStory2Ptr(created.toDispatch())->get_StoryUnique(text); });
    EXPECT_EQ(second, textOf([&](BSTR *text) { return story(today, 4)->get_StoryUnique(text); }));
    EXPECT_NE(first, second);
}

TEST_F(QueueObjectTest, CreateStoryIsRefusedWithoutFormWithoutRightAndInAWire)
{
    Platform::Variant created(1);
    EXPECT_EQ(NoForm, queue(signon, "NEWS.SPORT.ARCHIVE")->CreateStory(0, created.out()));
    EXPECT_EQ(VT_EMPTY, created.type());
    EXPECT_EQ(ReadOnlyWire, queue(signon, "NEWS.SPORT.WIRE")->CreateStory(0, created.out()));
    const auto reader = signOn("rob");
    EXPECT_EQ(NotAuthorized, queue(reader)->CreateStory(0, created.out()));
}

TEST_F(QueueObjectTest, DeleteRemovesTheStoryAtThePosition)
{
    EXPECT_EQ(S_OK, today->Delete(index(1)));
    EXPECT_EQ(QStringList({Rain, Coach}), names(today));
}

TEST_F(QueueObjectTest, DeleteIsRefused)
{
    EXPECT_EQ(Gone, today->Delete(index(3)));
    EXPECT_EQ(E_INVALIDARG, today->Delete(index(-1)));
    VARIANT empty{};
    VariantInit(&empty);
    EXPECT_EQ(DISP_E_TYPEMISMATCH, today->Delete(empty));
    EXPECT_EQ(PurgeLocked, queue(signon, "NEWS.SPORT.ARCHIVE")->Delete(index(0)));
    const auto reader = signOn("rob");
    EXPECT_EQ(NotAuthorized, queue(reader)->Delete(index(0)));
    EXPECT_EQ(Locked, queue(signon, "MAIL.NORA")->Delete(index(0)));
    EXPECT_EQ(QStringList({Rain, Sprint, Coach}), names(today));
}

TEST_F(QueueObjectTest, DeleteOfAStoryThatAnotherSessionHoldsIsRefused)
{
    Platform::Bstr holder;
    ASSERT_EQ(S_OK, storyFor("iris", 1)->Lock(1, holder.out()));
    EXPECT_EQ(Locked, today->Delete(index(1)));
}

TEST_F(QueueObjectTest, DeleteOfAStoryThatTheOwnSessionHoldsWorks)
{
    Platform::Bstr holder;
    ASSERT_EQ(S_OK, story(today, 1)->Lock(1, holder.out()));
    EXPECT_EQ(S_OK, today->Delete(index(1)));
}

TEST_F(QueueObjectTest, DeleteAllEmptiesTheQueue)
{
    EXPECT_EQ(S_OK, today->DeleteAll());
    EXPECT_EQ(QStringList(), names(today));
    EXPECT_EQ(S_OK, today->DeleteAll());
}

TEST_F(QueueObjectTest, DeleteAllLeavesStoriesThatAreHeldAndSaysSo)
{
    Platform::Bstr holder;
    ASSERT_EQ(S_OK, storyFor("iris", 1)->Lock(1, holder.out()));
    EXPECT_EQ(PartialFailure, today->DeleteAll());
    EXPECT_EQ(QStringList(Sprint), names(today));
}

TEST_F(QueueObjectTest, DeleteAllIsRefused)
{
    EXPECT_EQ(PurgeLocked, queue(signon, "NEWS.SPORT.ARCHIVE")->DeleteAll());
    const auto reader = signOn("rob");
    EXPECT_EQ(NotAuthorized, queue(reader)->DeleteAll());
}

TEST_F(QueueObjectTest, UpdateIsOffAtFirstAndEverySignOnsOwn)
{
    VARIANT_BOOL on = VARIANT_TRUE;
    EXPECT_EQ(S_OK, today->get_Update(&on));
    EXPECT_EQ(VARIANT_FALSE, on);
    EXPECT_EQ(S_OK, today->put_Update(VARIANT_TRUE));
    EXPECT_EQ(S_OK, queue(signon)->get_Update(&on));
    EXPECT_EQ(VARIANT_TRUE, on);
    const auto other = signOn();
    EXPECT_EQ(S_OK, queue(other)->get_Update(&on));
    EXPECT_EQ(VARIANT_FALSE, on);
    EXPECT_EQ(S_OK, today->put_Update(VARIANT_FALSE));
    EXPECT_EQ(S_OK, today->get_Update(&on));
    EXPECT_EQ(VARIANT_FALSE, on);
}

// ---- refusals of every operation

TEST_F(QueueObjectTest, RemovedQueueNoLongerExists)
{
    ASSERT_EQ(Refusal::None, server->model()->removeEntry(QStringLiteral("NEWS.SPORT.TODAY")));
    LONG number = 7;
    VARIANT_BOOL on = VARIANT_TRUE;
    Orvex::QueueIdentifier id = {7, 7, 7, 7};
    Platform::Bstr text;
    Platform::Variant value(1);
    EXPECT_EQ(Gone, today->get_Item(index(0), value.out()));
    EXPECT_EQ(Gone, today->get_Count(&number));
    EXPECT_EQ(Gone, today->GetList(0, 1, value.out()));
    EXPECT_EQ(Gone, today->get_Name(text.out()));
    EXPECT_EQ(Gone, today->get_Flags(&number, &number, &number));
    EXPECT_EQ(Gone, today->get_QueueID(&id));
    EXPECT_EQ(Gone, today->get_FormName(text.out()));
    EXPECT_EQ(Gone, today->get_Update(&on));
    EXPECT_EQ(Gone, today->put_Update(VARIANT_TRUE));
    EXPECT_EQ(Gone, today->CreateStory(0, value.out()));
    EXPECT_EQ(Gone, today->Delete(index(0)));
    EXPECT_EQ(Gone, today->DeleteAll());
    EXPECT_EQ(0, number);
    EXPECT_EQ(VARIANT_FALSE, on);
    EXPECT_EQ(0, id.number);
    EXPECT_EQ(0, id.word4);
    EXPECT_EQ(VT_EMPTY, value.type());
    EXPECT_TRUE(text.isNull());
}

TEST_F(QueueObjectTest, NullOutValuesAreRefused)
{
    LONG number = 7;
    EXPECT_EQ(E_POINTER, today->get_Item(index(0), nullptr));
    EXPECT_EQ(E_POINTER, today->get_Count(nullptr));
    EXPECT_EQ(E_POINTER, today->GetList(0, 1, nullptr));
    EXPECT_EQ(E_POINTER, today->get_Name(nullptr));
    EXPECT_EQ(E_POINTER, today->get_Flags(nullptr, &number, &number));
    EXPECT_EQ(E_POINTER, today->get_QueueID(nullptr));
    EXPECT_EQ(E_POINTER, today->get_FormName(nullptr));
    EXPECT_EQ(E_POINTER, today->get_Update(nullptr));
    EXPECT_EQ(E_POINTER, today->CreateStory(0, nullptr));
    EXPECT_EQ(3, names(today).size());
}

TEST_F(QueueObjectTest, ObjectsOfAnEndedSessionAreRefused)
{
    signon->Disconnect();
    LONG number = 7;
    VARIANT_BOOL on = VARIANT_TRUE;
    Orvex::QueueIdentifier id = {};
    Platform::Bstr text;
    Platform::Variant value;
    EXPECT_EQ(NotSignedOn, today->get_Item(index(0), value.out()));
    EXPECT_EQ(NotSignedOn, today->get_Count(&number));
    EXPECT_EQ(NotSignedOn, today->GetList(0, 1, value.out()));
    EXPECT_EQ(NotSignedOn, today->get_Name(text.out()));
    EXPECT_EQ(NotSignedOn, today->get_Flags(&number, &number, &number));
    EXPECT_EQ(NotSignedOn, today->get_QueueID(&id));
    EXPECT_EQ(NotSignedOn, today->get_FormName(text.out()));
    EXPECT_EQ(NotSignedOn, today->get_Update(&on));
    EXPECT_EQ(NotSignedOn, today->put_Update(VARIANT_TRUE));
    EXPECT_EQ(NotSignedOn, today->CreateStory(0, value.out()));
    EXPECT_EQ(NotSignedOn, today->Delete(index(0)));
    EXPECT_EQ(NotSignedOn, today->DeleteAll());
}

} // namespace Newsroom
