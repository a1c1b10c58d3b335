#include "Table.h"

#include <algorithm>
#include <numeric>

#include "TextWidth.h"

namespace Tool {

namespace {

QString cell(const QString &text, int width, bool numeric)
{
    const QString shown = isolate(fitText(text, width));
    return numeric ? padTextLeft(shown, width) : padText(shown, width);
}

QString withoutBlanksAtTheEnd(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

} // namespace

Table::Table(const QStringList &headings, const std::vector<int> &numeric)
    : m_numeric(std::size_t(headings.size()), false)
{
    for (const int column : numeric)
        m_numeric[std::size_t(column)] = true;
    add(headings);
}

void Table::add(const QStringList &texts)
{
    QStringList shown;
    for (const QString &text : texts)
        shown += visible(text);
    m_rows.push_back(shown);
}

std::vector<int> Table::widths(int columns) const
{
    std::vector<int> widths(m_numeric.size(), 0);
    for (const QStringList &row : m_rows)
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], textWidth(row.at(int(i))));
    const int room = std::max(columns - columnGap * int(widths.size() - 1), int(widths.size()));
    while (std::accumulate(widths.begin(), widths.end(), 0) > room)
        --*std::max_element(widths.begin(), widths.end());
    return widths;
}

QStringList Table::lines(int columns) const
{
    const std::vector<int> fitting = widths(columns);
    QStringList lines;
    for (const QStringList &row : m_rows) {
        QStringList cells;
        for (std::size_t i = 0; i < fitting.size(); ++i)
            cells += cell(row.at(int(i)), fitting[i], m_numeric[i]);
        lines += withoutBlanksAtTheEnd(cells.join(QString(columnGap, QLatin1Char(' '))));
    }
    return lines;
}

} // namespace Tool
