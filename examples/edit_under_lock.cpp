// Edits a story the way hosts must: takes its lock first, saves, and gives the lock back whatever happened. The second
// story is being edited by somebody else, and the server says by whom; saving the third raises an error.

#include <memory>

#include "Session.h"

namespace {

const int editLock = 1;
const auto systemError = static_cast<HRESULT>(0x80040409);

/// Holds the lock of a story while it lives, unless somebody else has it.
class EditLock
{
public:
    explicit EditLock(Quire::Story &story)
        : m_story(story)
        , m_isHeld(story.Lock(editLock, m_holder))
    {}
    ~EditLock()
    {
        try {
            if (m_isHeld)
                m_story.Unlock();
        } catch (const _com_error &) {
            // Nothing leaves a destructor; the server frees the lock when the user signs off.
        }
    }
    bool isHeld() const { return m_isHeld; }
    QString holder() const { return m_holder; }

private:
    Q_DISABLE_COPY(EditLock)

    Quire::Story &m_story;
    QString m_holder;
    const bool m_isHeld;
};

/// Changes a field and the text, under the caller's lock. False, with the reason in the story's GetError, when refused.
bool change(Quire::Story &story, const QString &title)
{
    story.SetField("title", title);
    QString body = "<body><p>First line.</p><p>Second line.</p></body>";
    return story.GetError() >= 0 && story.PutSection(8, body, true) && story.Save(true);
}

void edit(Quire::Queue &queue, int index, const QString &title)
try {
    const std::unique_ptr<Quire::Story> story(queue.GetStory(index));
    if (!story)
        return print("There is no such story.");
    QString before;
    story->GetField("title", before);
    const EditLock lock(*story);
    if (!lock.isHeld())
        return print(QString("\"%1\" cannot be edited: %2.").arg(before, lock.holder()));
    if (!change(*story, title))
        return print(Quire::getErrorString(story->GetError(), false));
    QString after;
    story->GetField("title", after);
    print(QString("\"%1\" is now \"%2\".").arg(before, after));
} catch (const _com_error &error) {
    print("Not saved: " + Quire::getErrorString(error.Error(), false));
}

} // namespace

int main()
{
    return withSession([](Newsroom::Server &server) {
        server.model()->lockElsewhere(1502, "sports", editLock);
        Quire::Queue queue(Quire::QuireCOM::TheQuireCOM->GetCachedDir("SPORT.FOOTBALL"));
        edit(queue, 0, "Rovers without their captain");
        edit(queue, 1, "Nobody enjoys a draw");
        server.faults().failNext("IStory2::Save", Newsroom::Fault::raise(systemError));
        edit(queue, 2, "The cup draw");
        const QString holder = server.model()->lockHolder(1503).value;
        print(holder.isEmpty() ? "Nobody holds its lock." : holder + " still holds its lock.");
    });
}
