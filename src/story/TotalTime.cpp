#include "TotalTime.h"

namespace Quire {

namespace {

const qint64 secondsPerMinute = 60;

/// Reads "minutes:seconds" or plain seconds; what is no number counts as 0, and parts further on are ignored. An empty
/// text gives -1.
qint64 seconds(const QString &text)
{
    if (text.isEmpty())
        return -1;
    const QChar colon = QLatin1Char(':');
    const int first = text.indexOf(colon);
    if (first < 0)
        return text.toInt();
    const int second = text.indexOf(colon, first + 1);
    const int length = second < 0 ? -1 : second - first - 1;
    return text.leftRef(first).toInt() * secondsPerMinute + text.midRef(first + 1, length).toInt();
}

} // namespace

QString TotalTime::fieldName()
{
    return QStringLiteral("total-time");
}

void TotalTime::note(const Attribute &field)
{
    if (field.name == fieldName())
        m_total = field.value;
    else if (field.name == QLatin1String("audio-time"))
        m_audio = field.value;
    else if (field.name == QLatin1String("tape-time"))
        m_tape = field.value;
}

QString TotalTime::computed() const
{
    if (!m_total.isEmpty())
        return QString();
    const qint64 audio = seconds(m_audio);
    const qint64 tape = seconds(m_tape);
    if (audio < 0 && tape < 0)
        return QString();
    const qint64 sum = qMax<qint64>(audio, 0) + qMax<qint64>(tape, 0);
    const QString minutes = QString::number(sum / secondsPerMinute);
    return minutes + QLatin1String(sum % secondsPerMinute < 10 ? ":0" : ":") + QString::number(sum % secondsPerMinute);
}

} // namespace Quire
