#pragma once

/// \file
/// A story on the server.

#include <QString>

#include <vector>

#include <quire/orvex/Orvex.h>
#include <quire/platform/Export.h>
#include <quire/session/StoryID.h>
#include <quire/tree/Attribute.h>

namespace Quire {

class Field;
class Item;

/// One story of a queue: its header, its fields, its text in sections, its lock.
///
/// Cheap to make: it remembers the queue's path and the story's identifier, finds the server's story when an operation
/// first needs it, and keeps that handle until it is destroyed. Copies share the handle. The caller owns the object,
/// also one that Queue::GetStory or Queue::CreateStory returned, and uses it on one thread at a time; different objects
/// may be used on different threads, also for the same story.
///
/// Rules that hold for all operations:
/// - Every one that calls the server does so under the server access lock, and sets the last error to 0 first. It ends
///   with the server's HRESULT there; negative is a failure, which getErrorString puts in words. 0 with a false or
///   empty result means that there is no such story, or no session.
/// - Out-values are emptied first and stay empty on failure, unless said otherwise.
/// - Finding the story never raises. What a server call itself raises, as `_com_error`, passes to the caller unless
///   said otherwise.
/// - HRESULTs are 32-bit numbers whatever the width of `long`.
/// - A handle that the server has let go of meanwhile is not noticed: the operation fails with the server's HRESULT.
///
/// The destructor is not virtual: delete a story as what it was made.
class QUIRE_EXPORT Story
{
public:
    /// \name Making one
    /// \{

    /// A story that is nowhere: the reading rate is a tenth of the system's (18 without a session), all else is empty.
    /// Raises what QuireCOM::GetSysReadRate raises.
    Story();
    /// The story \a id, which must not be null, of the queue \a queuePath. Looks for it on the server at once: IsLoaded
    /// tells whether it is there, and then identifier, reading rate, key lock and form are known. Raises what
    /// QuireCOM::GetSysReadRate raises.
    Story(const QString &queuePath, const StoryID *id);
    /// The same story, sharing the handle.
    Story(const Story &other);
    /// Becomes the other story, sharing its handle.
    Story &operator=(const Story &other);
    /// Releases the handle.
    ~Story();

    /// \}
    /// \name Sections: numbered parts of the story's text
    /// 1 "head", 2 "look", 4 "fields", 8 "body", 16 "aeset", 32 "field-atts", 64 "aeset-atts"; 127 is the whole text.
    /// With \a markup a section is the element with its tags, as XML::Parser reads it; without, it is in the server's
    /// other form, which the library does not interpret.
    /// \{

    /// Reads a section. Section 0 is not asked for. A call that raises leaves the last error at -1 and goes no further.
    virtual void GetSection(int section, QString &text, bool markup);
    /// Replaces a section, to be kept by Save. False for section 0, without story, and when the server refuses. \a text
    /// is not changed. The last error is -1 if the call raises.
    virtual bool PutSection(int section, QString &text, bool markup);

    /// \}
    /// \name Fields of the story's form
    /// \{

    /// Reads the field \a name as it is shown, see DecodeAttribute.
    virtual void GetField(const QString &name, QString &value);
    /// Writes the field \a name from what is shown, see EncodeAttribute; to be kept by Save. Ask GetError for the
    /// result.
    virtual void SetField(const QString &name, const QString &value);

    /// \}

    /// Keeps what was changed. \a flag is the server's. False without story and when the server refuses.
    virtual bool Save(bool flag);

    /// \name Identity
    /// \{

    /// Copies the identifier; false for a null \a out. No server call, as for the others here.
    virtual bool GetID(StoryID *out);
    /// The identifier as text, with \a full all three parts.
    virtual void GetIDStr(QString &out, bool full);

    /// \}

    /// True when the header's story identifier on the server is another than the one known here, which it then becomes:
    /// somebody saved the story. Does not touch the last error.
    virtual bool UpdateHeaderID();

    /// \name The form's fields; see FormCache::getForm, which may ask the server for the form
    /// \{

    /// Every field of the story's form, in the form's order: its identifier, with the form's label as value and flags
    /// 0. Empty when there is no form.
    virtual void GetAllFieldNames(std::vector<Attribute> &out);
    /// Puts the form's label into each entry that names a field of the form; other entries stay as they were.
    virtual void GetFieldValues(std::vector<Attribute> &inOut);
    /// The form's field called \a name without regard to letter case, null when there is none. Owned by FormCache.
    virtual Field *FindField(const QString &name);

    /// \}
    /// \name Locking; lock types are the server's numbers, passed on as they are
    /// \{

    /// Asks the server for the lock. Refused because somebody edits the story (the low 16 bits of the last error are
    /// 1038): false, and \a holder names who, "unknown" when the server does not say. Otherwise true exactly when the
    /// answer's facility is 0: 0x80004005 counts as granted, any code of another facility as refused.
    virtual bool Lock(int lockType, QString &holder);
    /// Gives the lock back. False without story and when the server refuses.
    virtual bool Unlock();
    /// Whether the server says that the story is locked; false when it does not answer.
    virtual bool IsLocked(int lockType);

    /// \}

protected:
    /// Reads the name of the story's form.
    virtual void GetFormName(QString &out);

public:
    /// \name What is known here; no server call
    /// \{

