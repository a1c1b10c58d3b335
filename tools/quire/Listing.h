#pragma once

#include <utility>
#include <vector>

#include <QString>
#include <QStringList>

namespace Tool {

/// Captions with a text behind each, the texts below each other. A plain value.
class Listing
{
public:
    void add(const QString &caption, const QString &text);

    /// The lines, none wider than \a columns; a text that does not fit goes on below itself.
    QStringList lines(int columns) const;

private:
    std::vector<std::pair<QString, QString>> m_entries;
};

} // namespace Tool
