#pragma once

/// \file
/// One revision of a story, as readers hold it.

#include <QString>
#include <memory>
#include <mutex>

#include <quire/newsroom/model/StoryId.h>
#include <quire/newsroom/model/StoryText.h>

namespace Newsroom {

class Story;

/// Readers share the revision that was current when they asked; a later save makes a new one.
using StoryPointer = std::shared_ptr<const Story>;

/// One revision of a story; never changes, so any number of threads read it without a lock. Made by the Model and owned
/// by whoever holds a StoryPointer.
class Story
{
public:
    /// Where a story is and which revision this is.
    struct Identity
    {
        StoryId id;             ///< The story's identifier.
        qint32 revision = 1;    ///< Grows with each save.
        QString formName;       ///< The story's form.
        qint32 queueNumber = 0; ///< The queue that holds the story.
        QString queuePath;      ///< Its path.
    };

    /// One revision; see Model::addStory.
    Story(Identity identity, StoryText text);
    ~Story() = default;

    Story(const Story &) = delete;
    Story &operator=(const Story &) = delete;

    /// Identity::id.
    const StoryId &id() const { return m_identity.id; }
    /// Identity::revision.
    qint32 revision() const { return m_identity.revision; }
    /// Identity::formName.
    const QString &formName() const { return m_identity.formName; }
    /// Identity::queueNumber.
    qint32 queueNumber() const { return m_identity.queueNumber; }
    /// Identity::queuePath.
    const QString &queuePath() const { return m_identity.queuePath; }
    /// Where the story is and which revision this is.
    const Identity &identity() const { return m_identity; }
    /// What it says.
    const StoryText &text() const { return m_text; }

    /// What lists show: the field "title", else "slug", else "subject", else the first line of the body (at most 60
    /// characters), else "Story NUMBER".
    const QString &name() const { return m_name; }

    /// The header's storyid text, hexadecimal with the revision.
    QString headerId() const { return m_identity.id.headerText(m_identity.revision); }
    /// The identity as the markup header states it.
    StoryHeader header() const { return {headerId(), m_identity.formName}; }

    /// Sections in markup form, see markupOf(). The whole story is composed once per revision and then shared.
    QString markup(qint32 sections) const;
    /// Sections in plain form, see plainOf().
    QString plain(qint32 sections) const;

    /// The header says "hold": the story is held.
    bool isHeld() const { return !m_text.metaValue(QStringLiteral("hold")).isEmpty(); }
    /// The header says "locked": only a superuser may change the story.
    bool isKeyLocked() const { return !m_text.metaValue(QStringLiteral("locked")).isEmpty(); }

    /// The name that a story with this content is listed under.
    static QString nameOf(const StoryText &text, const StoryId &id);

private:
    const Identity m_identity;
    const StoryText m_text;
    const QString m_name;
    mutable std::once_flag m_composed;
    mutable QString m_whole; ///< Written once, under m_composed.
};

} // namespace Newsroom
