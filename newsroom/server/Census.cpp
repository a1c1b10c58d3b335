#include <quire/newsroom/server/Census.h>

#include <QStringList>

#include <quire/platform/System.h>

namespace Newsroom {

namespace {

const char *const KindNames[] = {"Signon",     "Directory",    "Queue",    "Story",     "Enumerator",
                                 "RecordInfo", "ClassFactory", "Stranger", "Connection"};

} // namespace

Census::Census()
    : m_live{}
{
    for (std::atomic<int> &count : m_live)
        count = 0;
}

void Census::born(ObjectKind kind) noexcept
{
    ++m_live[static_cast<std::size_t>(kind)];
}

void Census::gone(ObjectKind kind) noexcept
{
    --m_live[static_cast<std::size_t>(kind)];
}

int Census::live(ObjectKind kind) const noexcept
{
    return m_live[static_cast<std::size_t>(kind)];
}

int Census::live() const noexcept
{
    int sum = 0;
    for (const std::atomic<int> &count : m_live)
        sum += count;
    return sum;
}

QString Census::text() const
{
    QStringList parts;
    for (std::size_t kind = 0; kind < Kinds; ++kind) {
        if (const int count = m_live[kind])
            parts << QStringLiteral("%1 %2").arg(QLatin1String(KindNames[kind])).arg(count);
    }
    return parts.isEmpty() ? QStringLiteral("nothing") : parts.join(QLatin1String(", "));
}

qint64 Census::liveTexts()
{
    return Platform::liveBstrs();
}

qint64 Census::liveArrays()
{
    return Platform::liveArrays();
}

} // namespace Newsroom
