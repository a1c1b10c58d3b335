#pragma once

/// \file
/// What has to hold for whatever the stand-in is described by, is asked and is kept as. Each check answers what is
/// wrong, an empty string when nothing is.

#include <QByteArray>
#include <QString>

namespace NewsroomFuzz {

/// Story markup: what is escaped comes back, references mean what a slow reading says, the scanner cuts the text into
/// pieces without a gap, and attributes are read as they were written.
QString checkMarkup(const QString &text);

/// The text of a story, as markup and plain: what is written of what was read is read as the same; what is refused
/// changes nothing.
QString checkStory(const QString &text);

/// A search, the first line, on a story with the rest as its body: excluding it finds the story exactly when it does
/// not, and either or both of it mean the same as it alone.
QString checkQuery(const QString &text);

/// A newsroom from a text: an error names a line; else each story is well-formed, has a number of its own and is at its
/// place, and the newsroom comes back from a folder that it is saved in.
QString checkNewsroom(const QString &text);

/// Names as names of files and back: each comes back, fits for a file, and only what encoding may give is decoded.
QString checkFileNames(const QString &text);

/// A newsroom folder in which one file, which the first byte chooses, holds the rest of the input: it loads or names
/// what is wrong; what loads comes back when it is saved. A newsroom that follows the folder stays sound, and is as
/// before when the file is.
QString checkFolder(const QByteArray &input);

/// A folder with one file, named by the first line, imported: it is counted once, and as a story it has the file's
/// lines, its name and where it lay.
QString checkImport(const QByteArray &input);

/// Records of search hits, with texts and arrays in them, under any calls: each holds what it was given and nothing of
/// another's, and in the end nothing is left.
QString checkRecords(const QByteArray &input);

} // namespace NewsroomFuzz
