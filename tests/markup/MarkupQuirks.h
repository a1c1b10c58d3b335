#pragma once

/// \file
/// Where the toolkit deliberately reads a document in another way than XML does.

#include <QString>

namespace MarkupTest {

/// The first thing in \a document, a well-formed one, that the toolkit reads in its own way; empty when there is none.
QString quirkOf(const QString &document);

} // namespace MarkupTest
