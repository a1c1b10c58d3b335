#pragma once

#include "Command.h"

namespace Tool {

class Session;
struct TreeEntry;

/// `quire rm PATH NUMBER...`, `quire rm PATH --all`: deletes stories.
class RemoveCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;
    void removeSome(Session &session, const TreeEntry &queue, Host &host) const;
    void removeAll(Session &session, const TreeEntry &queue, Host &host) const;
    void confirm(const TreeEntry &queue, Host &host) const;

    QString m_path;
    QStringList m_numbers;
    bool m_all = false;
    bool m_yes = false;
};

} // namespace Tool
