#include "LocalCommand.h"

#include <QFileInfo>
#include <QJsonArray>

#include "FieldChanges.h"
#include "FileStory.h"
#include "Output.h"
#include "SectionName.h"
#include "StoryPage.h"

namespace Tool {

void LocalCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *family = app.add_subcommand("local", "Show and change a story in a file; needs no session");
    family->footer("Examples:\n"
                   "  quire cat SPORT.RESULTS.CUP '#1' > cup.xml\n"
                   "  quire local cup.xml\n"
                   "  quire local cup.xml section body\n"
                   "  quire local cup.xml set score=2:4\n"
                   "  quire local cup.xml edit");
    family->require_subcommand(0, 1);
    family->callback([this, family, &chosen] {
        if (family->get_subcommands().empty())
            chosen = [this](Host &host) { show(host); };
    });
    addFileName(*family, "FILE", m_file, "The story file")->required();

    addVerb(*family, "show", "Show header, fields and text; the same without a verb", "  quire local cup.xml show",
            chosen, [this](Host &host) { show(host); });
    addVerb(*family, "fields", "Show the fields", "  quire local cup.xml fields --json", chosen,
            [this](Host &host) { showFields(host); });
    CLI::App *section = addVerb(*family, "section", "Print a section's markup", "  quire local cup.xml section body",
                                chosen, [this](Host &host) { showSection(host); });
    addChoice(*section, "NAME", m_section, sectionNames())->required();
    CLI::App *set = addVerb(*family, "set", "Change fields", "  quire local cup.xml set score=2:4 'venue=The park'",
                            chosen, [this](Host &host) { this->set(host); });
    addTexts(*set, "CHANGE", m_changes, "FIELD=VALUE; quire local FILE fields shows them")->required();
    CLI::App *edit = addVerb(*family, "edit", "Edit a section in your editor",
                             "  quire local cup.xml edit\n"
                             "  quire local cup.xml edit --section fields",
                             chosen, [this](Host &host) { this->edit(host); });
    m_options.declare(*edit);
}

void LocalCommand::show(Host &host) const
{
    FileStory story(m_file);
    const StoryPage page(story);
    if (!host.options.json)
        return page.print(host.output);
    QJsonObject object = page.json();
    object.insert(QStringLiteral("file"), m_file);
    host.output.json(object);
}

void LocalCommand::showFields(Host &host) const
{
    FileStory story(m_file);
    const StoryPage page(story);
    if (host.options.json)
        host.output.json({{QStringLiteral("file"), m_file}, {QStringLiteral("fields"), page.fieldsJson()}});
    else
        page.printFields(host.output);
}

void LocalCommand::showSection(Host &host) const
{
    const int number = sectionNumber(m_section);
    FileStory story(m_file);
    const QString markup = story.section(number, true);
    if (host.options.json)
        host.output.json({{QStringLiteral("file"), m_file},
                          {QStringLiteral("section"), m_section.toLower()},
                          {QStringLiteral("markup"), markup}});
    else
        host.output.document(markup);
}

void LocalCommand::set(Host &host) const
{
    FieldChanges changes(m_changes);
    FileStory story(m_file);
    changes.make(story);
    if (host.options.json)
        return host.output.json({{QStringLiteral("file"), m_file}, {QStringLiteral("changes"), changes.json()}});
    changes.print(host.output);
    host.output.line(QStringLiteral("saved %1").arg(story.title()));
}

void LocalCommand::edit(Host &host) const
{
    m_options.check();
    FileStory story(m_file);
    m_options.edit(story, QFileInfo(m_file).completeBaseName(), {{QStringLiteral("file"), m_file}}, host);
}

} // namespace Tool
