#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include <CLI/CLI.hpp>

namespace Tool {

/// An option or a positional argument in words.
struct ArgumentText
{
    QStringList names;   ///< "-h" and "--help"; of a positional its one name, "PATH".
    QString value;       ///< What an option takes, "DIR"; empty for a flag. A positional's is its name.
    QStringList choices; ///< The values it takes, when only some will do.
    QString description; ///< One line.
    bool takesValue = false;
    bool required = false;
    bool repeated = false;

    bool isOption() const { return names.first().startsWith(QLatin1Char('-')); }
};

/// A verb in words, with the verbs of its family: what the help, the completion and the manual have in common. A plain
/// value, read once from the parser, which is the only place where verbs and options are declared.
struct VerbText
{
    QString name; ///< "put"; "quire" for the whole command line.
    QString path; ///< "blob put"; empty for the whole command line.
    QString description;
    QString examples; ///< Lines, indented as in the help.
    std::vector<ArgumentText> positionals;
    std::vector<ArgumentText> options;
    std::vector<VerbText> verbs;

    bool isRoot() const { return path.isEmpty(); }
    /// The verb of the family that is called \a verbName; null when there is none.
    const VerbText *find(const QString &verbName) const;
};

/// Everything that \a app has been told.
VerbText describe(const CLI::App &app);

} // namespace Tool
