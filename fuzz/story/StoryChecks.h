#pragma once

/// \file
/// What has to hold for every text that stories are made of. The fuzz targets and the ordinary tests ask for the same.
/// Each check answers what is wrong, an empty string when nothing is.

#include <QByteArray>
#include <QString>

namespace StoryFuzz {

/// Sections: what is cut out is a piece of the text, with its prefix only where there is no plain form; putting back
/// what was cut out changes nothing, and putting something else there changes nothing else.
QString checkSections(const QString &text);

/// A local story of that text: sections and fields are read as they were written, what is missing is not added, and
/// anchors are closed as by inserting the end tags one by one.
QString checkLocalStory(const QString &text);

/// A list item whose header and fields are that text: what is expanded has names, printable values and the flags of its
/// element, in order, and is expanded once.
QString checkItem(const QString &text);

/// A file with those bytes: it is read as its mark or its bytes say, and what is written is read as the same.
QString checkFile(const QByteArray &bytes);

/// A story on the stand-in: the first line is the value of a field, the second the number of a section, the rest what
/// is put there. What the server refuses changes nothing; what it takes is there after saving, for other readers, too.
QString checkServerStory(const QString &text);

} // namespace StoryFuzz
