#include "CommandLine.h"

#include <algorithm>
#include <new>
#include <string>

#include <QtGlobal>

#include <quire/platform/Automation.h>

#include "BlobCommand.h"
#include "CatCommand.h"
#include "DemoCommand.h"
#include "EditCommand.h"
#include "ErrorCommand.h"
#include "Failure.h"
#include "FormCommand.h"
#include "InfoCommand.h"
#include "ListCommand.h"
#include "LocalCommand.h"
#include "NewCommand.h"
#include "NewsroomCommand.h"
#include "ParseCommand.h"
#include "RemoveCommand.h"
#include "SearchCommand.h"
#include "SetCommand.h"
#include "StoryCommand.h"
#include "TreeCommand.h"
#include "WatchCommand.h"
#include "Words.h"
#include "shell/CompletionCommand.h"
#include "shell/ManualCommand.h"
#include "trace/CallTrace.h"

namespace Tool {

namespace {

constexpr char helpDescription[] = "quire: browse and edit a newsroom from the command line";

constexpr char helpFooter[] = "Without options it signs on to the built-in sample newsroom.\n\n"
                              "Examples:\n"
                              "  quire tree\n"
                              "  quire story WIRES.WORLD '#1'\n"
                              "  quire newsroom import ~/texts nr\n"
                              "  quire --newsroom nr tree --json\n"
                              "  quire error 0x80040405\n\n"
                              "Exit codes:\n";

/// The end of the help.
std::string footer()
{
    QString text = QLatin1String(helpFooter);
    for (const ExitCodeText &each : exitCodeTexts)
        text += QStringLiteral("  %1 %2\n").arg(static_cast<int>(each.code)).arg(QLatin1String(each.brief));
    return text.toStdString() + "\nquire VERB --help tells more of a verb.";
}

/// Leaves out what the parser adds of its own to an option's name ("Excludes: --built-in", ":NONNEGATIVE"): the usage
/// line and the descriptions say it in words.
class HelpFormatter : public CLI::Formatter
{
public:
    std::string make_option_opts(const CLI::Option * /*option*/) const override { return std::string(); }
};

} // namespace

CommandLine::CommandLine()
    : m_app(helpDescription, "quire")
{
    // A path on Windows starts with a drive or a slash: no argument may be taken for an option of the form /x.
    m_app.allow_windows_style_options(false);
    m_app.fallthrough();
    m_app.require_subcommand(0, 1);
    m_app.formatter(std::make_shared<HelpFormatter>());
    m_app.get_formatter()->column_width(24);
    declareOptions();
    add<InfoCommand>();
    add<TreeCommand>();
    add<ListCommand>();
    add<StoryCommand>();
    add<SearchCommand>();
    add<SetCommand>();
    add<EditCommand>();
    add<LocalCommand>();
    add<NewCommand>();
    add<RemoveCommand>();
    add<WatchCommand>();
    add<CatCommand>();
    add<FormCommand>();
    add<BlobCommand>();
    add<ParseCommand>();
    add<ErrorCommand>();
    add<NewsroomCommand>();
    add<DemoCommand>();
    add<CompletionCommand>();
    add<ManualCommand>();
}

CommandLine::~CommandLine() = default;

template<class Verb>
void CommandLine::add()
{
    m_commands.push_back(std::make_unique<Verb>());
    m_commands.back()->declare(m_app, m_chosen);
}

void CommandLine::declareOptions()
{
    m_app.set_help_flag("-h,--help", "Show this help");
    m_app.set_version_flag("--version", "quire " QUIRE_VERSION, "Show the version");
    m_app.footer(footer());
    CLI::Option *newsroom = addFileName(m_app, "--newsroom", m_options.newsroom, "DIR  Open this newsroom folder");
    m_app.add_flag("--built-in", m_options.builtIn, "Use the built-in sample, even beside a real server")
        ->excludes(newsroom);
    addText(m_app, "--user", m_options.user, "NAME  Sign on as this user");
    addText(m_app, "--password", m_options.password, "TEXT  Better: in $QUIRE_PASSWORD");
    addText(m_app, "--server", m_options.server, "NAME  The news server to sign on to");
    m_app.add_flag("--json", m_options.json, "Print the machine form");
    addFileName(m_app, "--trace", m_options.traceFile, "FILE  Write a line for each call to the server");
}

void CommandLine::parse(const QStringList &arguments)
{
    std::vector<std::string> reversed;
    for (const QString &argument : arguments)
        reversed.push_back(protectedArgument(argument));
    std::reverse(reversed.begin(), reversed.end());
    m_app.parse(reversed);
}

void CommandLine::readEnvironment()
{
    if (m_options.password.isNull() && qEnvironmentVariableIsSet("QUIRE_PASSWORD"))
        m_options.password = qEnvironmentVariable("QUIRE_PASSWORD");
    qunsetenv("QUIRE_PASSWORD"); // what is started from here, an editor, need not know it
}

ExitCode CommandLine::run(const QStringList &arguments) noexcept
{
    try {
        const ExitCode code = perform(arguments);
        m_output.flush();
        return code;
    } catch (const Output::ReaderGone &) {
        return ExitCode::Done;
    } catch (const Failure &failure) {
        m_output.complain(failure.message());
        return failure.code();
    } catch (const _com_error &error) {
        m_output.complain(serverFailure(error));
    } catch (const std::bad_alloc &) {
        m_output.complain(QStringLiteral("out of memory"));
    } catch (const std::exception &error) {
        m_output.complain(QString::fromLocal8Bit(error.what()));
    } catch (...) {
        m_output.complain(QStringLiteral("unexpected failure"));
    }
    return ExitCode::Failed;
}

VerbText CommandLine::describe() const
{
    return Tool::describe(m_app);
}

ExitCode CommandLine::perform(const QStringList &arguments)
{
    try {
        parse(arguments);
    } catch (const CLI::CallForHelp &) {
        m_output.text(QString::fromStdString(m_app.help()));
        return ExitCode::Done;
    } catch (const CLI::CallForVersion &version) {
        m_output.line(QString::fromUtf8(version.what()));
        return ExitCode::Done;
    } catch (const CLI::ParseError &error) {
        failUsage(error);
    }
    if (!m_chosen) {
        m_output.text(QString::fromStdString(m_app.help()));
        return ExitCode::Done;
    }
    readEnvironment();
    if (!m_options.traceFile.isNull())
        m_options.trace = std::make_shared<CallTrace>(m_options.traceFile);
    Host host{m_options, m_output};
    m_chosen(host);
    if (m_options.trace) {
        m_output.flush();
        m_options.trace->finish();
    }
    return ExitCode::Done;
}

void CommandLine::failUsage(const CLI::ParseError &error) const
{
    QString verb;
    const CLI::App *app = &m_app;
    while (!app->get_subcommands().empty()) {
        app = app->get_subcommands().front();
        verb += QLatin1Char(' ') + QString::fromStdString(app->get_name());
    }
    QString message = QString::fromUtf8(error.what()).simplified();
    const std::vector<std::string> unknown = m_app.remaining(true);
    if (!unknown.empty()) {
        // Only the first, and of an option only its name: what follows a mistyped --password is a secret.
        const QString argument = plainArgument(unknown.front());
        const bool isLong = argument.startsWith(QLatin1String("--"));
        if (argument.startsWith(QLatin1Char('-')))
            message = QStringLiteral("there is no option \"%1\"")
                          .arg(isLong ? argument.section(QLatin1Char('='), 0, 0) : argument.left(2));
        else
            message = (verb.isEmpty() ? QStringLiteral("there is no verb \"%1\"")
                                      : QStringLiteral("there is no place for \"%1\""))
                          .arg(argument);
    }
    throw Failure(ExitCode::Usage, QStringLiteral("%1 (see: quire%2 --help)").arg(message, verb));
}

} // namespace Tool
