#pragma once

/// \file
/// The sections of a story as people name them. Free functions without state.

#include <QString>
#include <QStringList>

namespace Tool {

/// Numbers of the sections that the verbs themselves ask for.
namespace StorySection {
constexpr int Head = 1;
constexpr int Fields = 4;
constexpr int Body = 8;
constexpr int Whole = 127;
} // namespace StorySection

/// The number of the section \a name: head, look, fields, body, aeset, field-atts, aeset-atts, or all for the whole
/// story; letter case does not matter. Failure Usage for any other name.
int sectionNumber(const QString &name);

/// The names of all sections, in the order of their numbers.
QStringList sectionNames();

} // namespace Tool
