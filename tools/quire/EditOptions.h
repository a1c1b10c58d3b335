#pragma once

#include <QJsonObject>
#include <QString>

#include "Command.h"

namespace Tool {

class StoryAccess;

/// What the verbs that open an editor have in common: their options, and what they say in the end.
class EditOptions
{
public:
    /// Adds --section, --markup and --text to \a verb; outlives it.
    void declare(CLI::App &verb);

    /// Failure Usage when the options make no sense.
    void check() const;

    /// Lets the user edit the section of \a story as the options say, and tells of it; \a about goes into the machine
    /// form, \a name is what the file for the editor is called. Raises as SectionEdit does.
    void edit(StoryAccess &story, const QString &name, QJsonObject about, Host &host) const;

private:
    QString m_section = QStringLiteral("body");
    bool m_markup = false;
    bool m_text = false;
};

} // namespace Tool
