#include "shell/ManualCommand.h"

#include <QDir>

#include "Failure.h"
#include "Files.h"
#include "Output.h"
#include "shell/Manual.h"

namespace Tool {

void ManualCommand::declare(CLI::App &app, Action &chosen)
{
    m_app = &app;
    CLI::App *verb = addVerb(app, "manual", "Print the manual, as a man page",
                             "  quire manual tree | man -l -\n"
                             "  quire manual --into ~/.local/share/man/man1",
                             chosen, [this](Host &host) { run(host); });
    CLI::Option *page = addText(*verb, "VERB", m_verb, "The page of this verb; without it that of quire");
    addFileName(*verb, "--into", m_folder, "DIR  Write all pages into this folder instead")->excludes(page);
}

void ManualCommand::run(Host &host) const
{
    const VerbText program = describe(*m_app);
    if (!m_folder.isNull())
        return writeAll(program, host);
    if (m_verb.isNull())
        return host.output.text(manualPage(program));
    const VerbText *verb = program.find(m_verb);
    if (!verb)
        throw Failure(ExitCode::NotFound,
                      QStringLiteral("there is no verb \"%1\"; quire --help shows them").arg(m_verb));
    host.output.text(manualPage(program, *verb));
}

void ManualCommand::writeAll(const VerbText &program, Host &host) const
{
    const QDir folder(m_folder);
    if (!folder.mkpath(QStringLiteral(".")))
        throw Failure(ExitCode::Failed, QStringLiteral("cannot make the folder %1").arg(m_folder));
    const auto write = [&](const QString &name, const QString &page) {
        writeFile(folder.filePath(name + QLatin1String(".1")), page.toUtf8(), host.output);
    };
    write(program.name, manualPage(program));
    for (const VerbText &verb : program.verbs)
        write(manualName(program, verb), manualPage(program, verb));
}

} // namespace Tool
