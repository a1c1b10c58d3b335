#pragma once

/// \file
/// A story's header as markup. Not part of the public surface.

#include <QString>

#include <memory>

namespace XML {
class NamedTag;
class Tag;
} // namespace XML

namespace Quire {

/// The reading rate where neither a header nor the system gives one.
const int defaultReadRate = 18;

/// The two elements of a header that matter, "storyid" and "meta", found once in its text. For one reader.
class HeaderMarkup
{
public:
    explicit HeaderMarkup(const QString &text);
    ~HeaderMarkup();
    HeaderMarkup(const HeaderMarkup &) = delete;
    HeaderMarkup &operator=(const HeaderMarkup &) = delete;

    bool hasStoryID() const { return m_storyId != nullptr; }
    /// The text of "storyid"; empty without one.
    QString storyID() const;

    bool hasMeta() const { return m_meta != nullptr; }
    /// An attribute of "meta"; empty when it or the element is missing.
    QString meta(const QString &name) const;

private:
    std::unique_ptr<XML::Tag> m_root;
    XML::NamedTag *m_storyId;
    XML::NamedTag *m_meta;
};

} // namespace Quire
