#pragma once

/// \file
/// A folder of the server's tree.

#include <QString>
#include <QtGlobal>

#include <atomic>

#include <quire/orvex/Orvex.h>
#include <quire/platform/Export.h>
#include <quire/tree/ItemList.h>

namespace Quire {

class SearchList;

/// The entries of one folder of the server's tree, sub-directories and queues, as items with flag attributes; also the
/// base of Queue, so that a pointer to a directory may denote either.
///
/// The caller owns it and deletes it through this class. Lists may be read on any thread, see ItemList; the operations
/// that call the server may also be called on any thread, each under the server access lock. What the server refuses
/// raises `_com_error`, unless said otherwise; an object that raises while it is made leaves nothing behind.
class QUIRE_EXPORT Directory : public ItemList
{
public:
    /// Do not ask sub-directories for their number of entries: each gets "_count" 1. Initially false.
    static bool sSkipFolderCount;

    /// The directory or queue that the server object \a object is, null when it is neither. The caller owns the result.
    static Directory *NewDirectory(IDispatchPtr object);
    /// The directory or queue \a path, null when there is none or no session. The caller owns the result.
    static Directory *NewDirectory(const QString &path);

    /// An empty list without a name.
    Directory();
    /// The directory that \a object is, named and listed; an empty list without a name for any other object.
    explicit Directory(IDispatchPtr object);
    ~Directory() override;

    /// Whether the flag \a key of the directory itself is set: Attr_Indexed, Attr_Lock, Attr_ConfirmEdit, Attr_Inverted
    /// or Attr_Sorted, recognised by address. False for any other pointer, even to an equal text. No server call.
    bool FlagCheck(const char *key);
    /// The same for the directory or queue that \a object is, asked for its flags now. False when it does not tell
    /// them; never raises.
    static bool FlagCheck(IDispatchPtr object, const char *key);

    /// True unless it is a queue.
    virtual bool IsDirectory();
    /// True if it is a queue.
    virtual bool IsQueue();
    /// Reads the entries anew. Nothing happens without a session. One thread at a time: of a directory that two refresh
    /// at once the entries may be listed twice. A queue does not mind.
    virtual void Refresh();
    /// The entry called \a name, without regard to letter case, as an object of its own; see the next. Right only while
    /// the list is in the server's order.
    virtual Directory *GetSubDir(const QString &name);
    /// The server's entry number \a index as a directory or queue that the caller owns. Null for a negative index, when
    /// this directory is gone, when the entry is neither, and without a session.
    virtual Directory *GetSubDir(int index);
    /// Searches this directory and everything below it for \a text; see Search::StartSearch. Null when searches are not
    /// possible or the search is refused. The searcher owns the result.
    virtual SearchList *StartSearch(const QString &text);

protected:
    /// Appends the entries of the directory that \a object is, after reading its flags. Nothing happens for any other
    /// object.
    virtual void Populate(IDispatchPtr object);
    /// Appends the entries of the directory called as this list is.
    virtual void Populate();

    /// Forgets what the session has by this list's name and appends what is found there now.
    void Reread();
    /// What the session has by the name \a path; empty without a session. Raises what looking it up raises.
    static IDispatchPtr LookUp(const QString &path);

    // As read when the list was populated.
    std::atomic<qint32> m_flags1{0}; ///< The first flag word.
    std::atomic<qint32> m_flags2{0}; ///< The second flag word.
    std::atomic<qint32> m_flags3{0}; ///< The third flag word.

private:
    Q_DISABLE_COPY(Directory)

    static Directory *Make(const IDispatchPtr &object, bool registerQueue);
    Directory *OpenSubDir(int index);
};

} // namespace Quire
