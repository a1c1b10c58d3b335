#include <quire/newsroom/model/StoryText.h>

#include <algorithm>

#include "StoryReader.h"
#include "UniqueFields.h"

namespace Newsroom {

namespace {

const qint32 allSections[] = {Section::Head,  Section::Look,      Section::Fields,   Section::Body,
                              Section::Aeset, Section::FieldAtts, Section::AesetAtts};

bool isField(const StoryField &field, const QString &id)
{
    return field.id.compare(id, Qt::CaseInsensitive) == 0;
}

QString headMarkup(const StoryText &text, const StoryHeader &header)
{
    QString out = QLatin1String("<storyid>") + Zeko::escapeText(header.storyId) +
                  QLatin1String("</storyid><formname>") + Zeko::escapeText(header.formName) +
                  QLatin1String("</formname><meta");
    for (const NameValue &attribute : text.meta)
        out += Zeko::attributeText(attribute.name, attribute.value);
    return out + QLatin1Char('>');
}

QString fieldsMarkup(const QVector<StoryField> &fields)
{
    QString out;
    for (const StoryField &field : fields) {
        out += QLatin1String("<f") + Zeko::attributeText(QStringLiteral("id"), field.id);
        for (const NameValue &attribute : field.attributes)
            out += Zeko::attributeText(attribute.name, attribute.value);
        out += QLatin1Char('>') + Zeko::escapeText(field.value) + QLatin1String("</f>");
    }
    return out;
}

QString innerMarkup(const StoryText &text, const StoryHeader &header, qint32 section)
{
    switch (section) {
    case Section::Head:
        return headMarkup(text, header);
    case Section::Look:
        return text.look;
    case Section::Fields:
        return fieldsMarkup(text.fields);
    case Section::Body:
        return text.body;
    case Section::Aeset:
        return text.aeset;
    case Section::FieldAtts:
        return text.fieldAtts;
    default:
        return text.aesetAtts;
    }
}

/// "name: value"; a line feed in the value starts a line that a tab marks as a continuation.
QString plainLine(const QString &name, const QString &value)
{
    QString continued = value;
    continued.replace(QLatin1Char('\n'), QLatin1String("\n\t"));
    return name + QLatin1String(": ") + continued;
}

QString plainHead(const StoryText &text, const StoryHeader &header)
{
    QStringList lines{plainLine(QStringLiteral("storyid"), header.storyId),
                      plainLine(QStringLiteral("formname"), header.formName)};
    for (const NameValue &attribute : text.meta)
        lines.append(plainLine(attribute.name, attribute.value));
    return lines.join(QLatin1Char('\n'));
}

QString plainFields(const QVector<StoryField> &fields)
{
    QStringList lines;
    lines.reserve(fields.size());
    for (const StoryField &field : fields)
        lines.append(plainLine(field.id, field.value));
    return lines.join(QLatin1Char('\n'));
}

QString plainSection(const StoryText &text, const StoryHeader &header, qint32 section)
{
    switch (section) {
    case Section::Head:
        return plainHead(text, header);
    case Section::Fields:
        return plainFields(text.fields);
    case Section::Body:
        return text.plainBody();
    default:
        return innerMarkup(text, header, section);
    }
}

/// Plain lines read back into fields; \a before lends the attributes of fields that are named again.
bool readPlainFields(const QString &text, const StoryText &before, QVector<StoryField> *fields)
{
    UniqueFields known(before);
    QVector<StoryField> read;
    const QStringList lines = StoryReader::lines(text);
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1Char('\t')) && !read.isEmpty()) {
            read.last().value += QLatin1Char('\n') + line.mid(1);
            continue;
        }
        if (line.trimmed().isEmpty())
            continue;
        const int colon = line.indexOf(QLatin1Char(':'));
        if (colon <= 0)
            return false;
        const bool blank = line.midRef(colon + 1).startsWith(QLatin1Char(' '));
        const QString id = line.left(colon);
        read.append({id, line.mid(colon + (blank ? 2 : 1)), known.attributesOf(id)});
    }
    UniqueFields unique;
    for (const StoryField &field : qAsConst(read))
        unique.add(field);
    *fields = unique.fields();
    return true;
}

} // namespace

QString StoryText::metaValue(const QString &name) const
{
    for (const NameValue &attribute : meta) {
        if (attribute.name == name)
            return attribute.value;
    }
    return {};
}

void StoryText::setMeta(const QString &name, const QString &value)
{
    const auto found =
        std::find_if(meta.begin(), meta.end(), [&](const NameValue &attribute) { return attribute.name == name; });
    if (value.isEmpty()) {
        if (found != meta.end())
            meta.erase(found);
    } else if (found != meta.end()) {
        found->value = value;
    } else {
        meta.append({name, value});
    }
}

