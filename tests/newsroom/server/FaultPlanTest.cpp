#include "newsroom/server/ServerFixture.h"

#include <functional>
#include <new>
#include <thread>

namespace Newsroom {

class FaultPlanTest : public ServerFixture
{
protected:
    FaultPlan &faults() { return server->faults(); }

    Orvex::ISignon4Ptr signon = signOn();
    Orvex::IQueue2Ptr today = queue(signon);
    Orvex::IDirectory2Ptr news = directory(signon, "NEWS");
    Orvex::IStory2Ptr first = story(today, 0);
};

// ---- which call

TEST_F(FaultPlanTest, CallNFromNowFails)
{
    faults().failCall(2, Fault::hresult(E_FAIL));
    LONG count = 0;
    EXPECT_EQ(S_OK, today->get_Count(&count));
    EXPECT_EQ(E_FAIL, today->get_Count(&count));
    EXPECT_EQ(S_OK, today->get_Count(&count));
    EXPECT_EQ(1, faults().faultsDone());
}

TEST_F(FaultPlanTest, NextCallOfAnOperationFails)
{
    faults().failNext(QStringLiteral("IQueue2::get_Count"), Fault::hresult(E_FAIL));
    LONG count = 0;
    EXPECT_EQ(S_OK, news->get_Count(&count));
    EXPECT_EQ(E_FAIL, today->get_Count(&count));
    EXPECT_EQ(S_OK, today->get_Count(&count));
}

TEST_F(FaultPlanTest, KthCallOfAnOperationFails)
{
    faults().failNext(QStringLiteral("get_Count"), Fault::hresult(E_FAIL), 3);
    LONG count = 0;
    EXPECT_EQ(S_OK, news->get_Count(&count));
    EXPECT_EQ(S_OK, today->get_Count(&count));
    EXPECT_EQ(S_OK, signon->get_SysReadRate(&count));
    EXPECT_EQ(E_FAIL, news->get_Count(&count));
}

TEST_F(FaultPlanTest, EveryCallOfAnOperationFailsUntilCleared)
{
    faults().failEvery(QStringLiteral("IQueue2::get_Count"), Fault::hresult(E_FAIL));
    LONG count = 0;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(E_FAIL, today->get_Count(&count));
    faults().clear();
    EXPECT_EQ(S_OK, today->get_Count(&count));
}

TEST_F(FaultPlanTest, TwoPlansOnOneCallGiveTheFirst)
{
    faults().failCall(1, Fault::hresult(E_FAIL));
    faults().failNext(QStringLiteral("get_Count"), Fault::hresult(E_ABORT));
    LONG count = 0;
    EXPECT_EQ(E_FAIL, today->get_Count(&count));
    EXPECT_EQ(S_OK, today->get_Count(&count));
}

TEST_F(FaultPlanTest, CallsAreCounted)
{
    faults().clear();
    LONG count = 0;
    today->get_Count(&count);
    news->get_Count(nullptr);
    const Orvex::IQueuePtr queried = today; // not a call
    EXPECT_EQ(2, faults().callsSeen());
    faults().clear();
    EXPECT_EQ(0, faults().callsSeen());
}

TEST_F(FaultPlanTest, ClearForgetsThePlans)
{
    faults().failCall(1, Fault::hresult(E_FAIL));
    faults().clear();
    LONG count = 0;
    EXPECT_EQ(S_OK, today->get_Count(&count));
    EXPECT_EQ(0, faults().faultsDone());
}

TEST_F(FaultPlanTest, LastFaultIsNamed)
{
    EXPECT_EQ(QString(), faults().lastFault());
    faults().failNext(QStringLiteral("get_Count"), Fault::hresult(E_FAIL));
    faults().failNext(QStringLiteral("QueryInterface"), Fault::hresult(E_NOINTERFACE));
    LONG count = 0;
    today->get_Count(&count);
    EXPECT_EQ(QStringLiteral("IQueue2::get_Count"), faults().lastFault());
    const Orvex::IDirectory2Ptr refused = IUnknownPtr(today);
    EXPECT_EQ(QStringLiteral("IQueue2::QueryInterface"), faults().lastFault());
    faults().clear();
    EXPECT_EQ(QString(), faults().lastFault());
}

// ---- what happens

TEST_F(FaultPlanTest, FailedCallHasEmptyOutValuesAndAnExplanation)
{
    faults().failEvery(QStringLiteral("GetUserInfo"), Fault::hresult(Locked));
    BSTR texts[4] = {};
    LONG numbers[2] = {7, 7};
    EXPECT_EQ(Locked, signon->GetUserInfo(&texts[0], &texts[1], &texts[2], &texts[3], &numbers[0], &numbers[1]));
    EXPECT_EQ(nullptr, texts[0]);
    EXPECT_EQ(nullptr, texts[3]);
    EXPECT_EQ(0, numbers[0]);
    EXPECT_EQ(0, numbers[1]);
    const LastError error;
    EXPECT_TRUE(error.isSet);
    EXPECT_TRUE(error.guid == __uuidof(Orvex::ISignon4));
}

TEST_F(FaultPlanTest, FailedCallDoesNothing)
{
    faults().failCall(1, Fault::hresult(E_FAIL));
    EXPECT_EQ(E_FAIL, today->DeleteAll());
    EXPECT_EQ(3, server->model()->queue(12).value.count);
}

TEST_F(FaultPlanTest, UnknownCodeIsExplainedByItsNumber)
{
    faults().failCall(1, Fault::hresult(E_ABORT));
    today->DeleteAll();
    EXPECT_EQ(QStringLiteral("Error 0x80004004."), LastError().description);
}

TEST_F(FaultPlanTest, RaisedErrorLeavesTheMethodWithItsExplanation)
{
    faults().failCall(1, Fault::raise(Gone));
    try {
        today->DeleteAll();
        FAIL();
    } catch (const _com_error &error) {
        EXPECT_EQ(Gone, error.Error());
        IErrorInfoPtr info(error.ErrorInfo(), false);
        EXPECT_TRUE(info);
    }
    EXPECT_EQ(3, server->model()->queue(12).value.count);
}

TEST_F(FaultPlanTest, RaisedErrorHasEmptyOutValues)
{
    faults().failCall(1, Fault::raise(E_FAIL));
    BSTR name = reinterpret_cast<BSTR>(1);
    EXPECT_THROW(today->get_Name(&name), _com_error);
    EXPECT_EQ(nullptr, name);
}

TEST_F(FaultPlanTest, NullResultIsASuccessWithEmptyOutValues)
{
    faults().failEvery(QStringLiteral("GetDirectory"), Fault::nullResult());
    faults().failEvery(QStringLiteral("get_Item"), Fault::nullResult());
    faults().failEvery(QStringLiteral("GetList"), Fault::nullResult());
    faults().failEvery(QStringLiteral("get_Name"), Fault::nullResult());
    faults().failEvery(QStringLiteral("LoadBlob"), Fault::nullResult());
    faults().failEvery(QStringLiteral("IsLocked"), Fault::nullResult());
    IDispatch *object = reinterpret_cast<IDispatch *>(1);
    EXPECT_EQ(S_OK, signon->GetDirectory(In("."), &object));
    EXPECT_EQ(nullptr, object);
    Platform::Variant value(1);
    EXPECT_EQ(S_OK, today->get_Item(index(0), value.out()));
    EXPECT_EQ(VT_EMPTY, value.type());
    EXPECT_EQ(S_OK, today->GetList(0, 1, value.out()));
    EXPECT_EQ(VT_EMPTY, value.type());
    BSTR name = reinterpret_cast<BSTR>(1);
    EXPECT_EQ(S_OK, today->get_Name(&name));
    EXPECT_EQ(nullptr, name);
    SAFEARRAY *data = reinterpret_cast<SAFEARRAY *>(1);
    LONG number = 7;
    EXPECT_EQ(S_OK, signon->LoadBlob(In("desk/layout"), &data, &number));
    EXPECT_EQ(nullptr, data);
    EXPECT_EQ(0, number);
    VARIANT_BOOL locked = VARIANT_TRUE;
    EXPECT_EQ(S_OK, first->IsLocked(0, &locked));
    EXPECT_EQ(VARIANT_FALSE, locked);
}

TEST_F(FaultPlanTest, WrongTypeIsANumberAStrangerOrAnArrayOfNumbers)
{
    for (const char *operation : {"GetDirectory", "get_Item", "GetList", "LoadBlob", "get_Name"})
        faults().failEvery(QString::fromLatin1(operation), Fault::wrongType());
    Platform::Variant value;
    EXPECT_EQ(S_OK, today->get_Item(index(0), value.out()));
    EXPECT_EQ(VT_I4, value.type());
    EXPECT_EQ(S_OK, today->GetList(0, 1, value.out()));
    EXPECT_EQ(VT_I4, value.type());

    IDispatchPtr object;
    EXPECT_EQ(S_OK, signon->GetDirectory(In("."), &object));
    ASSERT_TRUE(object);
    EXPECT_FALSE(Orvex::IDirectory2Ptr(object));
    EXPECT_FALSE(Orvex::IQueuePtr(object));
    EXPECT_FALSE(Orvex::IStory2Ptr(object));
    EXPECT_EQ(1, census->live(ObjectKind::Stranger));

    Platform::SafeArray data;
    LONG number = 7;
    EXPECT_EQ(S_OK, signon->LoadBlob(In("desk/layout"), data.out(), &number));
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(S_OK, SafeArrayGetVartype(data.get(), &type));
    EXPECT_EQ(VT_I4, type);
    EXPECT_EQ(0, number);

    BSTR name = reinterpret_cast<BSTR>(1);
    EXPECT_EQ(S_OK, today->get_Name(&name));
    EXPECT_EQ(nullptr, name);
}

TEST_F(FaultPlanTest, WrongElementsIsAnArrayOfNumbers)
{
    faults().failNext(QStringLiteral("GetList"), Fault::wrongElements());
    Platform::Variant value;
    EXPECT_EQ(S_OK, today->GetList(0, 1, value.out()));
    EXPECT_EQ(VT_ARRAY | VT_I4, value.type());
    EXPECT_EQ(1U, Platform::SafeArrayAccess(value.get().parray).size());
}

TEST_F(FaultPlanTest, StrangersAreObjectsWithoutAKnownInterface)
{
    faults().failEvery(QStringLiteral("GetList"), Fault::strangers());
    faults().failEvery(QStringLiteral("get_Item"), Fault::strangers());
    Platform::Variant value;
    EXPECT_EQ(S_OK, today->GetList(0, 20, value.out()));
    ASSERT_EQ(VT_ARRAY | VT_DISPATCH, value.type());
    {
        const Platform::SafeArrayAccess access(value.get().parray);
        ASSERT_EQ(1U, access.size());
        EXPECT_FALSE(Orvex::IStory2Ptr(access.as<IDispatch *>()[0]));
    }
    EXPECT_EQ(S_OK, today->get_Item(index(0), value.out()));
    ASSERT_EQ(VT_DISPATCH, value.type());
    EXPECT_TRUE(value.toDispatch());
    EXPECT_FALSE(Orvex::IStory2Ptr(value.toDispatch()));
}

TEST_F(FaultPlanTest, NullElementsAreNullObjects)
{
    faults().failEvery(QStringLiteral("GetList"), Fault::nullElements());
    faults().failEvery(QStringLiteral("get_Item"), Fault::nullElements());
    Platform::Variant value;
    EXPECT_EQ(S_OK, today->GetList(0, 20, value.out()));
    ASSERT_EQ(VT_ARRAY | VT_DISPATCH, value.type());
    {
        const Platform::SafeArrayAccess access(value.get().parray);
        ASSERT_EQ(1U, access.size());
        EXPECT_EQ(nullptr, access.as<IDispatch *>()[0]);
    }
    EXPECT_EQ(S_OK, today->get_Item(index(0), value.out()));
    EXPECT_EQ(VT_DISPATCH, value.type());
    EXPECT_EQ(nullptr, value.get().pdispVal);
}

TEST_F(FaultPlanTest, NullOutValueIsRefusedWhateverIsPlanned)
{
    faults().failCall(1, Fault::wrongType());
    EXPECT_EQ(E_POINTER, today->GetList(0, 1, nullptr));
}

// ---- hanging and delays

TEST_F(FaultPlanTest, HangingCallGoesOnAfterItsTime)
{
    faults().failCall(1, Fault::hang(20));
    const auto began = std::chrono::steady_clock::now();
    LONG count = 0;
    EXPECT_EQ(S_OK, today->get_Count(&count));
    EXPECT_EQ(3, count);
    EXPECT_GE(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(20));
}

TEST_F(FaultPlanTest, ClearWakesAHangingCall)
{
    faults().failCall(1, Fault::hang(600000));
    LONG count = 0;
    std::thread caller([&] { EXPECT_EQ(S_OK, today->get_Count(&count)); });
    EXPECT_TRUE(faults().waitForHang(20000));
    EXPECT_EQ(1, faults().hanging());
    faults().clear();
    caller.join();
    EXPECT_EQ(3, count);
    EXPECT_EQ(0, faults().hanging());
}

TEST_F(FaultPlanTest, NothingElseWaitsForAHangingCall)
{
    faults().failNext(QStringLiteral("IQueue2::get_Count"), Fault::hang(600000));
    LONG count = 0;
    std::thread caller([&] { today->get_Count(&count); });
    EXPECT_TRUE(faults().waitForHang(20000));
    Platform::Variant list;
    EXPECT_EQ(S_OK, today->GetList(0, 3, list.out()));
    EXPECT_EQ(S_OK, first->put_Field(In("title"), In("New")));
    EXPECT_EQ(S_OK, first->Save(VARIANT_FALSE));
    EXPECT_EQ(1, server->triggerLogout());
    faults().clear();
    caller.join();
}

TEST_F(FaultPlanTest, ServerThatGoesWakesAHangingCall)
{
    faults().failCall(1, Fault::hang(600000));
    HRESULT result = S_OK;
    std::thread caller([&] {
        LONG count = 0;
        result = today->get_Count(&count);
    });
    EXPECT_TRUE(faults().waitForHang(20000));
    server.reset();
    caller.join();
    EXPECT_EQ(RPC_E_DISCONNECTED, result);
}

TEST_F(FaultPlanTest, WaitForAHangThatDoesNotComeEnds)
{
    EXPECT_FALSE(faults().waitForHang(1));
}

TEST_F(FaultPlanTest, DelayMakesEveryCallLonger)
{
    faults().delayEveryCall(5000);
    const auto began = std::chrono::steady_clock::now();
    LONG count = 0;
    today->get_Count(&count);
    today->get_Count(&count);
    EXPECT_GE(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(10));
    faults().clear();
}

// ---- queries for interfaces

TEST_F(FaultPlanTest, QueryCanFail)
{
    const IUnknownPtr object = today;
    faults().failNext(QStringLiteral("IQueue2::QueryInterface"), Fault::hresult(E_FAIL));
    void *pointer = &pointer;
    EXPECT_EQ(E_FAIL, object->QueryInterface(__uuidof(Orvex::IQueue), &pointer));
    EXPECT_EQ(nullptr, pointer);
    EXPECT_EQ(S_OK, object->QueryInterface(__uuidof(Orvex::IQueue), &pointer));
    object->Release();

    faults().failNext(QStringLiteral("QueryInterface"), Fault::nullResult());
    EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(__uuidof(Orvex::IQueue), &pointer));
    faults().failNext(QStringLiteral("QueryInterface"), Fault::raise(E_FAIL));
    EXPECT_THROW(object->QueryInterface(__uuidof(Orvex::IQueue), &pointer), _com_error);
}

