#pragma once

#include "Command.h"

namespace Tool {

/// `quire error CODE`: the sentence for a server's code. Signs on to nothing.
class ErrorCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;

    QString m_code;
    bool m_login = false;
};

} // namespace Tool
