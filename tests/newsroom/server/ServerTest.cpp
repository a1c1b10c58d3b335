#include "newsroom/server/ServerFixture.h"
#include "newsroom/server/TestSink.h"

namespace Newsroom {

class ServerTest : public ServerFixture
{
protected:
    static HRESULT create(Orvex::ISignon4 **signon)
    {
        return CoCreateInstance(__uuidof(Orvex::Signon), nullptr, CLSCTX_ALL, __uuidof(Orvex::ISignon4),
                                reinterpret_cast<void **>(signon));
    }
};

TEST_F(ServerTest, SignOnsShareTheNewsroom)
{
    const auto hers = storyFor("iris");
    EXPECT_EQ(S_OK, hers->put_Field(In("title"), In("New")));
    EXPECT_EQ(S_OK, hers->Save(VARIANT_FALSE));
    EXPECT_EQ(QStringLiteral("New"), nameOf(storyFor("nora")));
}

TEST_F(ServerTest, ServersMayShareAModel)
{
    Server second(server->model());
    const auto signon = signOn();
    auto sink = makeSink();
    advise(signon, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
    ASSERT_EQ(S_OK, queue(signon)->put_Update(VARIANT_TRUE));
    const auto other = second.connect(QStringLiteral("iris"), QStringLiteral("news"));
    EXPECT_EQ(S_OK, queue(other)->Delete(index(0)));
    EXPECT_TRUE(server->waitForEvents());
    EXPECT_EQ(QStringList(QStringLiteral("queue 12")), sink->take());
    EXPECT_EQ(QStringLiteral("Signon 1"), second.census()->text());
}

TEST_F(ServerTest, ConnectRaisesARefusal)
{
    try {
        server->connect(QStringLiteral("nora"), QStringLiteral("wrong"));
        FAIL();
    } catch (const _com_error &error) {
        EXPECT_EQ(E_INVALIDARG, error.Error());
    }
}

// ---- class factory and registration

TEST_F(ServerTest, RegisteredClassMakesSignOns)
{
    const Registration registration = server->registerClass();
    EXPECT_TRUE(registration.isActive());
    EXPECT_EQ(S_OK, registration.result());
    Orvex::ISignon4Ptr signon;
    EXPECT_EQ(S_OK, create(&signon));
    EXPECT_EQ(S_OK, signon->Connect(In("nora"), In("news"), nullptr, 0));
    EXPECT_EQ(1, server->model()->sessionCount());
}

TEST_F(ServerTest, RegistrationEndsWithItsObject)
{
    {
        const Registration registration = server->registerClass();
    }
    Orvex::ISignon4Ptr signon;
    EXPECT_EQ(REGDB_E_CLASSNOTREG, create(&signon));
    EXPECT_FALSE(signon);
}

TEST_F(ServerTest, RegistrationMoves)
{
    Registration registration;
    EXPECT_FALSE(registration.isActive());
    {
        Registration inner = server->registerClass();
        registration = std::move(inner);
    }
    Orvex::ISignon4Ptr signon;
    EXPECT_EQ(S_OK, create(&signon));
    const Registration moved(std::move(registration));
    EXPECT_EQ(S_OK, create(&signon));
}

TEST_F(ServerTest, RegistrationCanBeRevoked)
{
    Registration registration = server->registerClass();
    registration.revoke();
    EXPECT_FALSE(registration.isActive());
    registration.revoke();
    Orvex::ISignon4Ptr signon;
    EXPECT_EQ(REGDB_E_CLASSNOTREG, create(&signon));
}

TEST_F(ServerTest, ServerMayGoBeforeItsRegistration)
{
    const Registration registration = server->registerClass();
    server.reset();
    Orvex::ISignon4Ptr signon;
    EXPECT_EQ(RPC_E_DISCONNECTED, create(&signon));
    EXPECT_FALSE(signon);
}

TEST_F(ServerTest, CreationCanBeMadeToFail)
{
    const Registration registration = server->registerClass();
    server->faults().failNext(QStringLiteral("IClassFactory::CreateInstance"), Fault::hresult(E_OUTOFMEMORY));
    Orvex::ISignon4Ptr signon;
    EXPECT_EQ(E_OUTOFMEMORY, create(&signon));
    EXPECT_FALSE(signon);
}

TEST_F(ServerTest, ClassFactoryMakesWhatIsAskedFor)
{
    const auto factory = server->classFactory();
    IDispatchPtr object;
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void **>(&object)));
    EXPECT_TRUE(Orvex::ISignon4Ptr(object));
    void *pointer = &pointer;
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, __uuidof(Orvex::IQueue), &pointer));
    EXPECT_EQ(nullptr, pointer);
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(object, IID_IUnknown, &pointer));
    EXPECT_EQ(nullptr, pointer);
    EXPECT_EQ(E_POINTER, factory->CreateInstance(nullptr, IID_IUnknown, nullptr));
    EXPECT_EQ(1, census->live(ObjectKind::Signon));
}

