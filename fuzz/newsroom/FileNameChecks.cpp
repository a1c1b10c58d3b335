#include <QRegularExpression>

#include <quire/newsroom/model/Entry.h>
#include <quire/newsroom/store/FileNames.h>

#include "NewsroomChecks.h"
#include "fuzz/Input.h"

namespace NewsroomFuzz {

namespace {

using namespace Newsroom;

bool comesBack(const QString &fileName, const QString &name)
{
    QString decoded;
    return FileNames::decode(fileName, &decoded) && decoded == name;
}

/// Whether every file system that keeps letters of all scripts can have a file of that name.
bool fitsFiles(const QString &fileName)
{
    static const QRegularExpression forbidden(QStringLiteral("[<>:\"/\\\\|?*\\x00-\\x1f\\x7f]|^\\.|[. ]$"));
    static const QRegularExpression device(QStringLiteral("^\\s*(con|prn|aux|nul|com[0-9]|lpt[0-9])\\s*(\\.|$)"),
                                           QRegularExpression::CaseInsensitiveOption);
    return fileName.isValidUtf16() && !fileName.contains(forbidden) && !fileName.contains(device);
}

/// Whether all that looks encoded is.
bool isEncoded(const QString &fileName)
{
    QString rest = Fuzz::matchable(fileName);
    rest.remove(QRegularExpression(QStringLiteral("%(u[0-9A-Fa-f]{4}|[0-9A-Fa-f]{2})")));
    return !rest.contains(QLatin1Char('%'));
}

} // namespace

QString checkFileNames(const QString &text)
{
    const QString ofEntry = FileNames::ofEntry(text);
    const QString exact = FileNames::ofExactName(text);
    if (!comesBack(ofEntry, text) || !comesBack(exact, text))
        return QStringLiteral("a name does not come back");
    if (!fitsFiles(ofEntry) || (!text.isEmpty() && !fitsFiles(exact + QLatin1String(".blob"))))
        return QStringLiteral("no name of a file: ") + ofEntry;
    for (const QString &other : {text.toUpper(), text.toLower()}) {
        if (other != text && FileNames::ofExactName(other).toCaseFolded() == exact.toCaseFolded())
            return QStringLiteral("two names meet where letter case is ignored: ") + exact;
    }
    const QString component = FileNames::component(text);
    if (!comesBack(component, text) || !comesBack(FileNames::component(text, 3), text))
        return QStringLiteral("a file's name does not come back");
    if (!text.isEmpty() && !isComponentName(component))
        return QStringLiteral("no component of a path: ") + component;
    QString decoded = QStringLiteral("before");
    const bool isName = FileNames::decode(text, &decoded);
    if (isName != isEncoded(text) || (!isName && decoded != QLatin1String("before")))
        return QStringLiteral("what was not encoded was decoded, or the other way round");
    return QString();
}

} // namespace NewsroomFuzz
