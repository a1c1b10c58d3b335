#pragma once

#include "Command.h"

namespace Tool {

/// `quire search PATH QUERY`: the stories that the server finds, each shown as it arrives.
class SearchCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;

    QString m_path;
    QString m_query;
    int m_limit = 500;
};

} // namespace Tool
