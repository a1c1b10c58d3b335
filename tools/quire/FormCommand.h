#pragma once

#include "Command.h"

namespace Tool {

class Session;

/// `quire form NAME`: which fields a story form shows, and how.
class FormCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;
    void printMarkup(Session &session, Host &host) const;

    QString m_name;
    bool m_markup = false;
};

} // namespace Tool
