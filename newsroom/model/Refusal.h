#pragma once

/// \file
/// The codes with which the newsroom refuses, and their English texts.

#include <QString>
#include <QtGlobal>

namespace Newsroom {

/// Why the newsroom refused an operation. The numbers are the server's own HRESULTs, so that a COM method answers
/// `static_cast<HRESULT>(refusal)` as it stands; None is S_OK.
enum class Refusal : qint32 {
    None = 0,                                            ///< Not refused.
    InvalidArgument = static_cast<qint32>(0x80070057u),  ///< E_INVALIDARG: an argument makes no sense.
    BadPassword = InvalidArgument,                       ///< Sign-on: unknown user or wrong password.
    ServerNotFound = static_cast<qint32>(0x80072741u),   ///< Sign-on: no newsroom of that name.
    NotAuthorized = static_cast<qint32>(0x80040405u),    ///< The user may not write.
    BadSyntax = static_cast<qint32>(0x80040406u),        ///< A malformed query.
    EntryExists = static_cast<qint32>(0x8004040Au),      ///< The name is taken already.
    EntryGone = static_cast<qint32>(0x8004040Bu),        ///< No such directory, queue, story, form or blob.
    StoryBeingEdited = static_cast<qint32>(0x8004040Eu), ///< Another session holds the story's lock.
    Locked = static_cast<qint32>(0x8004040Fu),           ///< Key-locked story, locked queue, or a lock held elsewhere.
    PurgeLocked = static_cast<qint32>(0x80040410u),      ///< Nothing may be deleted from the queue.
    NotSignedOn = static_cast<qint32>(0x80040416u),      ///< The session is over.
    PartialFailure = static_cast<qint32>(0x80040450u),   ///< Some of several stories were refused.
    ReadOnlyWire = static_cast<qint32>(0x80040455u),     ///< The stories of a wire queue cannot be changed.
    NoForm = static_cast<qint32>(0x80040457u),           ///< The queue has no form for a new story.
    MarkupSyntax = static_cast<qint32>(0x80040458u),     ///< The story markup does not parse.
    Offline = static_cast<qint32>(0x80040802u),          ///< Sign-on: the newsroom is offline.
    OutOfSessions = static_cast<qint32>(0x80040806u),    ///< Sign-on: the session limit is reached.
};

/// The refusal as a 32-bit HRESULT (0 for None).
constexpr qint32 code(Refusal refusal)
{
    return static_cast<qint32>(refusal);
}

/// A short English sentence, for IErrorInfo; an empty string for None and for numbers that are no refusal.
QString description(Refusal refusal);

} // namespace Newsroom