TEST_F(ServerTest, LockedServerIsCounted)
{
    const auto factory = server->classFactory();
    EXPECT_EQ(1, census->live(ObjectKind::ClassFactory));
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
    EXPECT_EQ(2, census->live(ObjectKind::ClassFactory));
    EXPECT_EQ(S_OK, factory->LockServer(FALSE));
    EXPECT_EQ(1, census->live(ObjectKind::ClassFactory));
}

// ---- the census

TEST_F(ServerTest, CensusCountsByKind)
{
    EXPECT_EQ(QStringLiteral("nothing"), census->text());
    const auto signon = signOn();
    const auto today = queue(signon);
    const auto news = directory(signon, "NEWS");
    Platform::Variant list;
    today->GetList(0, 3, list.out());
    EXPECT_EQ(1, census->live(ObjectKind::Signon));
    EXPECT_EQ(1, census->live(ObjectKind::Directory));
    EXPECT_EQ(1, census->live(ObjectKind::Queue));
    EXPECT_EQ(3, census->live(ObjectKind::Story));
    EXPECT_EQ(6, census->live());
    EXPECT_EQ(QStringLiteral("Signon 1, Directory 1, Queue 1, Story 3"), census->text());
}

TEST_F(ServerTest, ManySignOnsLeaveNothing)
{
    const qint64 texts = Census::liveTexts();
    const qint64 arrays = Census::liveArrays();
    for (int i = 0; i < 200; ++i) {
        const auto signon = signOn();
        Platform::Variant list;
        EXPECT_EQ(S_OK, directory(signon, "NEWS.SPORT")->GetList(0, 10, list.out()));
        EXPECT_EQ(S_OK, queue(signon)->GetList(0, 10, list.out()));
        EXPECT_EQ(S_OK, signon->Disconnect());
    }
    EXPECT_EQ(0, census->live());
    EXPECT_EQ(texts, Census::liveTexts());
    EXPECT_EQ(arrays, Census::liveArrays());
}

// ---- the end

TEST_F(ServerTest, EndOfTheServerEndsTheSessions)
{
    const auto model = server->model();
    const auto signon = signOn();
    Platform::Bstr holder;
    const auto held = story(queue(signon), 0);
    ASSERT_EQ(S_OK, held->Lock(1, holder.out()));
    server.reset();
    EXPECT_EQ(0, model->sessionCount());
    EXPECT_FALSE(model->isLocked(100, 0).value);
}

TEST_F(ServerTest, SignOnCannotBeMadeUsefulAfterTheEnd)
{
    const auto signon = server->createSignon();
    server.reset();
    EXPECT_EQ(RPC_E_DISCONNECTED, signon->Connect(In("nora"), In("news"), nullptr, 0));
    auto sink = makeSink();
    const IConnectionPointContainerPtr container = signon;
    IConnectionPointPtr point;
    EXPECT_EQ(RPC_E_DISCONNECTED, container->FindConnectionPoint(__uuidof(Orvex::_IAnNotifyFast), &point));
    EXPECT_FALSE(point);
}

TEST_F(ServerTest, ConnectionPointAfterTheEnd)
{
    const IConnectionPointContainerPtr container = server->createSignon();
    IConnectionPointPtr point;
    ASSERT_EQ(S_OK, container->FindConnectionPoint(__uuidof(Orvex::_IAnNotifyFast), &point));
    auto sink = makeSink();
    DWORD cookie = 0;
    ASSERT_EQ(S_OK, point->Advise(sink.get(), &cookie));
    server.reset();
    EXPECT_EQ(1U, sink->references());
    EXPECT_EQ(RPC_E_DISCONNECTED, point->Unadvise(cookie));
    EXPECT_EQ(RPC_E_DISCONNECTED, point->Advise(sink.get(), &cookie));
    EXPECT_EQ(1U, sink->references());
}

TEST_F(ServerTest, ObjectsMayOutliveTheServer)
{
    const auto mine = storyFor("nora");
    mine->put_Field(In("title"), In("pending"));
    server.reset();
    EXPECT_EQ(RPC_E_DISCONNECTED, mine->Save(VARIANT_FALSE));
    const LastError error;
    EXPECT_TRUE(error.isSet);
    EXPECT_EQ(QStringLiteral("The newsroom is gone."), error.description);
}

} // namespace Newsroom
