#pragma once

#include <QStringList>

#include "Command.h"

namespace Tool {

/// `quire set PATH NUMBER FIELD=VALUE...`: changes fields of a story under its lock.
class SetCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;

    QString m_path;
    QString m_number;
    QStringList m_changes;
};

} // namespace Tool