    /// Reading speed for read-time figures, until SetReadRate: a tenth of the header's rate for a story that was found
    /// (18 when it has none), a tenth of the system's for any other (18 without a session).
    int GetReadRate() const;
    /// See GetReadRate().
    void SetReadRate(int rate);
    /// A flag of the host's own, initially false.
    bool GetConfirmEdit() const;
    /// See GetConfirmEdit().
    void SetConfirmEdit(bool confirm);
    /// The header carries a key lock, or could not be read.
    bool HasKeylock() const;
    /// The constructor found the story.
    bool IsLoaded() const;
    /// The last error: the HRESULT of the last server call.
    long GetError() const;
    /// Name of the story's form, empty when not known.
    QString FormName() const;

    /// \}
    /// \name On a server's story
    /// The handle is given up at the end. With an empty handle there is nothing to read.
    /// \{

    /// The story \a id of the queue \a path, which the caller expects at \a index: that entry is looked at, and when it
    /// is another story, \a notFound (if given) becomes true and the result is empty. Without \a notFound the queue is
    /// then searched from its beginning. With a negative \a index no entry is looked at first. Empty when there is no
    /// session, no such queue, or when the server fails; never raises.
    static Orvex::IStory2Ptr GetStory(const QString &path, StoryID id, int index, bool *notFound);
    /// Reads story identifier, reading rate (a tenth of the header's, 18 when it has none) and key lock from the
    /// header; the key lock is "lock" when there is no header. Any pointer may be null.
    static void GetHeaderInfo(Orvex::IStory2Ptr story, QString *headerStoryId, int *readRate, QString *keyLock);
    /// Reads the attribute \a name of the header's "meta" element into \a value, empty when it lacks it. False when
    /// there is no header. \a value is left alone then, and when the header has no such element.
    static bool GetHeaderMetaValue(Orvex::IStory2Ptr story, const QString &name, QString &value);
    /// Reads the story's identifier; on failure \a id is left alone.
    static void GetStoryID(Orvex::IStory2Ptr story, StoryID &id);
    /// Reads a field as it is shown.
    static void GetField(Orvex::IStory2Ptr story, const QString &name, QString &value);
    /// All fields of the story as they are shown, with their flags and a computed "total-time"; see InitStoryItem.
    static std::vector<Attribute> GetStoryFields(Orvex::IStory2Ptr story);

    /// \}
    /// \name Identifiers
    /// \{

    /// The same as Quire::CmpStoryID.
    static SID_Diff_t CmpStoryID(StoryID *a, StoryID *b);

    /// \}
    /// \name Sections within a text, by plain search
    /// \{

    /// Looks for the element \a tag: \a start is where "<tag" first stands in \a text, \a end is just behind the first
    /// "</tag>" of the whole text, wherever that stands. Names that merely begin with \a tag match too. Only when there
    /// is no "<tag" is the prefix "zeko:" tried.
    ///
    /// Returns whether the element was found with the prefix; whether it was found at all is told by \a start, -1 if
    /// not. Without an end tag \a end is its length less 1. Beyond that nothing is checked.
    static bool GetTextSectionPos(QString &text, QString tag, int &start, int &end);
    /// The element \a tag of \a text with its tags, found as by GetTextSectionPos; empty when it has no end tag, or the
    /// first one stands before its start.
    static QString ExtractTextSection(QString &text, QString tag);

    /// \}

protected:
    /// Reads a header's text; what it does not give is left alone, but the key lock is emptied if there is a "meta"
    /// element without one. Any pointer may be null.
    static void GetInitialHeaderInfo(QString headerText, QString *headerStoryId, int *readRate, QString *keyLock);

    IDispatchPtr m_handle;   ///< The server's story, empty until first needed.
    StoryID m_id;            ///< The story's identifier.
    QString m_headerStoryId; ///< The header's story identifier.
    QString m_queuePath;     ///< Path of the queue.
    QString m_keyLock;       ///< The header's key lock.
    qint32 m_readRate;       ///< See GetReadRate().
    bool m_loaded;           ///< See IsLoaded().
    bool m_confirmEdit;      ///< See GetConfirmEdit().
    QString m_formName;      ///< See FormName().
    HRESULT m_lastError;     ///< See GetError().

private:
    friend class Item;        // expands what InitStoryItem packed
    friend class Queue;       // makes items of the stories that it lists
    friend struct StoryProbe; // the tests look at the workers below

    /// The server's story, found when it is not yet known. Under the caller's access lock; never raises.
    Orvex::IStory2Ptr GetStory(const QString &path, StoryID *id);
    static void GetSection(Orvex::IStory2Ptr story, int section, QString &text, bool markup);
    static QString GetHeaderStoryID(Orvex::IStory2Ptr story);

    /// Makes \a item the list item of \a story: type, name, "_storyid", and packed as they are "_header" and "_fields";
    /// "_lock" when there is no header.
    static void InitStoryItem(Item &item, Orvex::IStory2Ptr story);
    /// Adds the attributes of a header: "_headerid", "_wire", "_mail", "_words", "_rate", "_lock", "_break", "_float"
    /// and "_hold", those that are not empty.
    static void InitStoryHeaderAttributes(Item &item, QString &headerText);
    /// Adds an attribute for each field that has a value, as it is shown. Flags: 1 for an urgency above 1, 2 for one
    /// above 2, 4 for "uec", 8 for "aready". Without a "total-time" one is computed from "audio-time" and "tape-time".
    static void InitStoryFieldAttributes(Item &item, QString &fieldsText);
};

} // namespace Quire
