#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include <QStringList>

#include <quire/newsroom/model/Model.h>

namespace Tool {

/// Somebody else who works in the built-in newsroom while it is being watched: signs on as the newsroom's first user
/// and makes, edits and deletes stories of some queues, a few every second. On a thread of its own, for one scope.
class Colleague
{
public:
    Colleague(std::shared_ptr<Newsroom::Model> model, const QStringList &queuePaths);
    ~Colleague();
    Colleague(const Colleague &) = delete;
    Colleague &operator=(const Colleague &) = delete;

private:
    void work();
    void makeStory(Newsroom::SessionId session, int turn);
    void editStory(Newsroom::SessionId session);
    void deleteStory(Newsroom::SessionId session);

    const std::shared_ptr<Newsroom::Model> m_model;
    const QStringList m_paths;
    qint32 m_own = 0; // the story that was made last
    std::atomic<bool> m_leaving{false};
    std::thread m_thread; // last: it uses the others
};

} // namespace Tool
