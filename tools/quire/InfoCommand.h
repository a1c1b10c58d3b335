#pragma once

#include "Command.h"

namespace Tool {

/// `quire info`: which server this is, who is signed on, and the system values.
class InfoCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    static void run(Host &host);
};

} // namespace Tool
