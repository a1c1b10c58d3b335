#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include "Stream.h"

namespace Tool {

/// What a verb prints, and the one place that knows how. Used by the main thread only.
///
/// Texts are gathered and written in large pieces; flush() writes the rest. When the reader has gone (`quire tree |
/// head -1`) printing raises ReaderGone, which ends the verb quietly; any other failure to write raises Failure.
class Output
{
public:
    /// Raised when nobody reads on. Not an error: the program ends as if it had said everything.
    struct ReaderGone
    {};

    Output();
    ~Output() = default;
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// How a part of a drawing looks on a terminal with colours; anywhere else it looks like any other text.
    enum class Look { Heading, Markup };
    /// \a text, whose control characters are visible() already, in that look. The last thing that is done to a text:
    /// what makes the look has no width.
    QString inLook(Look look, const QString &text) const;

    /// One line of text; the line feed is added.
    void line(const QString &text = QString());
    /// A text as it stands; on a terminal its control characters, tabulators and line feeds apart, become visible.
    void text(const QString &text);
    /// The same with a line feed behind it, unless \a text has one at its end or is empty.
    void document(const QString &text);
    /// The lines of a table, the first of which has the headings.
    void table(const QStringList &lines);
    /// Bytes as they stand.
    void bytes(const QByteArray &data);
    /// The machine form of a verb's answer: one JSON document, indented, keys in alphabetical order.
    void json(const QJsonObject &object);
    /// One object on one line, for a verb that goes on and on.
    void jsonLine(const QJsonObject &object);
    /// A question on the standard error output, after which the answer is typed.
    void ask(const QString &question);
    /// Writes what has been gathered.
    void flush();

    /// One line on the standard error output, after "quire: ". Raises nothing: there is nobody left to tell.
    void complain(const QString &message) noexcept;

    /// Shows \a text in place of the last progress, on the standard error output and only if that is a terminal; an
    /// empty text takes it away.
    void progress(const QString &text);

    /// The columns that a drawing may take: the environment variable COLUMNS, else the terminal's, else 80. Into a
    /// file or pipe there is no limit (a large number) unless COLUMNS sets one.
    int columns() const;

private:
    void check(Stream::Result result);

    Stream m_output;
    Stream m_error;
    QString m_gathered;
    int m_progressWidth = 0; // of what progress() has left on the terminal
};

} // namespace Tool
