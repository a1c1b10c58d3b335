#pragma once

/// \file
/// The session with the newsroom server.

#include <QAtomicInteger>
#include <QMutex>
#include <QString>

#include <atomic>
#include <memory>

#include <quire/orvex/Orvex.h>
#include <quire/platform/Export.h>
#include <quire/session/Mutex.h>
#include <quire/session/StoryID.h>
#include <quire/session/UserInfo.h>

namespace Quire {

class DispatchCache;

/// Stands for QuireCOM::m_ComMutex in clang's thread-safety analysis, which knows no QMutex.
class QUIRE_CAPABILITY("server access lock") ServerAccess
{};
/// The one access lock.
inline constexpr ServerAccess serverAccess{};

/// The one session with the newsroom server: it creates the server's sign-on object and drives it, keeps who is signed
/// on where, the handles of opened server objects, and two system values.
///
/// Made by GetQuireCOM and destroyed by UnloadCOM, on one thread while no other thread uses it; the library owns it.
/// Between the two any thread may call any operation, on Windows after joining a COM apartment. Every server call is
/// made under the server access lock (QuireCOMMutex), under a label of class and method name, but for the items that
/// GetCachedDir fetches, which go by the caller's lock, and GetConnectionPoint.
///
/// Rules that hold for all operations:
/// - Not loaded is like not connected: false, null, empty, 0, or as said. What was not done is not reported twice.
/// - A call on the sign-on object while it is empty raises `_com_error` with E_POINTER. Only operations that do not ask
///   for the connection first can meet that: Search, StopSearch and GetConnectionPoint.
/// - A text for the server needs memory. When it runs out `_com_error` with E_OUTOFMEMORY is raised.
/// - HRESULTs, identifiers and sizes are 32-bit numbers whatever the width of `long`.
/// - Handles are returned with a reference of their own.
///
/// The password is written to no log, label, error text or file. It lies in memory as one copy of the session's own
/// from a successful Connect until Disconnect, the next Connect or the end of the session, which overwrite it, and for
/// the time of the server's Connect as a BSTR, overwritten before it is freed. When the server has ended the connection
/// by itself Disconnect does nothing: then it stays until one of the others. What the host passes in and what it gets
/// by GetConnectInfo is the host's: while it keeps such a text the characters stay where they are.
class QUIRE_EXPORT QuireCOM
{
public:
    /// \name The one session
    /// \{

    /// The session, null while there is none.
    static QuireCOM *TheQuireCOM;

    /// The session, made when there is none. With \a recreate a session that is there is destroyed first. Null only
    /// when memory runs out; a session that could not load the server is returned all the same, see IsLoaded.
    static QuireCOM *GetQuireCOM(bool recreate);
    /// Destroys the session, which signs off if it is connected. Nothing happens without a session.
    static void UnloadCOM();

    /// \}
    /// \name The server's library
    /// \{

    /// Which of the server's two libraries GetDLLName and registerCOM mean: true for the Unicode one. Initially true.
    /// Creating the sign-on object goes by class identifier and is not affected.
    static bool sUseUnicodeInterface;

    /// File name of the server's library: "OrvexCOMU_64.dll", or "OrvexCOM.dll" without Unicode.
    static QString GetDLLName();
    /// The value of sUseUnicodeInterface.
    static bool IsUnicode();
    /// Sets sUseUnicodeInterface.
    static void SetUnicode(bool unicode);
    /// Registers the server's library in \a folder with the system, by running "regsvr32" for at most 1000 ms.
    ///
    /// True when there is no such file (nothing is done) and when the registration ended in time, whatever its exit
    /// code, also when it could not be started. False when it had to be killed.
    static bool registerCOM(QString folder);

    /// \}
    /// \name State of the server access lock; see QuireCOMMutex
    /// \{

    /// The lock itself. Not recursive.
    static QMutex m_ComMutex;
    /// System identifier of the thread that holds m_ComMutex through a lock object, 0 when nobody does. Reads, compares
    /// and copies as the number that it is, on any thread.
    static QAtomicInteger<quint32> m_LockThreadID;
    /// Name of the lock object that acquired the mutex last, kept only while debugging is on. Read it only while
    /// holding the lock.
    static QString m_LockStr QUIRE_GUARDED_BY(serverAccess);

    /// \}
    /// \name Copies
    /// A copy shares the sign-on object and the table of handles and has values and texts of its own. It does not
    /// become TheQuireCOM, and only GetQuireCOM's own instance is ever destroyed.
    /// \{