TEST_F(FaultPlanTest, MemoryCanRunOutInACallAndInAQuery)
{
    server->calls().start();
    faults().failCall(1, Fault::outOfMemory());
    EXPECT_THROW(today->DeleteAll(), std::bad_alloc);
    EXPECT_EQ(3, server->model()->queue(12).value.count);
    EXPECT_EQ(QStringLiteral("IQueue2::DeleteAll() = 0x8007000e"), server->calls().takeTexts().value(0));

    const IUnknownPtr object = today;
    faults().failNext(QStringLiteral("QueryInterface"), Fault::outOfMemory());
    void *pointer = nullptr;
    EXPECT_THROW(object->QueryInterface(__uuidof(Orvex::IQueue), &pointer), std::bad_alloc);
}

TEST_F(FaultPlanTest, QueryIsNoCall)
{
    const IUnknownPtr object = today;
    faults().failCall(1, Fault::hresult(E_FAIL));
    const Orvex::IQueuePtr queried = object;
    EXPECT_TRUE(queried);
    LONG count = 0;
    EXPECT_EQ(E_FAIL, queried->get_Count(&count));
}

// ---- every operation

struct Operation
{
    const char *name;
    std::function<HRESULT()> call;
};

class EveryOperationTest : public FaultPlanTest
{
protected:
    EveryOperationTest();

