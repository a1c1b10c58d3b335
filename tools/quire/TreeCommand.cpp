#include "TreeCommand.h"

#include <QJsonArray>

#include "Output.h"
#include "Session.h"
#include "TreeWalk.h"

namespace Tool {

namespace {

QJsonObject entryJson(const TreeWalk &walk)
{
    const TreeEntry &entry = walk.entry();
    QJsonObject object{{QStringLiteral("path"), entry.path},
                       {QStringLiteral("name"), entry.name()},
                       {QStringLiteral("kind"), entry.kind()},
                       {QStringLiteral("depth"), walk.depth()},
                       {QStringLiteral("flags"), QJsonArray{entry.flags.word1, entry.flags.word2, entry.flags.word3}},
                       {QStringLiteral("marks"), QJsonArray::fromStringList(flagWords(entry.flags, entry.isQueue()))}};
    if (entry.isDirectory())
        object.insert(QStringLiteral("entries"), entry.count);
    if (entry.isQueue()) {
        object.insert(QStringLiteral("stories"), entry.count);
        object.insert(QStringLiteral("form"), entry.form);
        object.insert(QStringLiteral("number"), entry.number);
    }
    return object;
}

QJsonArray storiesJson(const TreeEntry &queue)
{
    QJsonArray stories;
    for (qint32 position = 0; position < queue.count; ++position) {
        const StoryEntry story = readStory(queue, position);
        stories.append(QJsonObject{{QStringLiteral("position"), position + 1},
                                   {QStringLiteral("number"), story.id.part1},
                                   {QStringLiteral("id"), Quire::StoryID2String(story.id, true)},
                                   {QStringLiteral("name"), story.name},
                                   {QStringLiteral("form"), story.form}});
    }
    return stories;
}

} // namespace

void TreeCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "tree", "Draw the directories and queues",
                             "  quire tree\n"
                             "  quire tree SHOWS --depth 1\n"
                             "  quire tree SPORT --stories\n"
                             "  quire tree --json | jq -r '.entries[].path'",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "Where to begin; the root without it");
    addNumber(*verb, "--depth", m_view.levels, 0, "N  Show only so many levels below PATH");
    verb->add_flag("--flags", m_view.flags, "Show the three flag words, hexadecimal");
    verb->add_flag("--stories", m_view.stories, "Show the stories with their numbers");
}

void TreeCommand::run(Host &host) const
{
    Session session(host.options);
    session.signOn();
    const TreeEntry root = session.open(m_path);
    if (host.options.json)
        list(host, root);
    else
        draw(host, root);
}

void TreeCommand::draw(Host &host, const TreeEntry &root) const
{
    const TreeSummary summary = summarize(root, m_view, host.output.columns());
    for (const QString &line : summary.lines)
        host.output.line(line);
    host.output.line();
    host.output.line(summary.totals());
}

void TreeCommand::list(Host &host, const TreeEntry &root) const
{
    QJsonArray entries;
    TreeWalk walk(root, m_view.levels);
    while (walk.next()) {
        QJsonObject entry = entryJson(walk);
        if (m_view.stories && walk.entry().isQueue())
            entry.insert(QStringLiteral("storyList"), storiesJson(walk.entry()));
        entries.append(entry);
    }
    host.output.json({{QStringLiteral("path"), root.path}, {QStringLiteral("entries"), entries}});
}

} // namespace Tool
