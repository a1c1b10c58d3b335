#include "CatCommand.h"

#include "Output.h"
#include "SectionName.h"
#include "ServerStory.h"

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
    ServerStory story(session, m_path, number);
    const StoryEntry &entry = story.entry();
    const QString markup = story.section(StorySection::Whole, true);
    if (host.options.json)
        return host.output.json({{QStringLiteral("path"), story.path()},
                                 {QStringLiteral("number"), entry.id.part1},
                                 {QStringLiteral("id"), Quire::StoryID2String(entry.id, true)},
                                 {QStringLiteral("name"), entry.name},
                                 {QStringLiteral("form"), entry.form},
                                 {QStringLiteral("markup"), markup}});
    host.output.document(markup);
}

} // namespace Tool
