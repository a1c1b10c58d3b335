#include "newsroom/server/ServerFixture.h"

namespace Newsroom {

class SignonObjectTest : public ServerFixture
{
protected:
    static bool isConnected(const Orvex::ISignon4Ptr &signon)
    {
        VARIANT_BOOL connected = VARIANT_FALSE;
        EXPECT_EQ(S_OK, signon->get_Connected(&connected));
        return connected != VARIANT_FALSE;
    }

    static HRESULT connect(const Orvex::ISignon4Ptr &signon, const char *user, const char *password,
                           const char *serverName = "")
    {
        return signon->Connect(In(user), In(password), In(serverName), 0);
    }

    static SAFEARRAY *bytes(const char *text) { return Platform::SafeArray::ofBytes(text, strlen(text)).release(); }

    static QByteArray content(const Platform::SafeArray &array)
    {
        VARTYPE type = VT_EMPTY;
        EXPECT_EQ(S_OK, SafeArrayGetVartype(array.get(), &type));
        EXPECT_EQ(VT_UI1, type);
        const Platform::SafeArrayAccess access(array.get());
        return QByteArray(access.as<char>(), static_cast<int>(access.size()));
    }
};

// ---- signing on and off

TEST_F(SignonObjectTest, NewObjectIsNotConnected)
{
    EXPECT_FALSE(isConnected(server->createSignon()));
}

TEST_F(SignonObjectTest, ConnectSignsOn)
{
    const auto signon = server->createSignon();
    EXPECT_EQ(S_OK, connect(signon, "nora", "news"));
    EXPECT_TRUE(isConnected(signon));
    EXPECT_EQ(1, server->model()->sessionCount());
}

TEST_F(SignonObjectTest, UserNameIgnoresLetterCaseAndPasswordDoesNot)
{
    const auto signon = server->createSignon();
    EXPECT_EQ(S_OK, connect(signon, "NORA", "news"));
    EXPECT_EQ(E_INVALIDARG, connect(signon, "nora", "NEWS"));
}

TEST_F(SignonObjectTest, ServerNameIsEmptyNullTheNameOrAnAliasInAnyLetterCase)
{
    const auto signon = server->createSignon();
    EXPECT_EQ(S_OK, connect(signon, "nora", "news", ""));
    EXPECT_EQ(S_OK, signon->Connect(In("nora"), In("news"), nullptr, 0));
    EXPECT_EQ(S_OK, connect(signon, "nora", "news", "newsroom-a"));
    EXPECT_EQ(S_OK, connect(signon, "nora", "news", "Newsroom-B"));
}

TEST_F(SignonObjectTest, WrongUserOrPasswordIsAnInvalidArgument)
{
    const auto signon = server->createSignon();
    EXPECT_EQ(E_INVALIDARG, connect(signon, "nobody", "news"));
    EXPECT_EQ(E_INVALIDARG, connect(signon, "nora", "wrong"));
    EXPECT_EQ(E_INVALIDARG, signon->Connect(nullptr, nullptr, nullptr, 0));
    EXPECT_FALSE(isConnected(signon));
}

TEST_F(SignonObjectTest, UnknownServerNameIsRefused)
{
    EXPECT_EQ(NoSuchServer, connect(server->createSignon(), "nora", "news", "ELSEWHERE"));
}

TEST_F(SignonObjectTest, OfflineNewsroomRefuses)
{
    SystemValues values = server->model()->system();
    values.offline = true;
    server->model()->setSystem(values);
    EXPECT_EQ(Offline, connect(server->createSignon(), "nora", "news"));
}

TEST_F(SignonObjectTest, SessionLimitRefusesTheNextSession)
{
    SystemValues values = server->model()->system();
    values.sessionLimit = 1;
    server->model()->setSystem(values);
    const auto first = signOn();
    const auto second = server->createSignon();
    EXPECT_EQ(OutOfSessions, connect(second, "nora", "news"));
    EXPECT_EQ(S_OK, first->Disconnect());
    EXPECT_EQ(S_OK, connect(second, "nora", "news"));
}

TEST_F(SignonObjectTest, RefusalIsExplained)
{
    connect(server->createSignon(), "nora", "wrong");
    const LastError error;
    EXPECT_TRUE(error.isSet);
    EXPECT_FALSE(error.description.isEmpty());
    EXPECT_EQ(QStringLiteral("Orvex"), error.source);
    EXPECT_TRUE(error.guid == __uuidof(Orvex::ISignon4));
}

TEST_F(SignonObjectTest, EveryRefusalHasItsOwnWords)
{
    const auto signon = server->createSignon();
    connect(signon, "nora", "news", "ELSEWHERE");
    const LastError noServer;
    signon->Disconnect();
    const LastError notSignedOn;
    signon->Reserved1();
    const LastError reserved;
    EXPECT_NE(noServer.description, notSignedOn.description);
    EXPECT_NE(notSignedOn.description, reserved.description);
    EXPECT_FALSE(reserved.description.startsWith(QLatin1String("Error 0x")));
}

TEST_F(SignonObjectTest, DisconnectEndsTheSession)
{
    const auto signon = signOn();
    EXPECT_EQ(S_OK, signon->Disconnect());
    EXPECT_FALSE(isConnected(signon));
    EXPECT_EQ(0, server->model()->sessionCount());
}

TEST_F(SignonObjectTest, DisconnectWithoutSessionIsRefused)
{
    EXPECT_EQ(NotSignedOn, server->createSignon()->Disconnect());
}

TEST_F(SignonObjectTest, ConnectAgainEndsTheSessionBefore)
{
    const auto signon = signOn();
    const auto before = queue(signon);
    EXPECT_EQ(S_OK, connect(signon, "iris", "news"));
    EXPECT_EQ(1, server->model()->sessionCount());
    LONG count = 0;
    EXPECT_EQ(NotSignedOn, before->get_Count(&count));
    EXPECT_EQ(S_OK, queue(signon)->get_Count(&count));
}

TEST_F(SignonObjectTest, RefusedConnectEndsTheSessionBefore)
{
    const auto signon = signOn();
    EXPECT_EQ(E_INVALIDARG, connect(signon, "nora", "wrong"));
    EXPECT_FALSE(isConnected(signon));
}

TEST_F(SignonObjectTest, LastReleaseEndsTheSessionAndItsLocks)
{
    auto first = signOn();
    auto held = story(queue(first), 0);
    Platform::Bstr holder;
    ASSERT_EQ(S_OK, held->Lock(1, holder.out()));
    first = nullptr;
    EXPECT_EQ(0, server->model()->sessionCount());
    EXPECT_EQ(NotSignedOn, held->Save(VARIANT_FALSE));
    EXPECT_EQ(S_OK, storyFor("iris")->Lock(1, holder.out()));
}

TEST_F(SignonObjectTest, EverythingButConnectingNeedsASession)
{
    const auto signon = server->createSignon();
    IDispatchPtr object;
    LONG number = 7;
    Platform::Bstr text;
    Platform::SafeArray array;
    const Platform::SafeArray data(bytes("x"));
    EXPECT_EQ(NotSignedOn, signon->GetDirectory(In("."), &object));
    EXPECT_EQ(NotSignedOn, signon->GetStory(In("NEWS.SPORT.TODAY"), 100, 0, 0, &object));
    EXPECT_EQ(NotSignedOn, signon->DeleteStory(In("NEWS.SPORT.TODAY"), 100, 12, 0));
    EXPECT_EQ(NotSignedOn, signon->Search(In("{}((x))"), &number));
    EXPECT_EQ(NotSignedOn, signon->StopSearch(1));
    EXPECT_EQ(NotSignedOn, signon->LoadBlob(In("desk/layout"), array.out(), &number));
    EXPECT_EQ(NotSignedOn, signon->SaveBlob(In("desk/layout"), data.get(), &number));
    EXPECT_EQ(NotSignedOn, signon->DeleteBlob(In("desk/layout")));
    EXPECT_EQ(NotSignedOn, signon->LoadUserBlob(array.out(), &number));
    EXPECT_EQ(NotSignedOn, signon->SaveUserBlob(data.get(), &number));
    EXPECT_EQ(NotSignedOn, signon->GetSystemForm(In("STORY"), text.out()));
    EXPECT_EQ(NotSignedOn, signon->get_ServerName(text.out()));
    EXPECT_EQ(NotSignedOn, signon->get_SysReadRate(&number));
    EXPECT_EQ(NotSignedOn, signon->get_SysWordLength(&number));
    EXPECT_EQ(0, number);
    EXPECT_TRUE(text.isNull());
}

// ---- the tree and its stories

TEST_F(SignonObjectTest, GetDirectoryAnswersDirectoriesAndQueues)
{
    const auto signon = signOn();
    EXPECT_EQ(QStringLiteral("NEWS.SPORT"), nameOf(directory(signon, "news.sport")));
    EXPECT_EQ(QStringLiteral("NEWS.SPORT.TODAY"), nameOf(queue(signon, "NEWS.SPORT.TODAY")));
}

TEST_F(SignonObjectTest, GetDirectoryOfAnUnknownPathDoesNotExist)
{
    const auto signon = signOn();
    IDispatch *object = reinterpret_cast<IDispatch *>(1);
    EXPECT_EQ(Gone, signon->GetDirectory(In("NEWS.NOWHERE"), &object));
    EXPECT_EQ(nullptr, object);
}

TEST_F(SignonObjectTest, GetStoryFindsByQueueAndFirstNumber)
{
    const auto signon = signOn();
    IDispatchPtr object;
    EXPECT_EQ(S_OK, signon->GetStory(In("news.sport.today"), 101, 0, 0, &object));
    EXPECT_EQ(QStringLiteral("Sprint record falls"), nameOf(object));
}

TEST_F(SignonObjectTest, GetStoryOfAnotherQueueOrNoneDoesNotExist)
{
    const auto signon = signOn();
    IDispatchPtr object;
    EXPECT_EQ(Gone, signon->GetStory(In("NEWS.SPORT.WIRE"), 101, 0, 0, &object));
    EXPECT_EQ(Gone, signon->GetStory(In("NEWS.SPORT.TODAY"), 999, 0, 0, &object));
    EXPECT_EQ(Gone, signon->GetStory(In("NEWS.NOWHERE"), 101, 0, 0, &object));
    EXPECT_FALSE(object);
}

TEST_F(SignonObjectTest, GetStoryTakesZerosOnly)
{
    const auto signon = signOn();
    IDispatchPtr object;
    EXPECT_EQ(E_INVALIDARG, signon->GetStory(In("NEWS.SPORT.TODAY"), 101, 1, 0, &object));
    EXPECT_EQ(E_INVALIDARG, signon->GetStory(In("NEWS.SPORT.TODAY"), 101, 0, 1, &object));
}

TEST_F(SignonObjectTest, DeleteStoryDeletesByIdentifier)
{
    const auto signon = signOn();
    EXPECT_EQ(S_OK, signon->DeleteStory(In("NEWS.SPORT.TODAY"), 101, 12, 0));
    EXPECT_FALSE(server->model()->story(101).ok());
    EXPECT_EQ(Gone, signon->DeleteStory(In("NEWS.SPORT.TODAY"), 101, 12, 0));
}

TEST_F(SignonObjectTest, DeleteStoryComparesAllThreeNumbers)
{
    const auto signon = signOn();
    EXPECT_EQ(Gone, signon->DeleteStory(In("NEWS.SPORT.TODAY"), 101, 13, 0));
    EXPECT_EQ(Gone, signon->DeleteStory(In("NEWS.SPORT.TODAY"), 101, 12, 1));
    EXPECT_EQ(Gone, signon->DeleteStory(In("NEWS.SPORT.WIRE"), 101, 12, 0));
    EXPECT_TRUE(server->model()->story(101).ok());
}

TEST_F(SignonObjectTest, DeleteStoryIsRefusedLikeAnyDelete)
{
    EXPECT_EQ(NotAuthorized, signOn("rob")->DeleteStory(In("NEWS.SPORT.TODAY"), 101, 12, 0));
    EXPECT_EQ(PurgeLocked, signOn()->DeleteStory(In("NEWS.SPORT.ARCHIVE"), 120, 14, 0));
    const auto held = storyFor("iris");
    Platform::Bstr holder;
    held->Lock(1, holder.out());
    EXPECT_EQ(Locked, signOn()->DeleteStory(In("NEWS.SPORT.TODAY"), 100, 12, 0));
}

// ---- blobs

TEST_F(SignonObjectTest, BlobComesBackAsItWasSaved)
{
    const auto signon = signOn();
    LONG value = -1;
    const Platform::SafeArray data(bytes("some bytes"));
    EXPECT_EQ(S_OK, signon->SaveBlob(In("desk/new"), data.get(), &value));
    EXPECT_EQ(10, value);

    Platform::SafeArray loaded;
    value = -1;
    EXPECT_EQ(S_OK, signon->LoadBlob(In("desk/new"), loaded.out(), &value));
    EXPECT_EQ(QByteArray("some bytes"), content(loaded));
    EXPECT_EQ(10, value);
}

TEST_F(SignonObjectTest, BlobsAreSharedByAllUsers)
{
    Platform::SafeArray loaded;
    LONG value = 0;
    EXPECT_EQ(S_OK, signOn("iris")->LoadBlob(In("desk/layout"), loaded.out(), &value));
    EXPECT_TRUE(content(loaded).contains("two columns"));
}

TEST_F(SignonObjectTest, EmptyBlobIsAnEmptyArray)
{
    const auto signon = signOn();
    LONG value = -1;
    const Platform::SafeArray none(Platform::SafeArray::ofBytes(nullptr, 0));
    EXPECT_EQ(S_OK, signon->SaveBlob(In("empty"), none.get(), &value));
    Platform::SafeArray loaded;
    EXPECT_EQ(S_OK, signon->LoadBlob(In("empty"), loaded.out(), &value));
    EXPECT_TRUE(loaded);
    EXPECT_EQ(0U, loaded.size());
    EXPECT_EQ(0, value);
}

TEST_F(SignonObjectTest, MissingBlobDoesNotExist)
{
    const auto signon = signOn();
    SAFEARRAY *loaded = reinterpret_cast<SAFEARRAY *>(1);
    LONG value = 7;
    EXPECT_EQ(Gone, signon->LoadBlob(In("no such"), &loaded, &value));
    EXPECT_EQ(nullptr, loaded);
    EXPECT_EQ(0, value);
    EXPECT_EQ(Gone, signon->DeleteBlob(In("no such")));
}

TEST_F(SignonObjectTest, DeletedBlobIsGone)
{
    const auto signon = signOn();
    EXPECT_EQ(S_OK, signon->DeleteBlob(In("desk/layout")));
    Platform::SafeArray loaded;
    LONG value = 0;
    EXPECT_EQ(Gone, signon->LoadBlob(In("desk/layout"), loaded.out(), &value));
}

TEST_F(SignonObjectTest, BlobNeedsAName)
{
    LONG value = 0;
    const Platform::SafeArray data(bytes("x"));
    EXPECT_EQ(E_INVALIDARG, signOn()->SaveBlob(nullptr, data.get(), &value));
}

TEST_F(SignonObjectTest, BlobsAreOneDimensionalArraysOfBytesOnly)
{
    const auto signon = signOn();
    LONG value = 7;
    EXPECT_EQ(E_INVALIDARG, signon->SaveBlob(In("x"), nullptr, &value));
    EXPECT_EQ(E_INVALIDARG, signon->SaveUserBlob(nullptr, &value));
    const Platform::SafeArray numbers(SafeArrayCreateVector(VT_I4, 0, 2));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, signon->SaveBlob(In("x"), numbers.get(), &value));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, signon->SaveUserBlob(numbers.get(), &value));
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    const Platform::SafeArray square(SafeArrayCreate(VT_UI1, 2, bounds));
    ASSERT_TRUE(square);
    EXPECT_EQ(DISP_E_TYPEMISMATCH, signon->SaveBlob(In("x"), square.get(), &value));
    EXPECT_EQ(0, value);
    EXPECT_FALSE(server->model()->blobNames().contains(QStringLiteral("x")));
}

