#include <gtest/gtest.h>

#include <memory>

#include <quire/platform/SafeArray.h>
#include <quire/platform/System.h>
#include <quire/session/QuireCOM.h>
#include <quire/tree/Queue.h>

#include "failing/StrangeArrays.h"
#include "failing/World.h"
#include "support/SessionFixture.h"
#include "tree/Waiting.h"

// Arrays from a server that is out of its mind: each counts as something, and nothing breaks or is left.

using namespace Quire;

namespace Failing {

namespace {

class StrangeArrays : public SessionTest, public ::testing::WithParamInterface<StrangeArray>
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        connect();
        server.blobArray = GetParam().make;
        server.getList = [](LONG first, LONG, VARIANT *list) {
            list->vt = static_cast<VARTYPE>(VT_ARRAY | VT_DISPATCH);
            list->parray = first == 0 ? GetParam().make() : nullptr;
            return S_OK;
        };
    }

    void TearDown() override
    {
        Queue::useThreading = true;
        SessionTest::TearDown();
        EXPECT_EQ(Platform::liveArrays(), m_arrays);
    }

private:
    const __int64 m_arrays = Platform::liveArrays();
};

using Blob = std::unique_ptr<char, void (*)(char *)>;

} // namespace

TEST_P(StrangeArrays, IsABlobOfSomeSize)
{
    long size = -1;
    const Blob blob(session->LoadBlob(text("LAYOUT"), &size, nullptr), FreeBlob);
    EXPECT_NE(blob, nullptr);
    EXPECT_EQ(size, GetParam().bytes);
}

TEST_P(StrangeArrays, IsAUserBlobOfSomeSize)
{
    long size = -1;
    const Blob blob(session->LoadUserBlob(&size, nullptr), FreeBlob);
    EXPECT_NE(blob, nullptr);
    EXPECT_EQ(size, GetParam().bytes);
}

TEST_P(StrangeArrays, IsADirectoryOfSomeEntries)
{
    const std::unique_ptr<Directory> news(Directory::NewDirectory(text("NEWS")));
    ASSERT_TRUE(news);
    EXPECT_EQ(news->Size(), GetParam().entries);
}

TEST_P(StrangeArrays, IsAQueueOfSomeStories)
{
    Queue::useThreading = false;
    const std::unique_ptr<Directory> mail(Directory::NewDirectory(text("MAIL")));
    ASSERT_TRUE(mail);
    EXPECT_EQ(mail->Size(), GetParam().stories);
}

TEST_P(StrangeArrays, IsAQueueOfSomeStoriesOnAThread)
{
    Queue mail(session->GetCachedDir(text("MAIL")));
    ASSERT_TRUE(comesTrue([&] { return mail.IsComplete(); }));
    EXPECT_EQ(mail.Size(), GetParam().stories);
    EXPECT_EQ(mail.GetError(), 0);
}

INSTANTIATE_TEST_SUITE_P(Each, StrangeArrays, ::testing::ValuesIn(strangeArrays()),
                         [](const ::testing::TestParamInfo<StrangeArray> &each) { return testName(each.param.name); });

} // namespace Failing
