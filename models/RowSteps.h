#pragma once

/// \file
/// How a list of rows becomes another one, in steps that views can follow. Not part of the public surface.

#include <QHash>

#include <cstddef>
#include <vector>

namespace Quire {

/// One step, as the begin and end operations of a model want it. A plain value.
struct RowStep
{
    enum Kind { Remove, Insert, Move };

    Kind kind;
    int first;  ///< The first row that goes or moves; where rows are inserted.
    int count;  ///< How many rows, at least 1.
    int to;     ///< Move: the row before which they come, counted with the moving rows at their old place.
    int source; ///< Insert: which of the new rows the first one is.
};

/// For each row of \a before the row of \a after that has the same key, -1 when there is none. Of rows with the same
/// key the first one means the first one, the second the second, and so on.
template<typename Key>
std::vector<int> matchRows(const std::vector<Key> &before, const std::vector<Key> &after)
{
    QHash<Key, int> next; // the first row of the key that is not taken yet; -1 when all are
    next.reserve(static_cast<int>(after.size()));
    std::vector<int> following(after.size(), -1);
    for (std::size_t row = after.size(); row-- > 0;) {
        const auto known = next.find(after[row]);
        if (known == next.end()) {
            next.insert(after[row], static_cast<int>(row));
        } else {
            following[row] = *known;
            *known = static_cast<int>(row);
        }
    }
    std::vector<int> targets;
    targets.reserve(before.size());
    for (const Key &key : before) {
        const auto found = next.find(key);
        targets.push_back(found == next.end() ? -1 : *found);
        if (targets.back() >= 0)
            *found = following[static_cast<std::size_t>(targets.back())];
    }
    return targets;
}

/// The steps, to be done one after the other, that turn the old rows into \a newCount new ones, where \a targets tells
/// for each old row which new one it is, -1 for none. First the rows that are gone go, from the last on; then rows
/// move or are inserted, from the first on. As few rows as possible move. When that takes very many steps all rows from
/// the first to the last difference are exchanged in two.
std::vector<RowStep> rowSteps(const std::vector<int> &targets, int newCount);

} // namespace Quire
