#include <quire/markup/Parser.h>

#include <algorithm>
#include <memory>

#include <quire/markup/Entities.h>
#include <quire/markup/ExtraTag.h>
#include <quire/markup/NamedTag.h>
#include <quire/markup/TextTag.h>

#include "NodeArena.h"
#include "StartTagReader.h"
#include "TagKind.h"
#include "TextSearch.h"
#include "TreeBuilder.h"

namespace XML {

namespace {

/// Turns the tokens of one text into nodes.
class TokenReader
{
public:
    TokenReader(Tag *parent, const QString &text)
        : m_Text(text)
        , m_Builder(parent)
    {}

    /// Adds what stands between two tags.
    void readText(int from, int to)
    {
        if (to == from || (to - from == 1 && m_Text.at(from) == QLatin1Char('\n')))
            return;
        auto *tag = m_Arena.make<TextTag>();
        m_Builder.append(tag);
        tag->m_Text = between(from, to).toString();
        DecodeString(tag->m_Text);
    }

    /// Adds the element that begins with the token from \a start to \a end, and opens it if it can have children.
    void readElement(Tag::TagType_t type, int start, int end)
    {
        auto *tag = m_Arena.make<NamedTag>(QString());
        m_Builder.append(tag);
        readStartTag(between(start + 1, type == Tag::Empty ? end - 1 : end), *tag, m_Strings);
        if (type == Tag::Start && tag->m_Name != QLatin1String("meta") && tag->m_Name != QLatin1String("zeko:meta"))
            m_Builder.open(tag);
    }

    /// Adds the comment or the like from \a start to \a end.
    void readExtra(Tag::TagType_t type, int start, int end)
    {
        int startOffset = 0;
        int endOffset = 0;
        ExtraTag::GetOffsets(type, &startOffset, &endOffset);
        auto *tag = m_Arena.make<ExtraTag>(type);
        m_Builder.append(tag);
        tag->m_Text = between(start + startOffset, end - endOffset).toString();
    }

    /// Closes the open element if the end tag from \a start to \a end is its own. False when it is not.
    bool closes(int start, int end) const
    {
        const QStringView name = between(start + 2, end);
        if (name.isEmpty())
            return false;
        Tag *open = m_Builder.parent();
        return kindOf(*open) == TagKind::Named ? isSame(static_cast<NamedTag *>(open)->m_Name, name)
                                               : open->GetName() == name;
    }

    /// Closes the open element. False when that was the one the reading began with.
    bool close() { return m_Builder.close(); }

private:
    /// The text from \a from up to \a to, nothing when the two have passed each other as in "<!-->".
    QStringView between(int from, int to) const
    {
        return QStringView(m_Text.constData() + from, std::max(0, to - from));
    }

    const QString &m_Text;
    TreeBuilder m_Builder;
    StringPool m_Strings;
    NodeArena m_Arena;
};

/// The first \a c at or after \a from, or -1.
int indexOf(const QString &text, char16_t c, int from)
{
    const QChar *const end = text.constData() + text.size();
    const QChar *const found = findChar(text.constData() + from, end, c);
    return found == end ? -1 : int(found - text.constData());
}

/// The last character of the first \a close at or after \a from, or -1.
int endOf(QLatin1String close, const QString &text, int from)
{
    const int at = text.indexOf(close, from);
    return at < 0 ? -1 : at + close.size() - 1;
}

/// The end of the DOCTYPE that begins at \a from: behind its internal subset if it has one.
int endOfDocType(const QString &text, int from)
{
    const int end = indexOf(text, u'>', from);
    const bool subset = end >= 0 && QStringView(text).mid(from, end - from).contains(QLatin1Char('['));
    return subset ? endOf(QLatin1String("]>"), text, from) : end;
}

/// The kind of the comment or the like that begins with \a head, None when it is no such thing.
Tag::TagType_t extraType(QStringView head)
{
    if (head.startsWith(QLatin1String("<!--")))
        return Tag::Comment;
    if (head.startsWith(QLatin1String("<?xml")))
        return Tag::XmlDecl;
    if (head.startsWith(QLatin1String("<![CDATA[")))
        return Tag::CData;
    return head.startsWith(QLatin1String("<!DOCTYPE")) ? Tag::DocType : Tag::None;
}

/// The last character of the comment or the like that begins at \a from, or -1.
int endOfExtra(Tag::TagType_t type, const QString &text, int from)
{
    switch (type) {
    case Tag::Comment:
        return endOf(QLatin1String("-->"), text, from);
    case Tag::XmlDecl:
        return endOf(QLatin1String("?>"), text, from);
    case Tag::CData:
        return endOf(QLatin1String("]]>"), text, from);
    default:
        return endOfDocType(text, from);
    }
}

} // namespace

Parser::Parser() = default;

Parser::~Parser() = default;

Tag *Parser::Parse(const QString &text)
{
    auto root = std::make_unique<Tag>();
    int pos = 0;
    ParseTag(root.get(), text, pos);
    return root.release();
}

void Parser::ParseTag(Tag *parent, const QString &text, int &pos)
{
    if (!parent || pos >= text.size())
        return;
    pos = std::max(pos, 0);
    TokenReader reader(parent, text);
    while (pos < text.size()) {
        int start = -1;
        int end = -1;
        const Tag::TagType_t type = GetTagString(text, pos, &start, &end);
        if (start < 0) {
            reader.readText(pos, text.size());
            break;
        }
        if (end < 0)
            break;
        reader.readText(pos, start);
        pos = end + 1;
        if (type == Tag::End) {
            if (!reader.closes(start, end))
                break;
            if (!reader.close())
                return;
        } else if (type == Tag::Start || type == Tag::Empty) {
            reader.readElement(type, start, end);
        } else {
            reader.readExtra(type, start, end);
        }
    }
    pos = text.size();
}

Tag::TagType_t Parser::GetTagString(const QString &text, int from, int *start, int *end)
{
    if (!start || !end)
        return Tag::None;
    *start = indexOf(text, u'<', from);
    *end = -1;
    if (*start < 0)
        return Tag::None;
    const QStringView head = QStringView(text).mid(*start, 9);
    const QChar second = head.size() > 1 ? head[1] : QChar();
    if (second == QLatin1Char('!') || second == QLatin1Char('?')) {
        const Tag::TagType_t type = extraType(head);
        if (type != Tag::None) {
            *end = endOfExtra(type, text, *start);
            return type;
        }
    }
    *end = indexOf(text, u'>', *start);
    if (second == QLatin1Char('/'))
        return Tag::End;
    return *end >= 1 && text.at(*end - 1) == QLatin1Char('/') ? Tag::Empty : Tag::Start;
}

} // namespace XML
