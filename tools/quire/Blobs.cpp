#include "Blobs.h"

#include <functional>
#include <memory>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/session/QuireCOMMutex.h>

#include "Failure.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr HRESULT entryGone = static_cast<HRESULT>(0x8004040B);

struct BlobFreer
{
    void operator()(char *blob) const { Quire::FreeBlob(blob); }
};

/// What to ask the server directly.
using Question = std::function<HRESULT(Orvex::ISignon4 &)>;

/// The session says only that something could not be done. Asked once more, the server says why, or does it after all.
/// Raises Failure in the first case.
void askAgain(Session &session, const QString &what, const BlobName &blob, const Question &question)
{
    const Quire::QuireCOMMutex lock("quire::askAgain");
    const Orvex::ISignon4Ptr signon = session.com().GetSignon();
    if (!signon)
        _com_issue_error(E_POINTER);
    const HRESULT result = question(*signon);
    if (result == entryGone)
        throw Failure(ExitCode::NotFound, blob.mine ? QStringLiteral("you have no blob of your own")
                                                    : QStringLiteral("there is no %1").arg(blob.text()));
    if (FAILED(result))
        throw Failure(ExitCode::Failed,
                      QStringLiteral("cannot %1 %2: %3").arg(what, blob.text(), reason(result, false)));
}

} // namespace

QString BlobName::text() const
{
    return mine ? QStringLiteral("your own blob") : QStringLiteral("blob \"%1\"").arg(name);
}

void saveBlob(Session &session, const BlobName &blob, const QByteArray &bytes)
{
    Quire::QuireCOM &com = session.com();
    const bool saved = blob.mine ? com.SaveUserBlob(bytes.constData(), bytes.size())
                                 : com.SaveBlob(blob.name, bytes.constData(), bytes.size());
    if (saved)
        return;
    askAgain(session, QStringLiteral("store"), blob, [&](Orvex::ISignon4 &signon) {
        const Platform::SafeArray data = Platform::SafeArray::ofBytes(bytes.constData(), std::size_t(bytes.size()));
        LONG value = 0;
        if (!data)
            return E_OUTOFMEMORY;
        return blob.mine ? signon.SaveUserBlob(data.get(), &value)
                         : signon.SaveBlob(Platform::Bstr(blob.name).get(), data.get(), &value);
    });
}

std::optional<BlobContent> findBlob(Session &session, const BlobName &blob)
{
    Quire::QuireCOM &com = session.com();
    long size = 0;
    long value = 0;
    const std::unique_ptr<char, BlobFreer> data(blob.mine ? com.LoadUserBlob(&size, &value)
                                                          : com.LoadBlob(blob.name, &size, &value));
    if (!data)
        return std::nullopt;
    return BlobContent{QByteArray(data.get(), static_cast<qint32>(size)), static_cast<qint32>(value)};
}

BlobContent loadBlob(Session &session, const BlobName &blob)
{
    std::optional<BlobContent> content = findBlob(session, blob);
    if (content)
        return *content;
    askAgain(session, QStringLiteral("fetch"), blob, [&](Orvex::ISignon4 &signon) {
        Platform::SafeArray data;
        LONG value = 0;
        return blob.mine ? signon.LoadUserBlob(data.out(), &value)
                         : signon.LoadBlob(Platform::Bstr(blob.name).get(), data.out(), &value);
    });
    content = findBlob(session, blob);
    if (!content)
        throw Failure(ExitCode::Failed, QStringLiteral("cannot fetch %1").arg(blob.text()));
    return *content;
}

void removeBlob(Session &session, const BlobName &blob)
{
    if (blob.mine)
        return saveBlob(session, blob, QByteArray());
    if (session.com().DeleteBlob(blob.name))
        return;
    askAgain(session, QStringLiteral("remove"), blob,
             [&](Orvex::ISignon4 &signon) { return signon.DeleteBlob(Platform::Bstr(blob.name).get()); });
}

} // namespace Tool
