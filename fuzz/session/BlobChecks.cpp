#include <memory>

#include <quire/Quire.h>
#include <quire/platform/Apartment.h>

#include "SessionChecks.h"
#include "fuzz/StrangeArray.h"
#include "tests/platform/CountedDispatch.h"
#include "tests/support/FakeServer.h"

namespace SessionFuzz {

namespace {

using namespace Quire;

/// What the array holds when it is one row of bytes, else nothing.
QByteArray bytesOf(const Fuzz::StrangeArray &array)
{
    if (!array.isPlainRow() || array.elementSize() != 1)
        return QByteArray();
    return QByteArray(static_cast<const char *>(array.get()->pvData), static_cast<int>(array.size()));
}

QString checkLoaded(QuireCOM &session, const QByteArray &expected, LONG value)
{
    long size = -1;
    long extra = -1;
    const std::unique_ptr<char, void (*)(char *)> blob(session.LoadBlob(QStringLiteral("any"), &size, &extra),
                                                       FreeBlob);
    if (!blob || extra != value)
        return QStringLiteral("no blob, or another number");
    if (QByteArray(blob.get(), static_cast<int>(size)) != expected)
        return QStringLiteral("%1 bytes instead of %2, or others").arg(size).arg(expected.size());
    return QString();
}

} // namespace

QString checkBlobs(const QByteArray &bytes)
{
    const Platform::Apartment apartment;
    Fuzz::Input input(bytes);
    CountedDispatch object;
    QString wrong;
    {
        Fuzz::StrangeArray array(input, &object, false);
        const QByteArray expected = bytesOf(array);
        FakeServer::Server server;
        server.blobs[QStringLiteral("any")] = QByteArray();
        server.blobValue = input.number();
        server.blobArray = [&] { return array.release(); };
        QuireCOM *const session = QuireCOM::GetQuireCOM(true);
        session->Connect(QString(), QStringLiteral("ann"), QString(), 0);
        wrong = checkLoaded(*session, expected, server.blobValue);
        QuireCOM::UnloadCOM();
        if (wrong.isEmpty() && server.liveObjects() != 0)
            wrong = QStringLiteral("an object of the server is still held");
    }
    if (wrong.isEmpty() && object.references != 0)
        wrong = QStringLiteral("the array was not destroyed");
    return wrong;
}

} // namespace SessionFuzz
