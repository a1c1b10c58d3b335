#pragma once

// How GoogleTest shows what the newsroom's tests compare.

#include <QByteArray>
#include <ostream>

#include <quire/newsroom/model/Refusal.h>
#include <quire/newsroom/model/Zeko.h>

#include "support/QtPrinting.h"

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toPercentEncoding(" <>=\"/:\n").toStdString() << '"';
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
