#pragma once

#include <vector>

#include <QString>

#include <quire/story/Story.h>

namespace Tool {

/// A story that a verb reads and changes, on the server or in a file. Whatever cannot be done raises Failure with the
/// reason; a broken connection may raise `_com_error`. One at a time, on the main thread.
///
/// Changes: lock(), then setField() and putSection(), then save(), then unlock(). Who is destroyed while it holds the
/// lock gives it back; what was not saved is gone then.
class StoryAccess
{
public:
    /// The lock type of everything here; the number is the server's.
    static constexpr int editLock = 1;

    StoryAccess() = default;
    StoryAccess(const StoryAccess &) = delete;
    StoryAccess &operator=(const StoryAccess &) = delete;
    virtual ~StoryAccess() = default;

    /// For messages: "story 5024 of WIRES.WORLD", or the file's name.
    virtual QString title() const = 0;
    /// The library's story; lives as long as this.
    virtual Quire::Story &story() = 0;
    /// Whether the story's fields stand as the server stores them, not as people read them.
    virtual bool storesEncoded() const = 0;

    /// A section; without \a markup in the server's plain form, which a file does not have.
    virtual QString section(int number, bool markup) = 0;
    /// The body as people read it, a line for each paragraph.
    virtual QString text() = 0;
    /// Fields with values as people read them, among them those that the library computes.
    virtual std::vector<Quire::Attribute> shownFields() = 0;

    /// Takes the story for editing; Failure names who else is editing it.
    virtual void lock() = 0;
    virtual void unlock() = 0;
    /// Sets a field from what people write.
    virtual void setField(const QString &name, const QString &value) = 0;
    /// Replaces a section by \a markup.
    virtual void putSection(int number, const QString &markup) = 0;
    /// Keeps the changes, durably.
    virtual void save() = 0;
};

} // namespace Tool
