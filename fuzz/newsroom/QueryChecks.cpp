#include <quire/newsroom/model/Query.h>
#include <quire/newsroom/model/Story.h>

#include "NewsroomChecks.h"
#include "fuzz/Input.h"

namespace NewsroomFuzz {

namespace {

using namespace Newsroom;

/// A story that has the texts that are looked for, and no others.
Story storyOf(const QString &text)
{
    StoryText content;
    content.setField(QStringLiteral("title"), text.left(20));
    content.setPlainBody(text);
    return Story(Story::Identity(), content);
}

} // namespace

QString checkQuery(const QString &text)
{
    const QStringList lines = Fuzz::linesOf(text, 1);
    const QString &asked = lines[0];
    const Answer<Query> query = Query::parse(asked);
    if (!query.ok())
        return query.refusal == Refusal::BadSyntax ? QString() : QStringLiteral("refused for another reason");
    if (query.value.maxFound() < 0)
        return QStringLiteral("a negative limit");
    const Story story = storyOf(lines[1]);
    const bool found = query.value.matches(story);

    const int start = asked.indexOf(QLatin1String("}((")) + 3;
    const QString scope = asked.left(start);
    const QString words = QLatin1Char('(') + asked.mid(start, asked.size() - start - 2) + QLatin1Char(')');
    const struct
    {
        QString words;
        bool found;
    } others[] = {{QLatin1String("NOT ") + words, !found},         {QLatin1Char('-') + words, !found},
                  {words + QLatin1Char(' ') + words, found},       {words + QLatin1String(" OR ") + words, found},
                  {words + QLatin1String(" NOT ") + words, false}, {words + QLatin1String(" OR NOT ") + words, true}};
    for (const auto &other : others) {
        const Answer<Query> parsed = Query::parse(scope + other.words + QLatin1String("))"));
        if (!parsed.ok())
            return QStringLiteral("refused: ") + other.words;
        if (parsed.value.path() != query.value.path() || parsed.value.server() != query.value.server() ||
            parsed.value.maxFound() != query.value.maxFound() || parsed.value.isSubtree() != query.value.isSubtree())
            return QStringLiteral("another scope");
        if (parsed.value.matches(story) != other.found)
            return QStringLiteral("not the opposite, or not the same: ") + other.words;
    }
    return QString();
}

} // namespace NewsroomFuzz
