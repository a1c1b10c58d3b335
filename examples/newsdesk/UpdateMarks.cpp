#include "UpdateMarks.h"

namespace Desk {

namespace {

constexpr int freshTime = 6000; // milliseconds

} // namespace

UpdateMarks::UpdateMarks(QObject *parent)
    : QObject(parent)
{
    m_fading.setSingleShot(true);
    m_fading.setInterval(freshTime + 50);
    connect(&m_fading, &QTimer::timeout, this, &UpdateMarks::changed);
}

/// The first number stays the same when a story is saved.
QString UpdateMarks::keyOf(const QString &identifier)
{
    return identifier.section(QLatin1Char(':'), 0, 0);
}

void UpdateMarks::mark(const QString &identifier)
{
    m_marks[keyOf(identifier)].start();
    m_fading.start();
    Q_EMIT changed();
}

void UpdateMarks::see(const QString &identifier)
{
    if (m_marks.remove(keyOf(identifier)) > 0)
        Q_EMIT changed();
}

void UpdateMarks::clear()
{
    m_marks.clear();
    Q_EMIT changed();
}

bool UpdateMarks::isMarked(const QString &identifier) const
{
    return m_marks.contains(keyOf(identifier));
}

bool UpdateMarks::isFresh(const QString &identifier) const
{
    const auto found = m_marks.constFind(keyOf(identifier));
    return found != m_marks.constEnd() && !found->hasExpired(freshTime);
}

} // namespace Desk
