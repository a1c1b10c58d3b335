#include <QStringList>

#include <quire/newsroom/model/StoryId.h>
#include <quire/session/StoryID.h>

#include "SessionChecks.h"

namespace SessionFuzz {

namespace {

using Quire::StoryID;

bool isSame(const StoryID &a, const StoryID &b)
{
    return a.part1 == b.part1 && a.part2 == b.part2 && a.part3 == b.part3;
}

StoryID readInPieces(const QString &text, int base)
{
    const QStringList pieces = text.mid(text.indexOf(QLatin1Char(' ')) + 1).split(QLatin1Char(':'));
    return {pieces.value(0).toInt(nullptr, base), pieces.value(1).toInt(nullptr, base),
            pieces.value(2).toInt(nullptr, base)};
}

QString checkWritten(StoryID id)
{
    StoryID again{};
    Quire::String2StoryID(Quire::StoryID2String(id, true), &again, 10);
    if (!isSame(id, again) || Quire::CmpStoryID(&id, &again) != Quire::SID_Identical)
        return QStringLiteral("not read as it was written");
    Quire::String2StoryID(Quire::StoryID2String(id, false), &again, 10);
    if (!isSame(again, {id.part1, id.part2, 0}))
        return QStringLiteral("the short form is not read as it was written");
    return QString();
}

QString checkStandIn(const QString &text)
{
    Newsroom::StoryId id;
    Newsroom::StoryId again;
    qint32 revision = -1;
    qint32 revisionAgain = -1;
    if (Newsroom::StoryId::fromHeaderText(text, &id, &revision)) {
        if (!Newsroom::StoryId::fromHeaderText(id.headerText(revision), &again, &revisionAgain) || again != id ||
            revision != revisionAgain)
            return QStringLiteral("the header's form is not read as it was written");
    } else if (id != Newsroom::StoryId() || revision != -1) {
        return QStringLiteral("something was written for a header that is none");
    }
    if (!Newsroom::StoryId::fromUnique(text, &id))
        return QString();
    if (!Newsroom::StoryId::fromUnique(id.unique(), &again) || again != id)
        return QStringLiteral("the unique form is not read as it was written");
    StoryID read{};
    Quire::String2StoryID(id.unique(), &read, 10);
    return isSame(read, {id.part1, id.part2, id.part3}) ? QString()
                                                        : QStringLiteral("the library reads another number");
}

} // namespace

QString checkIdentifiers(const QString &text)
{
    Quire::String2StoryID(text, nullptr, 10);
    for (const int base : {0, 2, 8, 10, 16, 36}) {
        StoryID id{-1, -1, -1};
        Quire::String2StoryID(text, &id, base);
        if (!isSame(id, readInPieces(text, base)))
            return QStringLiteral("other numbers in base %1").arg(base);
        QString wrong = checkWritten(id);
        if (!wrong.isEmpty())
            return wrong;
    }
    return checkStandIn(text);
}

} // namespace SessionFuzz
