#include "TextFile.h"

#include <QFile>
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
    QTextCodec::ConverterState state;
    *text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
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
    return QString::fromLatin1(bytes);
}

bool writeTextFile(const QString &path, const QString &text)
{
    QSaveFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::WriteOnly))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream.setGenerateByteOrderMark(true);
    stream << text;
    stream.flush();
    if (stream.status() != QTextStream::Ok)
        file.cancelWriting();
    return file.commit();
}

} // namespace Quire
