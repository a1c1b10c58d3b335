#include "shell/CompletionCommand.h"

#include <QFile>

#include "Failure.h"
#include "Output.h"
#include "shell/Completion.h"

/// A linker leaves resources of a static library out unless somebody asks for them; the macro wants the global
/// namespace.
static void registerScripts()
{
    Q_INIT_RESOURCE(shell);
}

namespace Tool {

namespace {

const QStringList shells{QStringLiteral("bash"), QStringLiteral("zsh"), QStringLiteral("fish")};

QString script(const QString &shell)
{
    registerScripts();
    QFile file(QStringLiteral(":/quire/shell/quire.%1").arg(shell));
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(ExitCode::Failed, file.errorString());
    return QString::fromUtf8(file.readAll());
}

void print(const Completion &completion, Output &output)
{
    for (const Completion::Word &word : completion.words)
        output.line(word.text + QLatin1Char('\t') + word.description);
    if (completion.files == Completion::Files::Any)
        output.line(QStringLiteral(":files"));
    if (completion.files == Completion::Files::Directories)
        output.line(QStringLiteral(":directories"));
}

} // namespace

void CompletionCommand::declare(CLI::App &app, Action &chosen)
{
    m_app = &app;
    CLI::App *verb = addVerb(app, "completion", "Print what a shell needs to complete quire's words",
                             "  source <(quire completion bash)\n"
                             "  quire completion fish | source",
                             chosen, [this](Host &host) { run(host); });
    addChoice(*verb, "SHELL", m_shell, shells)->required();
    addTexts(*verb, "WORD", m_words, "After --: print what can stand for the last of these");
}

void CompletionCommand::run(Host &host) const
{
    if (!shells.contains(m_shell))
        throw Failure(ExitCode::Usage,
                      QStringLiteral("there are scripts for %1 only").arg(shells.join(QStringLiteral(", "))));
    if (m_words.isEmpty())
        host.output.text(script(m_shell));
    else
        print(complete(describe(*m_app), m_words), host.output);
}

} // namespace Tool
