#include <quire/newsroom/model/StoryDraft.h>

namespace Newsroom {

StoryDraft::StoryDraft(StoryPointer base)
    : m_base(std::move(base))
    , m_text(m_base->text())
{}

QString StoryDraft::markup(qint32 sections) const
{
    return m_base ? markupOf(m_text, m_base->header(), sections) : QString();
}

QString StoryDraft::plain(qint32 sections) const
{
    return m_base ? plainOf(m_text, m_base->header(), sections) : QString();
}

QString StoryDraft::name() const
{
    return m_base ? Story::nameOf(m_text, m_base->id()) : QString();
}

Refusal StoryDraft::putMarkup(qint32 sections, const QString &text)
{
    qint32 applied = 0;
    const Refusal refusal = m_text.putMarkup(sections, text, &applied);
    noteSections(applied);
    return refusal;
}

Refusal StoryDraft::putPlain(qint32 sections, const QString &text)
{
    const Refusal refusal = m_text.putPlain(sections, text);
    if (refusal == Refusal::None)
        noteSections(sections);
    return refusal;
}

Refusal StoryDraft::putField(const QString &id, const QString &value)
{
    if (id.isEmpty())
        return Refusal::InvalidArgument;
    for (const QChar c : id) {
        if (c.category() == QChar::Other_Control)
            return Refusal::InvalidArgument;
    }
    m_text.setField(id, value);
    if ((m_sections & Section::Fields) == 0 && !m_fields.contains(id, Qt::CaseInsensitive))
        m_fields.append(id);
    return Refusal::None;
}

void StoryDraft::applyTo(StoryText *target) const
{
    target->copySections(m_sections, m_text);
    for (const QString &field : m_fields)
        target->setField(field, m_text.fieldValue(field));
}

void StoryDraft::noteSections(qint32 sections)
{
    m_sections |= sections;
    if ((m_sections & Section::Fields) != 0)
        m_fields.clear();
}

} // namespace Newsroom
