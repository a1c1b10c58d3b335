#pragma once

#include <QtGlobal>

#include <quire/platform/Automation.h>

/// The HRESULT as hosts see it: a `long` with the sign of the 32-bit number, however wide it is.
constexpr long asLong(quint32 result)
{
    return static_cast<qint32>(result);
}

/// The HRESULT that the server answers.
constexpr HRESULT hresult(quint32 result)
{
    return static_cast<HRESULT>(result);
}
