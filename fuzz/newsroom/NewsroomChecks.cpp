#include "NewsroomChecks.h"

#include <QRegularExpression>

#include "Contents.h"

namespace NewsroomFuzz {

using namespace Newsroom;

QString checkNewsroom(const QString &text)
{
    QString error = QStringLiteral("before");
    const std::shared_ptr<Model> model = Model::fromText(text, &error);
    if (!model) {
        static const QRegularExpression lineEnd(QStringLiteral("\r\n?|\n"));
        static const QRegularExpression pattern(QStringLiteral("^line ([0-9]+): ."));
        const int line = pattern.match(error).captured(1).toInt();
        const bool isLine = line > 0 && line <= text.count(lineEnd) + 1;
        return isLine ? QString() : QStringLiteral("no line is named: ") + error;
    }
    const QString wrong = unsoundness(*model);
    return wrong.isEmpty() ? savingLoss(*model) : wrong;
}

} // namespace NewsroomFuzz
