#include "Contents.h"

#include <QTemporaryDir>

#include <algorithm>

#include <quire/newsroom/model/Section.h>
#include <quire/newsroom/store/FileNames.h>
#include <quire/newsroom/store/Store.h>

namespace NewsroomFuzz {

using namespace Newsroom;

namespace {

QString line(const Entry &entry)
{
    return QStringLiteral("%1 %2 %3 [%4] %5 %6")
        .arg(entry.isQueue() ? QStringLiteral("queue") : QStringLiteral("directory"), entry.path)
        .arg(entry.number())
        .arg(entry.flags.toString(), entry.settings.formName)
        .arg(int{entry.settings.readOnly} * 2 + int{entry.settings.purgeLocked});
}

QString line(const User &user)
{
    return QStringLiteral("user %1/%2/%3/%4/%5 %6 %7 %8")
        .arg(user.name, user.password, user.fullName, user.mailQueue, user.device)
        .arg(user.number)
        .arg(user.rights)
        .arg(int{user.mayWrite} * 2 + int{user.superuser});
}

void addStories(const Model &model, const Entry &queue, QStringList *lines)
{
    for (const StoryPointer &story : model.stories(queue.number()).value) {
        lines->append(story->id().unique() + QLatin1Char(' ') + story->formName());
        lines->append(story->markup(Section::Whole));
    }
}

QVector<Entry> treeOf(const Model &model)
{
    QVector<Entry> entries{model.entry(QString()).value};
    for (int i = 0; i < entries.size(); ++i) {
        if (!entries.at(i).isQueue())
            entries += model.children(entries.at(i).path).value;
    }
    return entries;
}

/// No file system takes names of any length.
bool isShort(const QString &name)
{
    const int longest = 200;
    return FileNames::ofExactName(name).toUtf8().size() < longest;
}

bool fitsFolder(const Model &model)
{
    const QVector<User> users = model.users();
    const QVector<Form> forms = model.forms();
    const QStringList blobs = model.blobNames();
    const QVector<Entry> tree = treeOf(model);
    return std::all_of(users.begin(), users.end(), [](const User &user) { return isShort(user.name); }) &&
           std::all_of(forms.begin(), forms.end(), [](const Form &form) { return isShort(form.name); }) &&
           std::all_of(blobs.begin(), blobs.end(), isShort) &&
           std::all_of(tree.begin(), tree.end(), [](const Entry &entry) { return isShort(entry.path); });
}

} // namespace

QStringList contentsOf(const Model &model)
{
    const SystemValues system = model.system();
    QStringList lines{system.serverName + QLatin1Char(' ') + system.aliases.join(QLatin1Char(' ')),
                      QStringLiteral("%1 %2 %3 %4")
                          .arg(system.readRate)
                          .arg(system.wordLength)
                          .arg(int{system.offline})
                          .arg(system.sessionLimit)};
    for (const User &user : model.users())
        lines.append(line(user));
    for (const Form &form : model.forms())
        lines.append(form.name + QLatin1Char(' ') + form.markup);
    for (const QString &name : model.blobNames())
        lines.append(name + QLatin1Char(' ') + QString::fromLatin1(model.blobOf(name).value.data.toHex()));
    for (const User &user : model.users())
        lines.append(QString::fromLatin1(model.userBlobOf(user.name).value.data.toHex()));
    for (const Entry &entry : treeOf(model)) {
        lines.append(line(entry));
        if (entry.isQueue())
            addStories(model, entry, &lines);
    }
    return lines;
}

QString unsoundness(const Model &model)
{
    int stories = 0;
    for (const Entry &queue : model.queues()) {
        const QVector<StoryPointer> inQueue = model.stories(queue.number()).value;
        for (int position = 0; position < inQueue.size(); ++position) {
            const StoryPointer &story = inQueue.at(position);
            StoryText text;
            StoryHeader header;
            if (readStory(story->markup(Section::Whole), &text, &header) != Refusal::None)
                return QStringLiteral("a story is not well-formed: ") + story->markup(Section::Whole);
            const Answer<int> found = model.positionOf(story->id().part1);
            if (!found.ok() || found.value != position || story->queuePath() != queue.path)
                return QStringLiteral("a story is not at its place");
        }
        stories += inQueue.size();
    }
    return stories == model.storyCount() ? QString() : QStringLiteral("stories are in no queue");
}

QString savingLoss(const Model &model)
{
    if (!fitsFolder(model))
        return QString();
    const QTemporaryDir folder;
    const QString place = folder.filePath(QStringLiteral("saved"));
    QString error;
    if (!Store::save(model, place, &error))
        return QStringLiteral("cannot be saved: ") + error;
    const std::shared_ptr<Model> again = Store::read(place, &error);
    if (!again)
        return QStringLiteral("cannot be read once saved: ") + error;
    const QStringList before = contentsOf(model);
    const QStringList after = contentsOf(*again);
    for (int i = 0; i < qMax(before.size(), after.size()); ++i) {
        if (before.value(i) != after.value(i))
            return QStringLiteral("saved as \"%1\", read as \"%2\"").arg(before.value(i), after.value(i));
    }
    return QString();
}

} // namespace NewsroomFuzz
