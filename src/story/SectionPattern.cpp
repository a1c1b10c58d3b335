#include "SectionPattern.h"

namespace Quire {

SectionPattern::SectionPattern(const QString &tag)
    : m_plain{QLatin1Char('<') + tag, QLatin1String("</") + tag + QLatin1Char('>')}
    , m_prefixed{QLatin1String("<zeko:") + tag, QLatin1String("</zeko:") + tag + QLatin1Char('>')}
{}

bool SectionPattern::find(const QString &text, int *start, int *end) const
{
    return &locate(text, start, end) == &m_prefixed && *start >= 0;
}

QString SectionPattern::extract(const QString &text) const
{
    int start = -1;
    int end = -1;
    const Tags &tags = locate(text, &start, &end);
    // Without an end tag the end is no place in the text; it may lie behind the start all the same.
    const bool closed = end >= tags.closing.length();
    return start >= 0 && closed && end > start ? QString(text.constData() + start, end - start) : QString();
}

/// The tags in the form in which the element is there; the prefixed one when it is not.
const SectionPattern::Tags &SectionPattern::locate(const QString &text, int *start, int *end) const
{
    *start = text.indexOf(m_plain.opening);
    const Tags &tags = *start < 0 ? m_prefixed : m_plain;
    if (*start < 0)
        *start = text.indexOf(m_prefixed.opening);
    // The first end tag of the whole text counts, even one before the start: callers tell by the order of the two.
    *end = *start < 0 ? -1 : text.indexOf(tags.closing) + tags.closing.length();
    return tags;
}

} // namespace Quire
