#include <gtest/gtest.h>

#include <QByteArray>

#include <limits>

#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>

#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

using namespace Quire;

namespace {

/// A session that is signed on.
class SignedOn : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        connect();
    }
    void TearDown() override
    {
        server.connected = false;
        SessionTest::TearDown();
    }
};

/// The blob's bytes; null when there is none.
QByteArray loaded(char *blob, long size)
{
    if (!blob)
        return QByteArray();
    QByteArray bytes(blob, static_cast<int>(size));
    FreeBlob(blob);
    return bytes;
}

template<typename Operation>
HRESULT raisedBy(Operation operation)
{
    try {
        operation();
    } catch (const _com_error &error) {
        return error.Error();
    }
    return S_OK;
}

} // namespace

// ---- reading rate ---------------------------------------------------------------------------------------------------

TEST_F(SignedOn, GetSysReadRateAsksTheServerOnce)
{
    server.readRate = 200;
    EXPECT_EQ(session->GetSysReadRate(), 200);
    EXPECT_EQ(session->GetSysReadRate(), 200);
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "get_SysReadRate()"}));
}

TEST_F(SignedOn, GetSysReadRateAssumes180ForZeroAndKeepsTheZero)
{
    server.readRate = 0;
    EXPECT_EQ(session->GetSysReadRate(), 180);
    server.readRate = 200;
    EXPECT_EQ(session->GetSysReadRate(), 180);
    EXPECT_EQ(server.count(text("get_SysReadRate()")), 1);
    session->Disconnect();
    connect();
    EXPECT_EQ(session->GetSysReadRate(), 200);
}

TEST_F(SignedOn, GetSysReadRateAssumes180ForANegativeAnswerAndAsksAgain)
{
    server.readRate = -7;
    EXPECT_EQ(session->GetSysReadRate(), 180);
    server.readRate = 150;
    EXPECT_EQ(session->GetSysReadRate(), 150);
    EXPECT_EQ(server.count(text("get_SysReadRate()")), 2);
}

TEST_F(SignedOn, GetSysReadRateKeepsZeroWhenTheServerLeavesItsAnswerAlone)
{
    server.answerReadRate = false;
    EXPECT_EQ(session->GetSysReadRate(), 180);
    EXPECT_EQ(session->GetSysReadRate(), 180);
    EXPECT_EQ(server.count(text("get_SysReadRate()")), 1);
}

TEST_F(SignedOn, GetSysReadRateRaisesAFailureAndAsksAgain)
{
    server.fail(text("get_SysReadRate"), hresult(0x80040405));
    EXPECT_EQ(raisedBy([this] { session->GetSysReadRate(); }), hresult(0x80040405));
    server.mend();
    server.readRate = 210;
    EXPECT_EQ(session->GetSysReadRate(), 210);
}

TEST_F(SignedOn, GetSysReadRateIs180WhenNotConnected)
{
    server.connected = false;
    EXPECT_EQ(session->GetSysReadRate(), 180);
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(SignedOn, GetSysReadRateGivesTheKeptValueWithoutAskingForTheConnection)
{
    server.readRate = 200;
    session->GetSysReadRate();
    server.connected = false;
    server.forgetCalls();
    EXPECT_EQ(session->GetSysReadRate(), 200);
    EXPECT_EQ(server.calls(), QStringList());
}

// ---- word length ----------------------------------------------------------------------------------------------------

TEST_F(SignedOn, GetSysWordLengthAsksTheServerOnEveryCall)
{
    server.wordLength = 6;
    EXPECT_EQ(session->GetSysWordLength(), 6);
    server.wordLength = 7;
    EXPECT_EQ(session->GetSysWordLength(), 7);
    EXPECT_EQ(server.count(text("get_SysWordLength()")), 2);
}

TEST_F(SignedOn, GetSysWordLengthIsZeroForANegativeAnswer)
{
    server.wordLength = -3;
    EXPECT_EQ(session->GetSysWordLength(), 0);
}

TEST_F(SignedOn, GetSysWordLengthGivesZeroAsItIs)
{
    server.wordLength = 0;
    EXPECT_EQ(session->GetSysWordLength(), 0);
}

TEST_F(SignedOn, GetSysWordLengthIsZeroWhenNotConnected)
{
    server.wordLength = 6;
    EXPECT_EQ(session->GetSysWordLength(), 6);
    server.connected = false;
    EXPECT_EQ(session->GetSysWordLength(), 0);
}

TEST_F(SignedOn, GetSysWordLengthRaisesAFailure)
{
    server.fail(text("get_SysWordLength"), hresult(0x80040405));
    EXPECT_EQ(raisedBy([this] { session->GetSysWordLength(); }), hresult(0x80040405));
}

// ---- system forms ---------------------------------------------------------------------------------------------------

TEST_F(SignedOn, GetSystemFormGivesTheServersForm)
{
    server.form = text("<form>");
    QString form = text("before");
    session->GetSystemForm(text("RUNDOWN"), form);
    EXPECT_EQ(form, text("<form>"));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "GetSystemForm(RUNDOWN)"}));
}

