#pragma once

#include "Command.h"

namespace Tool {

/// `quire new PATH [FIELD=VALUE...]`: a new story in a queue.
class NewCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;

    QString m_path;
    QStringList m_changes;
    int m_position = 0; // counted from 1; 0 for the end
};

} // namespace Tool
