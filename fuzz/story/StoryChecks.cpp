#include "StoryChecks.h"

#include <memory>
#include <vector>

#include <quire/Quire.h>
#include <quire/XML.h>

namespace StoryFuzz {

namespace {

using namespace Quire;

const QStringList &sectionNames()
{
    static const QStringList names{QStringLiteral("head"), QStringLiteral("fields"), QStringLiteral("body"),
                                   QStringLiteral("aeset")};
    return names;
}

/// Puts a section back as it was cut out. Where the text has prefixes, end tags without one get it.
bool comesBackEqual(const QString &text, const QString &tag, bool prefixed)
{
    QString copy = text;
    const QString section = Story::ExtractTextSection(copy, tag);
    if (section.isEmpty() || (prefixed && section.contains(QLatin1String("</") + tag)))
        return true;
    LocalStory::SetTextSection(copy, tag, section);
    return copy == text;
}

QString checkSection(const QString &text, const QString &tag)
{
    QString searched = text;
    int start = -7;
    int end = -7;
    const bool prefixed = Story::GetTextSectionPos(searched, tag, start, end);
    const QString section = Story::ExtractTextSection(searched, tag);
    if (searched != text)
        return QStringLiteral("a search changed the text");
    if (prefixed && text.contains(QLatin1Char('<') + tag))
        return QStringLiteral("the plain form was passed over");
    if (start < 0 ? end != -1 || prefixed : end < tag.length() + 2 || end > qMax(text.length(), tag.length() + 7))
        return QStringLiteral("no such place");
    const bool closed = text.contains(QLatin1String(prefixed ? "</zeko:" : "</") + tag + QLatin1Char('>'));
    const bool found = start >= 0 && end > start && closed;
    if (section != (found ? text.mid(start, end - start) : QString()))
        return QStringLiteral("not what stands there was cut out");
    if (!comesBackEqual(text, tag, prefixed))
        return QStringLiteral("putting a section back changed the text");
    QString replaced = text;
    LocalStory::SetTextSection(replaced, tag, QStringLiteral("new"));
    if (replaced != (found ? text.left(start) + QLatin1String("new") + text.mid(end) : text))
        return QStringLiteral("replacing a section changed something else");
    return QString();
}

/// Opens what hosts reach through a file only.
class OpenedStory : public LocalStory
{
public:
    explicit OpenedStory(QString text)
        : LocalStory(QString())
    {
        PutSection(127, text, true);
    }
    using LocalStory::Preprocess;