TEST_F(SignedOn, GetSystemFormEmptiesTheFormWhenTheServerGivesNone)
{
    QString form = text("before");
    session->GetSystemForm(text("RUNDOWN"), form);
    EXPECT_TRUE(form.isEmpty());
}

TEST_F(SignedOn, GetSystemFormEmptiesTheFormWhenTheServerRefuses)
{
    server.form = text("<form>");
    server.fail(text("GetSystemForm"), E_FAIL);
    QString form = text("before");
    session->GetSystemForm(text("RUNDOWN"), form);
    EXPECT_TRUE(form.isEmpty());
}

TEST_F(SignedOn, GetSystemFormEmptiesTheFormWhenNotConnected)
{
    server.connected = false;
    QString form = text("before");
    session->GetSystemForm(text("RUNDOWN"), form);
    EXPECT_TRUE(form.isEmpty());
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(SignedOn, GetSystemFormTakesOneStringForNameAndForm)
{
    server.form = text("<form>");
    QString both = text("RUNDOWN");
    session->GetSystemForm(both, both);
    EXPECT_EQ(server.count(text("GetSystemForm(RUNDOWN)")), 1);
    EXPECT_EQ(both, text("<form>"));
}

// ---- user information -----------------------------------------------------------------------------------------------

namespace {

UserInfo filledBefore()
{
    return {text("a"), text("b"), text("c"), text("d"), 1, 2};
}

void expectInfo(const UserInfo &info, const QStringList &expectedTexts, int number1, int number2)
{
    EXPECT_EQ(QStringList({info.text1, info.text2, info.text3, info.text4}), expectedTexts);
    EXPECT_EQ(info.number1, number1);
    EXPECT_EQ(info.number2, number2);
}

} // namespace

TEST_F(SignedOn, GetUserInfoFillsTheRecordInOrder)
{
    server.texts = {text("Ann"), text("MAIL.ANN"), text("desk 4"), text("")};
    server.numbers = {41, -42};
    UserInfo info = filledBefore();
    session->GetUserInfo(info);
    expectInfo(info, texts({"Ann", "MAIL.ANN", "desk 4", ""}), 41, -42);
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "GetUserInfo()"}));
}

TEST_F(SignedOn, GetUserInfoLeavesAFieldWhoseTextIsNull)
{
    server.texts = {QString(), text("mail"), QString(), text("x")};
    UserInfo info = filledBefore();
    session->GetUserInfo(info);
    expectInfo(info, texts({"a", "mail", "c", "x"}), 0, 0);
}

TEST_F(SignedOn, GetUserInfoLeavesNumbersThatTheServerDoesNotAnswer)
{
    server.answerNumbers = false;
    UserInfo info;
    info.number1 = 7;
    info.number2 = 8;
    session->GetUserInfo(info);
    EXPECT_EQ(info.number1, 7);
    EXPECT_EQ(info.number2, 8);
}

TEST_F(SignedOn, GetUserInfoTakesTheNumbersButNoTextsOfAFailedCall)
{
    server.texts = {text("Ann"), text("MAIL.ANN"), text("desk 4"), text("x")};
    server.numbers = {41, 42};
    server.fail(text("GetUserInfo"), E_FAIL);
    UserInfo info = filledBefore();
    session->GetUserInfo(info);
    expectInfo(info, texts({"a", "b", "c", "d"}), 41, 42);
}

TEST_F(SignedOn, GetUserInfoLeavesTheRecordWhenNotConnected)
{
    server.connected = false;
    server.numbers = {41, 42};
    UserInfo info = filledBefore();
    session->GetUserInfo(info);
    expectInfo(info, texts({"a", "b", "c", "d"}), 1, 2);
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

// ---- blobs by name --------------------------------------------------------------------------------------------------

TEST_F(SignedOn, SaveBlobSendsAnArrayOfBytesFromZero)
{
    EXPECT_TRUE(session->SaveBlob(text("layout"), "a\0b\xff", 4));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "SaveBlob(layout, 4 of type 17 from 0)"}));
    EXPECT_EQ(server.blobs.value(text("layout")), QByteArray("a\0b\xff", 4));
}

