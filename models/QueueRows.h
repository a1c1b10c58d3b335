#pragma once

/// \file
/// The rows of a QueueModel. Not part of the public surface.

#include <QString>
#include <QtGlobal>

#include <memory>
#include <vector>

#include <quire/tree/Item.h>

#include "RowSteps.h"

namespace Quire {

class WatchedQueue;

/// What is remembered of a story to see whether another reading gives the same one. A plain value.
struct StoryMark
{
    quint64 key = 0;     ///< The first two parts of the identifier.
    quint64 content = 0; ///< A digest of all that the item says, before it was expanded.
};

/// The key of the story with that identifier.
quint64 storyKey(const QString &identifier);

/// Which item each row shows.
///
/// Normally row n is item n of the queue's list, and only two numbers are kept of it. While the queue is read anew the
/// rows show what was there before, which keepOld takes out of the list, until showNew; in between they become the new
/// ones step by step. Of the model's thread.
class QueueRows
{
public:
    int size() const { return static_cast<int>(m_marks.size()); }
    const StoryMark &mark(int row) const { return m_marks[static_cast<std::size_t>(row)]; }
    /// The row of the story with that key, -1 when there is none.
    int find(quint64 key) const;
    /// The item of a row. Under the lock of the queue's list.
    Item *item(WatchedQueue &queue, int row) const;

    /// How many items of the list have no row yet; of one that is read anew, how many are not marked yet.
    int arrived(WatchedQueue &queue) const;
    /// Marks so many of them, and shows them unless the queue is read anew.
    void add(WatchedQueue &queue, int count);

    /// \name Reading anew
    /// \{

    /// The rows show what was there before.
    bool showsOld() const { return m_old != nullptr; }
    /// Takes the items out of the list, which is to be read anew. What was read since the last time is forgotten.
    void keepOld(WatchedQueue &queue);
    /// How many stories have been read anew.
    int newSize() const { return static_cast<int>(m_new.size()); }
    /// The steps from the old rows to the new ones; see apply.
    std::vector<RowStep> steps() const;
    void apply(const RowStep &step);
    /// Shows the list again, after all steps. Returns the rows whose stories have changed, in order.
    std::vector<int> showNew();

    /// \}

    void clear();

private:
    struct Old
    {
        std::vector<Item> items;
        std::vector<int> places; // by row: the item; for a new row, -1 less its place in the list
    };

    std::vector<StoryMark> m_marks; // by row
    std::vector<StoryMark> m_new;   // by place in the list, while it is read anew
    std::shared_ptr<Old> m_old;
};

} // namespace Quire