TEST_F(SignonObjectTest, ReaderMayNotSaveOrDeleteBlobs)
{
    const auto signon = signOn("rob");
    LONG value = 0;
    const Platform::SafeArray data(bytes("x"));
    EXPECT_EQ(NotAuthorized, signon->SaveBlob(In("x"), data.get(), &value));
    EXPECT_EQ(NotAuthorized, signon->DeleteBlob(In("desk/layout")));
}

TEST_F(SignonObjectTest, EveryUserHasABlob)
{
    const auto nora = signOn();
    const auto rob = signOn("rob");
    LONG value = 0;
    Platform::SafeArray loaded;
    EXPECT_EQ(Gone, nora->LoadUserBlob(loaded.out(), &value));
    EXPECT_EQ(S_OK, nora->SaveUserBlob(Platform::SafeArray(bytes("nora's")).get(), &value));
    EXPECT_EQ(6, value);
    EXPECT_EQ(S_OK, rob->SaveUserBlob(Platform::SafeArray(bytes("rob's")).get(), &value));
    EXPECT_EQ(S_OK, signOn()->LoadUserBlob(loaded.out(), &value));
    EXPECT_EQ(QByteArray("nora's"), content(loaded));
    EXPECT_EQ(6, value);
}

// ---- forms, users, system values

