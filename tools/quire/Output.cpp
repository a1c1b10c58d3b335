#include "Output.h"

#include <limits>

#include <QJsonDocument>
#include <QtGlobal>

#include "Failure.h"
#include "TextWidth.h"

namespace Tool {

namespace {

constexpr int gatheredAtOnce = 32 * 1024;
constexpr int usualColumns = 80;
constexpr int fewestColumns = 20;

// What a terminal takes for changes of its pen.
const QLatin1String bold("\x1b[1m");
const QLatin1String red("\x1b[1;31m");
const QLatin1String cyan("\x1b[36m");
const QLatin1String usual("\x1b[0m");

/// Line feeds and tabulators are a text's own; nothing else may steer the terminal.
QString harmless(const QString &text)
{
    QString result;
    result.reserve(text.size());
    int start = 0;
    for (int i = 0; i <= text.size(); ++i) {
        const bool end = i == text.size();
        if (!end && text.at(i) != QLatin1Char('\n') && text.at(i) != QLatin1Char('\t'))
            continue;
        result += visible(text.mid(start, i - start));
        if (!end)
            result += text.at(i);
        start = i + 1;
    }
    return result;
}

} // namespace

Output::Output()
    : m_output(Stream::Which::Output)
    , m_error(Stream::Which::Error)
{}

QString Output::inLook(Look look, const QString &text) const
{
    if (!m_output.hasColours())
        return text;
    return (look == Look::Heading ? bold : cyan) + text + usual;
}

void Output::line(const QString &text)
{
    m_gathered += text;
    m_gathered += QLatin1Char('\n');
    if (m_gathered.size() >= gatheredAtOnce)
        flush();
}

void Output::text(const QString &text)
{
    m_gathered += m_output.isTerminal() ? harmless(text) : text;
    flush();
}

void Output::document(const QString &text)
{
    this->text(text);
    if (!text.isEmpty() && !text.endsWith(QLatin1Char('\n')))
        line();
}

void Output::table(const QStringList &lines)
{
    bool isHeading = true;
    for (const QString &text : lines) {
        line(isHeading ? inLook(Look::Heading, text) : text);
        isHeading = false;
    }
}

void Output::bytes(const QByteArray &data)
{
    flush();
    check(m_output.writeBytes(data));
}

void Output::json(const QJsonObject &object)
{
    m_gathered += QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
    flush();
}

void Output::jsonLine(const QJsonObject &object)
{
    line(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

void Output::ask(const QString &question)
{
    m_error.write(visible(question));
}

void Output::flush()
{
    QString text;
    text.swap(m_gathered);
    if (!text.isEmpty())
        check(m_output.write(text));
}

void Output::complain(const QString &message) noexcept
{
    try {
        if (!m_gathered.isEmpty())
            m_output.write(m_gathered);
        m_gathered.clear();
        QString lead = QStringLiteral("quire:");
        if (m_error.hasColours())
            lead = red + lead + usual;
        m_error.write(lead + QLatin1Char(' ') + visible(message) + QLatin1Char('\n'));
    } catch (...) { // NOLINT(bugprone-empty-catch): without memory for one line nothing can be said at all
    }
}

void Output::progress(const QString &text)
{
    if (!m_error.isTerminal() || (text.isEmpty() && m_progressWidth == 0))
        return;
    const int terminal = m_error.terminalColumns();
    const QString shown = fitText(visible(text), (terminal > 0 ? terminal : usualColumns) - 1);
    // Blanks over what was longer: not every terminal knows how to clear a line.
    QString written = QLatin1Char('\r') + padText(shown, m_progressWidth);
    m_progressWidth = textWidth(shown);
    if (shown.isEmpty())
        written += QLatin1Char('\r');
    m_error.write(written);
}

int Output::columns() const
{
    bool ok = false;
    const int wished = qEnvironmentVariableIntValue("COLUMNS", &ok);
    if (ok && wished > 0)
        return qMax(wished, fewestColumns);
    if (!m_output.isTerminal())
        return std::numeric_limits<int>::max();
    const int columns = m_output.terminalColumns();
    return columns > 0 ? qMax(columns, fewestColumns) : usualColumns;
}

void Output::check(Stream::Result result)
{
    switch (result) {
    case Stream::Result::Done:
        return;
    case Stream::Result::ReaderGone:
        throw ReaderGone();
    case Stream::Result::Failed:
        throw Failure(ExitCode::Failed, QStringLiteral("cannot write the output: %1").arg(m_output.errorText()));
    }
}

} // namespace Tool
