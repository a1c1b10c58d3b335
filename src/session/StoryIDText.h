#pragma once

/// \file
/// Reads story identifiers out of texts that stay where they are. Not part of the public surface.

#include <QStringView>

#include <quire/session/StoryID.h>

namespace Quire {

/// As String2StoryID, without a copy of the text: for identifiers that are read by the hundred thousand.
StoryID toStoryID(QStringView text, int base);

} // namespace Quire
