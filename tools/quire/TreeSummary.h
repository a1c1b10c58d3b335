#pragma once

#include <QStringList>

#include "ServerObjects.h"

namespace Tool {

/// How much of the tree is shown.
struct TreeView
{
    int levels = -1;      ///< Levels below the root; negative: all.
    bool flags = false;   ///< With the three flag words as numbers.
    bool stories = false; ///< With the stories of the queues.
};

/// A part of the server's tree for people: its drawing and what it holds. The entry where it begins is drawn but, when
/// it is a directory, not counted. A plain value.
struct TreeSummary
{
    QStringList lines; ///< None wider than asked for.
    int directories = 0;
    int queues = 0;
    qint64 stories = 0;

    /// "5 directories, 15 queues, 212 stories".
    QString totals() const;
};

/// Reads and draws the tree from \a root on; needs a session that is signed on. Raises Failure.
TreeSummary summarize(const TreeEntry &root, const TreeView &view, int columns);

} // namespace Tool
