#pragma once

#include <QString>

namespace Tool {

/// Writes a man page: roff with the macros of "man". One page, one thread.
///
/// Texts that it takes are roff already: what is to be printed as it stands goes through plain(), bold() or italic().
class Roff
{
public:
    /// \a name is that of the page, such as "quire-tree", \a source what it belongs to, "quire 0.1.0".
    Roff(const QString &name, const QString &source);

    static QString plain(QString text);
    static QString bold(const QString &text);
    static QString italic(const QString &text);

    void section(const char *title);
    void subsection(const QString &title);
    /// A paragraph.
    void text(const QString &text);
    /// One line of a synopsis.
    void synopsis(const QString &text);
    /// A term and what it means, indented.
    void item(const QString &term, const QString &meaning);
    /// Lines as they stand, indented; not roff.
    void example(const QString &lines);

    /// The page so far.
    const QString &page() const { return m_page; }

private:
    void line(const QString &text);

    QString m_page;
    bool m_inSynopsis = false;
};

} // namespace Tool