TEST_F(SignonObjectTest, SystemFormIsItsMarkup)
{
    const auto signon = signOn();
    const QString form = textOf([&](BSTR *text) { return signon->GetSystemForm(In("STORY"), text); });
    EXPECT_TRUE(form.contains(QLatin1String("<zeko:form>")));
    EXPECT_TRUE(form.contains(QLatin1String("idref=title")));
}

TEST_F(SignonObjectTest, UnknownFormDoesNotExist)
{
    Platform::Bstr form;
    EXPECT_EQ(Gone, signOn()->GetSystemForm(In("POEM"), form.out()));
    EXPECT_TRUE(form.isNull());
}

TEST_F(SignonObjectTest, ServerNameIsTheNewsroomsOwn)
{
    const auto signon = server->createSignon();
    ASSERT_EQ(S_OK, connect(signon, "nora", "news", "newsroom-b"));
    EXPECT_EQ(QStringLiteral("NEWSROOM-A"), textOf([&](BSTR *text) { return signon->get_ServerName(text); }));
}

TEST_F(SignonObjectTest, UserInfoIsFourTextsAndTwoNumbers)
{
    const auto signon = signOn();
    Platform::Bstr texts[4];
    LONG number1 = 0;
    LONG number2 = 0;
    EXPECT_EQ(S_OK,
              signon->GetUserInfo(texts[0].out(), texts[1].out(), texts[2].out(), texts[3].out(), &number1, &number2));
    EXPECT_EQ(QStringLiteral("nora"), texts[0].toString());
    EXPECT_EQ(QStringLiteral("Nora Vale"), texts[1].toString());
    EXPECT_EQ(QStringLiteral("MAIL.NORA"), texts[2].toString());
    EXPECT_EQ(QStringLiteral("DESK-4"), texts[3].toString());
    EXPECT_EQ(7, number1);
    EXPECT_EQ(3, number2);
}

