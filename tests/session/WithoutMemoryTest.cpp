// A session for which there is no memory.

#include <memory>

#include "support/NoMemory.h"
#include "support/SessionFixture.h"

using namespace Quire;

namespace {

using WithoutMemoryTest = SessionTest;
using Blob = std::unique_ptr<char, void (*)(char *)>;

/// Calls until no allocation of the call fails any more; how often the call gave nothing.
template<typename Call>
int timesNothing(const Call &call)
{
    int nothing = 0;
    for (int n = 1;; ++n) {
        const NoMemory memory(n);
        const bool gave = call();
        if (!memory.hasFailed())
            return gave ? nothing : -1;
        nothing += gave ? 0 : 1;
    }
}

} // namespace

TEST_F(WithoutMemoryTest, TheSessionAndWhatItOwnsAreMadeOrThereIsNone)
{
    const int times = timesNothing([] {
        const QuireCOM *const made = QuireCOM::GetQuireCOM(true);
        EXPECT_EQ(made, QuireCOM::TheQuireCOM);
        return made != nullptr;
    });
    EXPECT_GE(times, 2); // the session itself, and its table of handles
    session = QuireCOM::TheQuireCOM;
    EXPECT_TRUE(session->IsLoaded());
}

TEST_F(WithoutMemoryTest, ABlobIsNull)
{
    connect();
    server.blobs[QStringLiteral("LAYOUT")] = QByteArray("ABC");
    const int times = timesNothing([this] {
        long size = -7;
        try {
            const Blob blob(session->LoadBlob(QStringLiteral("LAYOUT"), &size, nullptr), FreeBlob);
            EXPECT_EQ(size, blob ? 3 : -7);
            return blob != nullptr;
        } catch (const std::bad_alloc &) {
            return false; // of the server
        }
    });
    EXPECT_GE(times, 1);
    session->Disconnect();
}
