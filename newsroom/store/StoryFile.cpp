#include "StoryFile.h"

#include <QDir>

#include "FolderLayout.h"

namespace Newsroom {

bool readStoryFile(const QString &file, qint32 part1, Model::NewStory *story, QString *error)
{
    const auto fail = [&](const QString &why) {
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(file), why);
        return false;
    };
    QByteArray data;
    if (!Files::read(file, &data, error))
        return false;
    QString document;
    if (!Files::fromUtf8(data, &document))
        return fail(QStringLiteral("is no UTF-8 text"));
    StoryHeader header;
    if (readStory(document, &story->text, &header) != Refusal::None)
        return fail(description(Refusal::MarkupSyntax));
    if (!StoryId::fromHeaderText(header.storyId, &story->id, &story->revision) || story->id.part1 != part1)
        return fail(
            QStringLiteral("holds the story \"%1\" where %2 is expected").arg(header.storyId, QString::number(part1)));
    story->formName = header.formName;
    return true;
}

} // namespace Newsroom
