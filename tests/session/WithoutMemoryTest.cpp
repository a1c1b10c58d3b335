// A session for which there is no memory. What the server allocates on the way is left alone.

#include <functional>
#include <memory>

#include <quire/platform/System.h>

#include "support/NoMemory.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

using namespace Quire;

namespace {

using WithoutMemoryTest = SessionTest;
using Blob = std::unique_ptr<char, void (*)(char *)>;

const StoryID someStory{1, 2, 3};

/// The number of the last allocation of the call.
template<typename Call>
int lastAllocation(const Call &call)
{
    const NoMemory counting;
    call();
    return counting.allocations();
}

/// Operations that give the server a text.
const std::function<void(QuireCOM &)> withText[] = {
    [](QuireCOM &session) { session.Connect(text("HUB"), text("ann"), text("secret"), 0); },
    [](QuireCOM &session) { session.GetStoryDirect(text("MAIL"), &someStory); },
    [](QuireCOM &session) { session.DeleteStoryDirect(text("MAIL"), &someStory); },
    [](QuireCOM &session) {
        QString form;
        session.GetSystemForm(text("RUNDOWN"), form);
    },
    [](QuireCOM &session) { session.LoadBlob(text("LAYOUT"), nullptr, nullptr); },
    [](QuireCOM &session) { session.DeleteBlob(text("LAYOUT")); },
    [](QuireCOM &session) { session.Search(text("QUERY")); },
};

} // namespace

TEST_F(WithoutMemoryTest, TheSessionAndWhatItOwnsAreMadeOrThereIsNone)
{
    QuireCOM::UnloadCOM();
    const int ownsLast = lastAllocation([] { EXPECT_TRUE(QuireCOM::GetQuireCOM(false)); });
    for (const int n : {1, ownsLast}) {
        QuireCOM::UnloadCOM();
        const NoMemory memory(n);
        EXPECT_EQ(QuireCOM::GetQuireCOM(false), nullptr) << n;
        EXPECT_TRUE(memory.hasFailed()) << n;
        EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr) << n;
    }
    session = QuireCOM::GetQuireCOM(false);
    ASSERT_TRUE(session);
    EXPECT_TRUE(session->IsLoaded());
}

TEST_F(WithoutMemoryTest, ABlobIsNull)
{
    connect();
    server.blobs[QStringLiteral("LAYOUT")] = QByteArray("ABC");
    long size = -7;
    const auto load = [&] {
        return Blob(session->LoadBlob(QStringLiteral("LAYOUT"), &size, nullptr), FreeBlob) != nullptr;
    };
    const int last = lastAllocation([&] { EXPECT_TRUE(load()); });
    EXPECT_EQ(size, 3);
    size = -7;
    {
        const NoMemory memory(last);
        EXPECT_FALSE(load());
        EXPECT_TRUE(memory.hasFailed());
    }
    EXPECT_EQ(size, -7);
    session->Disconnect();
}

TEST_F(WithoutMemoryTest, ATextForTheServerThatCannotBeMadeIsRaised)
{
    int number = 0;
    for (const auto &call : withText) {
        connect();
        Platform::failAllocation(1);
        try {
            call(*session);
            ADD_FAILURE() << number << ": nothing raised";
        } catch (const _com_error &error) {
            EXPECT_EQ(error.Error(), E_OUTOFMEMORY) << number;
        }
        Platform::failAllocation(0);
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u) << number;
        ++number;
    }
}
