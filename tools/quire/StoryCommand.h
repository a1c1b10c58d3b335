#pragma once

#include "Command.h"

namespace Tool {

class ServerStory;

/// `quire story PATH NUMBER`: a story as people read it, or one of its sections.
class StoryCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;
    void printSection(ServerStory &story, int section, Host &host) const;

    QString m_path;
    QString m_number;
    QString m_section;
    bool m_markup = false;
};

} // namespace Tool
