#pragma once

/// \file
/// The text of any file.

#include <QByteArray>
#include <QString>

namespace Newsroom {

/// What a file turned out to hold.
struct FileText
{
    enum Kind {
        Plain,      ///< `text` is the file's text.
        Markup,     ///< `text` is the text of the content of an XML or HTML file.
        Compressed, ///< A compressed file; no text.
        Binary      ///< Neither; no text.
    };
    Kind kind = Plain;
    QString text; ///< Lines separated by line feeds, without the last one's.

    /// Recognises the bytes of a file: UTF-8 and UTF-16 by their marks, else UTF-8 when it is valid, else Latin-1.
    /// Compressed is what a compressor's first bytes say; binary what has a NUL. A file named like XML or HTML, or that
    /// starts like it, is markup when it is well-formed, else plain text. Any thread.
    static FileText of(const QByteArray &data, const QString &fileName);
};

} // namespace Newsroom
