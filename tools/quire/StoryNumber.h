#pragma once

#include <QString>

#include "Session.h"

namespace Tool {

/// How a person names a story of a queue: by the first number of its identifier ("4711"), or by its position in the
/// queue, counted from 1 ("#3"). A plain value.
struct StoryNumber
{
    qint32 value;
    bool isPosition;

    /// Reads \a text; Failure Usage when it is neither form.
    static StoryNumber parse(const QString &text);

    /// Opens the story; Failure NotFound.
    StoryEntry open(Session &session, const TreeEntry &queue) const;
};

} // namespace Tool
