#include "EditCommand.h"

#include <QJsonObject>

#include "ServerStory.h"

namespace Tool {

void EditCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "edit", "Edit a section of a story in your editor, under its lock",
                             "  quire --newsroom nr edit SHOWS.EVENING.RUNDOWN 1001\n"
                             "  EDITOR=nano quire --newsroom nr edit WIRES.WORLD '#1' --markup\n"
                             "  quire --newsroom nr edit SPORT.RESULTS.CUP '#1' --section fields",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "The queue")->required();
    addText(*verb, "NUMBER", m_number, "First number of the story, or '#POSITION'")->required();
    m_options.declare(*verb);
}

void EditCommand::run(Host &host) const
{
    const StoryNumber number = StoryNumber::parse(m_number);
    m_options.check();
    Session session(host.options, Access::Write);
    session.signOn();
    ServerStory story(session, m_path, number);
    const qint32 part1 = story.entry().id.part1;
    m_options.edit(story, QString::number(part1),
                   {{QStringLiteral("path"), story.path()}, {QStringLiteral("number"), part1}}, host);
}

} // namespace Tool
