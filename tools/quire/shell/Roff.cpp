#include "shell/Roff.h"

#include <QStringList>

namespace Tool {

Roff::Roff(const QString &name, const QString &source)
{
    line(QStringLiteral(".TH \"%1\" 1 \"\" \"%2\" \"Quire\"").arg(plain(name.toUpper()), plain(source)));
}

QString Roff::plain(QString text)
{
    // In roff these are typographic signs unless they are asked for.
    text.replace(QLatin1Char('\\'), QLatin1String("\\e"));
    text.replace(QLatin1Char('-'), QLatin1String("\\-"));
    text.replace(QLatin1Char('\''), QLatin1String("\\(aq"));
    text.replace(QLatin1Char('`'), QLatin1String("\\(ga"));
    text.replace(QLatin1Char('~'), QLatin1String("\\(ti"));
    text.replace(QLatin1Char('^'), QLatin1String("\\(ha"));
    // A line that begins with a point would be a request.
    return text.startsWith(QLatin1Char('.')) ? QLatin1String("\\&") + text : text;
}

QString Roff::bold(const QString &text)
{
    return QLatin1String("\\fB") + plain(text) + QLatin1String("\\fR");
}

QString Roff::italic(const QString &text)
{
    return QLatin1String("\\fI") + plain(text) + QLatin1String("\\fR");
}

void Roff::section(const char *title)
{
    line(QStringLiteral(".SH %1").arg(QLatin1String(title)));
    m_inSynopsis = false;
}

void Roff::subsection(const QString &title)
{
    line(QStringLiteral(".SS \"%1\"").arg(plain(title)));
}

void Roff::text(const QString &text)
{
    line(QStringLiteral(".PP"));
    line(text);
}

void Roff::synopsis(const QString &text)
{
    if (m_inSynopsis)
        line(QStringLiteral(".br"));
    line(text);
    m_inSynopsis = true;
}

void Roff::item(const QString &term, const QString &meaning)
{
    line(QStringLiteral(".TP"));
    line(term);
    line(meaning);
}

void Roff::example(const QString &lines)
{
    line(QStringLiteral(".PP"));
    line(QStringLiteral(".nf"));
    for (const QString &each : lines.split(QLatin1Char('\n')))
        line(plain(each));
    line(QStringLiteral(".fi"));
}

void Roff::line(const QString &text)
{
    m_page += text + QLatin1Char('\n');
}

} // namespace Tool
