// Edits a story the way hosts must: takes its lock first, saves, and gives the lock back whatever happened. The second
// story is being edited by somebody else, and the server says by whom.

#include <memory>

#include "Session.h"

namespace {

const int editLock = 1;

/// Changes a field and the text, under the caller's lock. False, with the reason in the story's GetError, when refused.
bool change(Quire::Story &story, const QString &title)
{
    story.SetField("title", title);
    QString body = "<body><p>First line.</p><p>Second line.</p></body>";
    return story.GetError() >= 0 && story.PutSection(8, body, true) && story.Save(true);
}

void edit(Quire::Queue &queue, int index, const QString &title)
{
    const std::unique_ptr<Quire::Story> story(queue.GetStory(index));
    if (!story)
        return print("There is no such story.");
    QString before;
    story->GetField("title", before);
    QString holder;
    if (!story->Lock(editLock, holder))
        return print(QString("\"%1\" cannot be edited: %2.").arg(before, holder));
    const bool changed = change(*story, title);
    const long error = story->GetError();
    story->Unlock();
    if (!changed)
        return print(Quire::getErrorString(error, false));
    QString after;
    story->GetField("title", after);
    print(QString("\"%1\" is now \"%2\".").arg(before, after));
}

} // namespace

int main()
{
    return withSession([](Newsroom::Server &server) {
        server.model()->lockElsewhere(1502, "sports", editLock);
        Quire::Queue queue(Quire::QuireCOM::TheQuireCOM->GetCachedDir("SPORT.FOOTBALL"));
        edit(queue, 0, "Rovers without their captain");
        edit(queue, 1, "Nobody enjoys a draw");
    });
}
