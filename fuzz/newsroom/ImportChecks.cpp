#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <quire/newsroom/store/FileText.h>
#include <quire/newsroom/store/Importer.h>
#include <quire/newsroom/store/Store.h>

#include "Contents.h"
#include "NewsroomChecks.h"
#include "fuzz/Input.h"

namespace NewsroomFuzz {

using namespace Newsroom;

namespace {

/// The story that a file has become.
QString checkStory(const Model &model, const QString &name, const FileText &file)
{
    if (model.storyCount() != 1)
        return QStringLiteral("%1 stories of one file").arg(model.storyCount());
    const StoryPointer story = model.stories(model.queues().first().number()).value.first();
    if (story->text().fieldValue(QStringLiteral("title")) != name ||
        story->text().fieldValue(QStringLiteral("source")) != name)
        return QStringLiteral("another title than the file's name");
    if (story->text().plainBody() != file.text)
        return QStringLiteral("another body than the file's text");
    return unsoundness(model);
}

QString checkReport(const ImportReport &report, const FileText &file, qint64 size)
{
    const bool hasText = file.kind == FileText::Plain || file.kind == FileText::Markup;
    if (report.stories + report.skipped() != 1 || report.stories != int{hasText})
        return QStringLiteral("counted otherwise than once");
    if (report.skippedCompressed != int{file.kind == FileText::Compressed} ||
        report.skippedBinary != int{file.kind == FileText::Binary} ||
        report.markupFiles != int{file.kind == FileText::Markup} || report.bytes != (hasText ? size : 0))
        return QStringLiteral("counted as something else");
    return QString();
}

QString checkText(const FileText &file)
{
    if (file.kind == FileText::Compressed || file.kind == FileText::Binary)
        return file.text.isEmpty() ? QString() : QStringLiteral("a text of what has none");
    const bool clean = !file.text.contains(QLatin1Char('\r')) && !file.text.contains(QChar(0));
    return clean ? QString() : QStringLiteral("line ends were left in");
}

} // namespace

QString checkImport(const QByteArray &input)
{
    const QByteArray name = input.left(input.indexOf('\n')).left(40);
    const QByteArray bytes = input.mid(input.indexOf('\n') + 1);
    const FileText text = FileText::of(bytes, QString::fromUtf8(name));
    QString wrong = checkText(text);
    const QTemporaryDir temporary;
    QDir(temporary.path()).mkdir(QStringLiteral("files"));
    QFile file(temporary.filePath(QStringLiteral("files/")) + QString::fromUtf8(name));
    if (!wrong.isEmpty() || name.contains('/') || name.contains('\\') || !file.open(QIODevice::WriteOnly))
        return wrong; // no name of a file
    file.write(bytes);
    file.close();

    const QString folder = temporary.filePath(QStringLiteral("newsroom"));
    ImportReport report;
    QString error;
    if (!Importer::import(temporary.filePath(QStringLiteral("files")), folder, &report, &error))
        return QStringLiteral("not imported: ") + error;
    wrong = checkReport(report, text, bytes.size());
    if (!wrong.isEmpty())
        return wrong;
    const std::shared_ptr<Model> model = Store::read(folder, &error);
    if (!model)
        return QStringLiteral("not to be read once imported: ") + error;
    return report.stories == 1 ? checkStory(*model, QFileInfo(file).fileName(), text) : unsoundness(*model);
}

} // namespace NewsroomFuzz
