#pragma once

/// \file
/// Finds stories on the server and tells which they are. Not part of the public surface.

#include <QString>

#include <quire/orvex/Orvex.h>
#include <quire/session/StoryID.h>

namespace Quire {

/// Reads the identifier of a server's story, under the caller's access lock. False when the server does not tell it; \a
/// id is left alone then.
bool readStoryID(const Orvex::IStory2Ptr &story, StoryID *id);

/// The handle of the story \a id of the queue \a path, empty when there is none. The queue is searched from its
/// beginning; other stories that are met are put into the session's cache. When that does not find it the server is
/// asked for the story itself. What the server raises ends the search; nothing leaves.
IDispatchPtr lookupStory(const QString &path, StoryID *id);

/// The story \a id of the queue \a path; see Story::GetStory with an index.
Orvex::IStory2Ptr lookupStoryAt(const QString &path, StoryID id, int index, bool *notFound);

} // namespace Quire
