#pragma once

#include <QTextDocument>
#include <QTextFormat>

namespace Desk {

/// The text of a story as people see and type it, made from the body's markup and turned back into it.
///
/// Paragraphs, breaks, bold, italic, emphasised and underlined text are text here. Whatever else the markup holds
/// stands as a chip, one character that shows the element's name and keeps its markup as it is. So nothing of a story
/// is lost by editing it here.
class BodyDocument : public QTextDocument
{
    Q_OBJECT

public:
    explicit BodyDocument(QObject *parent = nullptr);

    /// Shows the element \a markup.
    void setMarkup(const QString &markup);
    /// The text as an element, as it is now.
    QString markup() const;
    /// Whether \a markup says the same.
    bool shows(const QString &markup) const;
    /// The markup comes back as it was given, but for white space between paragraphs and neighbours of the same style;
    /// otherwise the text is better left alone.
    bool isFaithful() const { return m_faithful; }

private:
    QString m_attributes; // of the body
    bool m_faithful = true;
};

/// What the formats of a BodyDocument keep beside what is seen.
enum BodyProperty {
    RawProperty = QTextFormat::UserProperty + 1, ///< Of a chip: its markup.
    StylesProperty,    ///< Of text: its style elements, the outermost first; those that are still seen count.
    ParagraphProperty, ///< Of a block: the attributes of its "p", if there was one.
    LooseProperty      ///< Of a block: it stood in no "p".
};

/// The kind of text object that chips are.
constexpr int chipObject = QTextFormat::UserObject + 1;

} // namespace Desk
