// Shows a queue as a Qt item model, as a table view would: rows arrive while the queue loads, and when a colleague
// saves a story the one row changes. Here the "view" prints.

#include <QCoreApplication>
#include <QEventLoop>

#include <quire/models/QueueModel.h>

#include "Session.h"

namespace {

void printRows(const Quire::QueueModel &model, int first, int last)
{
    const int words = model.columnOf(Quire::Attr_Words);
    for (int row = first; row <= last; ++row)
        print(QString("%1  %2 words  %3")
                  .arg(row)
                  .arg(model.index(row, words).data().toString())
                  .arg(model.index(row, 0).data().toString()));
}

/// What a colleague does meanwhile.
void retitle(Newsroom::Model &model, const QString &queue, int position, const QString &title)
{
    const Newsroom::SessionId colleague = model.signOn("editor", "desk", QString()).value;
    const Newsroom::StoryPointer story = model.storyAt(model.entry(queue).value.number(), position).value;
    Newsroom::StoryDraft draft = model.edit(colleague, story->id().part1).value;
    draft.putField("title", title);
    model.save(colleague, draft);
    model.signOff(colleague);
}

void show(Newsroom::Server &server)
{
    const QString path = "SHOWS.EVENING.RUNDOWN";
    QEventLoop loop;
    Quire::QueueModel model;
    QObject::connect(&model, &Quire::QueueModel::finished, &loop, &QEventLoop::quit);
    QObject::connect(&model, &Quire::QueueModel::failed, [&](const QString &text) {
        print("failed: " + text);
        loop.exit(1);
    });
    model.open(path);
    if (loop.exec() != 0)
        return;
    print(QString("%1 stories").arg(model.rowCount()));
    printRows(model, 0, 2);

    QObject::connect(&model, &Quire::QueueModel::dataChanged, [&](const QModelIndex &from, const QModelIndex &to) {
        print("changed:");
        printRows(model, from.row(), to.row());
    });
    retitle(*server.model(), path, 1, "Headlines, once more");
    loop.exec(); // until the queue has been read again
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return withSession([](Newsroom::Server &server) {
        Quire::Queue::useThreading = true; // as it is unless it is switched off
        Quire::NotificationInit(nullptr, nullptr, nullptr);
        show(server);
        Quire::ServerModel::waitForServer(10000); // the model is gone: let the server finish, too
    });
}
