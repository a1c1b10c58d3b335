#include <cstring>

#include <quire/platform/Bstr.h>
#include <quire/platform/System.h>

#include "PlatformChecks.h"
#include "fuzz/Input.h"

namespace PlatformFuzz {

namespace {

using Platform::Bstr;

QString checkBytes(const QByteArray &bytes)
{
    Bstr string;
    string.reset(SysAllocStringByteLen(bytes.constData(), static_cast<UINT>(bytes.size())));
    const auto length = static_cast<UINT>(bytes.size());
    if (SysStringByteLen(string.get()) != length || SysStringLen(string.get()) != length / sizeof(OLECHAR))
        return QStringLiteral("another length than was asked for");
    if (std::memcmp(string.get(), bytes.constData(), length) != 0)
        return QStringLiteral("other bytes");
    const QString text = string.toString();
    if (text.size() != static_cast<int>(length / sizeof(OLECHAR)) || QStringView(text) != string.view())
        return QStringLiteral("another text than there is");
    if (Bstr(text).toString() != text || text.isNull())
        return QStringLiteral("a text does not come back");
    return QString();
}

/// Up to its first NUL a text may be replaced by a part of itself.
QString checkReplacing(const QString &text, int from)
{
    Bstr string(text);
    BSTR own = string.release();
    const int start = text.isEmpty() ? 0 : from % text.size();
    QString expected = text.mid(start);
    const int nul = expected.indexOf(QChar(0));
    if (nul >= 0)
        expected.truncate(nul);
    const bool replaced = SysReAllocString(&own, own + start) != FALSE;
    string.reset(own);
    return replaced && string.toString() == expected ? QString() : QStringLiteral("a part does not replace the whole");
}

} // namespace

QString checkStrings(const QByteArray &bytes)
{
    const auto before = Platform::liveBstrs();
    Fuzz::Input input(bytes);
    const int from = input.byte();
    const QString text = input.text();
    QString wrong = checkReplacing(text, from);
    while (!input.atEnd() && wrong.isEmpty())
        wrong = checkBytes(input.bytes());
    if (wrong.isEmpty() && Platform::liveBstrs() != before)
        wrong = QStringLiteral("a text is left");
    return wrong;
}

} // namespace PlatformFuzz
