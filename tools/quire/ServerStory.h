#pragma once

#include "Session.h"
#include "StoryAccess.h"
#include "StoryNumber.h"

namespace Tool {

/// A story of a queue on the server. The session outlives it.
class ServerStory final : public StoryAccess
{
public:
    /// Opens the story that a person named; Failure NotFound.
    ServerStory(Session &session, const QString &path, const StoryNumber &number);
    /// Opens a story of a queue that is open; Failure NotFound.
    ServerStory(Session &session, const TreeEntry &queue, const StoryNumber &number);
    /// Opens a story that was met in a queue; Failure NotFound.
    ServerStory(Session &session, const TreeEntry &queue, const StoryEntry &entry);
    ~ServerStory() override;

    const QString &path() const { return m_path; }
    const StoryEntry &entry() const { return m_entry; }

    QString title() const override;
    Quire::Story &story() override { return m_story; }
    bool storesEncoded() const override { return true; }
    QString section(int number, bool markup) override;
    QString text() override;
    std::vector<Quire::Attribute> shownFields() override;
    void lock() override;
    void unlock() override;
    void setField(const QString &name, const QString &value) override;
    void putSection(int number, const QString &markup) override;
    void save() override;

private:
    Q_DISABLE_COPY(ServerStory)

    HRESULT lastError() const { return static_cast<HRESULT>(m_story.GetError()); }
    [[noreturn]] void fail(const QString &what) const;
    [[noreturn]] void failChange(const QString &what) const;

    Session &m_session;
    QString m_path;
    StoryEntry m_entry;
    Quire::Story m_story;
    bool m_locked = false;
};

} // namespace Tool
