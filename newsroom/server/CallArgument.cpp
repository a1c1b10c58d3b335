#include <quire/newsroom/server/CallArgument.h>

#include <quire/orvex/Orvex.h>
#include <quire/platform/Bstr.h>

namespace Newsroom {
namespace CallArgument {

namespace {

QString number(const char *type, qint64 value)
{
    return QLatin1String(type) + QLatin1Char(' ') + QString::number(value);
}

} // namespace

QString text(LONG value)
{
    return QString::number(value);
}

QString text(BSTR value)
{
    if (!value)
        return QStringLiteral("null");
    return QLatin1Char('"') + Platform::toQString(value) + QLatin1Char('"');
}

QString text(const VARIANT &value)
{
    switch (value.vt) {
    case VT_I4:
        return number("VT_I4", value.lVal);
    case VT_INT:
        return number("VT_INT", value.intVal);
    case VT_I2:
        return number("VT_I2", value.iVal);
    case VT_UI4:
        return number("VT_UI4", value.ulVal);
    case VT_EMPTY:
        return QStringLiteral("VT_EMPTY");
    default:
        return QStringLiteral("VARIANT of type 0x%1").arg(value.vt, 0, 16);
    }
}

QString text(const SAFEARRAY *value)
{
    if (!value)
        return QStringLiteral("null");
    return QStringLiteral("[%1 elements]").arg(value->cDims == 0 ? 0 : value->rgsabound[0].cElements);
}

QString text(const IUnknown *value)
{
    return value ? QStringLiteral("object") : QStringLiteral("null");
}

QString text(REFIID value)
{
    if (value == __uuidof(Orvex::_IAnNotifyFast))
        return QStringLiteral("_IAnNotifyFast");
    if (value == __uuidof(Orvex::_IAnNotifyFast2))
        return QStringLiteral("_IAnNotifyFast2");
    return QStringLiteral("{%1}").arg(value.Data1, 8, 16, QLatin1Char('0'));
}

QString truth(VARIANT_BOOL value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace CallArgument
} // namespace Newsroom
