#pragma once

#include "Command.h"

namespace Quire {
class Directory;
}

namespace Tool {

class Session;

/// `quire ls PATH`: the entries of a directory, or the stories of a queue.
class ListCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;
    void listDirectory(Quire::Directory &directory, Host &host) const;
    void listQueue(Session &session, const QString &path, Host &host) const;
    int limit() const;

    QString m_path;
    QString m_columns;
    QString m_sort;
    int m_limit = 0; // 0: as many as one load gives
    bool m_all = false;
    bool m_csv = false;
};

} // namespace Tool
