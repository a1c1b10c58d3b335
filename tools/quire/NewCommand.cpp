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

/// Deletes the story that was made. False when it stays.
bool takeBack(Session &session, const TreeEntry &queue, const Quire::StoryID &id)
try {
    if (!session.com().DeleteStoryDirect(queue.path, &id))
        return false;
    session.com().RemoveStoryFromCache(queue.path, &id);
    session.keep();
    return true;
} catch (const Failure &) {
    return false;
} catch (const _com_error &) {
    return false;
}

/// Fails for the reason \a why with the story taken back, and says that it is there when even that fails.
[[noreturn]] void failTakingBack(Session &session, const TreeEntry &queue, const Quire::StoryID &id, ExitCode code,
                                 QString why)
{
    if (takeBack(session, queue, id))
        throw Failure(code, why);
    while (why.endsWith(QLatin1Char('.')))
        why.chop(1);
    throw Failure(code,
                  QStringLiteral("%1; the new story %2 is left in %3").arg(why, QString::number(id.part1), queue.path));
}

/// Sets the fields of the story that was made; it does not stay without them.
void fill(Session &session, const TreeEntry &queue, const Quire::StoryID &id, FieldChanges &changes)
try {
    ServerStory story(session, queue, StoryNumber{id.part1, false});
    changes.make(story);
} catch (const Failure &failure) {
    failTakingBack(session, queue, id, failure.code(), failure.message());
} catch (const _com_error &error) {
    failTakingBack(session, queue, id, ExitCode::Failed, serverFailure(error));
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
    changes.checkNew(queue.path, queue.form);
    const Quire::StoryID id = create(session, queue, m_position, host.output);
    if (!m_changes.isEmpty())
        fill(session, queue, id, changes);
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
