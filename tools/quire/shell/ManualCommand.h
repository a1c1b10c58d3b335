#pragma once

#include "Command.h"

namespace Tool {

struct VerbText;

/// `quire manual [VERB]`: the manual as man pages. Needs no session.
class ManualCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;
    void writeAll(const VerbText &program, Host &host) const;

    const CLI::App *m_app = nullptr;
    QString m_verb;
    QString m_folder;
};

} // namespace Tool
