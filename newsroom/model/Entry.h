#pragma once

/// \file
/// Directories and queues as clients see them.

#include <QString>
#include <QtGlobal>

namespace Newsroom {

/// The three flag words of a directory or queue.
struct Flags
{
    qint32 word1 = 0; ///< The bits whose names end in 1.
    qint32 word2 = 0; ///< The bits whose names end in 2.
    qint32 word3 = 0; ///< The bits whose names end in 3.

    static constexpr qint32 Inverted1 = 1 << 0;    ///< word1: lists in inverted order.
    static constexpr qint32 Locked1 = 1 << 1;      ///< word1: locked.
    static constexpr qint32 ConfirmEdit1 = 1 << 6; ///< word1: edits must be confirmed.
    static constexpr qint32 Sorted2 = 1 << 7;      ///< word2: sorted.
    static constexpr qint32 LiveRefresh3 = 1 << 0; ///< word3: a queue whose lists refresh themselves.
    static constexpr qint32 LockedE3 = 1 << 2;     ///< word3: the kind of lock that is shown as "E".
    static constexpr qint32 Indexed3 = 1 << 6;     ///< word3: indexed, so it can be searched fast.

    /// The bit Locked1.
    bool isLocked() const { return (word1 & Locked1) != 0; }
    /// The bit LiveRefresh3.
    bool isLiveRefresh() const { return (word3 & LiveRefresh3) != 0; }

    /// Sets the bits of one word of a flag: "indexed", "locked", "locked-e" (also sets locked), "confirm-edit",
    /// "inverted", "sorted", "live". False for any other word.
    bool set(const QString &word);

    /// The words of the bits that are set, in the order above, separated by blanks.
    QString toString() const;

    /// The same bits.
    friend bool operator==(const Flags &a, const Flags &b)
    {
        return a.word1 == b.word1 && a.word2 == b.word2 && a.word3 == b.word3;
    }
};

/// What is fixed when a queue is made.
struct QueueSettings
{
    qint32 number = 0;        ///< Unique in the newsroom and above 0; 0 lets the newsroom choose.
    QString formName;         ///< Empty: no form, so no new stories.
    Flags flags;              ///< The queue's flags.
    bool readOnly = false;    ///< A wire: its stories cannot be changed and none created.
    bool purgeLocked = false; ///< Nothing may be deleted.
};

/// A directory or queue at one moment. A plain value.
struct Entry
{
    /// What an entry can be.
    enum Kind { Directory, Queue };

    Kind kind = Directory;  ///< What it is.
    QString path;           ///< Full dotted path in its own letter case; "." is the root.
    Flags flags;            ///< The flags of the directory or queue.
    int count = 0;          ///< Sub-entries of a directory, stories of a queue.
    QueueSettings settings; ///< Of a queue: number, form and so on (`flags` once more).

    /// It is a queue.
    bool isQueue() const { return kind == Queue; }
    qint32 number() const { return settings.number; } ///< Of a queue; 0 for a directory.

    /// The part of the path after the last dot.
    QString leafName() const;
};

/// Whether \a name can be one component of a path: not empty, no ".", no control characters, no half of a surrogate
/// pair, and no blank at either end.
bool isComponentName(const QString &name);

/// The form in which paths are compared: without a leading ".", letter case folded; empty for the root.
QString foldedPath(const QString &path);

/// The path of the entry \a leaf in \a parent ("." or empty: the root).
QString childPath(const QString &parent, const QString &leaf);

/// The path without its last component; "." for a path without dots.
QString parentPath(const QString &path);

} // namespace Newsroom
