#pragma once

#include <quire/story/LocalStory.h>

#include "StoryAccess.h"

namespace Tool {

/// A story in a file. It needs no session and no lock. The library reports nothing about such stories; this looks after
/// every step whether it happened.
class FileStory final : public StoryAccess
{
public:
    /// Reads the file \a path. Failure Failed when it cannot be read, or is no story.
    explicit FileStory(const QString &path);

    QString title() const override { return m_path; }
    Quire::Story &story() override { return m_story; }
    bool storesEncoded() const override { return false; }
    /// Always as markup.
    QString section(int number, bool markup) override;
    QString text() override;
    std::vector<Quire::Attribute> shownFields() override { return {}; }
    void lock() override {}
    void unlock() override {}
    void setField(const QString &name, const QString &value) override;
    void putSection(int number, const QString &markup) override;
    void save() override;

private:
    QString m_path;
    Quire::LocalStory m_story;
};

} // namespace Tool