const StoryField *StoryText::field(const QString &id) const
{
    const auto found =
        std::find_if(fields.cbegin(), fields.cend(), [&](const StoryField &field) { return isField(field, id); });
    return found == fields.cend() ? nullptr : &*found;
}

QString StoryText::fieldValue(const QString &id) const
{
    const StoryField *found = field(id);
    return found == nullptr ? QString() : found->value;
}

void StoryText::setField(const QString &id, const QString &value)
{
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const StoryField &field) { return isField(field, id); });
    if (found != fields.end())
        found->value = value;
    else
        fields.append({id, value, {}});
}

QString StoryText::plainBody() const
{
    return StoryReader::plainBody(body);
}

void StoryText::setPlainBody(const QString &text)
{
    body.clear();
    if (text.isEmpty())
        return;
    const QStringList lines = StoryReader::lines(text);
    body.reserve(text.size() + lines.size() * 7);
    for (const QString &line : lines)
        body += QLatin1String("<p>") + Zeko::escapeText(line) + QLatin1String("</p>");
}

int StoryText::wordCount() const
{
    const QString text = plainBody();
    int words = 0;
    bool inWord = false;
    for (const QChar c : text) {
        const bool space = c.isSpace();
        if (!space && !inWord)
            ++words;
        inWord = !space;
    }
    return words;
}

Refusal StoryText::putMarkup(qint32 sections, const QString &text, qint32 *applied)
{
    if (!isSectionSet(sections))
        return Refusal::InvalidArgument;
    StoryText read = *this;
    StoryHeader header;
    qint32 found = 0;
    if (!StoryReader(text).read(&read, &header, &found))
        return Refusal::MarkupSyntax;
    // One section is given as that element alone; a set may come with the rest of the story around it.
    if ((found & sections) == 0 || (isSingleSection(sections) && found != sections))
        return Refusal::MarkupSyntax;
    copySections(found & sections, read);
    if (applied != nullptr)
        *applied = found & sections;
    return Refusal::None;
}

Refusal StoryText::putPlain(qint32 sections, const QString &text)
{
    if (sections == Section::Body) {
        setPlainBody(text);
        return Refusal::None;
    }
    if (sections != Section::Fields)
        return Refusal::InvalidArgument;
    return readPlainFields(text, *this, &fields) ? Refusal::None : Refusal::MarkupSyntax;
}

void StoryText::copySections(qint32 sections, const StoryText &from)
{
    if ((sections & Section::Head) != 0)
        meta = from.meta;
    if ((sections & Section::Look) != 0)
        look = from.look;
    if ((sections & Section::Fields) != 0)
        fields = from.fields;
    if ((sections & Section::Body) != 0)
        body = from.body;
    if ((sections & Section::Aeset) != 0)
        aeset = from.aeset;
    if ((sections & Section::FieldAtts) != 0)
        fieldAtts = from.fieldAtts;
    if ((sections & Section::AesetAtts) != 0)
        aesetAtts = from.aesetAtts;
}

QString markupOf(const StoryText &text, const StoryHeader &header, qint32 sections)
{
    QString out;
    out.reserve(text.body.size() + 512);
    for (const qint32 section : allSections) {
        if ((sections & section) == 0)
            continue;
        const QString name = sectionName(section);
        out.append(QLatin1Char('<')).append(name).append(QLatin1Char('>'));
        out.append(innerMarkup(text, header, section));
        out.append(QLatin1String("</")).append(name).append(QLatin1Char('>'));
    }
    return sections == Section::Whole ? QLatin1String("<story>") + out + QLatin1String("</story>") : out;
}

QString plainOf(const StoryText &text, const StoryHeader &header, qint32 sections)
{
    if (isSingleSection(sections))
        return plainSection(text, header, sections);
    QStringList parts;
    for (const qint32 section : allSections) {
        const QString part = (sections & section) != 0 ? plainSection(text, header, section) : QString();
        if (!part.isEmpty())
            parts.append(part);
    }
    return parts.join(QLatin1String("\n\n"));
}

Refusal readStory(const QString &document, StoryText *text, StoryHeader *header)
{
    StoryText read;
    StoryHeader readHeader;
    qint32 found = 0;
    if (!StoryReader(document).read(&read, &readHeader, &found) || found == 0)
        return Refusal::MarkupSyntax;
    *text = read;
    *header = readHeader;
    return Refusal::None;
}

} // namespace Newsroom
