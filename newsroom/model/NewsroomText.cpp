#include <quire/newsroom/model/NewsroomText.h>

#include "NewsroomTextReader.h"

namespace Newsroom {
namespace NewsroomText {

bool addTo(Model *model, const QString &text, QString *error)
{
    return addTo(model, QStringLiteral("."), text, error);
}

bool addTo(Model *model, const QString &path, const QString &text, QString *error)
{
    NewsroomTextReader reader(model, path, text);
    const bool read = reader.read();
    if (!read && error != nullptr)
        *error = reader.error();
    return read;
}

} // namespace NewsroomText
} // namespace Newsroom
