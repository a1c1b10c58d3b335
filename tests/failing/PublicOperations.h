#pragma once

#include <QStringList>

namespace Failing {

/// The public and exported operations that these declarations have: "Class::operation" and "function", each once and
/// sorted; overloads share a name.
QStringList operationsIn(const QString &declarations);

/// Those of all headers that the host includes by `quire/Quire.h`.
QStringList publicOperations();

} // namespace Failing
