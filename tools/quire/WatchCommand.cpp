#include "WatchCommand.h"

#include <limits>

#include <QElapsedTimer>
#include <QThread>
#include <QTime>

#include "Colleague.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Notices.h"
#include "Output.h"
#include "QueueWatch.h"
#include "Session.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr unsigned long noticePollMilliseconds = 50;

void print(const QueueWatch &watch, const QueueChange &change, Output &output)
{
    output.line(QStringLiteral("%1  %2  %3  %4 %5")
                    .arg(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")), watch.path(), change.word(),
                         QString::number(change.number), change.name));
}

void printJson(const QueueWatch &watch, const QueueChange &change, Output &output)
{
    output.jsonLine({{QStringLiteral("time"), QTime::currentTime().toString(Qt::ISODateWithMs)},
                     {QStringLiteral("path"), watch.path()},
                     {QStringLiteral("change"), change.word()},
                     {QStringLiteral("number"), change.number},
                     {QStringLiteral("name"), change.name}});
}

} // namespace

void WatchCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "watch", "Print what changes in queues, until Ctrl-C",
                             "  quire watch SHOWS.EVENING.RUNDOWN WIRES.WORLD\n"
                             "  quire watch --busy --seconds 5 SHOWS.EVENING.RUNDOWN",
                             chosen, [this](Host &host) { run(host); });
    addTexts(*verb, "PATH", m_paths, "The queues")->required();
    addSeconds(*verb, "--seconds", m_seconds, "N  End by itself after so many seconds");
    verb->add_flag("--busy", m_busy, "Have somebody work in the built-in newsroom meanwhile");
}

void WatchCommand::run(Host &host) const
{
    const Interrupt interrupt;
    Session session(host.options);
    session.signOn();
    const Notices notices;
    const Watches watches = begin(session, host);
    std::unique_ptr<Colleague> colleague;
    if (m_busy) {
        if (!session.source().model())
            throw Failure(ExitCode::Usage, QStringLiteral("--busy is for the built-in newsroom"));
        colleague = std::make_unique<Colleague>(session.source().model(), m_paths);
    }
    QElapsedTimer time;
    time.start();
    const qint64 end = m_seconds > 0 ? static_cast<qint64>(m_seconds * 1000) : std::numeric_limits<qint64>::max();
    while (!interrupt.isRequested() && time.elapsed() < end) {
        session.source().catchUp();
        follow(watches, host);
        if (notices.isLoggedOut())
            throw Failure(ExitCode::Failed, QStringLiteral("the server has logged you out"));
        QThread::msleep(noticePollMilliseconds);
    }
}

WatchCommand::Watches WatchCommand::begin(Session &session, Host &host) const
{
    Watches watches;
    for (const QString &path : m_paths) {
        watches.push_back(std::make_unique<QueueWatch>(session, path, host.output));
        session.source().follow(path);
        if (!host.options.json)
            host.output.line(QStringLiteral("watching %1, %2")
                                 .arg(watches.back()->path(), counted(watches.back()->size(), QStringLiteral("story"),
                                                                      QStringLiteral("stories"))));
    }
    host.output.flush();
    return watches;
}

/// Prints what has changed by now.
void WatchCommand::follow(const Watches &watches, Host &host) const
{
    for (const std::unique_ptr<QueueWatch> &watch : watches) {
        if (!watch->needsLook())
            continue;
        for (const QueueChange &change : watch->look(host.output))
            host.options.json ? printJson(*watch, change, host.output) : print(*watch, change, host.output);
    }
    host.output.flush();
}

} // namespace Tool
