#include "TreeDrawing.h"

#include <algorithm>

#include "TextWidth.h"

namespace Tool {

namespace {

constexpr int fewestNameColumns = 24;

QString branchOf(const std::vector<bool> &lastOfLevels)
{
    QString branch;
    for (std::size_t level = 0; level < lastOfLevels.size(); ++level) {
        const bool last = lastOfLevels[level];
        if (level + 1 == lastOfLevels.size())
            branch += last ? QStringLiteral("└── ") : QStringLiteral("├── ");
        else
            branch += last ? QStringLiteral("    ") : QStringLiteral("│   ");
    }
    return branch;
}

QString pad(const QString &text, int columns, bool toTheRight)
{
    return toTheRight ? padTextLeft(text, columns) : padText(text, columns);
}

/// Branch and name in \a columns: of a branch that takes more than half only the end is drawn.
QString label(const QString &branch, const QString &name, int columns)
{
    QString shown = branch;
    if (branch.size() > columns / 2 && branch.size() + textWidth(name) > columns)
        shown = QStringLiteral("…") + branch.right(columns / 2 - 1);
    return shown + isolate(fitText(name, columns - textWidth(shown)));
}

} // namespace

void TreeDrawing::add(const std::vector<bool> &lastOfLevels, const QString &name, const QStringList &details,
                      const QString &lead)
{
    QStringList shown;
    for (const QString &detail : details)
        shown += visible(detail);
    m_rows.push_back({branchOf(lastOfLevels) + lead, visible(name), shown});
}

std::vector<int> TreeDrawing::detailWidths() const
{
    std::vector<int> widths;
    for (const Row &row : m_rows) {
        widths.resize(std::max(widths.size(), std::size_t(row.details.size())), 0);
        for (int i = 0; i < row.details.size(); ++i)
            widths[std::size_t(i)] = std::max(widths[std::size_t(i)], textWidth(row.details.at(i)));
    }
    return widths;
}

QString TreeDrawing::detailText(const Row &row, const std::vector<int> &widths) const
{
    QString text;
    for (int i = 0; i < row.details.size(); ++i)
        if (widths[std::size_t(i)] > 0)
            text +=
                QString(columnGap, QLatin1Char(' ')) + pad(isolate(row.details.at(i)), widths[std::size_t(i)], i == 0);
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

QStringList TreeDrawing::lines(int columns) const
{
    const std::vector<int> widths = detailWidths();
    int widestLabel = 0;
    int widestDetails = 0;
    for (const Row &row : m_rows) {
        const int detailColumns = textWidth(detailText(row, widths));
        widestDetails = std::max(widestDetails, detailColumns);
        // A name without details behind it goes on to the end of the line and pushes nobody's details aside.
        if (detailColumns > 0)
            widestLabel = std::max(widestLabel, textWidth(row.branch) + textWidth(row.name));
    }
    const int room = std::max(columns - widestDetails, std::min(fewestNameColumns, columns));
    const int labelColumns = std::min(widestLabel, room);

    QStringList lines;
    for (const Row &row : m_rows) {
        const QString details = detailText(row, widths);
        const QString shown = label(row.branch, row.name, details.isEmpty() ? columns : labelColumns);
        if (details.isEmpty())
            lines += shown;
        else
            lines += padText(shown, labelColumns) + fitText(details, columns - labelColumns);
    }
    return lines;
}

} // namespace Tool
