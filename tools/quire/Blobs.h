#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

#include "Session.h"

namespace Tool {

/// Which blob: one kept under a name, or the signed-on user's own.
struct BlobName
{
    QString name;
    bool mine = false;

    /// For messages: 'blob "prefs"' or "your own blob".
    QString text() const;
};

/// A blob as the server keeps it.
struct BlobContent
{
    QByteArray bytes;
    qint32 value = 0; ///< A number that the server gives with it.
};

/// Stores a blob. Failure Failed with the server's reason.
void saveBlob(Session &session, const BlobName &blob, const QByteArray &bytes);
/// Fetches a blob. Failure NotFound when there is none, Failed when the server refuses.
BlobContent loadBlob(Session &session, const BlobName &blob);
/// The same, none when the server gives none for any reason.
std::optional<BlobContent> findBlob(Session &session, const BlobName &blob);
/// Removes a blob; the user's own, which a server cannot remove, is emptied. Failures as of loadBlob().
void removeBlob(Session &session, const BlobName &blob);

} // namespace Tool
