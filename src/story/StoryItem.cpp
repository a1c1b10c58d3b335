#include <quire/story/Story.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "HeaderMarkup.h"
#include "SectionPattern.h"
#include "Sections.h"
#include "StoryLookup.h"
#include "TotalTime.h"
#include <quire/forms/AttributeCodec.h>
#include <quire/markup/NamedTag.h>
#include <quire/markup/Parser.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/PermanentText.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/tree/Item.h>

// The list item of a story: made while its queue loads, expanded when the host first asks for its attributes.

namespace Quire {

namespace {

const int UrgentFlag = 1;
const int VeryUrgentFlag = 2;
const int UecFlag = 4;
const int AlreadyFlag = 8;

/// The keys of every story item. Made once, so that a hundred thousand items share their texts.
struct ItemKeys
{
    const QString storyId = Platform::permanentText(Attr_Storyid);
    const QString header = Platform::permanentText(Attr_Header);
    const QString fields = Platform::permanentText(Attr_Fields);
    const QString lock = Platform::permanentText(Attr_Lock);
    const QString headerId = Platform::permanentText(Attr_Headerid);
};

const ItemKeys &itemKeys()
{
    static const auto &keys = *new const ItemKeys; // never destroyed: a worker may outlast main()
    return keys;
}

/// An attribute of the header's meta element and what the item gets for it: the value, or a fixed letter.
struct HeaderAttribute
{
    QString name;
    QString key;
    QString letter;
};

const std::vector<HeaderAttribute> &headerAttributes()
{
    static const auto &attributes = *new const std::vector<HeaderAttribute>{
        // never destroyed: a worker may outlast main()
        {QStringLiteral("wire"), Platform::permanentText(Attr_Wire), QString()},
        {QStringLiteral("mail"), Platform::permanentText(Attr_Mail), QString()},
        {QStringLiteral("words"), Platform::permanentText(Attr_Words), QString()},
        {QStringLiteral("rate"), Platform::permanentText(Attr_Rate), QString()},
        {QStringLiteral("locked"), Platform::permanentText(Attr_Lock), QString()},
        {QStringLiteral("break"), Platform::permanentText(Attr_Break), QStringLiteral("B")},
        {QStringLiteral("float"), Platform::permanentText(Attr_Float), QStringLiteral("F")},
        {QStringLiteral("hold"), Platform::permanentText(Attr_Hold), QStringLiteral("H")},
    };
    return attributes;
}

/// Characters count, not their halves: what lies beyond the basic plane is kept when it is printable.
bool isPrintable(const QString &text, int index, int *length)
{
    const QChar first = text.at(index);
    const bool pair = first.isHighSurrogate() && index + 1 < text.length() && text.at(index + 1).isLowSurrogate();
    *length = pair ? 2 : 1;
    return pair ? QChar::isPrint(QChar::surrogateToUcs4(first, text.at(index + 1))) : first.isPrint();
}

/// Printable without asking any table, as most values are.
bool isPlain(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(),
                       [](QChar letter) { return letter >= QLatin1Char(' ') && letter <= QLatin1Char('~'); });
}

QString printableOnly(const QString &text)
{
    if (isPlain(text))
        return text;
    QString kept;
    int from = 0; // start of the run of printable characters that is not yet kept
    int length = 1;
    for (int index = 0; index < text.length(); index += length) {
        if (isPrintable(text, index, &length))
            continue;
        kept += text.midRef(from, index - from);
        from = index + length;
    }
    if (from == 0)
        return text;
    kept += text.midRef(from);
    return kept;
}

int urgencyFlags(int urgency)
{
    return (urgency > 1 ? UrgentFlag : 0) | (urgency > 2 ? VeryUrgentFlag : 0);
}

/// The attribute of a field element, without a name when the field has no identifier or no value.
Attribute attributeOf(XML::NamedTag &field)
{
    Attribute attribute;
    const QMap<QString, QString> &given = field.m_Attributes;
    for (auto at = given.cbegin(); at != given.cend(); ++at) {
        if (at.key() == QLatin1String("id"))
            attribute.name = at.value();
        else if (at.key() == QLatin1String("urgency"))
            attribute.flags |= urgencyFlags(at.value().toInt());
        else if (at.key() == QLatin1String("uec") && !at.value().isEmpty())
            attribute.flags |= UecFlag;
        else if (at.key() == QLatin1String("aready") && !at.value().isEmpty())
            attribute.flags |= AlreadyFlag;
    }
    const QString raw = field.GetEnclosedTextItem();
    if (attribute.name.isEmpty() || raw.isEmpty())
        return {};
    attribute.value = printableOnly(raw);
    DecodeAttribute(attribute.name, attribute.value);
    return attribute;
}

/// The identifier as items carry it, empty when the server does not tell it.
QString identifierOf(const Orvex::IStory2Ptr &story)
{
    const QuireCOMMutex lock("static::GetStoryID");
    StoryID id{0, 0, 0};
    return readStoryID(story, &id) ? StoryID2String(id, false) : QString();
}

/// What a search by name found: only elements match.
XML::NamedTag *asElement(XML::Tag *found)
{
    return static_cast<XML::NamedTag *>(found);
}

/// The two sections of which list items are made.
struct Patterns
{
    const SectionPattern head{Section::elementName(Section::Head)};
    const SectionPattern fields{Section::elementName(Section::Fields)};
};

const Patterns &patterns()
{
    static const auto &made = *new const Patterns; // never destroyed: a worker may outlast main()
    return made;
}

/// The story's whole markup, nothing when the server refuses. Not copied: most of it is not kept.
Platform::Bstr wholeText(const Orvex::IStory2Ptr &story)
{
    const QuireCOMMutex lock("static::GetSection");
    Platform::Bstr text;
    if (FAILED(story->get_SectionXml(Section::Whole, text.out())))
        text.reset();
    return text;
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
void Story::InitStoryItem(Item &item, Orvex::IStory2Ptr story)
{
    item.type = Item_Story;
    if (!story)
        return;
    {
        const QuireCOMMutex lock("static::InitStoryItem");
        Platform::Bstr name;
        if (SUCCEEDED(story->get_StoryName(name.out())) && name)
            item.name = name.toString();
    }
    const ItemKeys &keys = itemKeys();
    item.attributes.reserve(item.attributes.size() + 3);
    item.attributes.push_back({keys.storyId, identifierOf(story)});
    const Platform::Bstr markup = wholeText(story);
    const QStringView text = markup.view();
    QString head = patterns().head.extract(text);
    QString fields = patterns().fields.extract(text);
    if (!head.isEmpty())
        item.attributes.push_back({keys.header, std::move(head)});
    else
        item.AddAttr(keys.lock, QString()); // a story whose header cannot be read is shown as locked
    if (!fields.isEmpty())
        item.attributes.push_back({keys.fields, std::move(fields)});
}

void Story::InitStoryHeaderAttributes(Item &item, QString &headerText)
{
    const HeaderMarkup header(headerText);
    const QString id = header.storyID();
    if (!id.isEmpty())
        item.AddAttr(itemKeys().headerId, id);
    if (!header.hasMeta())
        return;
    for (const HeaderAttribute &attribute : headerAttributes()) {
        const QString value = header.meta(attribute.name);
        if (!value.isEmpty())
            item.AddAttr(attribute.key, attribute.letter.isNull() ? value : attribute.letter);
    }
}

void Story::InitStoryFieldAttributes(Item &item, QString &fieldsText)
{
    const QString elementName = QStringLiteral("f");
    TotalTime total;
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(fieldsText));
    XML::NamedTag *field = asElement(root->FindTag(elementName, QString(), QString()));
    while (field) {
        Attribute attribute = attributeOf(*field);
        if (!attribute.name.isEmpty()) {
            total.note(attribute);
            item.attributes.push_back(std::move(attribute));
        }
        field = asElement(XML::Tag::FindNextTag(field, elementName, QString(), QString()));
    }
    const QString computed = total.computed();
    if (!computed.isEmpty())
        item.AddAttr(TotalTime::fieldName(), computed);
}

} // namespace Quire
