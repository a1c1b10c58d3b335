#include <quire/session/Dispatch2.h>

#include <gtest/gtest.h>

#include "support/FakeServer.h"
#include "support/QtPrinting.h"
#include "support/SessionFixture.h"

using FakeServer::Kind;
using namespace Quire;

namespace {

class Dispatch2Test : public ::testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(server.liveObjects(), 0); }

    IDispatchPtr handle(Kind kind) { return IDispatchPtr(server.newObject(kind, QStringLiteral("X")), false); }

    FakeServer::Server server;
};

} // namespace

TEST_F(Dispatch2Test, FindsTheDirectoryInTheHandleOfADirectoryOnly)
{
    EXPECT_TRUE(Dispatch2Dir(handle(Kind::Directory)));
    EXPECT_FALSE(Dispatch2Dir(handle(Kind::Queue)));
    EXPECT_FALSE(Dispatch2Dir(handle(Kind::Story)));
    EXPECT_FALSE(Dispatch2Dir(handle(Kind::Bare)));
}

TEST_F(Dispatch2Test, FindsTheQueueInTheHandleOfAQueueOnly)
{
    EXPECT_TRUE(Dispatch2Queue(handle(Kind::Queue)));
    EXPECT_FALSE(Dispatch2Queue(handle(Kind::Directory)));
    EXPECT_FALSE(Dispatch2Queue(handle(Kind::Story)));
    EXPECT_FALSE(Dispatch2Queue(handle(Kind::Bare)));
}

TEST_F(Dispatch2Test, FindsTheStoryInTheHandleOfAStoryOnly)
{
    EXPECT_TRUE(Dispatch2Story(handle(Kind::Story)));
    EXPECT_FALSE(Dispatch2Story(handle(Kind::Directory)));
    EXPECT_FALSE(Dispatch2Story(handle(Kind::Queue)));
    EXPECT_FALSE(Dispatch2Story(handle(Kind::Bare)));
}

TEST_F(Dispatch2Test, GivesEmptyResultsForAnEmptyHandle)
{
    IDispatchPtr empty;
    EXPECT_FALSE(Dispatch2Dir(empty));
    EXPECT_FALSE(Dispatch2Queue(empty));
    EXPECT_FALSE(Dispatch2Story(empty));
}

TEST_F(Dispatch2Test, RaisesWhenTheQueryFailsForAnotherReason)
{
    server.refuse(Kind::Directory, __uuidof(Orvex::IDirectory2), hresult(0x80010108)); // disconnected
    const IDispatchPtr directory = handle(Kind::Directory);
    try {
        Dispatch2Dir(directory);
        ADD_FAILURE() << "nothing raised";
    } catch (const _com_error &error) {
        EXPECT_EQ(error.Error(), hresult(0x80010108));
    }
}

TEST_F(Dispatch2Test, GivesAReferenceOfItsOwn)
{
    IDispatchPtr directory = handle(Kind::Directory);
    {
        const Orvex::IDirectory2Ptr typed = Dispatch2Dir(directory);
        directory = nullptr;
        EXPECT_EQ(server.liveObjects(), 1);
    }
    EXPECT_EQ(server.liveObjects(), 0);
}

TEST_F(Dispatch2Test, MakesNoServerCall)
{
    Dispatch2Dir(handle(Kind::Directory));
    Dispatch2Queue(handle(Kind::Queue));
    EXPECT_EQ(server.calls(), QStringList());
}
