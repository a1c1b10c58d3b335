#include "Input.h"

#include <algorithm>
#include <cstring>

namespace Fuzz {

QString textOf(const QByteArray &bytes)
{
    if (bytes.isEmpty() || bytes.at(0) != '\xFF')
        return QString::fromUtf8(bytes.constData(), bytes.size()); // without the size it would end at a zero
    QString text((bytes.size() - 1) / int(sizeof(QChar)), Qt::Uninitialized);
    std::memcpy(text.data(), bytes.constData() + 1, std::size_t(text.size()) * sizeof(QChar));
    return text;
}

QString matchable(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair = text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        else if (text.at(i).isSurrogate())
            text[i] = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

QStringList linesOf(const QString &text, int count)
{
    QStringList lines;
    int from = 0;
    while (lines.size() < count) {
        const int found = text.indexOf(QLatin1Char('\n'), from);
        const int end = found < 0 ? text.size() : found;
        lines.append(text.mid(from, end - from));
        from = std::min(end + 1, text.size());
    }
    lines.append(text.mid(from));
    return lines;
}

Input::Input(const QByteArray &bytes)
    : m_bytes(bytes)
{}

quint8 Input::byte()
{
    return atEnd() ? quint8(0) : static_cast<quint8>(m_bytes.at(m_position++));
}

qint32 Input::number()
{
    quint32 value = 0;
    for (int shift = 0; shift < 32; shift += 8)
        value |= quint32{byte()} << shift;
    return static_cast<qint32>(value);
}

QByteArray Input::bytes()
{
    const int count = std::min(int{byte()}, m_bytes.size() - m_position);
    QByteArray taken = m_bytes.mid(m_position, count);
    m_position += count;
    return taken;
}

QString Input::text()
{
    if (!atEnd() && m_bytes.at(m_position) == '\xFF') {
        ++m_position;
        return QString();
    }
    const QByteArray taken = bytes();
    return QString::fromUtf8(taken.constData(), taken.size()) + QLatin1String("");
}

} // namespace Fuzz
