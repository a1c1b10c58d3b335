#include "shell/Manual.h"

#include "Environment.h"
#include "ExitCode.h"
#include "shell/Roff.h"

namespace Tool {

namespace {

const QLatin1String manualSource("quire " QUIRE_VERSION);

QString sentence(const QString &text)
{
    return Roff::plain(text.left(1).toUpper() + text.mid(1) + QLatin1Char('.'));
}

/// What stands in the list of manual pages.
void writeName(Roff &roff, const QString &name, const QString &description)
{
    roff.section("NAME");
    roff.text(Roff::plain(name) + QLatin1String(" \\- ") +
              Roff::plain(description.left(1).toLower() + description.mid(1)));
}

/// "-h, --help" or "--depth N" or "PATH".
QString term(const ArgumentText &argument)
{
    if (!argument.isOption())
        return Roff::italic(argument.names.first());
    QStringList names;
    for (const QString &name : argument.names)
        names += Roff::bold(name);
    const QString value = argument.value.isEmpty() && argument.takesValue ? QStringLiteral("NAME") : argument.value;
    return names.join(QLatin1String(", ")) + (value.isEmpty() ? QString() : QLatin1Char(' ') + Roff::italic(value));
}

void writeArgument(Roff &roff, const ArgumentText &argument)
{
    roff.item(term(argument), argument.choices.isEmpty()
                                  ? sentence(argument.description)
                                  : sentence(QLatin1String("one of ") + argument.choices.join(QLatin1String(", "))));
}

/// " PATH [NUMBER ...]"
QString positionals(const VerbText &verb)
{
    QString text;
    for (const ArgumentText &argument : verb.positionals) {
        QString shown = Roff::italic(argument.names.first());
        if (argument.repeated)
            shown += QLatin1String(" ...");
        text += argument.required ? QLatin1Char(' ') + shown : QStringLiteral(" [%1]").arg(shown);
    }
    return text;
}

QString commandLine(const QString &words, const QString &behind)
{
    return Roff::bold(words) + QLatin1String(" [") + Roff::italic(QStringLiteral("OPTIONS")) + QLatin1Char(']') +
           behind;
}

/// The words that begin the verb's command line: "quire local FILE set".
void writeSynopsis(Roff &roff, const VerbText &program, const VerbText &verb)
{
    roff.section("SYNOPSIS");
    const QString words = program.name + QLatin1Char(' ') + verb.path;
    if (verb.verbs.empty() || !verb.positionals.empty())
        roff.synopsis(commandLine(words, positionals(verb)));
    for (const VerbText &child : verb.verbs)
        roff.synopsis(
            commandLine(words, positionals(verb) + QLatin1Char(' ') + Roff::bold(child.name) + positionals(child)));
}

/// Arguments, options and examples; --help is the whole command line's.
void writeUsage(Roff &roff, const VerbText &verb)
{
    for (const ArgumentText &argument : verb.positionals)
        writeArgument(roff, argument);
    for (const ArgumentText &option : verb.options) {
        if (!option.names.contains(QLatin1String("--help")))
            writeArgument(roff, option);
    }
    if (!verb.examples.isEmpty())
        roff.example(verb.examples);
}

void writeEnvironment(Roff &roff)
{
    roff.section("ENVIRONMENT");
    for (const EnvironmentText &each : environmentTexts)
        roff.item(Roff::bold(QLatin1String(each.name)), sentence(QLatin1String(each.meaning)));
}

void writeExitCodes(Roff &roff)
{
    roff.section("EXIT STATUS");
    for (const ExitCodeText &each : exitCodeTexts)
        roff.item(Roff::bold(QString::number(static_cast<int>(each.code))), sentence(QLatin1String(each.meaning)));
}

QString reference(const QString &page)
{
    return Roff::bold(page) + QLatin1String("(1)");
}

void writeVerbs(Roff &roff, const VerbText &program)
{
    roff.section("VERBS");
    for (const VerbText &verb : program.verbs)
        roff.item(Roff::bold(verb.name), sentence(verb.description) + QLatin1String(" See ") +
                                             reference(manualName(program, verb)) + QLatin1Char('.'));
}

} // namespace

QString manualName(const VerbText &program, const VerbText &verb)
{
    return program.name + QLatin1Char('-') + verb.name;
}

QString manualPage(const VerbText &program)
{
    Roff roff(program.name, manualSource);
    writeName(roff, program.name, program.description.section(QLatin1String(": "), 1));
    roff.section("SYNOPSIS");
    roff.synopsis(commandLine(program.name, QLatin1Char(' ') + Roff::italic(QStringLiteral("VERB")) +
                                                QLatin1String(" [") + Roff::italic(QStringLiteral("ARGUMENTS")) +
                                                QLatin1Char(']')));
    writeVerbs(roff, program);
    roff.section("OPTIONS");
    roff.text(QStringLiteral("They stand before or behind the verb."));
    for (const ArgumentText &option : program.options)
        writeArgument(roff, option);
    writeEnvironment(roff);
    writeExitCodes(roff);
    roff.section("EXAMPLES");
    roff.example(program.examples);
    return roff.page();
}

QString manualPage(const VerbText &program, const VerbText &verb)
{
    const QString name = manualName(program, verb);
    Roff roff(name, manualSource);
    writeName(roff, name, verb.description);
    writeSynopsis(roff, program, verb);
    roff.section("DESCRIPTION");
    roff.text(sentence(verb.description));
    writeUsage(roff, verb);
    for (const VerbText &child : verb.verbs) {
        roff.subsection(child.name);
        roff.text(sentence(child.description));
        writeUsage(roff, child);
    }
    roff.section("SEE ALSO");
    roff.text(reference(program.name) + QLatin1String(", which has the options of all verbs and the exit codes."));
    return roff.page();
}

} // namespace Tool
