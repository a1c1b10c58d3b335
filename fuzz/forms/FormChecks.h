#pragma once

/// \file
/// What has to hold for every text of a form and for every value of a story field. The fuzz targets and the ordinary
/// tests ask for the same.

#include <vector>

#include <QString>

#include <quire/forms/Field.h>

namespace FormFuzz {

/// The fields of a form, found the long way: a search from the beginning for each row and for each cell of each row.
std::vector<Quire::Field> fieldsBySearching(const QString &text);

/// What differs between two lists of fields, an empty string when nothing does.
QString difference(const std::vector<Quire::Field> &a, const std::vector<Quire::Field> &b);

/// Reads a form. Answers what is wrong, an empty string when nothing is.
///
/// The fields are those that the long way finds, and each value is one of those that it may have.
QString checkForm(const QString &text);

/// Decodes and encodes a value: \a text is a field's name, a line feed and the value. Answers what is wrong, an empty
/// string when nothing is.
///
/// Decoding gives what C's own formatting gives and no white space at the ends; what the codec has stored is the same
/// after decoding and encoding; names in capitals mean the same; and fields of no kind are trimmed and otherwise left.
QString checkCodec(const QString &text);

} // namespace FormFuzz
