#pragma once

#include "Command.h"

namespace Tool {

/// `quire demo`: tells the story of a session on the built-in newsroom, and checks every step.
class DemoCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    static void run(Host &host);
};

} // namespace Tool
