#pragma once

/// \file
/// The fields of a form, as stories and queues tell of them. Not part of the public surface.

#include <QString>

#include <vector>

#include <quire/tree/Attribute.h>

namespace Quire {

class Field;
class FormData;

/// The field of \a form called \a name without regard to letter case; null when there is none, and without a form.
Field *findFormField(FormData *form, const QString &name);

/// The fields of \a form in its order: identifier, label as value, flags 0. None without a form.
std::vector<Attribute> formAttributes(const FormData *form);

} // namespace Quire
