#pragma once

#include <vector>

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <quire/tree/Queue.h>

namespace Tool {

/// The stories of a queue as rows of texts: position, name, number and lock, and then fields. A plain value.
class StoryTable
{
public:
    /// Reads at most \a limit stories, -1 for all, with the fields called \a columns; without any, those of the queue's
    /// form. Failure NotFound for a field that the form does not have.
    StoryTable(Quire::Queue &queue, const QStringList &columns, int limit);

    /// Sorts the rows by the column called \a column, "-" before it for the other way round, numbers by their value;
    /// Failure NotFound when there is no such column.
    void sort(const QString &column);

    /// The rows in columns, not wider than \a columns. Fields that nobody asked for are left out when they would be too
    /// narrow, and \a left says how many.
    QStringList lines(int columns, int *left) const;
    /// The rows as comma-separated values with the fields' names as headings, all texts in quotes that need them.
    QStringList csv() const;
    QJsonArray json() const;
    int size() const { return static_cast<int>(m_rows.size()); }

private:
    struct Row
    {
        int position;
        QString id;
        QStringList texts;
    };

    void choose(Quire::Queue &queue, const QStringList &columns);
    void read(Quire::Queue &queue, int limit);
    int widthOf(int column) const;

    bool m_chosen = false;  // somebody has said which fields to show
    QStringList m_names;    // as the fields are called
    QStringList m_headings; // as the form labels them
    std::vector<Row> m_rows;
};

} // namespace Tool
