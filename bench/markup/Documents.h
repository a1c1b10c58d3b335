#pragma once

/// \file
/// The documents that the markup benchmark reads and writes, made anew at each start and always the same.

#include <vector>

#include <QByteArray>
#include <QString>

namespace MarkupBench {

struct Document
{
    const char *name;
    QString text;
    QByteArray utf8;
};

/// A story of 4 KB, one of 2 MB, a form of 200 rows by 8 cells with 6 attributes each, and one element with 100,000
/// small children; with accented letters, other scripts and characters outside the basic plane.
const std::vector<Document> &documents();

} // namespace MarkupBench
