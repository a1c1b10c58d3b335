#include "StoryCommand.h"

#include <QJsonArray>

#include "Output.h"
#include "SectionName.h"
#include "ServerStory.h"
#include "StoryPage.h"

namespace Tool {

namespace {

QJsonObject describe(const ServerStory &story)
{
    return {{QStringLiteral("path"), story.path()},
            {QStringLiteral("number"), story.entry().id.part1},
            {QStringLiteral("name"), story.entry().name}};
}

void printPage(ServerStory &story, Host &host)
{
    const StoryPage page(story);
    if (!host.options.json)
        return page.print(host.output);
    QJsonObject object = page.json();
    const QJsonObject more = describe(story);
    for (auto it = more.constBegin(); it != more.constEnd(); ++it)
        object.insert(it.key(), it.value());
    host.output.json(object);
}

} // namespace

void StoryCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "story", "Show a story: header, fields and text",
                             "  quire story SHOWS.EVENING.RUNDOWN 1003\n"
                             "  quire story WIRES.WORLD '#1' --section body\n"
                             "  quire story WIRES.WORLD '#1' --section fields --markup\n"
                             "  quire story WIRES.WORLD '#1' --json",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "The queue")->required();
    addText(*verb, "NUMBER", m_number, "First number of the story, or '#POSITION'")->required();
    addChoice(*verb, "--section", m_section, sectionNames());
    verb->add_flag("--markup", m_markup, "Print the section, or all, as markup");
}

void StoryCommand::run(Host &host) const
{
    const StoryNumber number = StoryNumber::parse(m_number);
    const bool whole = m_section.isNull();
    const int section = whole ? StorySection::Whole : sectionNumber(m_section);
    Session session(host.options);
    session.signOn();
    ServerStory story(session, m_path, number);
    if (whole && !m_markup)
        printPage(story, host);
    else
        printSection(story, section, host);
}

void StoryCommand::printSection(ServerStory &story, int section, Host &host) const
{
    const QString content = story.section(section, m_markup);
    if (host.options.json) {
        QJsonObject object = describe(story);
        object.insert(QStringLiteral("section"), m_section.isNull() ? QStringLiteral("all") : m_section.toLower());
        object.insert(m_markup ? QStringLiteral("markup") : QStringLiteral("text"), content);
        return host.output.json(object);
    }
    if (section == StorySection::Body && !m_markup)
        StoryPage::printText(content, host.output);
    else
        host.output.document(content);
}

} // namespace Tool
