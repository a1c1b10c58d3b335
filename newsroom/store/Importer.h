#pragma once

/// \file
/// Any folder of texts as a newsroom folder.

#include <QString>
#include <QStringList>
#include <memory>

namespace Newsroom {

/// What an import did.
struct ImportReport
{
    int directories = 0;         ///< Made.
    int queues = 0;              ///< Made.
    int stories = 0;             ///< Made.
    qint64 bytes = 0;            ///< Of the files that became stories.
    int markupFiles = 0;         ///< Stories that were the content of XML or HTML files.
    int skippedCompressed = 0;   ///< Compressed files.
    int skippedBinary = 0;       ///< Files that are no text.
    int skippedTooLarge = 0;     ///< Above Importer::largestFile.
    int skippedLinks = 0;        ///< Links to folders, links to nothing.
    int skippedSpecial = 0;      ///< Pipes, sockets, devices.
    int unreadable = 0;          ///< Files that could not be read.
    QStringList unreadableNames; ///< The first few of them.

    /// All that did not become a story.
    int skipped() const
    {
        return skippedCompressed + skippedBinary + skippedTooLarge + skippedLinks + skippedSpecial + unreadable;
    }
};

/// Turns a folder of text, XML and HTML files into a newsroom folder.
///
/// A folder with sub-folders becomes a directory, a folder with only files a queue; the files of a folder that has both
/// become the stories of a queue "FILES" in its directory. Names become components of paths, reversibly
/// (FileNames::component()); two that differ only in letter case stay apart. A file's text becomes the body, a
/// paragraph a line; its name the field "title", its path in the folder the field "source". Compressed and binary files
/// are counted and left out, links to folders are not followed. One file at a time is held in memory.
class Importer
{
public:
    /// Files above this size, in bytes, are left out.
    static constexpr qint64 largestFile = qint64(64) * 1024 * 1024;

    /// Reads \a source and writes \a folder, which must not be there or be empty; what of \a source lies in \a folder
    /// is left out. False with \a error when either cannot be; files that cannot be read are only counted.
    static bool import(const QString &source, const QString &folder, ImportReport *report, QString *error);
};

} // namespace Newsroom
