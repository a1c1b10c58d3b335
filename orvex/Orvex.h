#pragma once

/// \file
/// The newsroom server's automation interfaces, version 4, as C++ classes.
///
/// Written by hand after orvex.idl beside it: the same names, order, signatures and identifiers. A reserved place is
/// never called and answers E_NOTIMPL. All numbers are LONG, 32 bits on every platform. Texts are BSTR, which whoever
/// receives them frees; a server may hand out a null BSTR for an empty text.
///
/// The interfaces are the server's. The library only calls them; newsroom/ implements them. docs/binding.md says what
/// to change here when a vendor's own type library differs.

#include <quire/platform/Automation.h>

namespace Orvex {

// ---- records --------------------------------------------------------------------------------------------------------

/// The 16-byte identifier block of a queue; `number` is the queue number that update notices name.
struct QueueIdentifier
{
    LONG number; ///< The queue's number.
    LONG word2;  ///< Not used here.
    LONG word3;  ///< Not used here.
    LONG word4;  ///< Not used here.
};

/// The three numbers of a story identifier.
struct StoryIdentifier
{
    LONG part1; ///< The story's number.
    LONG part2; ///< The second number.
    LONG part3; ///< The third number.
};

/// One field of a search hit.
struct FieldValue
{
    BSTR name;  ///< The field's identifier.
    BSTR value; ///< Its stored value.
};

/// One search hit. `fields` is a one-dimensional array of FieldValue records; it may be null.
struct SearchHit
{
    BSTR name;          ///< The story's name.
    BSTR queuePath;     ///< Path of the queue that holds it.
    StoryIdentifier id; ///< Its identifier.
    SAFEARRAY *fields;  ///< Its fields, see above.
};

// ---- the tree -------------------------------------------------------------------------------------------------------

/// A directory lists sub-directories and queues. An index past the end fails with 0x8004040B.
struct IDirectory2 : public IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE
    get_Item(VARIANT index, VARIANT *item) = 0; ///< Place 1: the entry at \a index, VT_I4 or VT_INT, as VT_DISPATCH.
    virtual HRESULT STDMETHODCALLTYPE get_Count(LONG *count) = 0; ///< Place 2: how many entries there are.
    virtual HRESULT STDMETHODCALLTYPE
    GetList(LONG first, LONG count,
            VARIANT *list) = 0; ///< Place 3: up to \a count entries from \a first on, VT_ARRAY of VT_DISPATCH.
    virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR *name) = 0; ///< Place 4: the full dotted path.
    virtual HRESULT STDMETHODCALLTYPE get_Flags(LONG *flags1, LONG *flags2,
                                                LONG *flags3) = 0; ///< Place 5: the three flag words.
};

/// A queue lists stories by position.
struct IQueue : public IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE
    get_Item(VARIANT index, VARIANT *item) = 0; ///< Place 1: the entry at \a index, VT_I4 or VT_INT, as VT_DISPATCH.
    virtual HRESULT STDMETHODCALLTYPE get_Count(LONG *count) = 0; ///< Place 2: how many entries there are.
    virtual HRESULT STDMETHODCALLTYPE
    GetList(LONG first, LONG count,
            VARIANT *list) = 0; ///< Place 3: up to \a count entries from \a first on, VT_ARRAY of VT_DISPATCH.
    virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR *name) = 0; ///< Place 4: the full dotted path.
};

