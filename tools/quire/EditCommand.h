#pragma once

#include "Command.h"
#include "EditOptions.h"

namespace Tool {

/// `quire edit PATH NUMBER`: a section of a story in the user's editor, under the story's lock.
class EditCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;

    QString m_path;
    QString m_number;
    EditOptions m_options;
};

} // namespace Tool
