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

bool writeText(QFileDevice &file, const QString &text)
{
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream.setGenerateByteOrderMark(true);
    stream << text;
    stream.flush();
    return stream.status() == QTextStream::Ok;
}

bool writeInPlace(const QString &path, const QString &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && writeText(file, text);
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
    if (!isReplaceable(path))
        return writeInPlace(path, text);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return writeInPlace(path, text); // no file may be made in that folder
    if (!writeText(file, text))
        return false;                                 // what was written is given up
    return file.commit() || writeInPlace(path, text); // Windows replaces no file that another program has open
}

} // namespace Quire
