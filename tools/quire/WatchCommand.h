#pragma once

#include <memory>
#include <vector>

#include "Command.h"

namespace Tool {

class QueueWatch;
class Session;

/// `quire watch PATH...`: prints what changes in queues, until Ctrl-C.
class WatchCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    using Watches = std::vector<std::unique_ptr<QueueWatch>>;

    void run(Host &host) const;
    Watches begin(Session &session, Host &host) const;
    void follow(const Watches &watches, Host &host) const;

    QStringList m_paths;
    double m_seconds = 0; // 0: without end
    bool m_busy = false;
};

} // namespace Tool
