#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>

#include "StoryChecks.h"
#include "fuzz/Input.h"
#include "fuzz/StandIn.h"

namespace StoryFuzz {

namespace {

using namespace Quire;

const char *const newsroomText = R"(
user ann password=secret
form RUNDOWN
  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell></zeko:row></zeko:form>
queue WIRE form=RUNDOWN number=12
  story id=100:12:0
    title: Rain
    air-date: 0

    A paragraph.
)";

const StoryID theStory{100, 12, 0};

Newsroom::StoryPointer onServer(Fuzz::StandIn &world)
{
    return world.newsroom().model().story(100).value;
}

QString shown(const QString &name, QString value)
{
    DecodeAttribute(name, value);
    return value;
}

QString checkField(Fuzz::StandIn &world, Story &story, const QString &value)
{
    const QString name = QStringLiteral("title");
    story.SetField(name, value);
    if (story.GetError() < 0 || !story.Save(true))
        return QStringLiteral("a field was refused");
    QString read;
    Story(QStringLiteral("WIRE"), &theStory).GetField(name, read);
    return read == shown(name, onServer(world)->text().fieldValue(name)) ? QString()
                                                                         : QStringLiteral("another value is read");
}

QString checkSection(Fuzz::StandIn &world, Story &story, int section, const QString &text, bool markup)
{
    Newsroom::StoryText expected = onServer(world)->text();
    const bool fits =
        (markup ? expected.putMarkup(section, text) : expected.putPlain(section, text)) == Newsroom::Refusal::None;
    QString put = text;
    if (story.PutSection(section, put, markup) != (fits && section != 0) || put != text)
        return QStringLiteral("taken or refused wrongly, or changed");
    if (!fits)
        return QString();
    if (!story.Save(true))
        return QStringLiteral("cannot be saved");
    QString read;
    Story(QStringLiteral("WIRE"), &theStory).GetSection(section, read, markup);
    const Newsroom::StoryPointer saved = onServer(world);
    return read == (markup ? saved->markup(section) : saved->plain(section))
               ? QString()
               : QStringLiteral("another section is read");
}

/// What lists and headers make of the story.
QString checkListed()
{
    Queue::useThreading = false; // the newsroom puts it back
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(QStringLiteral("WIRE")));
    auto *const queue = dynamic_cast<Queue *>(directory.get());
    if (!queue || queue->Size() != 1)
        return QStringLiteral("the queue does not list the story");
    std::vector<Attribute> none;
    queue->Nth(0)->RetrieveAttrs(none);
    return queue->Nth(0)->FindAttr(QLatin1String(Attr_Storyid)) >= 0 ? QString()
                                                                     : QStringLiteral("a story without an identifier");
}

} // namespace

QString checkServerStory(const QString &text)
{
    Fuzz::StandIn world(newsroomText);
    const QStringList lines = Fuzz::linesOf(text, 2);
    QString wrong;
    {
        Story story(QStringLiteral("WIRE"), &theStory);
        wrong = checkField(world, story, lines[0]);
        if (wrong.isEmpty())
            wrong = checkSection(world, story, lines[1].toInt(), lines[2], true);
        if (wrong.isEmpty())
            wrong = checkSection(world, story, lines[1].toInt(), lines[2], false);
    }
    if (wrong.isEmpty())
        wrong = checkListed();
    return world.end(wrong);
}

} // namespace StoryFuzz
