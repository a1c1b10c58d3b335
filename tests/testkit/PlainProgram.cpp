// A host's test program without any framework. It fails one check on purpose, to see that it counts.

#include <cstdio>

#include <quire/testkit/TestKit.h>

namespace {

void aStoryIsShownInItsQueue()
{
    Quire::TestKit::StandIn newsroom("queue RUNDOWN\n"
                                     "  story id=7\n"
                                     "    title: Headlines\n");
    Quire::QuireCOM *session = newsroom.signOn();
    if (!session)
        return;
    Quire::Queue queue(session->GetCachedDir(QStringLiteral("RUNDOWN")));
    QUIRE_EVENTUALLY(queue.IsComplete());
    QUIRE_SUCCEEDED(queue.Size() == 1);
}

bool aFailureCounts()
{
    QUIRE_SUCCEEDED(static_cast<HRESULT>(0x8004040B));
    return Quire::TestKit::failureCount() == 1;
}

} // namespace

int main()
{
    aStoryIsShownInItsQueue();
    if (Quire::TestKit::failureCount() > 0)
        return 1;
    std::puts("One failure follows, on purpose:");
    return aFailureCounts() ? 0 : 1;
}
