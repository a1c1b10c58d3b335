// A session for which there is no memory. What the server allocates on the way is left alone.

#include <memory>

#include "support/NoMemory.h"
#include "support/SessionFixture.h"

using namespace Quire;

namespace {

using WithoutMemoryTest = SessionTest;
using Blob = std::unique_ptr<char, void (*)(char *)>;

/// The number of the last allocation of the call.
template<typename Call>
int lastAllocation(const Call &call)
{
    const NoMemory counting;
    call();
    return counting.allocations();
}

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