    /// Shares the sign-on object and the table of handles.
    QuireCOM(const QuireCOM &other);
    /// Shares those of \a other from now on.
    QuireCOM &operator=(const QuireCOM &other);

    /// \}
    /// \name Signing on
    /// \{

    /// True when the sign-on object was created.
    bool IsLoaded();
    /// The HRESULT of creating the sign-on object; 0 means loaded.
    long GetCOMError();
    /// Signs on, after signing off from where the session was connected before.
    ///
    /// \a server, \a user and \a password go to the server as they stand, as do the low 32 bits of \a option. On
    /// success they are kept (the server's own name in place of \a server when it tells one) and the root directory is
    /// put into the table of handles. Returns the server's HRESULT, which getErrorString puts in words, or -1 when not
    /// loaded. A refused sign-on leaves the session not connected and the three texts empty.
    ///
    /// When the server has ended the connection before by itself there is nothing to sign off from: the next one keeps
    /// its read rate and all its handles but the root's.
    long Connect(const QString &server, const QString &user, const QString &password, long option);
    /// How often Connect has succeeded in this process: what was got from the server while it was another number
    /// belongs to a sign-on before. Any thread, no server call.
    static quint32 SignOnCount();
    /// Signs off and forgets server, user, password, all handles and the system values. Nothing happens when not
    /// connected, so that the handles stay.
    void Disconnect();
    /// True when the server says so. False when not loaded or when the question fails.
    bool IsConnected();
    /// What the last successful Connect kept; three empty texts before it, after Disconnect and after a refused
    /// Connect. When the server ended the connection by itself they stay until the next Connect, since only IsConnected
    /// asks the server, also after Disconnect, which then does nothing. No server call.
    void GetConnectInfo(QString &server, QString &user, QString &password);
    /// The sign-on object, empty when not loaded. No server call.
    Orvex::ISignon4Ptr GetSignon();
    /// The container of the server's connection points, null when the server has none. The caller releases it. Raises
    /// `_com_error` when not loaded or when the query fails for any reason but E_NOINTERFACE.
    IConnectionPointContainer *GetConnectionPoint();

    /// \}
    /// \name Handles of directories and queues
    /// Paths are the server's: components joined by ".", with "." for the root, for which an empty path stands too.
    /// Keys of the table are compared exactly; the server's tree is searched without regard to letter case, so one
    /// folder may have several entries.
    /// \{

    /// The handle of a directory or queue, empty when there is none or when not connected.
    ///
    /// A handle that is kept is returned at once, without a server call. Otherwise the handle of the directory above is
    /// obtained in the same way, through this same virtual operation, and its items are searched by name; each handle
    /// found on the way is kept. When that does not lead to the path, or anything in it fails, the server is asked for
    /// the whole path. An override answers for each directory above that has at most 256 components.
    ///
    /// The items are fetched under whatever lock the caller holds.
    virtual IDispatchPtr GetCachedDir(const QString &path);
    /// Keeps \a handle under \a path in place of what was kept there.
    void AddDirToCache(const QString &path, const IDispatchPtr &handle);
    /// Drops the handle kept under \a path and the handles of all stories kept under that path. Paths below stay.
    void RemoveDirFromCache(const QString &path);

    /// \}
    /// \name Handles of stories
    /// Only `part1` of an identifier counts for the table. A null identifier gives an empty result and changes nothing.
    /// An empty queue path is taken as it stands.
    /// \{

    /// The same as RemoveDirFromCache.
    void RemoveStoriesFromCache(const QString &path);
    /// Keeps \a handle as the story \a id of \a queuePath in place of what was kept there.
    void AddStoryToCache(const QString &queuePath, const StoryID *id, const IDispatchPtr &handle);
    /// Drops the handle of the story \a id of \a queuePath.
    void RemoveStoryFromCache(const QString &queuePath, const StoryID *id);
    /// The handle kept for the story, without a server call; when there is none, empty with \a cacheOnly, otherwise the
    /// answer of GetStoryDirect.
    IDispatchPtr GetCachedStory(const QString &queuePath, const StoryID *id, bool cacheOnly);
    /// Asks the server for the story and keeps its handle. Empty when not connected or when the server has no such
    /// story. Raises `_com_error` when the story refuses its IDispatch for any reason but E_NOINTERFACE.
    IDispatchPtr GetStoryDirect(const QString &queuePath, const StoryID *id);
    /// Has the server delete the story, named by all three parts of \a id. True when it did; false also when not
    /// connected. The handle stays kept until RemoveStoryFromCache.
    bool DeleteStoryDirect(const QString &queuePath, const StoryID *id);

