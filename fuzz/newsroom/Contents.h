#pragma once

#include <QStringList>

#include <quire/newsroom/model/Model.h>

namespace NewsroomFuzz {

/// Everything that a folder keeps of a newsroom, to compare two of them.
QStringList contentsOf(const Newsroom::Model &model);

/// What does not fit together in a newsroom, an empty string when all does: each story is well-formed and at its place.
QString unsoundness(const Newsroom::Model &model);

/// Saves the newsroom in a folder and reads it again. Answers what is different then, an empty string when nothing is.
QString savingLoss(const Newsroom::Model &model);

} // namespace NewsroomFuzz
