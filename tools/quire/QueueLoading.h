#pragma once

#include <memory>

#include <QString>

#include <quire/tree/Queue.h>

#include "Output.h"
#include "Session.h"

namespace Tool {

/// How many stories to load: so many, or all.
struct LoadLimit
{
    int stories; ///< -1 for all.
};

/// The queue called \a path with the stories that \a limit asks for, loaded to the end; Failure NotFound when there is
/// no such queue, Failed when the load breaks off. Shows its progress on a terminal.
std::unique_ptr<Quire::Queue> loadQueue(Session &session, const QString &path, LoadLimit limit, Output &output);

/// Waits until the queue's load has ended, however it ended. \a whole is how many stories to expect, for the progress;
/// 0 when that is not known.
void waitForLoad(Quire::Queue &queue, int whole, Output &output);

/// Failure Failed when the queue's last load broke off.
void checkLoad(Quire::Queue &queue);

} // namespace Tool
