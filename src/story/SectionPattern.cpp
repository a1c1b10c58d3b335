#include "SectionPattern.h"

namespace Quire {

namespace {

/// Index of the first \a tag in \a text, -1 when there is none. Looks for \a rarest, which stands at \a offset in the
/// tag, and for the rest of the tag only around it: that passes over a story's text many characters at a time.
int indexOfTag(QStringView text, const QString &tag, QChar rarest, int offset)
{
    const qsizetype last = text.size() - tag.size() + offset;
    for (qsizetype at = text.indexOf(rarest, offset); at >= 0 && at <= last; at = text.indexOf(rarest, at + 1)) {
        if (text.mid(at - offset, tag.size()) == tag)
            return static_cast<int>(at - offset);
    }
    return -1;
}

int indexOfOpening(QStringView text, const QString &tag)
{
    return indexOfTag(text, tag, QLatin1Char('<'), 0);
}

int indexOfClosing(QStringView text, const QString &tag)
{
    return indexOfTag(text, tag, QLatin1Char('/'), 1);
}

} // namespace

SectionPattern::SectionPattern(const QString &tag)
    : m_plain{QLatin1Char('<') + tag, QLatin1String("</") + tag + QLatin1Char('>')}
    , m_prefixed{QLatin1String("<zeko:") + tag, QLatin1String("</zeko:") + tag + QLatin1Char('>')}
{}

bool SectionPattern::find(QStringView text, int *start, int *end) const
{
    bool prefixed = false;
    findWhole(text, start, end, &prefixed);
    return prefixed;
}

bool SectionPattern::findWhole(QStringView text, int *start, int *end, bool *prefixed) const
{
    const Tags &tags = locate(text, start, end);
    *prefixed = &tags == &m_prefixed && *start >= 0;
    // Without a start or an end tag the end is no place in the text; it may lie behind the start all the same.
    const bool closed = *end >= tags.closing.length();
    return closed && *end > *start;
}

QString SectionPattern::extract(QStringView text) const
{
    int start = -1;
    int end = -1;
    bool prefixed = false;
    return findWhole(text, &start, &end, &prefixed) ? text.mid(start, end - start).toString() : QString();
}

/// The tags in the form in which the element is there; the prefixed one when it is not.
const SectionPattern::Tags &SectionPattern::locate(QStringView text, int *start, int *end) const
{
    *start = indexOfOpening(text, m_plain.opening);
    const Tags &tags = *start < 0 ? m_prefixed : m_plain;
    if (*start < 0)
        *start = indexOfOpening(text, m_prefixed.opening);
    // The first end tag of the whole text counts, even one before the start: callers tell by the order of the two.
    *end = *start < 0 ? -1 : indexOfClosing(text, tags.closing) + tags.closing.length();
    return tags;
}

} // namespace Quire