TEST_F(SignedOn, SaveBlobSendsAnEmptyArrayForSizeZero)
{
    EXPECT_TRUE(session->SaveBlob(text("layout"), "abc", 0));
    EXPECT_TRUE(session->SaveBlob(text("other"), nullptr, 0));
    EXPECT_EQ(server.count(text("SaveBlob(layout, 0 of type 17 from 0)")), 1);
    EXPECT_EQ(server.count(text("SaveBlob(other, 0 of type 17 from 0)")), 1);
}

TEST_F(SignedOn, SaveBlobIsFalseWhenTheArrayCannotBeMade)
{
    EXPECT_FALSE(session->SaveBlob(text("layout"), "abc", -1));
    EXPECT_FALSE(session->SaveBlob(text("layout"), nullptr, 3));
    EXPECT_FALSE(session->SaveBlob(text("layout"), "abc", std::numeric_limits<long>::min()));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "get_Connected()", "get_Connected()"}));
}

TEST_F(SignedOn, SaveBlobIsFalseWhenTheServerRefuses)
{
    server.fail(text("SaveBlob"), hresult(0x80040405));
    EXPECT_FALSE(session->SaveBlob(text("layout"), "abc", 3));
}

TEST_F(SignedOn, SaveBlobIsFalseWhenNotConnected)
{
    server.connected = false;
    EXPECT_FALSE(session->SaveBlob(text("layout"), "abc", 3));
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(SignedOn, LoadBlobGivesBytesSizeAndValue)
{
    server.blobs[text("layout")] = QByteArray("a\0b\xff", 4);
    server.blobValue = -17;
    long size = -1;
    long extra = -1;
    char *blob = session->LoadBlob(text("layout"), &size, &extra);
    EXPECT_EQ(size, 4);
    EXPECT_EQ(extra, -17);
    EXPECT_EQ(loaded(blob, size), QByteArray("a\0b\xff", 4));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "LoadBlob(layout)"}));
}

TEST_F(SignedOn, LoadBlobNeedsNeitherSizeNorValue)
{
    server.blobs[text("layout")] = QByteArray("abc");
    EXPECT_EQ(loaded(session->LoadBlob(text("layout"), nullptr, nullptr), 3), QByteArray("abc"));
}

TEST_F(SignedOn, LoadBlobGivesABufferForAnEmptyBlob)
{
    long size = -1;
    long extra = -1;
    char *blob = session->LoadBlob(text("layout"), &size, &extra);
    EXPECT_NE(blob, nullptr);
    EXPECT_EQ(size, 0);
    FreeBlob(blob);
}

TEST_F(SignedOn, LoadBlobTakesAMissingArrayForAnEmptyBlob)
{
    server.nullBlobs = true;
    server.blobValue = 5;
    long size = -1;
    long extra = -1;
    char *blob = session->LoadBlob(text("layout"), &size, &extra);
    EXPECT_NE(blob, nullptr);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(extra, 5);
    FreeBlob(blob);
}

TEST_F(SignedOn, LoadBlobTakesAnArrayOfAnotherTypeForAnEmptyBlob)
{
    server.blobs[text("layout")] = QByteArray("abc");
    server.blobType = VT_I4;
    long size = -1;
    char *blob = session->LoadBlob(text("layout"), &size, nullptr);
    EXPECT_NE(blob, nullptr);
    EXPECT_EQ(size, 0);
    FreeBlob(blob);
}

TEST_F(SignedOn, LoadBlobIsNullWhenTheServerRefusesAndLeavesSizeAndValue)
{
    server.fail(text("LoadBlob"), hresult(0x8004040B));
    long size = -1;
    long extra = -2;
    EXPECT_EQ(session->LoadBlob(text("layout"), &size, &extra), nullptr);
    EXPECT_EQ(size, -1);
    EXPECT_EQ(extra, -2);
}

TEST_F(SignedOn, LoadBlobIsNullWhenNotConnectedAndLeavesSizeAndValue)
{
    server.connected = false;
    long size = -1;
    long extra = -2;
    EXPECT_EQ(session->LoadBlob(text("layout"), &size, &extra), nullptr);
    EXPECT_EQ(size, -1);
    EXPECT_EQ(extra, -2);
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(SignedOn, ABlobOfManyBytesComesBackAsItWas)
{
    QByteArray bytes(3000000, '\0');
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7);
    EXPECT_TRUE(session->SaveBlob(text("big"), bytes.constData(), bytes.size()));
    long size = 0;
    char *blob = session->LoadBlob(text("big"), &size, nullptr);
    EXPECT_TRUE(loaded(blob, size) == bytes);
}

