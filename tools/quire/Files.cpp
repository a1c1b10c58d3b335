#include "Files.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>

#include "Failure.h"
#include "Output.h"

namespace Tool {

namespace {

[[noreturn]] void fail(const QString &what, const QString &name, const QString &why)
{
    throw Failure(ExitCode::Failed, QStringLiteral("cannot %1 %2: %3").arg(what, name, why));
}

} // namespace

QByteArray readFile(const QString &name)
{
    QByteArray bytes;
    if (name == standardStream) {
        if (!readStandardInput(bytes))
            fail(QStringLiteral("read"), QStringLiteral("the standard input"), QStringLiteral("it cannot be read"));
        return bytes;
    }
    if (QFileInfo(name).isDir())
        fail(QStringLiteral("read"), name, QStringLiteral("it is a folder"));
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("read"), name, file.errorString());
    const qint64 size = file.size();
    bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        fail(QStringLiteral("read"), name, file.errorString());
    // What is too large for one array comes as an empty one, without any error.
    if (bytes.size() < size)
        fail(QStringLiteral("read"), name,
             QStringLiteral("only %1 of its %2 bytes could be read").arg(bytes.size()).arg(size));
    return bytes;
}

QString readText(const QString &name)
{
    const QByteArray bytes = readFile(name);
    return QTextCodec::codecForUtfText(bytes, QTextCodec::codecForName("UTF-8"))->toUnicode(bytes);
}

void writeFile(const QString &name, const QByteArray &bytes, Output &output)
{
    if (name == standardStream)
        return output.bytes(bytes);
    const QFileInfo info(name);
    if (info.isDir())
        fail(QStringLiteral("write"), name, QStringLiteral("it is a folder"));
    if (info.exists() && !info.isFile()) {
        QFile device(name);
        if (!device.open(QIODevice::WriteOnly) || device.write(bytes) != bytes.size() || !device.flush())
            fail(QStringLiteral("write"), name, device.errorString());
        return;
    }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        fail(QStringLiteral("write"), name, file.errorString());
}

} // namespace Tool