/// A queue with its flags, its number, its form, and the operations that change it.
struct IQueue2 : public IQueue
{
    virtual HRESULT STDMETHODCALLTYPE get_Flags(LONG *flags1, LONG *flags2,
                                                LONG *flags3) = 0;          ///< Place 5: the three flag words.
    virtual HRESULT STDMETHODCALLTYPE get_QueueID(QueueIdentifier *id) = 0; ///< Place 6: the identifier block.
    virtual HRESULT STDMETHODCALLTYPE get_FormName(BSTR *name) = 0;         ///< Place 7: the name of the form.
    virtual HRESULT STDMETHODCALLTYPE get_Update(VARIANT_BOOL *on) = 0;     ///< Place 8: whether changes are reported.
    virtual HRESULT STDMETHODCALLTYPE put_Update(VARIANT_BOOL on) = 0; ///< Place 9: has changes reported, or no longer.
    virtual HRESULT STDMETHODCALLTYPE CreateStory(
        LONG position, VARIANT *story) = 0; ///< Place 10: a new story before the one at \a position, as VT_DISPATCH.
    virtual HRESULT STDMETHODCALLTYPE Delete(VARIANT index) = 0; ///< Place 11: deletes the story at \a index.
    virtual HRESULT STDMETHODCALLTYPE DeleteAll() = 0;           ///< Place 12: deletes all stories.
};

// ---- stories --------------------------------------------------------------------------------------------------------

/// One story: its name, identifier, form, fields, sections, lock and pending changes.
struct IStory2 : public IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE get_StoryName(BSTR *name) = 0; ///< Place 1: the name that lists show.
    virtual HRESULT STDMETHODCALLTYPE
    get_StoryUnique(BSTR *identifier) = 0;          ///< Place 2: the identifier in decimal, "part1:part2:part3".
    virtual HRESULT STDMETHODCALLTYPE Unlock() = 0; ///< Place 3: gives the lock back.
    virtual HRESULT STDMETHODCALLTYPE get_FormName(BSTR *name) = 0;          ///< Place 4: the name of the form.
    virtual HRESULT STDMETHODCALLTYPE get_Field(BSTR name, BSTR *value) = 0; ///< Place 5: the stored value of a field.
    virtual HRESULT STDMETHODCALLTYPE put_Field(BSTR name,
                                                BSTR value) = 0;   ///< Place 6: writes a field, to be kept by Save.
    virtual HRESULT STDMETHODCALLTYPE Save(VARIANT_BOOL flag) = 0; ///< Place 7: keeps what was put.
    virtual HRESULT STDMETHODCALLTYPE IsLocked(LONG lockType,
                                               VARIANT_BOOL *locked) = 0; ///< Place 8: whether the story is locked.
    virtual HRESULT STDMETHODCALLTYPE get_Section(LONG section,
                                                  BSTR *text) = 0; ///< Place 9: sections in the other form.
    virtual HRESULT STDMETHODCALLTYPE put_Section(LONG section,
                                                  BSTR text) = 0; ///< Place 10: replaces sections in that form.
    virtual HRESULT STDMETHODCALLTYPE get_SectionXml(LONG section, BSTR *text) = 0; ///< Place 11: sections as markup.
    virtual HRESULT STDMETHODCALLTYPE put_SectionXml(LONG section,
                                                     BSTR text) = 0; ///< Place 12: replaces sections as markup.
    virtual HRESULT STDMETHODCALLTYPE Lock(LONG lockType,
                                           BSTR *holder) = 0; ///< Place 13: takes the lock, or says who holds it.
};

// ---- signing on -----------------------------------------------------------------------------------------------------

