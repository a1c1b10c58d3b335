#include "CatCommand.h"

#include "Output.h"
#include "Session.h"
#include "StoryNumber.h"

namespace Tool {

void CatCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "cat", "Print a story's whole markup",
                             "  quire cat WIRES.WORLD 5024\n"
                             "  quire cat WIRES.WORLD '#1'\n"
                             "  quire cat WIRES.WORLD '#1' --json",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "The queue")->required();
    addText(*verb, "NUMBER", m_number, "First number of the story, or '#POSITION'")->required();
}

void CatCommand::run(Host &host) const
{
    const StoryNumber number = StoryNumber::parse(m_number);
    Session session(host.options);
    session.signOn();
    const TreeEntry queue = session.openQueue(m_path);
    const StoryEntry story = number.open(session, queue);
    const QString markup = wholeMarkup(story);
    if (host.options.json)
        return host.output.json({{QStringLiteral("path"), queue.path},
                                 {QStringLiteral("number"), story.id.part1},
                                 {QStringLiteral("id"), Quire::StoryID2String(story.id, true)},
                                 {QStringLiteral("name"), story.name},
                                 {QStringLiteral("form"), story.form},
                                 {QStringLiteral("markup"), markup}});
    host.output.document(markup);
}

} // namespace Tool
