#pragma once

/// \file
/// What has to hold for every input of the markup toolkit. The fuzz targets and the ordinary tests ask for the same.

#include <QString>

namespace MarkupFuzz {

/// Reads, writes and reads again. Answers what is wrong, an empty string when nothing is.
///
/// The tree is sound and equal to its duplicate and the text is at most eight times as long as the input, always. For
/// documents whose names and attribute values need no escaping (see isPlain) the tree that the written text gives is
/// equal to that from its own writing, but for texts that were left empty or as a single line feed, which are dropped.
QString checkDocument(const QString &text);

/// Whether \a text belongs to the documents that checkDocument reads again: each element has a name without white
/// space,
/// "<" and a "/" at its end, and its attribute values hold no double quote and nothing that EncodeString replaces.
bool isPlain(const QString &text);

/// SetParams: the name is what stands before the first blank, keys hold neither white space nor "=", and the attributes
/// written out in full are read as the same again, unless a value holds a double quote.
QString checkParams(const QString &text);

/// EncodeString and DecodeString in both modes: lengths are bounded, what is encoded holds nothing special but its
/// references, and decodes to the original if that holds only characters that have a reference.
QString checkEntities(const QString &text);

/// Searching: the first three lines are a name, an attribute and its value, where "-" means none; the rest is a
/// document. Each way of searching finds what a walk over all nodes finds.
QString checkSearch(const QString &text);

} // namespace MarkupFuzz
