// Tests a host against the stand-in: a newsroom in a few lines of text, the host's own code run on it, and every call
// of the server failing in turn. With GoogleTest, including <quire/testkit/GoogleTest.h> leads failures to the test.

#include <cstdio>

#include <quire/testkit/TestKit.h>

#include "Rundown.h"

using namespace Quire::TestKit;

namespace {

const char *const newsroomText = R"(
    queue EVENING
      story id=1:1:1
        title: Headlines
      story id=2:1:1
        title: Weather
)";

void showsTheStoriesOfAQueue()
{
    StandIn newsroom(newsroomText);
    newsroom.signOn();
    Rundown rundown;
    QUIRE_SUCCEEDED(rundown.open("EVENING").isEmpty());
    QUIRE_EVENTUALLY(rundown.isLoaded());
    QUIRE_SUCCEEDED(rundown.rows() == 2);
}

void comesThroughWhateverFails()
{
    StandIn newsroom(newsroomText);
    newsroom.signOn();
    const int calls = failEachCall(newsroom, Fault::raise(E_FAIL), [] {
        Quire::QuireCOM::TheQuireCOM->RemoveDirFromCache("EVENING");
        Rundown rundown;
        const bool opened = rundown.open("EVENING").isEmpty();
        QUIRE_EVENTUALLY(!opened || rundown.isLoaded());
    });
    std::printf("came through %s\n", calls > 0 ? "every failing call" : "nothing");
}

} // namespace

int main()
{
    showsTheStoriesOfAQueue();
    comesThroughWhateverFails();
    std::printf("%d failures\n", failureCount());
    return failureCount() > 0 ? 1 : 0;
}
