#pragma once

#include <QString>

#include "Command.h"

namespace Tool {

/// `quire parse FILE`: what the markup toolkit makes of a text. Signs on to nothing.
class ParseCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;
    void tell(Host &host, const char *key, const QString &text) const;

    QString m_file;
    bool m_write = false;
    bool m_text = false;
};

} // namespace Tool
