#include <quire/markup/NamedTag.h>

#include "StartTagReader.h"
#include "TagCopy.h"
#include "TagKind.h"
#include "TagWriter.h"

namespace XML {

TagToTextCallback NamedTag::sTTT_CB = nullptr;
QMap<QString, TagToTextCallback> NamedTag::sTagCallbacksMap;

NamedTag::NamedTag(const QString &name)
    : m_Name(name)
{}

NamedTag::NamedTag(const NamedTag &other) = default;
NamedTag &NamedTag::operator=(const NamedTag &other) = default;
NamedTag::~NamedTag() = default;

bool NamedTag::AskCallbacks(QString &out, QChar terminator, bool contentOnly, bool textOnly)
{
    const TagToTextCallback named = sTagCallbacksMap.value(m_Name, nullptr);
    if (named && !named(this, out, terminator, contentOnly, textOnly))
        return false;
    return !sTTT_CB || sTTT_CB(this, out, terminator, contentOnly, textOnly);
}

void NamedTag::TagToText(QString &out, QChar terminator, bool contentOnly, bool textOnly)
{
    if (AskCallbacks(out, terminator, contentOnly, textOnly))
        TagToTextNoCB(out, terminator, contentOnly, textOnly);
}

bool NamedTag::TagMatch(const QString &name, const QString &attrName, const QString &attrValue)
{
    return m_Name == name && (attrName.isNull() || attrValue.isNull() || FindAttribute(attrName) == attrValue);
}

QString NamedTag::FindAttribute(const QString &attrName)
{
    // Looked up first: a map that elements share is only copied when there really is something to add.
    const auto found = m_Attributes.constFind(attrName);
    return found == m_Attributes.constEnd() ? m_Attributes.insert(attrName, QString()).value() : found.value();
}

void NamedTag::AddAttribute(const QString &attrName, const QString &value)
{
    m_Attributes.insert(attrName, value);
}

void NamedTag::DeleteAttribute(const QString &attrName)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be the key that goes
    const QString own = attrName;
    m_Attributes.remove(own);
}

void NamedTag::ClearAttributes()
{
    m_Attributes.clear();
}

bool NamedTag::Is_or_IsChildOf(const QString &name)
{
    return m_Name == name || IsChildOf(name);
}

QString NamedTag::GetEnclosedTextItem()
{
    TextTag *text = asText(m_Child);
    return text ? text->GetText() : QString();
}

QString NamedTag::GetName()
{
    return m_Name;
}

Tag *NamedTag::Copy()
{
    return withoutLinks(new NamedTag(*this));
}

void NamedTag::ReName(const QString &name)
{
    m_Name = name;
}

void NamedTag::SetParams(const QString &params)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be the name, or a value, that is replaced
    const QString own = params;
    StringPool strings;
    readStartTag(own, *this, strings);
}

bool NamedTag::HasAttribute(const QString &attrName)
{
    return m_Attributes.contains(attrName);
}

long NamedTag::AttributeCount()
{
    return m_Attributes.size();
}

bool NamedTag::FirstAttribute(QString &name, QString &value)
{
    return NextAttribute(name, value, true);
}

bool NamedTag::NextAttribute(QString &name, QString &value, bool restart)
{
    if (!restart && m_AttrIter.isNull())
        return false;
    const QMap<QString, QString> &attributes = m_Attributes;
    auto at = restart ? attributes.constBegin() : attributes.lowerBound(m_AttrIter);
    m_AttrIter.clear();
    if (at == attributes.constEnd())
        return false;
    name = at.key();
    value = at.value();
    if (++at != attributes.constEnd())
        m_AttrIter = at.key();
    return true;
}

void NamedTag::TagToTextNoCB(QString &out, QChar terminator, bool contentOnly, bool textOnly)
{
    TagWriter(out, terminator, textOnly).writeElement(*this, contentOnly);
}

void NamedTag::SetTagToTextCallback(TagToTextCallback callback)
{
    sTTT_CB = callback;
}

void NamedTag::SetTagToTextCallback(const QString &name, TagToTextCallback callback)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be the key that goes
    const QString own = name;
    if (callback)
        sTagCallbacksMap.insert(own, callback);
    else
        sTagCallbacksMap.remove(own);
}

} // namespace XML
