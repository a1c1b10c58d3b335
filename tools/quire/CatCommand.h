#pragma once

#include "Command.h"

namespace Tool {

/// `quire cat PATH NUMBER`: a story's whole markup.
class CatCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;

    QString m_path;
    QString m_number;
};

} // namespace Tool
