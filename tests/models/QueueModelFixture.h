#pragma once

#include <quire/models/QueueModel.h>

#include "models/ModelFixture.h"

/// A session on a newsroom with the queues
///     Q.NONE  number 10  no stories
///     Q.SHORT       11   5 stories
///     Q.MANY        12   50 stories
///     Q.LONG        13   1000 stories
///     Q.LIVE        14   45 stories, live
/// The k-th story of queue number n, from 0, is n*10000+k:1:1, and its title "Story k". The form has the fields title
/// and Writer, the one as wide as 20 characters, the other at the right.
class QueueModelTest : public ModelTest
{
protected:
    void SetUp() override;

    /// Opens the queue and reads as far as it goes by itself.
    static void open(Quire::QueueModel &model, const char *path);
    /// The titles of rows, each by its number, "3 4 5"; "-" for a row that has another title.
    static QString numbers(const Quire::QueueModel &model);

    /// \name What another user does to a queue
    /// \{
    void changeTitle(int queue, int story, const char *title);
    void remove(int queue, int story);
    /// Puts a story of the same identity behind all others.
    void moveToEnd(int queue, int story);
    void append(int queue, int story);
    /// \}

    Newsroom::SessionId ben = 0;
};