TEST_F(SignedOn, DeleteBlobPassesTheName)
{
    EXPECT_TRUE(session->DeleteBlob(text("layout")));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "DeleteBlob(layout)"}));
}

TEST_F(SignedOn, DeleteBlobIsFalseWhenTheServerRefuses)
{
    server.fail(text("DeleteBlob"), hresult(0x8004040B));
    EXPECT_FALSE(session->DeleteBlob(text("layout")));
}

TEST_F(SignedOn, DeleteBlobIsFalseWhenNotConnected)
{
    server.connected = false;
    EXPECT_FALSE(session->DeleteBlob(text("layout")));
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST(FreeBlob, TakesNull)
{
    FreeBlob(nullptr);
}

// ---- the user's blob ------------------------------------------------------------------------------------------------

TEST_F(SignedOn, SaveUserBlobSendsAnArrayOfBytesFromZero)
{
    EXPECT_TRUE(session->SaveUserBlob("a\0b", 3));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "SaveUserBlob(3 of type 17 from 0)"}));
    EXPECT_EQ(server.blobs.value(QString()), QByteArray("a\0b", 3));
}

TEST_F(SignedOn, SaveUserBlobSendsAnEmptyArrayForSizeZero)
{
    EXPECT_TRUE(session->SaveUserBlob("a", 0));
    EXPECT_EQ(server.count(text("SaveUserBlob(0 of type 17 from 0)")), 1);
}

