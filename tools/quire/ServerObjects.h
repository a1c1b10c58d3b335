#pragma once

/// \file
/// Short reads from the server's objects. Each makes its calls under the server access lock; a refusal raises Failure
/// with the server's reason in words, a broken connection may raise `_com_error`.

#include <QString>
#include <QStringList>

#include <quire/orvex/Orvex.h>
#include <quire/session/StoryID.h>

namespace Tool {

/// The three flag words of a directory or queue.
struct EntryFlags
{
    qint32 word1 = 0;
    qint32 word2 = 0;
    qint32 word3 = 0;
};

/// What the set flags say, in words: "indexed", "locked", ...; "live" only of a queue.
QStringList flagWords(const EntryFlags &flags, bool isQueue);

/// The three words as hexadecimal numbers, separated by blanks.
QString flagNumbers(const EntryFlags &flags);

/// A directory or queue as the server tells of it; `directory` or `queue` is its object, both empty for neither.
struct TreeEntry
{
    Orvex::IDirectory2Ptr directory;
    Orvex::IQueue2Ptr queue;
    QString path; ///< Full dotted path, in the server's letter case.
    EntryFlags flags;
    qint32 count = 0;  ///< Entries of a directory, stories of a queue.
    QString form;      ///< Queues only.
    qint32 number = 0; ///< Queues only.

    bool isQueue() const { return !!queue; }
    bool isDirectory() const { return !!directory; }
    /// The last component of the path; "." for the root.
    QString name() const;
    /// "directory", "queue" or "unknown".
    QString kind() const;
};

/// One story of a queue.
struct StoryEntry
{
    Orvex::IStory2Ptr story;
    Quire::StoryID id{};
    QString name;
    QString form;
};

/// The entry behind a handle.
TreeEntry readEntry(const IDispatchPtr &handle);
/// The entry at a position of a directory, counted from 0.
TreeEntry readChild(const TreeEntry &directory, qint32 position);
/// The story at a position of a queue, counted from 0.
StoryEntry readStory(const TreeEntry &queue, qint32 position);
/// The story behind a handle; \a where names it in a failure.
StoryEntry readStory(const IDispatchPtr &handle, const QString &where);

} // namespace Tool