TEST_F(SignonObjectTest, UserInfoWithoutAPlaceForOneTextGivesNone)
{
    const auto signon = signOn();
    BSTR texts[3] = {};
    LONG number = 7;
    EXPECT_EQ(E_POINTER, signon->GetUserInfo(&texts[0], &texts[1], nullptr, &texts[2], &number, &number));
    EXPECT_EQ(nullptr, texts[0]);
    EXPECT_EQ(nullptr, texts[2]);
    EXPECT_EQ(0, number);
}

TEST_F(SignonObjectTest, SystemValues)
{
    const auto signon = signOn();
    LONG value = 0;
    EXPECT_EQ(S_OK, signon->get_SysReadRate(&value));
    EXPECT_EQ(175, value);
    EXPECT_EQ(S_OK, signon->get_SysWordLength(&value));
    EXPECT_EQ(5, value);
}

TEST_F(SignonObjectTest, ReservedPlacesAreNotImplemented)
{
    const auto signon = server->createSignon();
    EXPECT_EQ(E_NOTIMPL, signon->Reserved1());
    EXPECT_EQ(E_NOTIMPL, signon->Reserved4());
    EXPECT_EQ(E_NOTIMPL, signon->Reserved5());
    EXPECT_EQ(E_NOTIMPL, signon->Reserved15());
}