TEST_F(SignedOn, SaveUserBlobIsFalseWhenTheArrayCannotBeMade)
{
    EXPECT_FALSE(session->SaveUserBlob("a", -1));
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(SignedOn, SaveUserBlobIsFalseWhenTheServerRefuses)
{
    server.fail(text("SaveUserBlob"), E_FAIL);
    EXPECT_FALSE(session->SaveUserBlob("a", 1));
}

TEST_F(SignedOn, SaveUserBlobIsFalseWhenNotConnected)
{
    server.connected = false;
    EXPECT_FALSE(session->SaveUserBlob("a", 1));
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

TEST_F(SignedOn, LoadUserBlobGivesBytesSizeAndValue)
{
    server.blobs[QString()] = QByteArray("a\0b", 3);
    server.blobValue = 9;
    long size = -1;
    long extra = -1;
    char *blob = session->LoadUserBlob(&size, &extra);
    EXPECT_EQ(extra, 9);
    EXPECT_EQ(loaded(blob, size), QByteArray("a\0b", 3));
    EXPECT_EQ(server.calls(), texts({"get_Connected()", "LoadUserBlob()"}));
}

TEST_F(SignedOn, LoadUserBlobIsNullWhenTheServerRefusesAndLeavesSizeAndValue)
{
    server.fail(text("LoadUserBlob"), E_FAIL);
    long size = -1;
    long extra = -2;
    EXPECT_EQ(session->LoadUserBlob(&size, &extra), nullptr);
    EXPECT_EQ(size, -1);
    EXPECT_EQ(extra, -2);
}

TEST_F(SignedOn, LoadUserBlobIsNullWhenNotConnected)
{
    server.connected = false;
    EXPECT_EQ(session->LoadUserBlob(nullptr, nullptr), nullptr);
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}

// ---- searches -------------------------------------------------------------------------------------------------------

TEST_F(SignedOn, SearchGivesTheServersNumberWithoutAskingForTheConnection)
{
    server.searchId = 12;
    EXPECT_EQ(session->Search(text("{}((storm))")), 12);
    EXPECT_EQ(server.calls(), texts({"Search({}((storm)))"}));
}

TEST_F(SignedOn, SearchIsZeroWhenTheServerRefuses)
{
    server.searchId = 12;
    server.fail(text("Search"), hresult(0x80040406));
    EXPECT_EQ(session->Search(text("((")), 0);
}

TEST_F(SignedOn, SearchReachesAServerThatIsNotConnected)
{
    server.connected = false;
    server.searchId = 12;
    EXPECT_EQ(session->Search(text("x")), 12);
}

TEST_F(SignedOn, StopSearchPassesTheNumberWithoutAskingForTheConnection)
{
    EXPECT_TRUE(session->StopSearch(12));
    EXPECT_TRUE(session->StopSearch(-3));
    EXPECT_EQ(server.calls(), texts({"StopSearch(12)", "StopSearch(-3)"}));
}

TEST_F(SignedOn, StopSearchOfZeroIsFalseWithoutAServerCall)
{
    EXPECT_FALSE(session->StopSearch(0));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SignedOn, StopSearchIsFalseWhenTheServerRefuses)
{
    server.fail(text("StopSearch"), E_FAIL);
    EXPECT_FALSE(session->StopSearch(12));
}

#ifndef Q_OS_WIN
TEST_F(SignedOn, NativeOnlyStopSearchTakesTheLow32BitsOfALong)
{
    EXPECT_FALSE(session->StopSearch(0x100000000L));
    EXPECT_TRUE(session->StopSearch(0x100000005L));
    EXPECT_EQ(server.calls(), texts({"StopSearch(5)"}));
}

TEST_F(SignedOn, NativeOnlySaveBlobIsFalseForMoreThan32BitsOfBytes)
{
    EXPECT_FALSE(session->SaveBlob(text("layout"), "abc", 0x100000003L));
    EXPECT_EQ(server.calls(), texts({"get_Connected()"}));
}
#endif

// ---- not loaded -----------------------------------------------------------------------------------------------------

TEST_F(SessionTest, PassThroughOperationsAreEmptyWhenNotLoaded)
{
    unload();
    QString form = text("before");
    UserInfo info = filledBefore();
    session->GetSystemForm(text("X"), form);
    session->GetUserInfo(info);
    EXPECT_TRUE(form.isEmpty());
    expectInfo(info, texts({"a", "b", "c", "d"}), 1, 2);
    EXPECT_EQ(session->GetSysReadRate(), 180);
    EXPECT_EQ(session->GetSysWordLength(), 0);
    EXPECT_FALSE(session->SaveBlob(text("X"), "a", 1));
    EXPECT_EQ(session->LoadBlob(text("X"), nullptr, nullptr), nullptr);
    EXPECT_FALSE(session->DeleteBlob(text("X")));
    EXPECT_FALSE(session->SaveUserBlob("a", 1));
    EXPECT_EQ(session->LoadUserBlob(nullptr, nullptr), nullptr);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SessionTest, SearchesRaiseWhenNotLoaded)
{
    unload();
    EXPECT_EQ(raisedBy([this] { session->Search(text("x")); }), E_POINTER);
    EXPECT_EQ(raisedBy([this] { session->StopSearch(1); }), E_POINTER);
    EXPECT_FALSE(session->StopSearch(0));
}

// ---- labels ---------------------------------------------------------------------------------------------------------

TEST_F(SignedOn, PassThroughCallsRunUnderTheirLabels)
{
    const LockDebugging labels;
    QString form;
    UserInfo info;
    session->GetSysReadRate();
    session->GetSysWordLength();
    session->GetSystemForm(text("X"), form);
    session->GetUserInfo(info);
    session->SaveBlob(text("X"), "a", 1);
    FreeBlob(session->LoadBlob(text("X"), nullptr, nullptr));
    session->DeleteBlob(text("X"));
    session->SaveUserBlob("a", 1);
    FreeBlob(session->LoadUserBlob(nullptr, nullptr));
    session->Search(text("X"));
    session->StopSearch(1);
    QStringList seen;
    const QVector<FakeServer::Call> calls = server.callsWithLocks();
    for (const FakeServer::Call &call : calls) {
        if (call.text != text("get_Connected()"))
            seen.append(call.text.section(QLatin1Char('('), 0, 0) + text(" under ") + call.label);
    }
    EXPECT_EQ(seen, texts({"get_SysReadRate under QuireCOM::GetSysReadRate",
                           "get_SysWordLength under QuireCOM::GetSysWordLength",
                           "GetSystemForm under QuireCOM::GetSystemForm", "GetUserInfo under QuireCOM::GetUserInfo",
                           "SaveBlob under QuireCOM::SaveBlob", "LoadBlob under QuireCOM::LoadBlob",
                           "DeleteBlob under QuireCOM::DeleteBlob", "SaveUserBlob under QuireCOM::SaveUserBlob",
                           "LoadUserBlob under QuireCOM::LoadUserBlob", "Search under QuireCOM::Search",
                           "StopSearch under QuireCOM::StopSearch"}));
}

TEST_F(SignedOn, ARaisedFailureReleasesTheLock)
{
    server.fail(text("get_SysReadRate"), E_FAIL);
    EXPECT_THROW(session->GetSysReadRate(), _com_error);
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    EXPECT_TRUE(QuireCOM::m_ComMutex.tryLock());
    QuireCOM::m_ComMutex.unlock();
}
