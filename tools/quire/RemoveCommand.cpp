#include "RemoveCommand.h"

#include <memory>
#include <set>
#include <vector>

#include <QFile>
#include <QJsonArray>

#include "Failure.h"
#include "Output.h"
#include "QueueLoading.h"
#include "StoryNumber.h"
#include "Words.h"

namespace Tool {

namespace {

bool answersYes()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return false;
    const QString answer = QString::fromUtf8(input.readLine()).trimmed().toLower();
    return answer == QLatin1String("y") || answer == QLatin1String("yes");
}

} // namespace

void RemoveCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "rm", "Delete stories of a queue",
                             "  quire --newsroom nr rm SHOWS.EVENING.RUNDOWN 1003 1004\n"
                             "  quire --newsroom nr rm DESKS.WORLD '#1'\n"
                             "  quire --newsroom nr rm DESKS.WORLD --all",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "The queue")->required();
    CLI::Option *numbers = addTexts(*verb, "NUMBER", m_numbers, "First number of a story, or '#POSITION'");
    verb->add_flag("--all", m_all, "Delete all stories of the queue; asks first")->excludes(numbers);
    verb->add_flag("--yes", m_yes, "Do not ask");
}

void RemoveCommand::run(Host &host) const
{
    if (m_numbers.isEmpty() && !m_all)
        throw Failure(ExitCode::Usage, QStringLiteral("rm: name the stories, or --all"));
    Session session(host.options, Access::Write);
    session.signOn();
    const TreeEntry queue = session.openQueue(m_path);
    if (m_all)
        removeAll(session, queue, host);
    else
        removeSome(session, queue, host);
}

/// Looks for all of them before the first is deleted. They are deleted by their identifiers: positions may be those of
/// other stories by then.
void RemoveCommand::removeSome(Session &session, const TreeEntry &queue, Host &host) const
{
    std::vector<StoryEntry> stories;
    std::set<qint32> named;
    for (const QString &number : m_numbers) {
        stories.push_back(StoryNumber::parse(number).open(session, queue));
        const qint32 story = stories.back().id.part1;
        if (!named.insert(story).second)
            throw Failure(ExitCode::Usage, QStringLiteral("story %1 is named twice; nothing was deleted").arg(story));
    }
    QJsonArray removed;
    for (const StoryEntry &story : stories) {
        if (!session.com().DeleteStoryDirect(queue.path, &story.id))
            throw Failure(ExitCode::Failed,
                          QStringLiteral("the server did not delete story %1 of %2; somebody may be editing it, or you "
                                         "may not (%3 of %4 were deleted)")
                              .arg(QString::number(story.id.part1), queue.path)
                              .arg(removed.size())
                              .arg(stories.size()));
        session.com().RemoveStoryFromCache(queue.path, &story.id);
        session.keep();
        removed.append(story.id.part1);
        if (!host.options.json)
            host.output.line(QStringLiteral("deleted story %1, %2").arg(QString::number(story.id.part1), story.name));
    }
    if (host.options.json)
        host.output.json({{QStringLiteral("path"), queue.path}, {QStringLiteral("deleted"), removed}});
}

void RemoveCommand::removeAll(Session &session, const TreeEntry &queue, Host &host) const
{
    confirm(queue, host);
    const std::unique_ptr<Quire::Queue> list = loadQueue(session, queue.path, {1}, host.output);
    const bool all = list->DeleteAll();
    session.keep();
    const TreeEntry after = session.openQueue(queue.path);
    const int deleted = queue.count - after.count;
    if (!all)
        throw Failure(ExitCode::Failed,
                      QStringLiteral("the server did not delete all stories of %1: %2 deleted, %3 left")
                          .arg(queue.path, QString::number(deleted), QString::number(after.count)));
    if (host.options.json)
        return host.output.json({{QStringLiteral("path"), queue.path}, {QStringLiteral("count"), deleted}});
    host.output.line(QStringLiteral("deleted %1 of %2")
                         .arg(counted(deleted, QStringLiteral("story"), QStringLiteral("stories")), queue.path));
}

void RemoveCommand::confirm(const TreeEntry &queue, Host &host) const
{
    if (m_yes)
        return;
    host.output.flush();
    host.output.ask(QStringLiteral("Delete all %1 of %2? [y/N] ")
                        .arg(counted(queue.count, QStringLiteral("story"), QStringLiteral("stories")), queue.path));
    if (!answersYes())
        throw Failure(ExitCode::Failed, QStringLiteral("nothing was deleted; answer y, or give --yes"));
}

} // namespace Tool
