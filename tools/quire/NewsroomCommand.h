#pragma once

#include <QString>

#include <quire/newsroom/sample/Generated.h>

#include "Command.h"

namespace Newsroom {
class Model;
}

namespace Tool {

/// `quire newsroom import|generate|export|check`: newsroom folders as such.
class NewsroomCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void import(Host &host) const;
    void generate(Host &host) const;
    void exportTo(Host &host) const;
    void save(const Newsroom::Model &model, const QString &what, Host &host) const;
    void check(Host &host) const;

    QString m_source;
    QString m_folder;
    Newsroom::GeneratedSize m_size;
};

} // namespace Tool
