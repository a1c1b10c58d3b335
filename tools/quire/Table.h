#pragma once

#include <vector>

#include <QString>
#include <QStringList>

namespace Tool {

/// Rows of texts in columns, the first row being the headings. A plain value.
class Table
{
public:
    /// \a headings are the first row; the columns \a numeric (counted from 0) are aligned to the right.
    explicit Table(const QStringList &headings, const std::vector<int> &numeric = {});

    /// Adds a row of as many texts as there are headings.
    void add(const QStringList &texts);

    /// The lines, the headings first, none wider than \a columns: the widest columns are cut until they fit.
    QStringList lines(int columns) const;

private:
    std::vector<int> widths(int columns) const;

    std::vector<QStringList> m_rows;
    std::vector<bool> m_numeric;
};

} // namespace Tool
