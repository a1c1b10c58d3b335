#include "SetCommand.h"

#include "FieldChanges.h"
#include "Output.h"
#include "ServerStory.h"

namespace Tool {

void SetCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "set", "Change fields of a story, under its lock",
                             "  quire --newsroom nr set SHOWS.EVENING.RUNDOWN 1001 title=Headlines\n"
                             "  quire --newsroom nr set SPORT.RESULTS.CUP '#1' score=2:4 'venue=The park'\n"
                             "  quire --newsroom nr set SHOWS.EVENING.RUNDOWN 1001 tape-time=1:20",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "The queue")->required();
    addText(*verb, "NUMBER", m_number, "First number of the story, or '#POSITION'")->required();
    addTexts(*verb, "CHANGE", m_changes, "FIELD=VALUE; quire form shows the fields")->required();
}

void SetCommand::run(Host &host) const
{
    const StoryNumber number = StoryNumber::parse(m_number);
    FieldChanges changes(m_changes);
    Session session(host.options, Access::Write);
    session.signOn();
    ServerStory story(session, m_path, number);
    changes.make(story);
    if (host.options.json)
        return host.output.json({{QStringLiteral("path"), story.path()},
                                 {QStringLiteral("number"), story.entry().id.part1},
                                 {QStringLiteral("changes"), changes.json()}});
    changes.print(host.output);
    host.output.line(QStringLiteral("saved %1").arg(story.title()));
}

} // namespace Tool
