#pragma once

#include <QString>

#include <quire/Quire.h>

/// What a host does on a server that it has not seen before: the path of the first queue, in tree order, that has
/// stories; empty when there is none. The session is signed on.
QString firstQueueWithStories();

/// The story at a position of a queue; empty when there is none.
Orvex::IStory2Ptr storyAt(const QString &queuePath, LONG position);
