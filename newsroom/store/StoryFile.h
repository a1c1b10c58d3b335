#pragma once

/// \file
/// Reads the file of one story; the store's own.

#include <QString>

#include <quire/newsroom/model/Model.h>

namespace Newsroom {

/// Reads the story \a part1 from \a file, all but its queue. False, with \a error naming the file, when it is not there
/// or holds something else.
bool readStoryFile(const QString &file, qint32 part1, Model::NewStory *story, QString *error);

} // namespace Newsroom