/// The sign-on object: the way into the server, and the container of the connection points for its events.
struct ISignon4 : public IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE Reserved1() = 0;  ///< Place 1: reserved.
    virtual HRESULT STDMETHODCALLTYPE Disconnect() = 0; ///< Place 2: signs off.
    virtual HRESULT STDMETHODCALLTYPE
    get_Connected(VARIANT_BOOL *connected) = 0;        ///< Place 3: whether somebody is signed on.
    virtual HRESULT STDMETHODCALLTYPE Reserved4() = 0; ///< Place 4: reserved.
    virtual HRESULT STDMETHODCALLTYPE Reserved5() = 0; ///< Place 5: reserved.
    virtual HRESULT STDMETHODCALLTYPE
    GetDirectory(BSTR path, IDispatch **directory) = 0; ///< Place 6: the directory or queue at \a path.
    virtual HRESULT STDMETHODCALLTYPE Search(BSTR query, LONG *searchId) = 0; ///< Place 7: starts a search.
    virtual HRESULT STDMETHODCALLTYPE StopSearch(LONG searchId) = 0;          ///< Place 8: ends a search.
    virtual HRESULT STDMETHODCALLTYPE
    GetStory(BSTR queuePath, LONG number, LONG zero1, LONG zero2,
             IDispatch **story) = 0; ///< Place 9: the story \a number of a queue; the other two are 0.
    virtual HRESULT STDMETHODCALLTYPE DeleteStory(BSTR queuePath, LONG part1, LONG part2,
                                                  LONG part3) = 0; ///< Place 10: deletes a story.
    virtual HRESULT STDMETHODCALLTYPE
    LoadBlob(BSTR name, SAFEARRAY **data, LONG *value) = 0; ///< Place 11: the bytes and the number kept under \a name.
    virtual HRESULT STDMETHODCALLTYPE
    SaveBlob(BSTR name, SAFEARRAY *data,
             LONG *value) = 0; ///< Place 12: keeps bytes under \a name; the number kept with them comes back.
    virtual HRESULT STDMETHODCALLTYPE DeleteBlob(BSTR name) = 0; ///< Place 13: removes what is kept under \a name.
    virtual HRESULT STDMETHODCALLTYPE GetSystemForm(BSTR name, BSTR *form) = 0; ///< Place 14: the markup of a form.
    virtual HRESULT STDMETHODCALLTYPE Reserved15() = 0;                         ///< Place 15: reserved.
    virtual HRESULT STDMETHODCALLTYPE get_ServerName(BSTR *name) = 0;           ///< Place 16: the name of the server.
    virtual HRESULT STDMETHODCALLTYPE
    GetUserInfo(BSTR *text1, BSTR *text2, BSTR *text3, BSTR *text4, LONG *number1,
                LONG *number2) = 0; ///< Place 17: four texts and two numbers about the user.
    virtual HRESULT STDMETHODCALLTYPE LoadUserBlob(SAFEARRAY **data,
                                                   LONG *value) = 0; ///< Place 18: the one blob of the user.
    virtual HRESULT STDMETHODCALLTYPE SaveUserBlob(SAFEARRAY *data, LONG *value) = 0; ///< Place 19: keeps that blob.
    virtual HRESULT STDMETHODCALLTYPE get_SysReadRate(LONG *rate) = 0;                ///< Place 20: the reading rate.
    virtual HRESULT STDMETHODCALLTYPE get_SysWordLength(LONG *length) = 0;            ///< Place 21: the word length.
    virtual HRESULT STDMETHODCALLTYPE Connect(BSTR user, BSTR password, BSTR server,
                                              LONG option) = 0; ///< Place 22: signs on.
};

// ---- notices to the client ------------------------------------------------------------------------------------------

/// Events, delivered through these places only: an implementation may leave the four operations of IDispatch empty.
struct _IAnNotifyFast : public IDispatch
{
    /// The user has been logged out.
    virtual HRESULT STDMETHODCALLTYPE raw_OnNotifyLogout() = 0;
    /// Hits of a search. `results`: a one-dimensional array of SearchHit records.
    virtual HRESULT STDMETHODCALLTYPE raw_OnNotifySearchResults(LONG searchId, SAFEARRAY *results, LONG totalHits,
                                                                LONG finished) = 0;
};

/// Events with queue updates.
struct _IAnNotifyFast2 : public _IAnNotifyFast
{
    /// The queue \a queueId has changed.
    virtual HRESULT STDMETHODCALLTYPE raw_OnNotifySpecial(LONG queueId) = 0;
};

/// The class of the sign-on object: `__uuidof(Orvex::Signon)` is what CoCreateInstance takes. ProgID "Orvex.Signon",
/// in-process server, threading model Both.
class Signon;

/// Identifier of the type library.
struct Library;

} // namespace Orvex

