#pragma once

/// \file
/// Reads the inside of a start tag.

#include <QStringView>

#include "StringPool.h"

namespace XML {

class NamedTag;

/// Gives \a element the name and the attributes in \a params, as NamedTag::SetParams describes it. The strings are
/// taken from \a strings.
void readStartTag(QStringView params, NamedTag &element, StringPool &strings);

} // namespace XML
