#include "support/Stress.h"
#include "newsroom/server/ServerFixture.h"
#include "newsroom/server/TestSink.h"

#include <random>
#include <thread>

#include <QtGlobal>

namespace Newsroom {

using ServerSoak = ServerFixture;

/// Several threads, each with sign-ons of its own and one that all share, calling everything at once.
class ServerStress : public ServerFixture
{
protected:
    void work(unsigned seed);
    void edit(const Orvex::ISignon4Ptr &signon, std::mt19937 &random);
    void browse(const Orvex::ISignon4Ptr &signon);
    void searchAndStop(const Orvex::ISignon4Ptr &signon, std::mt19937 &random);
    void check(HRESULT result)
    {
        ++calls;
        switch (result) {
        case S_OK:
        case Gone:
        case BeingEdited:
        case Locked:
        case PartialFailure:
        case NotSignedOn:
            return;
        default:
            ++wrongAnswers;
            ADD_FAILURE() << std::hex << result;
        }
    }

    Orvex::ISignon4Ptr shared = signOn();
    std::atomic<bool> stop{false};
    std::atomic<int> calls{0};
    std::atomic<int> wrongAnswers{0};
};

void ServerStress::browse(const Orvex::ISignon4Ptr &signon)
{
    IDispatchPtr object;
    check(signon->GetDirectory(In("NEWS.SPORT.TODAY"), &object));
    const Orvex::IQueue2Ptr today = object;
    if (!today)
        return;
    Platform::Variant list;
    check(today->GetList(0, 20, list.out()));
    if (list.type() != (VT_ARRAY | VT_DISPATCH))
        return;
    const Platform::SafeArrayAccess access(list.get().parray);
    for (ULONG i = 0; i < access.size(); ++i) {
        const Orvex::IStory2Ptr each = access.as<IDispatch *>()[i];
        Platform::Bstr text;
        check(each->get_SectionXml(127, text.out()));
        check(each->get_Field(In("title"), text.out()));
        VARIANT_BOOL locked = VARIANT_FALSE;
        check(each->IsLocked(0, &locked));
    }
}

void ServerStress::edit(const Orvex::ISignon4Ptr &signon, std::mt19937 &random)
{
    IDispatchPtr object;
    check(signon->GetDirectory(In("NEWS.SPORT.TODAY"), &object));
    const Orvex::IQueue2Ptr today = object;
    if (!today)
        return;
    Platform::Variant created;
    check(today->put_Update(random() % 2 ? VARIANT_TRUE : VARIANT_FALSE));
    check(today->CreateStory(static_cast<LONG>(random() % 5), created.out()));
    if (const Orvex::IStory2Ptr mine = created.toDispatch()) {
        Platform::Bstr holder;
        check(mine->Lock(1, holder.out()));
        check(mine->put_Field(In("title"), In("written in a hurry")));
        check(mine->put_SectionXml(8, In("<body><p>text</p></body>")));
        check(mine->Save(VARIANT_FALSE));
        check(mine->Unlock());
    }
    if (random() % 4 == 0)
        check(today->Delete(index(static_cast<LONG>(random() % 5))));
    if (random() % 16 == 0)
        check(today->DeleteAll());
}

void ServerStress::searchAndStop(const Orvex::ISignon4Ptr &signon, std::mt19937 &random)
{
    LONG id = 0;
    check(signon->Search(In("{[].*}((*))"), &id));
    if (random() % 2)
        check(signon->StopSearch(id));
}

void ServerStress::work(unsigned seed)
{
    std::mt19937 random(seed);
    while (!stop) {
        const auto own = server->connect(QStringLiteral("iris"), QStringLiteral("news"));
        auto sink = makeSink();
        const DWORD fast = advise(own, __uuidof(Orvex::_IAnNotifyFast), sink.get());
        const DWORD fast2 = advise(own, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
        const auto atShared = advise(shared, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
        for (int round = 0; round < 5; ++round) {
            for (const Orvex::ISignon4Ptr &signon : {own, shared}) {
                browse(signon);
                edit(signon, random);
                searchAndStop(signon, random);
            }
        }
        if (random() % 8 == 0)
            server->triggerLogout(QStringLiteral("iris"));
        check(unadvise(own, __uuidof(Orvex::_IAnNotifyFast), fast));
        check(unadvise(shared, __uuidof(Orvex::_IAnNotifyFast2), atShared));
        if (random() % 2) {
            check(unadvise(own, __uuidof(Orvex::_IAnNotifyFast2), fast2));
            check(own->Disconnect());
        }
    }
}

TEST_F(ServerStress, EverythingAtOnce)
{
    server->calls().start();
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 6; ++seed)
        threads.emplace_back([this, seed] { work(seed); });
    const auto end = std::chrono::steady_clock::now() + stressTime();
    while (std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        server->options().deliverAtOnce = !server->options().deliverAtOnce;
        server->calls().take();
    }
    stop = true;
    for (std::thread &thread : threads)
        thread.join();
    RecordProperty("calls", calls);
    EXPECT_EQ(0, wrongAnswers);
    EXPECT_GT(calls, 0);
    EXPECT_TRUE(server->waitForEvents());
    EXPECT_EQ(1, server->model()->sessionCount());
    shared = nullptr;
    EXPECT_EQ(QStringLiteral("nothing"), census->text());
    EXPECT_EQ(0, TestSink::alive());
}

TEST_F(ServerSoak, ServerThatGoesInTheMiddle)
{
    for (int round = 0; round < soakRounds(20, 1000); ++round) {
        std::vector<std::thread> threads;
        std::atomic<bool> done{false};
        std::atomic<int> ready{0};
        auto doomed = std::make_unique<Server>(server->model());
        std::vector<Orvex::ISignon4Ptr> signons;
        signons.reserve(3);
        threads.reserve(3);
        for (int i = 0; i < 3; ++i)
            signons.push_back(doomed->connect(QStringLiteral("iris"), QStringLiteral("news")));
        for (const Orvex::ISignon4Ptr &signon : signons) {
            threads.emplace_back([&done, &ready, signon] {
                auto sink = makeSink();
                advise(signon, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
                ++ready;
                HRESULT result = S_OK;
                while (!done && result != RPC_E_DISCONNECTED) {
                    IDispatchPtr object;
                    result = signon->GetDirectory(In("NEWS.EMPTY"), &object);
                    Platform::Variant created;
                    if (const Orvex::IQueue2Ptr empty = object) {
                        empty->put_Update(VARIANT_TRUE);
                        empty->CreateStory(0, created.out());
                        empty->DeleteAll();
                    }
                }
            });
        }
        while (ready < 3)
            std::this_thread::yield();
        doomed.reset();
        for (std::thread &thread : threads)
            thread.join();
        done = true;
    }
    EXPECT_EQ(0, TestSink::alive());
}

} // namespace Newsroom