    /// \}
    /// \name System values and user
    /// \{

    /// The server's reading rate, 180 when it gives none or when not connected. Fetched once, unless negative, and kept
    /// until the session signs off; see Connect for when the server has ended the connection. Raises `_com_error` when
    /// the server refuses.
    long GetSysReadRate();
    /// The server's word length, fetched on every call; 0 when it is negative or when not connected. Raises
    /// `_com_error` when the server refuses.
    long GetSysWordLength();
    /// Puts the server's form called \a name into \a form, which is left empty when there is none.
    void GetSystemForm(const QString &name, QString &form);
    /// Fills \a info with what the server says of the user. Texts that the server does not give stay as they were, all
    /// four of them when it refuses. Not connected: \a info stays as it was.
    void GetUserInfo(UserInfo &info);

    /// \}
    /// \name Blobs: bytes that the server keeps under a name, and one blob for each user
    /// \{

    /// Stores \a size bytes of \a data under \a name; size 0 stores an empty blob. False when not connected, when the
    /// bytes cannot be made into an array of the server's, or when the server refuses.
    bool SaveBlob(const QString &name, const char *data, long size);
    /// The bytes stored under \a name, to be freed with FreeBlob. \a size gets their number and \a extra the value that
    /// the server gives with them; either may be null. An empty blob is a buffer of size 0. Null when not connected,
    /// when the server refuses or when there is no memory for the buffer; \a size and \a extra are then untouched.
    char *LoadBlob(const QString &name, long *size, long *extra);
    /// Deletes the blob \a name. False when not connected or when the server refuses.
    bool DeleteBlob(const QString &name);
    /// As SaveBlob, for the user's own blob.
    bool SaveUserBlob(const char *data, long size);
    /// As LoadBlob, for the user's own blob.
    char *LoadUserBlob(long *size, long *extra);

    /// \}
    /// \name Searches; neither asks for the connection first
    /// \{

    /// Starts a search and returns its number for StopSearch, 0 when the server refuses.
    long Search(const QString &query);
    /// Stops the search \a id. False when the server refuses, and for 0 without a server call.
    bool StopSearch(long id);

    /// \}

protected:
    /// Creates the sign-on object by class identifier and becomes TheQuireCOM, whether that worked or not.
    QuireCOM();
    /// Signs off, lets the handles and the sign-on object go and sets TheQuireCOM to null. Not virtual.
    ~QuireCOM();

private:
    /// Asks the server for the directory or queue \a path and keeps its handle. Empty when not connected or when the
    /// server has none.
    IDispatchPtr GetDir(const QString &path);
    /// Index of the item of the directory \a parent whose last path component is that of \a name, compared without
    /// regard to case; -1 when an item without a name comes first or when \a parent is no directory. Raises
    /// `_com_error` when fetching an item fails, so also past the last item.
    static long FindDirItemByName(const QString &name, IDispatchPtr &parent);

    static void Destroy();

    long SignOn(const QString &server, const QString &user, const QString &password, LONG option);
    void SetConnectInfo(const QString &server, const QString &user, const QString &password);
    void CopyConnectInfo(QString &server, QString &user, QString &password) const;

    bool FindCachedDir(const QString &path, IDispatchPtr &handle) const;
    bool AnswersForParent(const QString &path) const;
    IDispatchPtr FindBelow(const QString &path, IDispatchPtr &parent);
    IDispatchPtr FetchDir(const QString &path, IDispatchPtr parent);

    // Free: each value by itself; -1 until fetched.
    std::atomic<qint32> m_sysReadRate;
    std::atomic<qint32> m_sysWordLength;
    // Constant after construction. The table of handles is null when not loaded, and shared by copies.
    HRESULT m_comError;
    Orvex::ISignon4Ptr m_signon;
    std::shared_ptr<DispatchCache> m_cache;
    // A leaf: nothing is called while it is held.
    mutable Mutex<LockRank::ConnectInfo> m_connectInfoMutex;
    QString m_server QUIRE_GUARDED_BY(m_connectInfoMutex);
    QString m_user QUIRE_GUARDED_BY(m_connectInfoMutex);
    QString m_password QUIRE_GUARDED_BY(m_connectInfoMutex);
};

/// Frees a buffer that QuireCOM::LoadBlob or QuireCOM::LoadUserBlob returned; null does nothing. The library allocated
/// it, so the library frees it: a host may have another run-time.
QUIRE_EXPORT void FreeBlob(char *blob);

} // namespace Quire
