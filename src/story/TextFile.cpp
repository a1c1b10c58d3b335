#include "TextFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>
#include <QTextStream>

namespace Quire {

namespace {

/// Decodes \a bytes with \a codec; false when they are not in that encoding.
bool decode(QTextCodec *codec, const QByteArray &bytes, QString *text)
{
    if (!codec)
        return false;
    int size = bytes.size();
    while (size > 0 && bytes.at(size - 1) == '\0')
        --size;
    QTextCodec::ConverterState state;
    *text = codec->toUnicode(bytes.constData(), size, &state);
    text->resize(text->size() + bytes.size() - size, QChar()); // zeros at the end, of which Windows' codec drops one
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// The text as its file holds it.
QByteArray encode(const QString &text)
{
    QByteArray bytes;
    QTextStream stream(&bytes, QIODevice::WriteOnly);
    stream.setCodec("UTF-8");
    stream.setGenerateByteOrderMark(true);
    stream << text;
    stream.flush();
    return bytes;
}

bool writeAll(QFileDevice &file, const QByteArray &bytes)
{
    return file.write(bytes) == bytes.size() && file.flush();
}

bool writeToDevice(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && writeAll(file, bytes);
}

/// Writes over a file that cannot be replaced. It is cut to its new size last, and gets its old bytes back when the new
/// ones do not all go in: a full disk has room for what was there.
bool overwrite(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return false;
    const QByteArray old = file.readAll();
    if (file.seek(0) && writeAll(file, bytes) && file.resize(bytes.size()))
        return true;
    if (file.seek(0) && writeAll(file, old))
        file.resize(old.size());
    return false;
}

/// Replacing a file asks for rights on its folder only; its own are to count as well.
bool mayWrite(const QString &path)
{
    return !QFileInfo(path).isFile() ||
           QFile(path).open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly);
}

/// A device or a pipe is written to; a file in its place would be another thing.
bool isReplaceable(const QString &path)
{
    const QFileInfo target(path);
    return target.isFile() || !target.exists();
}

} // namespace

QString readTextFile(const QString &path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = file.readAll();
    if (QTextCodec *const marked = QTextCodec::codecForUtfText(bytes, nullptr))
        return marked->toUnicode(bytes);
    QString text;
    if (decode(QTextCodec::codecForName("UTF-8"), bytes, &text) || decode(QTextCodec::codecForLocale(), bytes, &text))
        return text;
    return QString::fromLatin1(bytes.constData(), bytes.size()); // without the size it would end at a zero
}

bool writeTextFile(const QString &path, const QString &text)
{
    if (path.isEmpty() || !mayWrite(path))
        return false;
    const QByteArray bytes = encode(text);
    if (!isReplaceable(path))
        return writeToDevice(path, bytes);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return overwrite(path, bytes); // no file may be made in that folder
    if (!writeAll(file, bytes))
        return false;                               // what was written is given up
    return file.commit() || overwrite(path, bytes); // Windows replaces no file that another program has open
}

} // namespace Quire
