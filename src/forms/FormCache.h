#pragma once

/// \file
/// The forms that the server has delivered.

#include <map>

#include <QString>

#include <quire/forms/FormData.h>
#include <quire/platform/Export.h>
#include <quire/session/Mutex.h>

namespace Quire {

/// All forms that this process has fetched, each of them read once. There is one, sFormCache.
///
/// The cache owns the forms and keeps them, across connections too, until Clear; nothing but a host's call to Clear
/// ever removes any. Any thread may call any operation. Two threads that ask for a new form at the same time may both
/// fetch it; whoever asks gets the same one of the two.
class QUIRE_EXPORT FormCache
{
public:
    /// The one cache.
    static FormCache sFormCache;

    /// The form called \a name, in exactly this letter case. Null when the cache does not have it and the server does
    /// not deliver it either: no session, not connected, or no text for that name.
    ///
    /// A form that is kept takes no server call. One that the server did not deliver is asked for again each time. What
    /// the server raises on being asked, as `_com_error`, passes to the caller and leaves the cache as it was. The
    /// form stays valid until Clear; it is shared, so nobody changes it.
    static FormData *getForm(QString name);

    /// Destroys all forms. No thread may still be using one.
    static void Clear();

    FormCache(const FormCache &other);                ///< Copies the forms.
    FormCache(FormCache &&other) noexcept;            ///< Takes the forms over and leaves \a other empty.
    FormCache &operator=(const FormCache &other);     ///< Copies the forms, and destroys those that were here.
    FormCache &operator=(FormCache &&other) noexcept; ///< Takes the forms over, and destroys those that were here.
    ~FormCache();

private:
    FormCache();

    // Their nodes stay where they are when others come and go, as getForm promises.
    using Forms = std::map<QString, FormData>;

    FormData *findForm(const QString &name);
    void addForm(const QString &name);
    Forms forms() const;
    Forms exchangeForms(Forms forms) noexcept;

    static Mutex<LockRank::Forms> sMutex;   // of the forms of all caches; a leaf
    Forms m_Forms QUIRE_GUARDED_BY(sMutex); // by name
};

} // namespace Quire
