#pragma once

#include <QStringList>

#include "Command.h"
#include "EditOptions.h"

namespace Tool {

/// `quire local FILE [show|fields|section|set|edit]`: the verbs of stories on a story in a file, without any session.
class LocalCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void show(Host &host) const;
    void showFields(Host &host) const;
    void showSection(Host &host) const;
    void set(Host &host) const;
    void edit(Host &host) const;

    QString m_file;
    QString m_section;
    QStringList m_changes;
    EditOptions m_options;
};

} // namespace Tool
