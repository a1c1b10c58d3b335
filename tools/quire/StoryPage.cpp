#include "StoryPage.h"

#include <memory>

#include <QJsonArray>

#include <quire/XML.h>

#include "Listing.h"
#include "Output.h"
#include "SectionName.h"
#include "TextWidth.h"

namespace Tool {

namespace {

constexpr int rateUnits = 10; // the library's reading rate is a tenth of the server's words a minute

XML::NamedTag *findElement(XML::Tag &root, const char *name)
{
    for (const QString &spelling : {QString::fromLatin1(name), QLatin1String("zeko:") + QLatin1String(name)})
        if (auto *element = dynamic_cast<XML::NamedTag *>(root.FindTag(spelling, QString(), QString())))
            return element;
    return nullptr;
}

/// What the header says of the story's place in a programme, in words.
QString marksText(const QJsonObject &meta)
{
    QStringList marks;
    for (const char *mark : {"break", "float", "hold", "mail", "wire"})
        if (!meta.value(QLatin1String(mark)).toString().isEmpty())
            marks += QLatin1String(mark);
    return marks.join(QStringLiteral(", "));
}

void printAll(const QStringList &lines, Output &output)
{
    for (const QString &line : lines)
        output.line(line);
}

} // namespace

StoryPage::StoryPage(StoryAccess &story)
    : m_title(story.title())
    , m_form(story.story().FormName())
    , m_readRate(story.story().GetReadRate() * rateUnits)
    , m_isLocked(story.story().IsLocked(StoryAccess::editLock))
    , m_fields(story)
    , m_text(story.text())
{
    story.story().GetIDStr(m_id, true);
    readHead(story);
}

void StoryPage::readHead(StoryAccess &story)
{
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(story.section(StorySection::Head, true)));
    if (XML::NamedTag *const id = findElement(*root, "storyid"))
        m_headerId = id->GetEnclosedTextItem();
    const XML::NamedTag *const meta = findElement(*root, "meta");
    if (!meta)
        return;
    for (auto it = meta->m_Attributes.constBegin(); it != meta->m_Attributes.constEnd(); ++it)
        m_meta.insert(it.key(), it.value());
    bool isNumber = false;
    const int rate = m_meta.value(QStringLiteral("rate")).toString().toInt(&isNumber);
    if (isNumber)
        m_readRate = rate;
}

QString StoryPage::identifierText() const
{
    return m_headerId.isEmpty() ? m_id : QStringLiteral("%1, in the header %2").arg(m_id, m_headerId);
}

QString StoryPage::lockText() const
{
    QStringList locks;
    if (m_isLocked)
        locks += QStringLiteral("being edited");
    if (hasKeyLock())
        locks += QStringLiteral("key lock");
    return locks.isEmpty() ? QStringLiteral("none") : locks.join(QStringLiteral(", "));
}

bool StoryPage::hasKeyLock() const
{
    return !m_meta.value(QStringLiteral("locked")).toString().isEmpty();
}

void StoryPage::print(Output &output) const
{
    const QString marks = marksText(m_meta);
    Listing head;
    head.add(QStringLiteral("identifier"), identifierText());
    head.add(QStringLiteral("form"), m_form.isEmpty() ? QStringLiteral("none") : m_form);
    head.add(QStringLiteral("words"), m_meta.value(QStringLiteral("words")).toString());
    head.add(QStringLiteral("read rate"), QStringLiteral("%1 words a minute").arg(m_readRate));
    head.add(QStringLiteral("lock"), lockText());
    if (!marks.isEmpty())
        head.add(QStringLiteral("marks"), marks);
    output.line(fitText(visible(m_title), output.columns()));
    output.line();
    printAll(head.lines(output.columns()), output);
    output.line();
    printFields(output);
    output.line();
    printText(m_text, output);
}

void StoryPage::printFields(Output &output) const
{
    Listing fields;
    for (const StoryField &field : m_fields.all())
        fields.add(field.caption(), field.value);
    printAll(fields.lines(output.columns()), output);
}

void StoryPage::printText(const QString &text, Output &output)
{
    bool first = true;
    for (QString paragraph : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (!first)
            output.line();
        first = false;
        paragraph.replace(QLatin1Char('\t'), QLatin1Char(' '));
        printAll(wrapText(visible(paragraph), output.columns()), output);
    }
}

QJsonArray StoryPage::fieldsJson() const
{
    QJsonArray fields;
    for (const StoryField &field : m_fields.all())
        fields.append(
            QJsonObject{{QStringLiteral("field"), field.name},
                        {QStringLiteral("label"), field.label.isNull() ? QJsonValue() : QJsonValue(field.label)},
                        {QStringLiteral("value"), field.value},
                        {QStringLiteral("inForm"), field.isInForm},
                        {QStringLiteral("readOnly"), field.isReadOnly}});
    return fields;
}

QJsonObject StoryPage::json() const
{
    return {{QStringLiteral("id"), m_id},
            {QStringLiteral("headerId"), m_headerId},
            {QStringLiteral("form"), m_form},
            {QStringLiteral("meta"), m_meta},
            {QStringLiteral("readRate"), m_readRate},
            {QStringLiteral("beingEdited"), m_isLocked},
            {QStringLiteral("keyLock"), hasKeyLock()},
            {QStringLiteral("fields"), fieldsJson()},
            {QStringLiteral("text"), m_text}};
}

} // namespace Tool
