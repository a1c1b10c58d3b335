#pragma once

#include <QStringList>

namespace Failing {

/// The public and exported operations that these declarations have, sorted: "Class::operation" and "function"; those
/// that share a name with the names of their parameters, "Class::operation(first, second)", and a number, " 2", when
/// they share these, too. Deleted ones do not count.
QStringList operationsIn(const QString &declarations);

/// Those of all headers that the host includes by `quire/Quire.h`.
QStringList publicOperations();

} // namespace Failing
