#pragma once

#include <QStringList>

#include <memory>

#include <quire/tree/Directory.h>
#include <quire/tree/Queue.h>

#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"
#include "tree/SearcherEnd.h"

/// A signed-on session on a fake server, where queues load at once on the calling thread and locks are debugged, so
/// that each call tells its label. After each test no text or array is left either, and there is no searcher.
class TreeTest : public SessionTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// The server's object for the path. Forgets the calls that this took.
    IDispatchPtr object(const char *path);
    /// The directory or queue at the path. Forgets the calls that this took.
    std::unique_ptr<Quire::Directory> open(const char *path);
    std::unique_ptr<Quire::Queue> openQueue(const char *path);
    /// Puts a story at the end of the queue. Its head, as markup, is `<head></head>`.
    FakeServer::StoryDataPtr addStory(const char *queue, const char *identifier, const char *name);

    /// A searcher that can search.
    void startSearcher();

    /// The calls so far, each as "CALL under LABEL".
    QStringList callsWithLabels() const;

private:
    std::unique_ptr<LockDebugging> m_debugging;
    __int64 m_texts = 0;
    __int64 m_arrays = 0;
};

/// The names of a list's items.
QStringList namesOf(Quire::ItemList &list);
/// The attributes of an item, each as "name=value/flags".
QStringList attributesOf(Quire::ItemList &list, int index);
/// The labels under which the locks of lists were taken, according to these lines.
QStringList listLocks(const QStringList &lines);
