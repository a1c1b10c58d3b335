#include "EditOptions.h"

#include "Failure.h"
#include "Output.h"
#include "SectionEdit.h"
#include "SectionName.h"

namespace Tool {

void EditOptions::declare(CLI::App &verb)
{
    addChoice(verb, "--section", m_section, sectionNames());
    CLI::Option *markup = verb.add_flag("--markup", m_markup, "Edit the body's markup");
    verb.add_flag("--text", m_text, "Edit the body as plain text; other than words goes")->excludes(markup);
}

void EditOptions::check() const
{
    if (sectionNumber(m_section) != StorySection::Body && m_text)
        throw Failure(ExitCode::Usage, QStringLiteral("only the body can be edited as plain text; leave --text out"));
}

void EditOptions::edit(StoryAccess &story, const QString &name, QJsonObject about, Host &host) const
{
    EditForm form = m_markup ? EditForm::Markup : EditForm::Fitting;
    if (m_text)
        form = EditForm::PlainText;
    SectionEdit edit(story, sectionNumber(m_section), form);
    const bool changed = edit.run(QStringLiteral("%1-%2").arg(name, m_section.toLower()));
    if (!host.options.json)
        return host.output.line(changed ? QStringLiteral("saved %1").arg(story.title())
                                        : QStringLiteral("nothing changed in %1").arg(story.title()));
    about.insert(QStringLiteral("section"), m_section.toLower());
    about.insert(QStringLiteral("form"), edit.isMarkup() ? QStringLiteral("markup") : QStringLiteral("text"));
    about.insert(QStringLiteral("saved"), changed);
    host.output.json(about);
}

} // namespace Tool
