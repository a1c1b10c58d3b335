#pragma once

#include <quire/platform/Automation.h>

#include <QString>

namespace Newsroom {

/// Texts of in-arguments, as the call record shows them.
namespace CallArgument {

QString text(LONG value);             ///< decimal
QString text(BSTR value);             ///< in double quotes; null for a null BSTR
QString text(const VARIANT &value);   ///< type and value: VT_I4 3, VT_INT 3; the type number for other types
QString text(const SAFEARRAY *value); ///< [12 elements], or null
QString text(const IUnknown *value);  ///< object, or null
QString text(REFIID value);           ///< the name of an event interface, else the braced identifier
QString truth(VARIANT_BOOL value);    ///< true or false

} // namespace CallArgument
} // namespace Newsroom
