#include <quire/session/StoryID.h>

#include <QStringList>

namespace Quire {

QString StoryID2String(const StoryID &id, bool full)
{
    QString text = QString::number(id.part1) + QLatin1Char(':') + QString::number(id.part2);
    if (full)
        text += QLatin1Char(':') + QString::number(id.part3);
    return text;
}

void String2StoryID(const QString &text, StoryID *id, int base)
{
    if (!id)
        return;
    const QString numbers = text.mid(text.indexOf(QLatin1Char(' ')) + 1);
    id->part1 = numbers.section(QLatin1Char(':'), 0, 0).toInt(nullptr, base);
    id->part2 = numbers.section(QLatin1Char(':'), 1, 1).toInt(nullptr, base);
    id->part3 = numbers.section(QLatin1Char(':'), 2, 2).toInt(nullptr, base);
}

SID_Diff_t CmpStoryID(StoryID *a, StoryID *b)
{
    if (!a || !b)
        return SID_Different;
    const bool second = a->part2 == b->part2;
    const bool third = a->part3 == b->part3;
    if (second && third)
        return a->part1 == b->part1 ? SID_Identical : SID_FirstDiffers;
    return second || third ? SID_OneDiffers : SID_Different;
}

} // namespace Quire
