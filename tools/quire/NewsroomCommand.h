#pragma once

#include <QString>

#include "Command.h"

namespace Tool {

/// `quire newsroom import|export|check`: newsroom folders as such.
class NewsroomCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void import(Host &host) const;
    void exportTo(Host &host) const;
    void check(Host &host) const;

    QString m_source;
    QString m_folder;
};

} // namespace Tool
