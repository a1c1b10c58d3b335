#pragma once

#include <QByteArray>
#include <QMap>
#include <QMutex>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <atomic>
#include <functional>
#include <memory>

#include <quire/orvex/Orvex.h>
#include <quire/platform/ThreadSafety.h>

/// A server that does nothing by itself: it answers what a test has set, records every call, and can refuse any.
namespace FakeServer {

/// One call as the server saw it.
struct Call
{
    QString text;        ///< "Operation(arguments)", for objects of the tree "PATH.Operation(arguments)".
    QString label;       ///< Name of the lock object that acquired the access lock; kept while lock debugging is on.
    bool lockedByCaller; ///< The calling thread held the access lock.
};

/// A place in the tree, or the kind of handle that the server gives for it.
enum class Kind { Directory, Queue, Story, Bare };

/// A story as the server keeps it. A null text is answered as null. Filled by the test; the two counts by the server.
struct StoryData
{
    explicit StoryData(const QString &identifier)
        : unique(identifier)
    {}

    QString unique; ///< Answer of get_StoryUnique; what stands before its first ":" names the story's calls.
    QString name;
    QString formName;
    QMap<QString, QString> fields; ///< A field that is not there is answered as null.
    QMap<int, QString> markup;     ///< Sections of get_SectionXml, 127 for the whole text.
    QMap<int, QString> plain;      ///< Sections of get_Section.
    QString holder;                ///< Answer of Lock, whatever its result.
    VARIANT_BOOL locked = VARIANT_FALSE;

    std::atomic<int> objects{0};    ///< Live objects that stand for the story.
    std::atomic<int> references{0}; ///< References to these objects.
};
using StoryDataPtr = std::shared_ptr<StoryData>;

/// What a queue hands out at one position.
struct QueueEntry
{
    enum Form {
        Dispatch, ///< VT_DISPATCH
        Unknown,  ///< VT_UNKNOWN
        Null,     ///< VT_DISPATCH without an object.
        Number,   ///< VT_I4
        Text,     ///< VT_BSTR
        Nothing   ///< VT_EMPTY
    };

    StoryDataPtr story; ///< Null: an object that is no story.
    Form form = Dispatch;
    HRESULT result = S_OK; ///< When it is a failure, nothing is handed out.
};

/// What a directory or queue tells of itself. Filled by the test.
struct EntryData
{
    std::array<LONG, 3> flags{};
    LONG number = 0; ///< First word of a queue's identifier; the others are the next numbers.
    QString formName;
    bool reports = false; ///< The state of a queue's reports.
};

/// The state behind all objects. Registered as the class of the sign-on object while it lives; it must outlive its
/// objects, which liveObjects() counts. Any thread.
class Server
{
public:
    Server();
    ~Server();

    // ---- what there is ----

    /// Adds an entry to the tree; the directory above must be there. Names are compared without regard to case.
    void add(Kind kind, const QString &path);
    void remove(const QString &path);

    QMap<QString, EntryData> data;             ///< Of directories and queues, by path as added.
    QMap<QString, QVector<QueueEntry>> queues; ///< The entries of each queue, by its path as added.
    HRESULT endOfQueue = E_NOINTERFACE;        ///< What a position behind the last entry answers.
    QMap<int, StoryDataPtr> direct;            ///< What GetStory gives for a number, ahead of storiesExist.

    StoryDataPtr created; ///< What CreateStory makes; null: an object that is no story.
    /// Answers GetList of directories and queues; without it they list what is there, as VT_DISPATCH elements.
    std::function<HRESULT(LONG first, LONG count, VARIANT *list)> getList;

    HRESULT creation = S_OK;      ///< What creating the sign-on object answers.
    bool connectionPoints = true; ///< The sign-on object is a container of connection points.
    bool connected = false;
    VARIANT_BOOL yes = VARIANT_TRUE;        ///< What a question is answered with when that is so.
    bool storiesExist = true;               ///< GetStory gives a handle.
    bool directoriesExist = true;           ///< GetDirectory gives a handle.
    bool answerReadRate = true;             ///< False: get_SysReadRate succeeds and leaves its answer alone.
    bool answerNumbers = true;              ///< False: GetUserInfo leaves its numbers alone.
    QString serverName;                     ///< A null string is answered as null.
    LONG readRate = 0;                      ///< Answer of get_SysReadRate.
    LONG wordLength = 0;                    ///< Answer of get_SysWordLength.
    QString form;                           ///< Answer of GetSystemForm; null as null.
    std::array<QString, 4> texts;           ///< Answers of GetUserInfo; null as null.
    std::array<LONG, 2> numbers{};          ///< Answers of GetUserInfo.
    QMap<QString, QByteArray> blobs;        ///< By name; the user's own has an empty name.
    VARTYPE blobType = VT_UI1;              ///< Element type of the array that a blob is handed out in.
    bool nullBlobs = false;                 ///< A blob is handed out as no array at all.
    std::function<SAFEARRAY *()> blobArray; ///< Makes the array that any blob is handed out in.
    LONG blobValue = 0;                     ///< The value handed out with a blob.
    LONG searchId = 0;                      ///< Answer of Search.
    bool failsWithAnswer = false;           ///< A call that is to fail fills its out-parameters all the same.

    // ---- what goes wrong ----

    /// Every later call of \a operation ("GetDirectory", "get_Item", ...) answers \a result without doing anything. One
    /// object's call can be named as it is recorded ("NEWS.get_Flags()").
    void fail(const QString &operation, HRESULT result);
    /// Every later call of \a operation raises `_com_error` with \a result.
    void raise(const QString &operation, HRESULT result);
    /// Objects of \a kind answer \a result when asked for \a iid.
    void refuse(Kind kind, REFIID iid, HRESULT result);
    /// Takes back every fail, raise and refuse.
    void mend();

    /// Called in every call, after it was recorded and before it is answered; on the calling thread, with no lock held.
    std::function<void(const QString &operation)> onCall;

    /// Answers FindConnectionPoint; without it the answer is E_NOTIMPL.
    std::function<HRESULT(REFIID iid, IConnectionPoint **point)> findConnectionPoint;

    // ---- what happened ----

    QStringList calls() const;
    QVector<Call> callsWithLocks() const;
    int count(const QString &text) const;
    void forgetCalls();
    int liveObjects() const { return m_live; }

    // ---- for the objects ----

    /// Records a call; the result that it must answer, S_OK unless it is to fail.
    HRESULT enter(const QString &operation,
                  const QString &text) QUIRE_NO_THREAD_SAFETY_ANALYSIS; // asks whether the caller has the lock
    HRESULT refusal(Kind kind, REFIID iid) const;
    Kind kindOf(const QString &path, QString *properPath) const;
    QStringList children(const QString &path) const;
    /// A new object for an entry with one reference, for the caller.
    IDispatch *newObject(Kind kind, const QString &path);
    /// A new object for a story of the queue \a path with one reference, for the caller; no story when \a story is
    /// null.
    IDispatch *newStory(const QString &path, const StoryDataPtr &story);
    void born() { ++m_live; }
    void died() { --m_live; }

private:
    Q_DISABLE_COPY(Server)

    struct Refusal
    {
        Kind kind;
        IID iid;
        HRESULT result;
    };

    std::atomic<int> m_live{0};
    DWORD m_registration = 0;
    QVector<QPair<QString, Kind>> m_entries; // in the order of their adding
    QMap<QString, HRESULT> m_failures;
    QMap<QString, HRESULT> m_raised;
    QVector<Refusal> m_refusals;
    QVector<Call> m_calls;
    mutable QMutex m_mutex;
};

} // namespace FakeServer