    std::vector<Operation> operations;
    Platform::Bstr text;
    Platform::Bstr texts[4];
    Platform::Variant value;
    Platform::SafeArray array;
    const Platform::SafeArray data{Platform::SafeArray::ofBytes("x", 1)};
    IDispatchPtr object;
    LONG number = 0;
    LONG numbers[3] = {};
    VARIANT_BOOL truth = VARIANT_FALSE;
    Orvex::QueueIdentifier id = {};
};

EveryOperationTest::EveryOperationTest()
{
    operations = {
        {"ISignon4::Reserved1", [this] { return signon->Reserved1(); }},
        {"ISignon4::get_Connected", [this] { return signon->get_Connected(&truth); }},
        {"ISignon4::Reserved4", [this] { return signon->Reserved4(); }},
        {"ISignon4::Reserved5", [this] { return signon->Reserved5(); }},
        {"ISignon4::GetDirectory", [this] { return signon->GetDirectory(In("."), &object); }},
        {"ISignon4::Search", [this] { return signon->Search(In("{[]}((x))"), &number); }},
        {"ISignon4::StopSearch", [this] { return signon->StopSearch(1); }},
        {"ISignon4::GetStory", [this] { return signon->GetStory(In("NEWS.SPORT.TODAY"), 100, 0, 0, &object); }},
        {"ISignon4::DeleteStory", [this] { return signon->DeleteStory(In("NEWS.SPORT.TODAY"), 101, 12, 0); }},
        {"ISignon4::LoadBlob", [this] { return signon->LoadBlob(In("desk/layout"), array.out(), &number); }},
        {"ISignon4::SaveBlob", [this] { return signon->SaveBlob(In("b"), data.get(), &number); }},
        {"ISignon4::DeleteBlob", [this] { return signon->DeleteBlob(In("b")); }},
        {"ISignon4::GetSystemForm", [this] { return signon->GetSystemForm(In("STORY"), text.out()); }},
        {"ISignon4::Reserved15", [this] { return signon->Reserved15(); }},
        {"ISignon4::get_ServerName", [this] { return signon->get_ServerName(text.out()); }},
        {"ISignon4::GetUserInfo",
         [this] {
             return signon->GetUserInfo(texts[0].out(), texts[1].out(), texts[2].out(), texts[3].out(), &numbers[0],
                                        &numbers[1]);
         }},
        {"ISignon4::LoadUserBlob", [this] { return signon->LoadUserBlob(array.out(), &number); }},
        {"ISignon4::SaveUserBlob", [this] { return signon->SaveUserBlob(data.get(), &number); }},
        {"ISignon4::get_SysReadRate", [this] { return signon->get_SysReadRate(&number); }},
        {"ISignon4::get_SysWordLength", [this] { return signon->get_SysWordLength(&number); }},
        {"IDirectory2::get_Item", [this] { return news->get_Item(index(0), value.out()); }},
        {"IDirectory2::get_Count", [this] { return news->get_Count(&number); }},
        {"IDirectory2::GetList", [this] { return news->GetList(0, 5, value.out()); }},
        {"IDirectory2::get_Name", [this] { return news->get_Name(text.out()); }},
        {"IDirectory2::get_Flags", [this] { return news->get_Flags(&numbers[0], &numbers[1], &numbers[2]); }},
        {"IQueue2::get_Item", [this] { return today->get_Item(index(0), value.out()); }},
        {"IQueue2::get_Count", [this] { return today->get_Count(&number); }},
        {"IQueue2::GetList", [this] { return today->GetList(0, 5, value.out()); }},
        {"IQueue2::get_Name", [this] { return today->get_Name(text.out()); }},
        {"IQueue2::get_Flags", [this] { return today->get_Flags(&numbers[0], &numbers[1], &numbers[2]); }},
        {"IQueue2::get_QueueID", [this] { return today->get_QueueID(&id); }},
        {"IQueue2::get_FormName", [this] { return today->get_FormName(text.out()); }},
        {"IQueue2::get_Update", [this] { return today->get_Update(&truth); }},
        {"IQueue2::put_Update", [this] { return today->put_Update(VARIANT_TRUE); }},
        {"IQueue2::CreateStory", [this] { return today->CreateStory(0, value.out()); }},
        {"IQueue2::Delete", [this] { return today->Delete(index(0)); }},
        {"IStory2::get_StoryName", [this] { return first->get_StoryName(text.out()); }},
        {"IStory2::get_StoryUnique", [this] { return first->get_StoryUnique(text.out()); }},
        {"IStory2::get_FormName", [this] { return first->get_FormName(text.out()); }},
        {"IStory2::get_Field", [this] { return first->get_Field(In("title"), text.out()); }},
        {"IStory2::put_Field", [this] { return first->put_Field(In("title"), In("x")); }},
        {"IStory2::Save", [this] { return first->Save(VARIANT_FALSE); }},
        {"IStory2::IsLocked", [this] { return first->IsLocked(0, &truth); }},
        {"IStory2::get_Section", [this] { return first->get_Section(8, text.out()); }},
        {"IStory2::put_Section", [this] { return first->put_Section(8, In("x")); }},
        {"IStory2::get_SectionXml", [this] { return first->get_SectionXml(8, text.out()); }},
        {"IStory2::put_SectionXml", [this] { return first->put_SectionXml(8, In("<body></body>")); }},
        {"IStory2::Lock", [this] { return first->Lock(1, text.out()); }},
        {"IStory2::Unlock", [this] { return first->Unlock(); }},
        {"IQueue2::DeleteAll", [this] { return today->DeleteAll(); }},
        {"ISignon4::Connect", [this] { return signon->Connect(In("nora"), In("news"), nullptr, 0); }},
        {"ISignon4::Disconnect", [this] { return signon->Disconnect(); }},
    };
}