// clang-format off
__CRT_UUID_DECL(Orvex::Library,         0xb7a1f1a0, 0x5c0b, 0x4d5e, 0x8f, 0x60, 0x3c, 0x1d, 0x2a, 0x9e, 0x40, 0x00)
__CRT_UUID_DECL(Orvex::QueueIdentifier, 0xc6493d22, 0x747f, 0x4159, 0x83, 0xb9, 0xd5, 0x3b, 0x22, 0x1f, 0x43, 0x06)
__CRT_UUID_DECL(Orvex::StoryIdentifier, 0xaca8133f, 0xf3f8, 0x477d, 0xb4, 0x53, 0xaa, 0xb4, 0xea, 0x68, 0x07, 0x15)
__CRT_UUID_DECL(Orvex::FieldValue,      0x60ac5e09, 0x1680, 0x410c, 0x98, 0x79, 0xa5, 0x4a, 0xa0, 0xe5, 0xf2, 0x33)
__CRT_UUID_DECL(Orvex::SearchHit,       0xdfbc67e0, 0x48e9, 0x4ea7, 0xae, 0x36, 0xa1, 0xa0, 0xc7, 0x18, 0x01, 0x31)
__CRT_UUID_DECL(Orvex::IDirectory2,     0xdcc446b8, 0x4961, 0x4f3d, 0xaa, 0xf3, 0x6a, 0x05, 0xfd, 0x8a, 0x3c, 0x15)
__CRT_UUID_DECL(Orvex::IQueue,          0x0288691d, 0x02d8, 0x41ad, 0x8a, 0xcc, 0x4d, 0x6c, 0xe1, 0xac, 0xd4, 0x9c)
__CRT_UUID_DECL(Orvex::IQueue2,         0x654928eb, 0x278a, 0x4a7e, 0xba, 0xdb, 0x79, 0xad, 0x3e, 0x70, 0xcb, 0xdd)
__CRT_UUID_DECL(Orvex::IStory2,         0x3e24d4dc, 0xcecc, 0x4dd3, 0x98, 0x0d, 0x4b, 0xf1, 0x12, 0x8b, 0x92, 0x73)
__CRT_UUID_DECL(Orvex::ISignon4,        0xefc080a1, 0xc5e7, 0x44be, 0xb1, 0x28, 0x52, 0x1d, 0xec, 0xae, 0xb1, 0xf9)
__CRT_UUID_DECL(Orvex::_IAnNotifyFast,  0x84a1c3b5, 0x777d, 0x4811, 0xa7, 0x8c, 0x5e, 0x39, 0xa8, 0xbd, 0x83, 0x4e)
__CRT_UUID_DECL(Orvex::_IAnNotifyFast2, 0xf2f1d7c6, 0x0b43, 0x4c39, 0x9d, 0x0a, 0x6a, 0x6f, 0x6b, 0x8e, 0x5a, 0x51)
__CRT_UUID_DECL(Orvex::Signon,          0x1d9f3c52, 0x6f0e, 0x4a4f, 0x9a, 0x8e, 0x5b, 0x7a, 0x2c, 0x6d, 0x9e, 0x10)
// clang-format on

namespace Orvex {

/// A counted reference.
_COM_SMARTPTR_TYPEDEF(IDirectory2, __uuidof(IDirectory2));
/// A counted reference.
_COM_SMARTPTR_TYPEDEF(IQueue, __uuidof(IQueue));
/// A counted reference.
_COM_SMARTPTR_TYPEDEF(IQueue2, __uuidof(IQueue2));
/// A counted reference.
_COM_SMARTPTR_TYPEDEF(IStory2, __uuidof(IStory2));
/// A counted reference.
_COM_SMARTPTR_TYPEDEF(ISignon4, __uuidof(ISignon4));
/// A counted reference.
_COM_SMARTPTR_TYPEDEF(_IAnNotifyFast, __uuidof(_IAnNotifyFast));
/// A counted reference.
_COM_SMARTPTR_TYPEDEF(_IAnNotifyFast2, __uuidof(_IAnNotifyFast2));

} // namespace Orvex
