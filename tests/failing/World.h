#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <quire/newsroom/Newsroom.h>
#include <quire/session/QuireCOM.h>
#include <quire/story/Story.h>
#include <quire/tree/Queue.h>

#include "support/DebugCapture.h"
#include "support/Text.h"

namespace Failing {

/// Where the library stands when an operation is called.
enum State : unsigned {
    NoSession = 1,    ///< There is no session.
    Unloaded = 2,     ///< There is a session, but the server could not be loaded.
    Disconnected = 4, ///< The server is loaded, nobody is signed on.
    Connected = 8,    ///< Signed on; of the server's objects only the root is at hand.
    Cached = 16,      ///< Signed on; directories, queues, a story and the form are at hand.
};

const char *nameOf(State state);

/// The library on a stand-in of its own, made anew for each case, with what the operations are called on. When it goes
/// everything goes: session, searcher, notices, forms.
class World
{
public:
    using Prepare = void (*)(World &);

    /// Signs on, has \a prepare (may be null) make what the operation is called on, and goes into the state.
    World(State state, Prepare prepare);
    ~World();
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    /// Has the session forget its handles.
    void forgetHandles();
    /// Signs on again if need be and prepares again: for a fresh call after a failed one.
    void renew();

    Quire::QuireCOM &session() { return *Quire::QuireCOM::TheQuireCOM; }
    Newsroom::Server &server() { return *m_server; }
    State state() const { return m_state; }

    /// What must not get lost: the items of the lists, what a story was given and has not saved, who is signed on.
    /// Calls the server.
    QStringList possessions();
    /// The locks that somebody holds, as another thread meets them. A worker may be about to leave them: waits for it.
    QStringList heldLocks();
    /// Lets everything go; what is left then, and should not be.
    QStringList leftovers();

    /// \name What operations are called on; made by the Prepare functions
    /// \{
    std::unique_ptr<Quire::Directory> directory;
    std::unique_ptr<Quire::Queue> queue;
    std::unique_ptr<Quire::Story> story;
    Quire::SearchList *search = nullptr; ///< the searcher's
    IDispatchPtr handle;
    Orvex::IStory2Ptr serverStory;
    long searchId = 0;
    bool hasUnsavedText = false;
    /// \}

    /// Plans the fault; its code is shown as H from now on.
    void arm(const std::function<void(Newsroom::FaultPlan &)> &plan, HRESULT code);
    /// To be used in a plan: lets the n-th text or array find no memory. Natively only; elsewhere nothing happens.
    void failAllocation(int n);
    /// No fault happens from now on: whoever looks at what an operation gave calls this first.
    void disarm();
    /// The call that the fault happened to, empty when it did not.
    QString met() const { return m_met; }
    /// An HRESULT in an outcome: 0, H, or the number.
    QString code(long result) const;
    static QString hexadecimal(HRESULT result);

private:
    static QString failedAllocation();
    void connect();
    void enter();
    void fillCaches();
    std::vector<Quire::ItemList *> lists();
    void letGo();

    const FrameworkLog m_log; // keeps it from the output
    const State m_state;
    const Prepare m_prepare;
    const qint64 m_texts;
    const qint64 m_arrays;
    std::unique_ptr<Newsroom::Server> m_server;
    std::shared_ptr<const Newsroom::Census> m_census;
    Newsroom::Registration m_registration;
    const int m_liveAtFirst;
    HRESULT m_code = S_OK;
    QString m_met;
};

/// \name Preparing
/// \{
void signOff(World &world);        ///< the session's handles and system values go
void openDirectory(World &world);  ///< NEWS
void openQueue(World &world);      ///< NEWS.WORLD, loaded; three stories
void openLiveQueue(World &world);  ///< NEWS.LIVE, loaded and watched; three stories
void openStory(World &world);      ///< 211 of NEWS.WORLD; when cached as the next, otherwise not yet found
void openFoundStory(World &world); ///< the same, found; when cached, with a title not yet saved

void keepStories(World &world); ///< stories that were deleted from NEWS.WORLD come back
/// \}

/// What the call gives, or what it raises.
template<typename Call>
QString attempt(World &world, const Call &call)
{
    try {
        return call();
    } catch (const _com_error &error) {
        return QStringLiteral("raised ") + world.code(error.Error());
    } catch (const std::bad_alloc &) {
        return QStringLiteral("out of memory");
    }
}

QString worldPath(); ///< NEWS.WORLD
/// The identifier of a story of NEWS.WORLD, which has 211, 212 and 213.
const Quire::StoryID *storyID();

/// The name as the name of a test, of letters and digits.
std::string testName(const char *name);

/// What an operation gives, in words.
/// \{
QString yes(bool answer);
QString given(const void *pointer); ///< "some" or "none"
QString number(long value);
QString itemsOf(Quire::ItemList &list); ///< how many, and how many of them lack something
QString heldStories(World &world);      ///< the stories that the server has in NEWS.WORLD, by their numbers
/// \}

} // namespace Failing
