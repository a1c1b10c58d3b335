#include <quire/newsroom/model/StoryId.h>

#include <QStringList>

namespace Newsroom {

namespace {

QString number(qint32 value, int base)
{
    return base == 10 ? QString::number(value) : QString::number(static_cast<quint32>(value), base);
}

/// Reads one 32-bit number, hexadecimal ones as bit patterns.
bool readNumber(const QString &text, int base, qint32 *value)
{
    bool ok = false;
    if (base == 10)
        *value = text.toInt(&ok, base);
    else
        *value = static_cast<qint32>(text.toUInt(&ok, base));
    return ok;
}

QString joined(const StoryId &id, int base)
{
    return number(id.part1, base) + QLatin1Char(':') + number(id.part2, base) + QLatin1Char(':') +
           number(id.part3, base);
}

bool readParts(const QStringList &parts, int base, StoryId *id)
{
    StoryId read;
    if (!readNumber(parts.at(0), base, &read.part1) || !readNumber(parts.at(1), base, &read.part2) ||
        !readNumber(parts.at(2), base, &read.part3))
        return false;
    *id = read;
    return true;
}

} // namespace

QString StoryId::unique() const
{
    return joined(*this, 10);
}

QString StoryId::headerText(qint32 revision) const
{
    return joined(*this, 16) + QLatin1Char(':') + number(revision, 16);
}

bool StoryId::fromHeaderText(const QString &text, StoryId *id, qint32 *revision)
{
    const QStringList parts = text.trimmed().split(QLatin1Char(':'));
    if (parts.size() != 3 && parts.size() != 4)
        return false;
    qint32 readRevision = 0;
    if (parts.size() == 4 && !readNumber(parts.at(3), 16, &readRevision))
        return false;
    if (!readParts(parts, 16, id))
        return false;
    if (revision != nullptr)
        *revision = readRevision;
    return true;
}

bool StoryId::fromUnique(const QString &text, StoryId *id)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    return parts.size() == 3 && readParts(parts, 10, id);
}

} // namespace Newsroom
