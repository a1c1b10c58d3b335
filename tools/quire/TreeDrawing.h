#pragma once

#include <vector>

#include <QString>
#include <QStringList>

namespace Tool {

/// Lines of a tree with details in columns behind the names, drawn so that every line fits. A plain value.
class TreeDrawing
{
public:
    /// Adds a line. \a lastOfLevels says for each level whether the branch there ends with this line's ancestor, so its
    /// size is the depth; \a details are one text for each column, empty where there is none; the first column, of
    /// numbers, is aligned to the right. \a lead stands before the name and is never cut.
    void add(const std::vector<bool> &lastOfLevels, const QString &name, const QStringList &details,
             const QString &lead = QString());

    /// The lines, none wider than \a columns. Names are cut before details are.
    QStringList lines(int columns) const;

private:
    struct Row
    {
        QString branch;
        QString name;
        QStringList details;
    };

    QString detailText(const Row &row, const std::vector<int> &widths) const;
    std::vector<int> detailWidths() const;

    std::vector<Row> m_rows;
};

} // namespace Tool
