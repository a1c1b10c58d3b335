#include <quire/newsroom/model/Section.h>
#include <quire/newsroom/model/StoryText.h>

#include "NewsroomChecks.h"

namespace NewsroomFuzz {

namespace {

using namespace Newsroom;

const qint32 singleSections[] = {Section::Head,  Section::Look,      Section::Fields,   Section::Body,
                                 Section::Aeset, Section::FieldAtts, Section::AesetAtts};

bool isSame(const StoryText &a, const StoryText &b)
{
    return a.meta == b.meta && a.fields == b.fields && a.look == b.look && a.body == b.body && a.aeset == b.aeset &&
           a.fieldAtts == b.fieldAtts && a.aesetAtts == b.aesetAtts;
}

QString checkFields(const StoryText &text)
{
    for (const StoryField &field : text.fields) {
        if (text.field(field.id) != &field)
            return QStringLiteral("a field stands twice or is not found");
    }
    return QString();
}

QString checkDocument(const QString &document)
{
    StoryText text;
    StoryHeader header;
    text.body = QStringLiteral("before");
    if (readStory(document, &text, &header) != Refusal::None)
        return text.body == QLatin1String("before") ? QString() : QStringLiteral("a refusal changed the story");
    StoryText again;
    StoryHeader headerAgain;
    if (readStory(markupOf(text, header, Section::Whole), &again, &headerAgain) != Refusal::None)
        return QStringLiteral("what is written of a story is none");
    if (!isSame(text, again) || header.storyId != headerAgain.storyId || header.formName != headerAgain.formName)
        return QStringLiteral("another story is read than was written");
    return checkFields(text);
}

QString checkSection(qint32 section, const QString &markup)
{
    StoryText before;
    before.look = QStringLiteral("before");
    StoryText text = before;
    qint32 applied = 0;
    if (text.putMarkup(section, markup, &applied) != Refusal::None)
        return isSame(text, before) ? QString() : QStringLiteral("a refused section changed the story");
    StoryText again = text;
    if (applied != section || again.putMarkup(section, markupOf(text, {}, section)) != Refusal::None ||
        !isSame(text, again))
        return QStringLiteral("section %1 is not read as it was written").arg(section);
    return QString();
}

QString normalised(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.remove(QChar(0));
}

QString checkPlain(const QString &plain)
{
    StoryText text;
    text.putPlain(Section::Body, plain);
    if (text.plainBody() != normalised(plain))
        return QStringLiteral("another body than was put");
    if (text.wordCount() != normalised(plain).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts).size())
        return QStringLiteral("the words are counted otherwise");
    if (text.putPlain(Section::Fields, plain) != Refusal::None)
        return text.fields.isEmpty() ? QString() : QStringLiteral("refused lines changed the fields");
    StoryText again = text;
    again.putPlain(Section::Fields, plainOf(text, {}, Section::Fields));
    return again.fields == text.fields ? checkFields(text) : QStringLiteral("other fields than were put");
}

} // namespace

QString checkStory(const QString &text)
{
    QString wrong = checkDocument(text);
    for (const qint32 section : singleSections) {
        if (wrong.isEmpty())
            wrong = checkSection(section, text);
    }
    return wrong.isEmpty() ? checkPlain(text) : wrong;
}

} // namespace NewsroomFuzz
