#pragma once

#include <memory>
#include <vector>

#include <QMap>
#include <QString>
#include <QStringList>

#include <quire/tree/Queue.h>

#include "Output.h"
#include "Session.h"

namespace Tool {

/// One difference between two looks at a queue.
struct QueueChange
{
    enum class Kind { Added, Changed, Removed };

    Kind kind;
    int number;
    QString name;

    /// "new", "changed" or "gone".
    QString word() const;
};

/// A queue whose changes the server reports, and what its stories were when it was last looked at. On one thread.
class QueueWatch
{
public:
    /// Reads the queue and has the server report its changes; Failure.
    QueueWatch(Session &session, const QString &path, Output &output);
    /// Ends the reports.
    ~QueueWatch();
    QueueWatch(const QueueWatch &) = delete;
    QueueWatch &operator=(const QueueWatch &) = delete;

    QString path() const;
    int size() const { return m_stories.size(); }
    /// Whether the server has reported a change since this was last asked.
    bool needsLook();
    /// Reads the queue anew and tells what has changed; Failure.
    std::vector<QueueChange> look(Output &output);

private:
    struct Texts
    {
        QString name;
        QString head;
        QString fields;
    };
    using Stories = QMap<int, Texts>; // by number

    Stories read() const;

    std::unique_ptr<Quire::Queue> m_queue;
    Stories m_stories;
};

} // namespace Tool
