#pragma once

// How GoogleTest shows what the newsroom's tests compare.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <ostream>

#include <quire/newsroom/model/Refusal.h>
#include <quire/newsroom/model/Zeko.h>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << (text.isNull() ? "(null)" : '"' + text.toStdString() + '"');
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toPercentEncoding(" <>=\"/:\n").toStdString() << '"';
}

inline void PrintTo(const QStringList &texts, std::ostream *out)
{
    *out << '[' << texts.join(QLatin1String(" | ")).toStdString() << ']';
}

namespace Newsroom {

inline void PrintTo(Refusal refusal, std::ostream *out)
{
    *out << std::hex << "0x" << static_cast<quint32>(code(refusal)) << ' ' << description(refusal).toStdString();
}

inline void PrintTo(const NameValue &pair, std::ostream *out)
{
    *out << pair.name.toStdString() << '=' << pair.value.toStdString();
}

} // namespace Newsroom
