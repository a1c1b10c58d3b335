#pragma once

#include <QStringList>

#include "Command.h"

namespace Tool {

/// `quire completion SHELL`: the script that a shell loads to complete command lines of quire; and, with the words of a
/// command line, what that script asks for. Needs no session.
class CompletionCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;

    const CLI::App *m_app = nullptr;
    QString m_shell;
    QStringList m_words;
};

} // namespace Tool
