#include "HeaderMarkup.h"

#include <quire/markup/NamedTag.h>
#include <quire/markup/Parser.h>

namespace Quire {

namespace {

XML::NamedTag *findElement(XML::Tag &root, const QString &name)
{
    return static_cast<XML::NamedTag *>(root.FindTag(name, QString(), QString())); // only elements match
}

} // namespace

HeaderMarkup::HeaderMarkup(const QString &text)
    : m_root(XML::Parser().Parse(text))
    , m_storyId(findElement(*m_root, QStringLiteral("storyid")))
    , m_meta(findElement(*m_root, QStringLiteral("meta")))
{}

HeaderMarkup::~HeaderMarkup() = default;

QString HeaderMarkup::storyID() const
{
    return m_storyId ? m_storyId->GetEnclosedTextItem() : QString();
}

QString HeaderMarkup::meta(const QString &name) const
{
    return m_meta ? m_meta->m_Attributes.value(name) : QString();
}

} // namespace Quire
