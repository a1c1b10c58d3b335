#include "newsroom/server/ServerFixture.h"
#include "newsroom/server/TestSink.h"

#include <thread>

namespace Newsroom {

class CallRecorderTest : public ServerFixture
{
protected:
    QStringList texts() { return server->calls().takeTexts(); }
};

TEST_F(CallRecorderTest, RecordsNothingUntilItIsStarted)
{
    signOn();
    EXPECT_FALSE(server->calls().isOn());
    EXPECT_TRUE(server->calls().take().empty());
}

TEST_F(CallRecorderTest, OneLinePerCallInOrder)
{
    const auto signon = signOn();
    server->calls().start();
    const auto today = queue(signon);
    Platform::Variant list;
    today->GetList(0, 20, list.out());
    today->get_Item(Platform::Variant::ofInt(7).get(), list.out());
    EXPECT_EQ(QStringList({QStringLiteral("ISignon4::GetDirectory(\"NEWS.SPORT.TODAY\")"),
                           QStringLiteral("IQueue2::GetList(0, 20)"),
                           QStringLiteral("IQueue2::get_Item(VT_INT 7) = 0x8004040b")}),
              texts());
}

TEST_F(CallRecorderTest, EveryArgumentKindAsText)
{
    const auto signon = signOn();
    const auto today = queue(signon);
    const auto first = story(today, 0);
    auto sink = makeSink();
    LONG number = 0;
    const Platform::SafeArray data(Platform::SafeArray::ofBytes("abc", 3));
    Platform::Variant value;
    VARIANT empty{};
    VariantInit(&empty);
    server->calls().start();
    today->put_Update(VARIANT_TRUE);
    first->Save(VARIANT_FALSE);
    first->put_Field(nullptr, In("x"));
    signon->SaveBlob(In("blob"), data.get(), &number);
    signon->SaveBlob(In("blob"), nullptr, &number);
    today->Delete(empty);
    EXPECT_EQ(QStringList({QStringLiteral("IQueue2::put_Update(true)"), QStringLiteral("IStory2::Save(false)"),
                           QStringLiteral("IStory2::put_Field(null, \"x\") = 0x80070057"),
                           QStringLiteral("ISignon4::SaveBlob(\"blob\", [3 elements])"),
                           QStringLiteral("ISignon4::SaveBlob(\"blob\", null) = 0x80070057"),
                           QStringLiteral("IQueue2::Delete(VT_EMPTY) = 0x80020005")}),
              texts());
    const DWORD cookie = advise(signon, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
    unadvise(signon, __uuidof(Orvex::_IAnNotifyFast2), cookie);
    EXPECT_EQ(QStringList({QStringLiteral("IConnectionPointContainer::FindConnectionPoint(_IAnNotifyFast2)"),
                           QStringLiteral("IConnectionPoint::Advise(_IAnNotifyFast2, object)"),
                           QStringLiteral("IConnectionPointContainer::FindConnectionPoint(_IAnNotifyFast2)"),
                           QStringLiteral("IConnectionPoint::Unadvise(_IAnNotifyFast2)")}),
              texts());
}

TEST_F(CallRecorderTest, PasswordIsNeverRecorded)
{
    const auto signon = server->createSignon();
    server->calls().start();
    signon->Connect(In("nora"), In("news"), In("newsroom-a"), 3);
    signon->Connect(In("nora"), In("s3cret"), nullptr, 0);
    const QStringList lines = texts();
    EXPECT_EQ(QStringList({QStringLiteral("ISignon4::Connect(\"nora\", ***, \"newsroom-a\", 3)"),
                           QStringLiteral("ISignon4::Connect(\"nora\", ***, null, 0) = 0x80070057")}),
              lines);
}

TEST_F(CallRecorderTest, CallKnowsItsPartsAndThread)
{
    const auto signon = signOn();
    server->calls().start();
    DWORD threadId = 0;
    std::thread([&] {
        threadId = GetCurrentThreadId();
        LONG rate = 0;
        signon->get_SysReadRate(&rate);
    }).join();
    signon->Reserved1();
    const std::vector<Call> calls = server->calls().take();
    ASSERT_EQ(2U, calls.size());
    EXPECT_EQ(QStringLiteral("ISignon4"), calls[0].interfaceName);
    EXPECT_EQ(QStringLiteral("get_SysReadRate"), calls[0].operation);
    EXPECT_EQ(QStringLiteral("ISignon4::get_SysReadRate"), calls[0].name());
    EXPECT_EQ(threadId, calls[0].threadId);
    EXPECT_EQ(S_OK, calls[0].hresult);
    EXPECT_TRUE(calls[0].finished);
    EXPECT_GE(calls[0].durationUs, 0);
    EXPECT_EQ(GetCurrentThreadId(), calls[1].threadId);
    EXPECT_EQ(E_NOTIMPL, calls[1].hresult);
}

TEST_F(CallRecorderTest, DurationIncludesAHang)
{
    const auto signon = signOn();
    server->calls().start();
    server->faults().failCall(1, Fault::hang(20));
    signon->Reserved1();
    EXPECT_GE(server->calls().take().at(0).durationUs, 20000);
}

TEST_F(CallRecorderTest, RunningCallIsNotFinished)
{
    const auto signon = signOn();
    server->calls().start();
    server->faults().failCall(1, Fault::hang(60000));
    std::thread caller([&] { signon->Reserved1(); });
    EXPECT_TRUE(server->faults().waitForHang(20000));
    const std::vector<Call> calls = server->calls().take();
    ASSERT_EQ(1U, calls.size());
    EXPECT_FALSE(calls[0].finished);
    server->faults().clear();
    caller.join();
    EXPECT_TRUE(server->calls().take().empty()); // it was taken before
}

TEST_F(CallRecorderTest, StopKeepsWhatWasRecordedAndStartForgetsIt)
{
    const auto signon = signOn();
    server->calls().start();
    signon->Reserved1();
    server->calls().stop();
    signon->Reserved4();
    EXPECT_EQ(1U, server->calls().take().size());
    server->calls().start();
    signon->Reserved5();
    server->calls().start();
    EXPECT_TRUE(server->calls().take().empty());
}

TEST_F(CallRecorderTest, CallsFromInsideAnEventStandAfterTheirCause)
{
    server->options().deliverAtOnce = true;
    const auto signon = signOn();
    const auto today = queue(signon);
    auto sink = makeSink();
    sink->hook = [&] {
        LONG count = 0;
        today->get_Count(&count);
    };
    advise(signon, __uuidof(Orvex::_IAnNotifyFast2), sink.get());
    today->put_Update(VARIANT_TRUE);
    server->calls().start();
    today->DeleteAll();
    EXPECT_EQ(QStringList({QStringLiteral("IQueue2::DeleteAll()"), QStringLiteral("IQueue2::get_Count()")}), texts());
}

} // namespace Newsroom
