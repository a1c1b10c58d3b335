#include <algorithm>

#include <QJsonArray>
#include <QJsonObject>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>

#include "StoryTable.h"
#include "TextWidth.h"
#include "ToolChecks.h"
#include "fuzz/StandIn.h"

namespace ToolFuzz {

namespace {

using namespace Tool;

constexpr int mostStories = 12;

const char *const newsroomText = R"(
user ann password=secret
form RUNDOWN
  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell>
  <zeko:cell idref=slug length=20>Slug, "short"</zeko:cell></zeko:row></zeko:form>
queue WIRE form=RUNDOWN number=12
)";

void addStories(Newsroom::Model &model, const QString &text)
{
    const QStringList lines = text.split(QLatin1Char('\n')).mid(0, mostStories);
    for (int index = 0; index < lines.size(); ++index) {
        Newsroom::Model::NewStory story;
        story.queueNumber = 12;
        story.id = {100 + index, 1, 1};
        // A text may well hold a line feed or a carriage return; the input spells the one as a bar.
        const QStringList values =
            QString(lines.at(index)).replace(QLatin1Char('|'), QLatin1Char('\n')).split(QLatin1Char('\t'));
        story.text.setField(QStringLiteral("title"), values.first());
        story.text.setField(QStringLiteral("slug"), values.last());
        model.addStory(story);
    }
}

/// Comma-separated values, read slowly.
std::vector<QStringList> readCsv(const QString &csv)
{
    std::vector<QStringList> rows{QStringList{QString()}};
    bool isQuoted = false;
    for (int i = 0; i < csv.size(); ++i) {
        const QChar letter = csv.at(i);
        const bool isQuote = letter == QLatin1Char('"');
        if (isQuote && isQuoted && csv.mid(i + 1, 1) == QLatin1String("\""))
            rows.back().last() += csv.at(++i);
        else if (isQuote)
            isQuoted = !isQuoted;
        else if (!isQuoted && letter == QLatin1Char(','))
            rows.back().append(QString());
        else if (!isQuoted && letter == QLatin1Char('\n'))
            rows.push_back(QStringList{QString()});
        else
            rows.back().last() += letter;
    }
    return rows;
}

/// The rows as the table tells them in its other form.
std::vector<QStringList> expectedRows(const StoryTable &table)
{
    std::vector<QStringList> rows{QStringLiteral("#,name,number,lock,title,slug").split(QLatin1Char(','))};
    const QJsonArray stories = table.json();
    for (const QJsonValue &value : stories) {
        const QJsonObject story = value.toObject();
        const QJsonObject fields = story.value(QLatin1String("fields")).toObject();
        rows.push_back({QString::number(story.value(QLatin1String("position")).toInt()),
                        story.value(QLatin1String("name")).toString(),
                        QString::number(story.value(QLatin1String("number")).toInt()),
                        story.value(QLatin1String("lock")).toString(), fields.value(QLatin1String("title")).toString(),
                        fields.value(QLatin1String("slug")).toString()});
    }
    return rows;
}

QString checkLines(const StoryTable &table)
{
    for (const int columns : {20, 40, 80, 1000}) {
        int left = -1;
        const QStringList lines = table.lines(columns, &left);
        if (left < 0 || left > 2 || lines.size() != table.size() + 1)
            return QStringLiteral("%1 lines, %2 fields left out").arg(lines.size()).arg(left);
        for (const QString &line : lines) {
            if (textWidth(line) > columns)
                return QStringLiteral("wider than %1").arg(columns);
        }
    }
    return QString();
}

QString checkSorting(StoryTable &table)
{
    const std::vector<QStringList> first = expectedRows(table);
    for (const char *column : {"title", "-slug", "name", "-number", "#"}) {
        table.sort(QLatin1String(column));
        std::vector<QStringList> sorted = expectedRows(table);
        if (!std::is_permutation(first.begin(), first.end(), sorted.begin(), sorted.end()))
            return QStringLiteral("sorted by %1, rows are lost").arg(QLatin1String(column));
    }
    return expectedRows(table) == first ? QString() : QStringLiteral("sorted by position they are not as they were");
}

QString checkTableOf(Quire::Queue &queue, int stories)
{
    StoryTable table(queue, {}, -1);
    if (table.size() != stories)
        return QStringLiteral("%1 stories").arg(table.size());
    if (readCsv(table.csv().join(QLatin1Char('\n'))) != expectedRows(table))
        return QStringLiteral("the values do not come back");
    QString wrong = checkLines(table);
    return wrong.isEmpty() ? checkSorting(table) : wrong;
}

} // namespace

QString checkStories(const QString &text)
{
    Fuzz::StandIn world(newsroomText);
    Newsroom::Model &model = world.newsroom().model();
    addStories(model, text);
    const int stories = model.storyCount();
    QString wrong;
    {
        const bool threading = std::exchange(Quire::Queue::useThreading, false);
        Quire::Queue queue(world.session()->GetCachedDir(QStringLiteral("WIRE")));
        Quire::Queue::useThreading = threading;
        wrong = checkTableOf(queue, stories);
    }
    return world.end(wrong);
}

} // namespace ToolFuzz
