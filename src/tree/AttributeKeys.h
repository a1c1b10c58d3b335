#pragma once

/// \file
/// The keys of the attributes that the library puts on items.
///
/// Each key is a pointer to a fixed text. Directory::FlagCheck compares keys by their address, so pass these constants
/// themselves there; everywhere else the text counts.

#include <quire/platform/Export.h>

namespace Quire {

/// \name Packed texts on a story item, expanded on first retrieval; see Item::RetrieveAttrs
/// \{
extern QUIRE_EXPORT const char *const Attr_Fields; ///< "_fields": the story's whole fields section.
extern QUIRE_EXPORT const char *const Attr_Header; ///< "_header": the story's whole head section.
/// \}

/// \name Story items and search hits
/// \{
extern QUIRE_EXPORT const char *const Attr_Queue;    ///< "_queue": path of the queue that holds the story of a hit.
extern QUIRE_EXPORT const char *const Attr_Storyid;  ///< "_storyid": the story identifier, see StoryID2String.
extern QUIRE_EXPORT const char *const Attr_Headerid; ///< "_headerid": the header's own story identifier.
extern QUIRE_EXPORT const char *const Attr_Wire;     ///< "_wire": the header's "wire".
extern QUIRE_EXPORT const char *const Attr_Mail;     ///< "_mail": the header's "mail".
extern QUIRE_EXPORT const char *const Attr_Words;    ///< "_words": the header's number of words.
extern QUIRE_EXPORT const char *const Attr_Rate;     ///< "_rate": the header's reading rate, times 10.
extern QUIRE_EXPORT const char *const Attr_Break;    ///< "_break": "B" for a break.
extern QUIRE_EXPORT const char *const Attr_Float;    ///< "_float": "F" for a story that floats.
extern QUIRE_EXPORT const char *const Attr_Hold;     ///< "_hold": "H" for a story on hold.
/// \}

/// \name All entries
/// \{

/// "_lock". Directories and queues: there when the entry is locked, value "E" for an edit lock, else empty. Stories:
/// the header's "locked", or empty when the header could not be read.
extern QUIRE_EXPORT const char *const Attr_Lock;
/// \}

/// \name Directories and queues; the value is empty unless said otherwise
/// \{
extern QUIRE_EXPORT const char *const Attr_Indexed;     ///< "_indexed": searches find what is in it.
extern QUIRE_EXPORT const char *const Attr_NumItems;    ///< "_count": entries of a sub-directory, decimal.
extern QUIRE_EXPORT const char *const Attr_ConfirmEdit; ///< "_confirm_edit": edits are to be confirmed.
extern QUIRE_EXPORT const char *const Attr_Inverted;    ///< "_inverted": listed in inverted order.
extern QUIRE_EXPORT const char *const Attr_Sorted;      ///< "_sorted": the entry is sorted.
/// \}

} // namespace Quire
