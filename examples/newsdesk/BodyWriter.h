#pragma once

#include <QString>

class QTextDocument;

namespace Desk {

/// The markup between the tags of the body that \a document shows; see BodyDocument.
QString bodyContent(const QTextDocument &document);

} // namespace Desk
