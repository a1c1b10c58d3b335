#include "MarkupChecks.h"

#include <algorithm>
#include <memory>

#include <quire/XML.h>

namespace MarkupFuzz {

namespace {

using TagPtr = std::unique_ptr<XML::Tag>;

TagPtr parsed(const QString &text)
{
    return TagPtr(XML::Parser().Parse(text));
}

QString written(XML::Tag &tag)
{
    QString out;
    tag.TagToText(out, QChar(), false, false);
    return out;
}

/// The node after \a node in document order, null at the end.
XML::Tag *following(XML::Tag *node)
{
    if (node->m_Child)
        return node->m_Child;
    while (node && !node->m_Next)
        node = node->m_Parent;
    return node ? node->m_Next : nullptr;
}

bool isSound(XML::Tag &root)
{
    for (XML::Tag *node = &root; node; node = following(node)) {
        for (XML::Tag *child = node->m_Child; child; child = child->m_Next) {
            if (child->m_Parent != node)
                return false;
        }
    }
    return true;
}

bool areAlike(XML::Tag &a, XML::Tag &b)
{
    if (const auto *named = dynamic_cast<XML::NamedTag *>(&a)) {
        const auto *other = dynamic_cast<XML::NamedTag *>(&b);
        return other && named->m_Name == other->m_Name && named->m_Attributes == other->m_Attributes;
    }
    if (const auto *text = dynamic_cast<XML::TextTag *>(&a)) {
        const auto *other = dynamic_cast<XML::TextTag *>(&b);
        return other && text->m_Text == other->m_Text;
    }
    if (const auto *extra = dynamic_cast<XML::ExtraTag *>(&a)) {
        const auto *other = dynamic_cast<XML::ExtraTag *>(&b);
        return other && extra->m_Type == other->m_Type && extra->m_Text == other->m_Text;
    }
    return typeid(a) == typeid(b);
}

bool areEqual(XML::Tag &a, XML::Tag &b)
{
    XML::Tag *left = &a;
    XML::Tag *right = &b;
    while (left && right) {
        if (!areAlike(*left, *right) || !left->m_Child != !right->m_Child || !left->m_Next != !right->m_Next)
            return false;
        left = following(left);
        right = following(right);
    }
    return !left && !right;
}

/// Destroys the texts that a second reading will not find.
void dropVanishing(XML::Tag &root)
{
    XML::Tag *node = &root;
    while (node) {
        const auto *text = dynamic_cast<XML::TextTag *>(node);
        XML::Tag *next = following(node);
        if (text && (text->m_Text.isEmpty() || text->m_Text == QLatin1String("\n"))) {
            XML::Tag::ExtractTagFromParent(node);
            delete node;
        }
        node = next;
    }
}

bool hasSpace(const QString &s)
{
    return std::any_of(s.begin(), s.end(), [](QChar c) { return c.isSpace(); });
}

bool needsNoEscaping(const QString &value)
{
    QString encoded = value;
    XML::EncodeString(encoded);
    return encoded == value && !value.contains(QLatin1Char('"'));
}

bool isPlainElement(const XML::NamedTag &tag)
{
    const QString &name = tag.m_Name;
    return !name.isEmpty() && !hasSpace(name) && !name.contains(QLatin1Char('<')) && !name.endsWith(QLatin1Char('/')) &&
           std::all_of(tag.m_Attributes.begin(), tag.m_Attributes.end(), needsNoEscaping);
}

bool isPlainTree(XML::Tag &root)
{
    for (XML::Tag *node = &root; node; node = following(node)) {
        const auto *named = dynamic_cast<XML::NamedTag *>(node);
        if (named && !isPlainElement(*named))
            return false;
    }
    return true;
}

/// The inside of a start tag that says the same in full.
QString paramsOf(const XML::NamedTag &tag)
{
    QString params = tag.m_Name;
    for (auto it = tag.m_Attributes.begin(); it != tag.m_Attributes.end(); ++it)
        params += QLatin1Char(' ') + it.key() + QLatin1String("=\"") + it.value() + QLatin1Char('"');
    return params;
}

QString checkEntitiesInThisMode(const QString &text)
{
    QString encoded = text;
    XML::EncodeString(encoded);
    if (encoded.size() > text.size() * 8)
        return QStringLiteral("encoded text is too long");
    for (QChar c : encoded) {
        if (c != QLatin1Char('&') && XML::IsSpecialChar(c))
            return QStringLiteral("encoded text holds a special character");
    }
    QString decoded = text;
    XML::DecodeString(decoded);
    if (decoded.size() > text.size())
        return QStringLiteral("decoded text is longer");
    const bool reversible =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80 || !XML::IsSpecialChar(c); });
    XML::DecodeString(encoded);
    return reversible && encoded != text ? QStringLiteral("text is not what it was before encoding") : QString();
}

} // namespace

QString checkDocument(const QString &text)
{
    const TagPtr tree = parsed(text);
    if (!isSound(*tree))
        return QStringLiteral("links disagree");
    const QString first = written(*tree);
    if (first.size() > text.size() * 8)
        return QStringLiteral("written text is too long");
    const TagPtr copy(tree->Duplicate());
    if (!areEqual(*tree, *copy))
        return QStringLiteral("the duplicate differs");
    if (!isPlainTree(*tree))
        return QString();
    const TagPtr again = parsed(first);
    const TagPtr third = parsed(written(*again));
    dropVanishing(*again);
    return areEqual(*again, *third) ? QString() : QStringLiteral("a second writing differs");
}

bool isPlain(const QString &text)
{
    return isPlainTree(*parsed(text));
}

QString checkParams(const QString &text)
{
    XML::NamedTag tag{QString()};
    tag.SetParams(text);
    if (tag.m_Name != text.section(QLatin1Char(' '), 0, 0))
        return QStringLiteral("not the name before the first blank");
    for (const QString &key : tag.m_Attributes.keys()) {
        if (key.isEmpty() || hasSpace(key) || key.contains(QLatin1Char('=')))
            return QStringLiteral("not a key");
    }
    const auto quoted = [](const QString &value) { return value.contains(QLatin1Char('"')); };
    if (std::any_of(tag.m_Attributes.begin(), tag.m_Attributes.end(), quoted))
        return QString();
    XML::NamedTag again{QString()};
    again.SetParams(paramsOf(tag));
    return areAlike(tag, again) ? QString() : QStringLiteral("the attributes in full differ");
}

QString checkEntities(const QString &text)
{
    const bool before = XML::xZEKO_Mode;
    QString wrong;
    for (const bool zeko : {true, false}) {
        XML::xZEKO_Mode = zeko;
        if (wrong.isEmpty())
            wrong = checkEntitiesInThisMode(text);
    }
    XML::xZEKO_Mode = before;
    return wrong;
}

} // namespace MarkupFuzz
