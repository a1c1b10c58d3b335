// Watches a queue: the server reports that it has changed, and the program looks what is in it now. Here a colleague
// makes the changes; in a host a timer would ask NeedsRefresh.

#include <quire/platform/System.h>

#include "Session.h"

namespace {

void printTitles(Quire::Queue &queue)
{
    print(QString("%1 has %2 stories, the last is \"%3\"")
              .arg(queue.Name())
              .arg(queue.Size())
              .arg(queue.Nth(queue.Size() - 1)->name));
}

/// Waits, for ten seconds at most, until the server has reported a change, and reads the queue anew.
bool waitForChange(Quire::Queue &queue)
{
    for (int tries = 0; tries < 10000; ++tries) {
        if (Quire::QueueUpdateMgr::NeedsRefresh(&queue, true)) {
            queue.Refresh();
            return true;
        }
        Sleep(1);
    }
    return false;
}

/// What a colleague does meanwhile.
void sendWire(Newsroom::Model &model, qint32 queueNumber, const QString &title)
{
    const Newsroom::SessionId colleague = model.signOn("wire", "feed", QString()).value;
    const Newsroom::StoryPointer made = model.createStory(colleague, queueNumber, -1).value;
    Newsroom::StoryDraft draft = model.edit(colleague, made->id().part1).value;
    draft.putField("title", title);
    model.save(colleague, draft);
    model.signOff(colleague);
}

} // namespace

int main()
{
    return withSession([](Newsroom::Server &server) {
        Quire::NotificationInit(nullptr, nullptr, nullptr);
        Quire::Queue queue(Quire::QuireCOM::TheQuireCOM->GetCachedDir("DESKS.WORLD"));
        Quire::QueueUpdateMgr::BeginQueueUpdates(&queue);
        printTitles(queue);
        sendWire(*server.model(), queue.QueueID(), "Tamaru: the cinema opens again");
        if (waitForChange(queue))
            printTitles(queue);
        Quire::QueueUpdateMgr::EndQueueUpdates(&queue);
    });
}
