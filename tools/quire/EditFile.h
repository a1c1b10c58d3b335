#pragma once

#include <QString>
#include <QTemporaryDir>

namespace Tool {

/// A text in a file of its own, for an editor. UTF-8; on Windows with byte-order mark and that system's line ends, so
/// that its editors keep every character.
///
/// The file stays behind, whatever happens, as soon as it holds something else than the text that it was made with;
/// only discard() or an unchanged file takes it away. With a file that somebody removed its folder goes, too. No edit
/// is ever lost that way.
class EditFile
{
public:
    /// Writes \a text into a new file called \a name in a new folder. Failure when that fails, or when the file would
    /// not give the same text back.
    EditFile(const QString &name, const QString &text);
    ~EditFile();
    EditFile(const EditFile &) = delete;
    EditFile &operator=(const EditFile &) = delete;

    /// The file's whole path, as the system writes it.
    QString path() const;
    /// The text that is in the file now. Failure when it cannot be read, is not in UTF-8 (or UTF-16 with its mark), or
    /// has a NUL, at which a server or a file may end the text.
    QString read() const;
    /// Whether the file is no longer as it was written; true also when it cannot be read, but not when it is gone.
    bool isChanged() const;
    /// The edit has been kept elsewhere: the file goes.
    void discard() { m_discarded = true; }

private:
    QString decode(const QByteArray &bytes) const;

    QTemporaryDir m_folder;
    QString m_path;
    QByteArray m_written;
    bool m_addsLineEnd;
    bool m_windowsLineEnds;
    bool m_discarded = false;
};

} // namespace Tool
