#include <algorithm>
#include <vector>

#include "Table.h"
#include "TextWidth.h"
#include "ToolChecks.h"
#include "TreeDrawing.h"

namespace ToolFuzz {

namespace {

using namespace Tool;

constexpr int allColumns = 1000000;
constexpr int terminals[] = {20, 24, 40, 80, 200};

QString wider(const QStringList &lines, int columns)
{
    const bool fits =
        std::all_of(lines.begin(), lines.end(), [&](const QString &line) { return textWidth(line) <= columns; });
    return fits ? QString() : QStringLiteral("wider than %1").arg(columns);
}

/// Whether a line has all the texts that can be seen, one behind the other.
bool hasInOrder(const QString &line, const QStringList &texts)
{
    int from = 0;
    for (const QString &text : texts) {
        if (textWidth(visible(text)) == 0)
            continue;
        QString shown = isolate(visible(text));
        while (shown.endsWith(QLatin1Char(' '))) // those at the end of a line go
            shown.chop(1);
        const int at = line.indexOf(shown, from);
        if (at < 0)
            return false;
        from = at + shown.size();
    }
    return true;
}

QString missing(const QStringList &lines, const std::vector<QStringList> &rows)
{
    if (static_cast<std::size_t>(lines.size()) != rows.size())
        return QStringLiteral("%1 lines").arg(lines.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!hasInOrder(lines.at(static_cast<int>(i)), rows[i]))
            return QStringLiteral("line %1 lacks something").arg(i);
    }
    return QString();
}

} // namespace

QString checkTable(const QString &text)
{
    std::vector<QStringList> rows;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        QStringList cells = line.split(QLatin1Char('\t'));
        while (!rows.empty() && cells.size() < rows.front().size())
            cells.append(QString());
        rows.push_back(rows.empty() ? cells : cells.mid(0, rows.front().size()));
    }
    const int cells = rows.front().size();
    Table table(rows.front(), {0, cells - 1});
    for (std::size_t i = 1; i < rows.size(); ++i)
        table.add(rows[i]);
    const int fewest = cells + columnGap * (cells - 1);
    for (const int columns : terminals) {
        QString wrong = wider(table.lines(columns), std::max(columns, fewest));
        if (!wrong.isEmpty())
            return wrong;
    }
    return missing(table.lines(allColumns), rows);
}

QString checkTree(const QString &text)
{
    std::vector<QStringList> rows; // name and details
    TreeDrawing drawing;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        const QStringList parts = line.split(QLatin1Char('\t'));
        std::vector<bool> lastOfLevels;
        for (const QChar level : parts.front())
            lastOfLevels.push_back(level.unicode() % 2 != 0);
        const QString lead = parts.size() % 2 == 0 ? QString() : QStringLiteral("4711  ");
        rows.push_back(parts.mid(1).isEmpty() ? QStringList{QString()} : parts.mid(1));
        drawing.add(lastOfLevels, rows.back().front(), rows.back().mid(1), lead);
    }
    for (const int columns : terminals) {
        QString wrong = wider(drawing.lines(columns), columns);
        if (!wrong.isEmpty())
            return wrong;
    }
    return missing(drawing.lines(allColumns), rows);
}

} // namespace ToolFuzz
