#pragma once

/// \file
/// Reads story markup into its parts; the model's own.

#include <QString>
#include <QStringList>

#include <quire/newsroom/model/StoryText.h>

namespace Newsroom {

/// Whether there is nothing but blanks in it.
inline bool isBlank(const QString &text)
{
    return text.trimmed().isEmpty();
}

/// Reads one text: a story element or a row of section elements. For one read.
class StoryReader
{
public:
    explicit StoryReader(const QString &text);

    /// Reads every section that is there; \a found receives their bits. False when the text is not well-formed or holds
    /// something else; what \a text and \a header hold then is of no use.
    bool read(StoryText *text, StoryHeader *header, qint32 *found);

    /// The paragraphs of a body's markup, separated by line feeds.
    static QString plainBody(const QString &body);

    /// The lines of \a text; CR LF and CR end a line as LF does.
    static QStringList lines(const QString &text);

private:
    const QString m_text;
    Zeko::Scanner m_scanner;
    Zeko::Balance m_balance;
    StoryText *m_story = nullptr;
    StoryHeader *m_header = nullptr;
    qint32 m_found = 0;
    bool m_inStory = false; ///< Between the tags of a story element.
    bool m_afterStory = false;

    bool openTopLevel(const Zeko::Token &token);
    bool closeStory(const Zeko::Token &token);
    bool readSection(const Zeko::Token &open, qint32 section);
    bool takeSection(qint32 section, const QString &inner);
};

} // namespace Newsroom
