#include "markup/Support.h"

#include <QStringList>

namespace MarkupTest {

namespace {

QString quoted(const QString &content)
{
    return QLatin1Char('"') + content + QLatin1Char('"');
}

QString opening(const XML::NamedTag &tag)
{
    QString line = QLatin1Char('<') + tag.m_Name;
    for (auto it = tag.m_Attributes.constBegin(); it != tag.m_Attributes.constEnd(); ++it) {
        line += QLatin1Char(' ') + it.key();
        if (!it.value().isNull())
            line += QLatin1Char('=') + quoted(it.value());
    }
    return line + QLatin1String(">[");
}

/// The node without what lies below it.
QString heading(const XML::Tag &tag)
{
    if (const auto *named = dynamic_cast<const XML::NamedTag *>(&tag))
        return opening(*named);
    if (const auto *plain = dynamic_cast<const XML::TextTag *>(&tag))
        return quoted(plain->m_Text);
    if (const auto *extra = dynamic_cast<const XML::ExtraTag *>(&tag))
        return QString::number(extra->m_Type) + quoted(extra->m_Text);
    return QLatin1String("?[");
}

bool mayHaveChildren(const XML::Tag &tag)
{
    return !dynamic_cast<const XML::TextTag *>(&tag) && !dynamic_cast<const XML::ExtraTag *>(&tag);
}

} // namespace

TagPtr parsed(const QString &markup)
{
    return TagPtr(XML::Parser().Parse(markup));
}

TagPtr parsed(const char *utf8)
{
    return parsed(text(utf8));
}

QString written(XML::Tag &tag, QChar terminator)
{
    QString out;
    tag.TagToText(out, terminator, false, false);
    return out;
}

QString outline(const XML::Tag &tag)
{
    QString line;
    const XML::Tag *node = tag.m_Child;
    while (node) {
        line += heading(*node);
        if (node->m_Child) {
            node = node->m_Child;
            continue;
        }
        line += mayHaveChildren(*node) ? QLatin1String("]") : QLatin1String("");
        while (node != &tag && !node->m_Next) {
            node = node->m_Parent;
            if (node != &tag)
                line += QLatin1Char(']');
        }
        if (node == &tag)
            break;
        line += QLatin1Char(' ');
        node = node->m_Next;
    }
    return line;
}

XML::NamedTag *element(const char *name, std::initializer_list<XML::Tag *> children)
{
    auto *tag = new XML::NamedTag(text(name));
    for (XML::Tag *child : children)
        tag->AddTag(child, false);
    return tag;
}

XML::TextTag *textNode(const char *utf8)
{
    auto *tag = new XML::TextTag;
    tag->SetText(text(utf8));
    return tag;
}

bool isSound(const XML::Tag &root)
{
    const XML::Tag *node = &root;
    for (;;) {
        for (const XML::Tag *child = node->m_Child; child; child = child->m_Next) {
            if (child->m_Parent != node)
                return false;
        }
        if (node->m_Child) {
            node = node->m_Child;
            continue;
        }
        while (node != &root && !node->m_Next)
            node = node->m_Parent;
        if (node == &root)
            return true;
        node = node->m_Next;
    }
}

QString childNames(const XML::Tag &parent)
{
    QStringList names;
    for (XML::Tag *child = parent.m_Child; child; child = child->m_Next)
        names += child->GetName();
    return names.join(QLatin1Char(' '));
}

} // namespace MarkupTest
