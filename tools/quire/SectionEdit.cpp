#include "SectionEdit.h"

#include <exception>

#include "BodyText.h"
#include "EditFile.h"
#include "Editor.h"
#include "Failure.h"
#include "SectionName.h"
#include "Words.h"

namespace Tool {

namespace {

/// Says \a what happened, and where the edit is.
[[noreturn]] void failKeeping(const EditFile &file, ExitCode code, QString what)
{
    while (what.endsWith(QLatin1Char('.')))
        what.chop(1);
    throw Failure(code, file.isChanged() ? QStringLiteral("%1; your edit is kept in %2").arg(what, file.path())
                                         : QStringLiteral("%1; nothing was changed").arg(what));
}

} // namespace

SectionEdit::SectionEdit(StoryAccess &story, int section, EditForm form)
    : m_story(story)
    , m_section(section)
    , m_form(form)
{}

QString SectionEdit::load()
{
    const QString markup = m_story.section(m_section, true);
    if (m_section == StorySection::Body)
        m_markup = m_form == EditForm::Markup || (m_form == EditForm::Fitting && !isPlainBody(markup));
    return m_markup ? markup : bodyToText(markup);
}

bool SectionEdit::run(const QString &name)
{
    m_story.lock();
    const bool changed = editAndSave(name);
    m_story.unlock();
    return changed;
}

bool SectionEdit::editAndSave(const QString &name)
{
    const QString before = load();
    EditFile file(name + (m_markup ? QLatin1String(".xml") : QLatin1String(".txt")), before);
    try {
        const bool changed = edit(file, before);
        file.discard();
        return changed;
    } catch (const Failure &failure) {
        failKeeping(file, failure.code(), failure.message());
    } catch (const _com_error &error) {
        failKeeping(file, ExitCode::Failed, serverFailure(error));
    } catch (const std::exception &error) {
        failKeeping(file, ExitCode::Failed, QString::fromLocal8Bit(error.what()));
    }
}

bool SectionEdit::edit(const EditFile &file, const QString &before)
{
    editFile(file.path());
    const QString after = file.read();
    if (after == before)
        return false;
    m_story.putSection(m_section, m_markup ? after : textToBody(after));
    m_story.save();
    return true;
}

} // namespace Tool
