#pragma once

/// \file
/// A story in a file.

#include <QString>

#include <quire/platform/Export.h>
#include <quire/story/Story.h>

namespace Quire {

/// A story held in a markup file on the local disk, edited in memory and written back whole with Save.
///
/// To be used like a Story: sections, fields and the lock flags are those of the file's text. The server is only called
/// by the constructor from a path, for the system's reading rate, and by FindField, GetAllFieldNames and GetFieldValues
/// when FormCache does not have the form, and what it raises then passes to the caller. Sections and fields are found
/// by plain search, and values stand in the file as they are shown. The caller owns the object and uses it on one
/// thread at a time.
///
/// There is one file for the whole process: the one that the last constructed local story was read from, or that
/// setLocalPath names. Save of any local story writes there.
///
/// No operation reports an error of a file. An unreadable or empty file makes an unloaded, empty story; missing
/// sections and fields make an edit do nothing.
class QUIRE_EXPORT LocalStory : public Story
{
public:
    /// Path of the process's local story file. The operations guard it; who touches it directly must be alone.
    static QString sZEKOFile;

    /// Sets sZEKOFile.
    static void setLocalPath(QString path);
    /// The value of sZEKOFile.
    static QString getLocalPath();

    /// Reads the file \a path, which becomes the process's local story file: UTF-8 (with or without byte-order mark) or
    /// UTF-16 or UTF-32 by its mark. Anchors that are left open in the body get their end tag. The identifier is read
    /// in base 16. Raises what QuireCOM::GetSysReadRate raises.
    LocalStory(QString path);
    /// The same text and lock flags; both write to the process's local story file.
    LocalStory(const LocalStory &other);
    /// The other's text and lock flags in place of its own.
    LocalStory &operator=(const LocalStory &other);
    ~LocalStory();

    /// The section with its tags, or the whole text for 127; empty for any other number. \a markup does not matter.
    void GetSection(int section, QString &text, bool markup) override;
    /// Replaces a section, see SetTextSection, or the whole text for 127; nothing for any other number. Always true.
    bool PutSection(int section, QString &text, bool markup) override;
    /// The value of the first field written as "<f id=NAME>", letter case aside. Left alone when there is none.
    void GetField(const QString &name, QString &value) override;
    /// Replaces the value of that field; a field that is not there is not added.
    void SetField(const QString &name, const QString &value) override;
    /// Writes the story to the process's local story file, in UTF-8 with byte-order mark. The file is replaced whole or
    /// not at all, unless its folder takes no new file: then it is overwritten. True in any case.
    bool Save(bool flag) override;
    /// False.
    bool UpdateHeaderID() override;
    /// False; \a holder is left alone.
    bool Lock(int lockType, QString &holder) override;
    /// Clears the lock flags. True.
    bool Unlock() override;
    /// Whether any of the bits of \a mask is set in the lock flags. Nothing in the library sets them.
    bool IsLocked(int mask) override;

    /// Replaces the element \a tag of \a storyText, found as by Story::GetTextSectionPos, by \a section. Where the text
    /// uses the prefix "zeko:" for it, \a section gets the prefix too. Nothing happens when the element is missing or
    /// has no end tag behind its start.
    static void SetTextSection(QString &storyText, QString tag, QString section);

protected:
    /// The text within the "formname" element.
    void GetFormName(QString &out) override;
    /// Reads identifier, reading rate and key lock from the head section; the key lock is "lock" when there is none.
    void GetHeaderInfo();
    /// Gives each anchor of the body that is not followed by its end tag one.
    void Preprocess();

private:
    friend struct LocalStoryProbe; // the tests set the lock flags

    QString m_text;
    qint32 m_lockFlags = 0;
};

} // namespace Quire
