#include "shell/VerbText.h"

#include <algorithm>

namespace Tool {

namespace {

const QLatin1String examplesTitle("Examples:\n");

/// Cuts "DIR" off the description "DIR  Open this newsroom folder".
QString takeValueName(QString &description)
{
    const int gap = description.indexOf(QLatin1String("  "));
    if (gap < 0)
        return QString();
    QString name = description.left(gap);
    description = description.mid(gap + 2);
    return name;
}

/// "quire" of the examples' lines up to the next paragraph.
QString examplesOf(const CLI::App &app)
{
    const QString footer = QString::fromStdString(app.get_footer());
    const int begin = footer.indexOf(examplesTitle);
    return begin < 0 ? QString() : footer.mid(begin + examplesTitle.size()).section(QLatin1String("\n\n"), 0, 0);
}

ArgumentText describeArgument(const CLI::Option &option)
{
    ArgumentText text;
    text.description = QString::fromStdString(option.get_description());
    const QString type = QString::fromStdString(option.get_type_name());
    if (type.contains(QLatin1Char('|')))
        text.choices = type.split(QLatin1Char('|'));
    text.required = option.get_required();
    text.takesValue = option.get_items_expected_max() > 0;
    text.repeated = option.get_items_expected_max() > 1;
    if (option.get_positional()) {
        text.names += QString::fromStdString(option.get_name(true));
        text.value = text.names.first();
        return text;
    }
    for (const std::string &name : option.get_snames())
        text.names += QLatin1Char('-') + QString::fromStdString(name);
    for (const std::string &name : option.get_lnames())
        text.names += QLatin1String("--") + QString::fromStdString(name);
    if (text.takesValue)
        text.value = takeValueName(text.description);
    return text;
}

VerbText describeVerb(const CLI::App &app, const QString &family)
{
    VerbText verb;
    verb.name = QString::fromStdString(app.get_name());
    verb.path = app.get_parent() ? (family + QLatin1Char(' ') + verb.name).trimmed() : QString();
    verb.description = QString::fromStdString(app.get_description());
    for (const CLI::Option *option : app.get_options()) {
        const ArgumentText text = describeArgument(*option);
        (text.isOption() ? verb.options : verb.positionals).push_back(text);
    }
    for (const CLI::App *child : app.get_subcommands(nullptr))
        verb.verbs.push_back(describeVerb(*child, verb.path));
    // A family without examples of its own inherits those of the whole command line.
    if (verb.isRoot() || verb.verbs.empty() || app.get_footer() != app.get_parent()->get_footer())
        verb.examples = examplesOf(app);
    return verb;
}

} // namespace

const VerbText *VerbText::find(const QString &verbName) const
{
    const auto found =
        std::find_if(verbs.begin(), verbs.end(), [&verbName](const VerbText &verb) { return verb.name == verbName; });
    return found == verbs.end() ? nullptr : &*found;
}

VerbText describe(const CLI::App &app)
{
    return describeVerb(app, QString());
}

} // namespace Tool
