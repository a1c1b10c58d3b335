#include "Listing.h"

#include <algorithm>

#include "TextWidth.h"

namespace Tool {

void Listing::add(const QString &caption, const QString &text)
{
    m_entries.emplace_back(visible(caption), visible(text));
}

QStringList Listing::lines(int columns) const
{
    int widest = 0;
    for (const auto &entry : m_entries)
        widest = std::max(widest, textWidth(entry.first));
    const int captionColumns = std::min(widest, columns / 3);
    QStringList lines;
    for (const auto &[caption, text] : m_entries) {
        QString lead = isolate(fitText(caption, captionColumns));
        for (const QString &part : wrapText(text, columns - captionColumns - columnGap)) {
            const QString blanks(columnGap, QLatin1Char(' '));
            lines += part.isEmpty() ? lead : padText(lead, captionColumns) + blanks + isolate(part);
            lead.clear();
        }
    }
    return lines;
}

} // namespace Tool
