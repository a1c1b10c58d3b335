// Reads a story: its fields under the labels of its form, and the words of its text out of the markup.

#include <memory>

#include <quire/XML.h>

#include "Session.h"

namespace {

/// The words of a section, a line for each paragraph.
QString wordsOf(const QString &section)
{
    const std::unique_ptr<XML::Tag> tree(XML::Parser().Parse(section));
    QStringList paragraphs;
    XML::Tag *paragraph = tree->FindTag("p", QString(), QString());
    for (; paragraph; paragraph = XML::Tag::FindNextTag(paragraph, "p", QString(), QString())) {
        QString words;
        paragraph->TagToText(words, QChar(), true, true);
        paragraphs.append(words.simplified());
    }
    return paragraphs.join('\n');
}

void printStory(Quire::Story &story)
{
    std::vector<Quire::Attribute> fields;
    story.GetAllFieldNames(fields);
    for (const Quire::Attribute &field : fields) {
        QString value;
        story.GetField(field.name, value);
        if (!value.isEmpty() && !field.name.endsWith("-date")) // dates are shown in local time
            print(QString("%1: %2").arg(field.value, value));
    }
    QString body;
    story.GetSection(8, body, true);
    print("\n" + wordsOf(body));
}

} // namespace

int main()
{
    return withSession([](Newsroom::Server &) {
        Quire::Queue queue(Quire::QuireCOM::TheQuireCOM->GetCachedDir("SPORT.FOOTBALL"));
        const std::unique_ptr<Quire::Story> story(queue.GetStory(0));
        if (story)
            printStory(*story);
    });
}
