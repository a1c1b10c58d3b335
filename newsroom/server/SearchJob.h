#pragma once

#include <QVector>

#include <quire/newsroom/model/Query.h>
#include <quire/newsroom/model/Story.h>
#include <quire/newsroom/server/ServerCore.h>

namespace Newsroom {

class Session;

/// One running search: looks at its stories on the server's own thread, some at a time, and sends the hits in batches,
/// each as one event with the number of hits found up to then. The last event, which may be the only one and empty,
/// says that the search is finished.
///
/// Held by its session while it runs, and by the step that is queued. stop() may be called from any thread.
class SearchJob : public std::enable_shared_from_this<SearchJob>
{
public:
    SearchJob(const std::shared_ptr<Session> &session, LONG id, Query query, QVector<StoryPointer> stories);

    LONG id() const { return m_id; }

    /// Queues the first step.
    void start();

    /// No event begins after this; one that runs goes on.
    void stop() { m_stopped = true; }

private:
    void postStep();
    void step();
    bool look(int batch);
    void send(Session &session, int count, bool finished);

    const std::shared_ptr<ServerCore> m_core;
    const std::weak_ptr<Session> m_session;
    const LONG m_id;
    const Query m_query;
    const QVector<StoryPointer> m_stories;
    std::atomic<bool> m_stopped{false};

    // Touched by the server's own thread only.
    int m_position = 0;
    QVector<StoryPointer> m_hits; // found, not yet sent
    LONG m_sent = 0;
};

} // namespace Newsroom
