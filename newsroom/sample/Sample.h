#pragma once

/// \file
/// A whole newsroom to look around in: the one that demonstrations and tests start from.

#include <QString>
#include <memory>

namespace Newsroom {

class Model;

/// The sample newsroom of the invented town of Havenport on Thursday, 15 October 2026: shows with rundowns and scripts,
/// mail, sport, an archive, wires and desks. A fresh model at each call, shared with nobody; call it from any thread.
///
/// Its text is kept in newsroom/sample/*.txt (see NewsroomText) and compiled in. Null, with \a error (may be null) as
/// "NAME.txt: line N: ...", when one of these texts is wrong.
std::shared_ptr<Model> sampleModel(QString *error = nullptr);

/// Adds what the texts "*.txt" of \a folder (a resource or on disk) describe to \a model, in the order of their names.
/// False, with \a error (may be null), at the first text that cannot be read ("NAME.txt: ...") or is wrong
/// ("NAME.txt: line N: ..."); what stood before it has been added. A folder without such texts adds nothing.
bool addTexts(Model *model, const QString &folder, QString *error = nullptr);

} // namespace Newsroom
