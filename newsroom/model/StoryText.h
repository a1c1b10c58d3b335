#pragma once

/// \file
/// What a story says: header, fields and sections, and both their text forms.

#include <QString>
#include <QStringList>
#include <QVector>

#include <quire/newsroom/model/Refusal.h>
#include <quire/newsroom/model/Section.h>
#include <quire/newsroom/model/Zeko.h>

namespace Newsroom {

/// One field of a story: its identifier, its stored value and what else stands on it (urgency, uec, aready).
struct StoryField
{
    QString id;                    ///< The field's identifier.
    QString value;                 ///< The value as it is stored.
    QVector<NameValue> attributes; ///< Without the identifier.

    /// All the same.
    friend bool operator==(const StoryField &a, const StoryField &b)
    {
        return a.id == b.id && a.value == b.value && a.attributes == b.attributes;
    }
};

/// The content of a story apart from its identity. A plain value; cheap to copy (the texts are shared until changed).
///
/// `look`, `body`, `aeset`, `fieldAtts` and `aesetAtts` hold the markup between the section's tags, as it was put.
struct StoryText
{
    QVector<NameValue> meta;    ///< Attributes of the header's meta element, in order (wire, mail, words, rate, ...).
    QVector<StoryField> fields; ///< In order; identifiers differ also ignoring letter case.
    QString look;               ///< The section "look".
    QString body;               ///< The section "body".
    QString aeset;              ///< The section "aeset".
    QString fieldAtts;          ///< The section "field-atts".
    QString aesetAtts;          ///< The section "aeset-atts".

    /// The header attribute \a name (exact); an empty string when there is none.
    QString metaValue(const QString &name) const;
    /// Sets the header attribute, at its place when it is there, else at the end. An empty value removes it.
    void setMeta(const QString &name, const QString &value);

    /// The field \a id ignoring letter case; null when there is none. Valid until the fields change.
    const StoryField *field(const QString &id) const;
    /// The stored value of a field, ignoring letter case; an empty string when there is none.
    QString fieldValue(const QString &id) const;
    /// Sets the value of a field, keeping its attributes; a field that is not there is appended.
    void setField(const QString &id, const QString &value);

    /// The paragraphs of the body as plain text, one a line, separated by line feeds.
    QString plainBody() const;
    /// Makes \a text the body: each line becomes a paragraph. An empty text makes an empty body.
    void setPlainBody(const QString &text);

    /// The number of words of the body.
    int wordCount() const;

    /// Reads section text in markup form into this story.
    ///
    /// One section: \a text is that element (with or without the prefix "zeko:"), with its tags. Several (or 127):
    /// \a text is a story element or a row of section elements, and each of those named in \a sections that is there is
    /// applied; the others are checked but not applied. The header's storyid and formname are not taken over: they are
    /// the newsroom's.
    ///
    /// Refused, with nothing changed: MarkupSyntax when the text is not well-formed, has another element or none of the
    /// named sections, or one of them twice; InvalidArgument when \a sections names none. \a applied (may be null)
    /// receives the bits of the sections that were there.
    Refusal putMarkup(qint32 sections, const QString &text, qint32 *applied = nullptr);

    /// Reads section text in plain form: the body from lines, the fields from "id: value" lines (a line that starts
    /// with a tab continues the value above it; attributes of fields that are named again stay). Fields that are not
    /// named are removed. InvalidArgument for any other section; MarkupSyntax for a field line without a colon.
    Refusal putPlain(qint32 sections, const QString &text);

    /// Takes the sections with these bits over from another story (of the header, the meta attributes).
    void copySections(qint32 sections, const StoryText &from);
};

/// The identity that a story's header states beside its meta attributes.
struct StoryHeader
{
    QString storyId;  ///< StoryId::headerText().
    QString formName; ///< The story's form.
};

/// The sections \a sections (not 0, see isSectionSet()) of a story in markup form: one section is its element with its
/// tags, several are the elements in ascending order, Section::Whole is the whole story document.
QString markupOf(const StoryText &text, const StoryHeader &header, qint32 sections);

/// The same in plain form: the body as lines, fields and head as "name: value" lines, other sections as they stand;
/// several sections are separated by blank lines, and those that are empty are left out.
QString plainOf(const StoryText &text, const StoryHeader &header, qint32 sections);

/// Reads a whole story document: what markupOf(Whole) writes, or any text that putMarkup() takes. On MarkupSyntax
/// nothing is written.
Refusal readStory(const QString &document, StoryText *text, StoryHeader *header);

} // namespace Newsroom
