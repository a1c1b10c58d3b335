#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>

#include <quire/story/LocalStory.h>

#include "StoryChecks.h"
#include "src/story/TextFile.h"

namespace StoryFuzz {

namespace {

bool hasMark(const QByteArray &bytes)
{
    for (const char *mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        if (bytes.startsWith(mark))
            return true;
    }
    return bytes.startsWith(QByteArray("\0\0\xFE\xFF", 4));
}

bool isUtf8(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

} // namespace

QString checkFile(const QByteArray &bytes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("story"));
    if (!Quire::readTextFile(path).isEmpty())
        return QStringLiteral("a text of a file that is not there");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QStringLiteral("cannot be written");
    file.close();
    const QString text = Quire::readTextFile(path);
    if (!hasMark(bytes) && isUtf8(bytes) && text != QString::fromUtf8(bytes.constData(), bytes.size()))
        return QStringLiteral("not read as UTF-8");
    QString whole;
    Quire::LocalStory(path).GetSection(127, whole, true);
    const bool isOpened = text.contains(QLatin1String("<a ")); // closes anchors
    if (!isOpened && whole != text)
        return QStringLiteral("a story has another text than its file");
    if (!text.isValidUtf16())
        return QString(); // UTF-8 cannot hold it
    if (!Quire::writeTextFile(path, text) || Quire::readTextFile(path) != text)
        return QStringLiteral("not read as it was written");
    return QString();
}

} // namespace StoryFuzz
