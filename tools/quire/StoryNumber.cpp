#include "StoryNumber.h"

#include "Failure.h"
#include "Words.h"

namespace Tool {

StoryNumber StoryNumber::parse(const QString &text)
{
    const bool isPosition = text.startsWith(QLatin1Char('#'));
    const std::optional<qint32> value = parseNumber(isPosition ? text.mid(1) : text);
    if (!value)
        throw Failure(ExitCode::Usage, QStringLiteral("\"%1\" is no story number; give the first number of its "
                                                      "identifier (5024), or its position in the queue (#3)")
                                           .arg(text));
    return {*value, isPosition};
}

StoryEntry StoryNumber::open(Session &session, const TreeEntry &queue) const
{
    return isPosition ? session.openStoryAt(queue, value) : session.openStory(queue, value);
}

} // namespace Tool