    QString section(int number)
    {
        QString text;
        GetSection(number, text, true);
        return text;
    }
};

QString closedOneByOne(QString text)
{
    QString body = Story::ExtractTextSection(text, QStringLiteral("body"));
    bool changed = false;
    int position = body.indexOf(QLatin1String("<a "));
    while (position >= 0) {
        const int end = body.indexOf(QLatin1Char('>'), position);
        if (end < 0)
            break;
        if (body.mid(end + 1, 4) != QLatin1String("</a>")) {
            body.insert(end + 1, QLatin1String("</a>"));
            changed = true;
        }
        position = body.indexOf(QLatin1String("<a "), end + 1);
    }
    if (changed)
        LocalStory::SetTextSection(text, QStringLiteral("body"), body);
    return text;
}

QString checkField(const QString &text, const QString &name)
{
    OpenedStory story(text);
    const QString absent = QStringLiteral("\uFFFFabsent");
    QString before = absent;
    story.GetField(name, before);
    story.SetField(name, QStringLiteral("value"));
    QString after = absent;
    story.GetField(name, after);
    if (before == absent)
        return story.section(127) == text && after == absent ? QString() : QStringLiteral("a missing field was added");
    if (!text.contains(QLatin1String("<fields")) && text.contains(QLatin1String("</fields")))
        return QString(); // the end tag gets the prefix, and the section may end with it
    if (after != QLatin1String("value"))
        return QStringLiteral("a field is not read as it was written");
    story.SetField(name, before);
    return story.section(127) == text ? QString() : QStringLiteral("a field's old value does not restore the text");
}

int flagsOf(XML::Tag &field)
{
    const int urgency = field.FindAttribute(QStringLiteral("urgency")).toInt();
    return (urgency > 1 ? 1 : 0) + (urgency > 2 ? 2 : 0) +
           (field.FindAttribute(QStringLiteral("uec")).isEmpty() ? 0 : 4) +
           (field.FindAttribute(QStringLiteral("aready")).isEmpty() ? 0 : 8);
}

/// Names and flags of the fields that have a value, one by one.
std::vector<Attribute> fieldsOf(const QString &text)
{
    std::vector<Attribute> fields;
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(text));
    const QString name = QStringLiteral("f");
    for (XML::Tag *field = root->FindTag(name, QString(), QString()); field;
         field = XML::Tag::FindNextTag(field, name, QString(), QString())) {
        const QString id = field->FindAttribute(QStringLiteral("id"));
        if (!id.isEmpty() && !field->GetEnclosedTextItem().isEmpty())
            fields.push_back({id, QString(), flagsOf(*field)});
    }
    return fields;
}

bool isPrintable(const QString &text)
{
    for (const uint character : text.toUcs4()) {
        if (!QChar::isPrint(character))
            return false;
    }
    return true;
}

} // namespace

QString checkSections(const QString &text)
{
    for (const QString &tag : sectionNames()) {
        const QString wrong = checkSection(text, tag);
        if (!wrong.isEmpty())
            return tag + QLatin1String(": ") + wrong;
    }
    return QString();
}

QString checkLocalStory(const QString &text)
{
    OpenedStory story(text);
    if (story.section(127) != text || !story.section(0).isEmpty())
        return QStringLiteral("the whole text is not what was put there");
    for (const QString &name : {QStringLiteral("title"), QStringLiteral("a"), QString()}) {
        QString wrong = checkField(text, name);
        if (!wrong.isEmpty())
            return wrong;
    }
    story.Preprocess();
    return story.section(127) == closedOneByOne(text) ? QString() : QStringLiteral("anchors are closed otherwise");
}

QString checkItem(const QString &text)
{
    Item item(QString(), Item_Story);
    item.AddAttr(QLatin1String(Attr_Header), text);
    std::vector<Attribute> none;
    item.RetrieveAttrs(none);
    for (const Attribute &attribute : item.attributes) {
        if (!attribute.name.startsWith(QLatin1Char('_')) || attribute.value.isEmpty() || attribute.flags != 0)
            return QStringLiteral("no such header attribute");
    }

    Item withFields(QString(), Item_Story);
    withFields.AddAttr(QLatin1String(Attr_Fields), text);
    withFields.RetrieveAttrs(none);
    const std::vector<Attribute> &expanded = withFields.attributes;
    const std::vector<Attribute> expected = fieldsOf(text);
    if (expanded.size() != expected.size() && expanded.size() != expected.size() + 1)
        return QStringLiteral("not every field with a value, or more");
    if (expanded.size() > expected.size() && expanded.back().name != QLatin1String("total-time"))
        return QStringLiteral("something else than the total time was added");
    for (std::size_t index = 0; index < expected.size(); ++index) {
        if (expanded[index].name != expected[index].name || expanded[index].flags != expected[index].flags)
            return QStringLiteral("a field's name or flags are wrong");
        if (!isPrintable(expanded[index].value))
            return QStringLiteral("a value cannot be printed");
    }
    const std::size_t count = expanded.size();
    withFields.AddAttr(QLatin1String(Attr_Fields), text);
    withFields.RetrieveAttrs(none);
    return withFields.attributes.size() == count + 1 ? QString() : QStringLiteral("an item was expanded twice");
}

} // namespace StoryFuzz
