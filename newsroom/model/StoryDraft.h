#pragma once

/// \file
/// The pending changes of one editor to one story.

#include <QString>
#include <QStringList>

#include <quire/newsroom/model/Story.h>

namespace Newsroom {

/// What an editor has put but not saved. A value that the editor's story object keeps (Model::edit() makes it,
/// Model::save() commits it); dropping it drops the changes. Not locked: one thread at a time.
///
/// It shows its editor the story as it was at the first put with the changes on top. Only what was put is written on
/// save, so that two editors of different fields of one story do not undo each other.
class StoryDraft
{
public:
    StoryDraft() = default;
    /// Nothing has been put yet.
    explicit StoryDraft(StoryPointer base);

    /// The revision that the draft started from; null for a default-constructed draft.
    const StoryPointer &base() const { return m_base; }
    /// Whether nothing was put.
    bool isEmpty() const { return m_sections == 0 && m_fields.isEmpty(); }

    /// The story with the changes.
    const StoryText &text() const { return m_text; }
    /// As Story::markup() and Story::plain(), with the changes; identifier and revision are those of the base.
    QString markup(qint32 sections) const;
    /// The same in plain form, see plainOf().
    QString plain(qint32 sections) const;
    /// As Story::name(), with the changes.
    QString name() const;

    /// Puts sections in markup form, see StoryText::putMarkup(); a refusal leaves the draft as it was.
    Refusal putMarkup(qint32 sections, const QString &text);
    /// Puts the body or the fields in plain form, see StoryText::putPlain().
    Refusal putPlain(qint32 sections, const QString &text);
    /// Puts the stored value of one field, which is appended when the story has none of that name (letter case is
    /// ignored). InvalidArgument for an empty name or one with control characters.
    Refusal putField(const QString &id, const QString &value);

    /// Writes what was put over \a target, in the order sections, then fields.
    void applyTo(StoryText *target) const;

private:
    StoryPointer m_base;
    StoryText m_text;
    qint32 m_sections = 0; ///< Bits of the sections that were put.
    QStringList m_fields;  ///< Names of the fields that were put one by one, since the last put of the fields section.

    void noteSections(qint32 sections);
};

} // namespace Newsroom
