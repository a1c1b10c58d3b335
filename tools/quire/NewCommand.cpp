#include "NewCommand.h"

#include <limits>
#include <memory>

#include <quire/story/Story.h>

#include "Failure.h"
#include "FieldChanges.h"
#include "Output.h"
#include "QueueLoading.h"
#include "ServerStory.h"
#include "Words.h"

namespace Tool {

namespace {

Quire::StoryID create(Session &session, const TreeEntry &queue, int position, Output &output)
try {
    // At the end is behind the last story, whichever that is when the server gets there.
    const int place = position > 0 ? position - 1 : std::numeric_limits<int>::max();
    const std::unique_ptr<Quire::Queue> list = loadQueue(session, queue.path, {1}, output);
    const std::unique_ptr<Quire::Story> story(list->CreateStory(place));
    Quire::StoryID id{};
    if (!story || !story->GetID(&id))
        throw Failure(ExitCode::Failed, QStringLiteral("the server made no story in %1").arg(queue.path));
    return id;
} catch (const _com_error &error) {
    throw Failure(ExitCode::Failed,
                  QStringLiteral("cannot make a story in %1: %2").arg(queue.path, reason(error.Error(), false)));
}

} // namespace

void NewCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "new", "Make a story in a queue",
                             "  quire --newsroom nr new SHOWS.EVENING.RUNDOWN title=Weather\n"
                             "  quire --newsroom nr new SHOWS.EVENING.RUNDOWN --at 1 title=Headlines",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "The queue")->required();
    addTexts(*verb, "CHANGE", m_changes, "FIELD=VALUE, as quire set takes them");
    addNumber(*verb, "--at", m_position, 1, "N  Its position, counted from 1; the end without it");
}

void NewCommand::run(Host &host) const
{
    FieldChanges changes(m_changes);
    Session session(host.options, Access::Write);
    session.signOn();
    const TreeEntry queue = session.openQueue(m_path);
    const Quire::StoryID id = create(session, queue, m_position, host.output);
    ServerStory story(session, queue, StoryNumber{id.part1, false});
    if (!m_changes.isEmpty())
        changes.make(story);
    else
        session.keep();
    if (host.options.json)
        return host.output.json({{QStringLiteral("path"), queue.path},
                                 {QStringLiteral("number"), id.part1},
                                 {QStringLiteral("id"), Quire::StoryID2String(id, true)},
                                 {QStringLiteral("changes"), changes.json()}});
    changes.print(host.output);
    host.output.line(QStringLiteral("made story %1 in %2").arg(QString::number(id.part1), queue.path));
}

} // namespace Tool
