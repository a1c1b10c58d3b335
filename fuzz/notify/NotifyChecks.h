#pragma once

/// \file
/// What has to hold for every event of a server. Answers what is wrong, an empty string when nothing is.

#include <QByteArray>
#include <QString>

namespace NotifyFuzz {

/// Events of one search, with hits of any number, texts and fields, in arrays of any shape: the list has the hits of
/// those arrays that hold hits, each with the fields that have a value, and ends when the server says so.
QString checkEvents(const QByteArray &input);

} // namespace NotifyFuzz