TEST_F(SignonObjectTest, EmptyTextCanBeANullBstr)
{
    const auto signon = signOn("rob");
    Platform::Bstr texts[4];
    LONG number = 0;
    const auto ask = [&] {
        return signon->GetUserInfo(texts[0].out(), texts[1].out(), texts[2].out(), texts[3].out(), &number, &number);
    };
    EXPECT_EQ(S_OK, ask());
    EXPECT_FALSE(texts[2].isNull());
    EXPECT_EQ(QString(), texts[2].toString());
    server->options().nullForEmpty = true;
    EXPECT_EQ(S_OK, ask());
    EXPECT_FALSE(texts[0].isNull());
    EXPECT_TRUE(texts[2].isNull());
}

TEST_F(SignonObjectTest, NullOutValuesAreRefused)
{
    const auto signon = signOn();
    const Platform::SafeArray data(bytes("x"));
    SAFEARRAY *array = nullptr;
    LONG number = 7;
    EXPECT_EQ(E_POINTER, signon->get_Connected(nullptr));
    EXPECT_EQ(E_POINTER, signon->GetDirectory(In("."), nullptr));
    EXPECT_EQ(E_POINTER, signon->GetStory(In("NEWS.SPORT.TODAY"), 100, 0, 0, nullptr));
    EXPECT_EQ(E_POINTER, signon->Search(In("{}((x))"), nullptr));
    EXPECT_EQ(E_POINTER, signon->LoadBlob(In("desk/layout"), nullptr, &number));
    EXPECT_EQ(E_POINTER, signon->LoadBlob(In("desk/layout"), &array, nullptr));
    EXPECT_EQ(nullptr, array);
    EXPECT_EQ(E_POINTER, signon->SaveBlob(In("x"), data.get(), nullptr));
    EXPECT_EQ(E_POINTER, signon->LoadUserBlob(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, signon->SaveUserBlob(data.get(), nullptr));
    EXPECT_EQ(E_POINTER, signon->GetSystemForm(In("STORY"), nullptr));
    EXPECT_EQ(E_POINTER, signon->get_ServerName(nullptr));
    EXPECT_EQ(E_POINTER, signon->get_SysReadRate(nullptr));
    EXPECT_EQ(E_POINTER, signon->get_SysWordLength(nullptr));
    EXPECT_FALSE(server->model()->blobNames().contains(QStringLiteral("x")));
}

} // namespace Newsroom
