#include "NewsroomChecks.h"

#include <QRegularExpression>

#include "Contents.h"
#include "fuzz/Input.h"

namespace NewsroomFuzz {

using namespace Newsroom;

QString checkNewsroom(const QString &text)
{
    QString error = QStringLiteral("before");
    const std::shared_ptr<Model> model = Model::fromText(text, &error);
    if (!model) {
        static const QRegularExpression lineEnd(QStringLiteral("\r\n?|\n"));
        static const QRegularExpression lineAtStart(QStringLiteral("^line ([0-9]+):"));
        const int line = lineAtStart.match(Fuzz::matchable(error)).captured(1).toInt();
        const bool isLine = line > 0 && line <= Fuzz::matchable(text).count(lineEnd) + 1;
        return isLine ? QString() : QStringLiteral("no line is named: ") + error;
    }
    const QString wrong = unsoundness(*model);
    const bool comesBack = !text.contains(QChar(0)); // which no text file holds
    return wrong.isEmpty() && comesBack ? savingLoss(*model) : wrong;
}

} // namespace NewsroomFuzz