TEST_F(EveryOperationTest, IsRecordedUnderItsName)
{
    for (const Operation &operation : operations) {
        server->calls().start();
        operation.call();
        const std::vector<Call> calls = server->calls().take();
        ASSERT_EQ(1U, calls.size()) << operation.name;
        EXPECT_EQ(QLatin1String(operation.name), calls[0].name());
    }
}

TEST_F(EveryOperationTest, CanBeMadeToFailByNumberAndByName)
{
    for (const Operation &operation : operations) {
        faults().failCall(1, Fault::hresult(E_FAIL));
        EXPECT_EQ(E_FAIL, operation.call()) << operation.name;
        faults().failNext(QLatin1String(operation.name), Fault::hresult(PurgeLocked));
        EXPECT_EQ(PurgeLocked, operation.call()) << operation.name;
        EXPECT_TRUE(LastError().isSet) << operation.name;
    }
    EXPECT_EQ(3, server->model()->queue(12).value.count);
}

TEST_F(EveryOperationTest, CanRaise)
{
    for (const Operation &operation : operations) {
        faults().failCall(1, Fault::raise(E_FAIL));
        EXPECT_THROW(operation.call(), _com_error) << operation.name;
    }
}

TEST_F(EveryOperationTest, CanHang)
{
    for (const Operation &operation : operations) {
        faults().failCall(1, Fault::hang(1));
        operation.call();
        EXPECT_EQ(0, faults().hanging());
    }
    EXPECT_EQ(static_cast<int>(operations.size()), faults().faultsDone());
}

TEST_F(EveryOperationTest, CanAnswerNothingOrTheWrongThing)
{
    for (const Operation &operation : operations) {
        for (const Fault &fault : {Fault::nullResult(), Fault::wrongType(), Fault::wrongElements(), Fault::strangers(),
                                   Fault::nullElements()}) {
            faults().failCall(1, fault);
            EXPECT_EQ(S_OK, operation.call()) << operation.name;
        }
    }
}

TEST_F(EveryOperationTest, AnswersThatTheServerIsGone)
{
    server.reset();
    for (const Operation &operation : operations)
        EXPECT_EQ(RPC_E_DISCONNECTED, operation.call()) << operation.name;
}

} // namespace Newsroom
