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
        const QLatin1String start("line "); // not by a pattern: halves of characters match none
        const int line = error.startsWith(start) ? error.section(QLatin1Char(':'), 0, 0).mid(start.size()).toInt() : 0;
        const bool isLine = line > 0 && line <= text.count(lineEnd) + 1;
        return isLine ? QString() : QStringLiteral("no line is named: ") + error;
    }
    const QString wrong = unsoundness(*model);
    const bool comesBack = !text.contains(QChar(0)); // which no text file holds
    return wrong.isEmpty() && comesBack ? savingLoss(*model) : wrong;
}

} // namespace NewsroomFuzz
