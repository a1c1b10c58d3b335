#pragma once

#include <QApplication>
#include <QtTest/qtestkeyboard.h> // the simulated hands alone: this is no program of Qt's own tests
#include <QtTest/qtestmouse.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include <quire/newsroom/Newsroom.h>

#include "Banner.h"
#include "FieldsForm.h"
#include "MainWindow.h"
#include "Options.h"
#include "QueuePane.h"
#include "SearchPane.h"
#include "Session.h"
#include "StoryEditing.h"
#include "StoryPane.h"
#include "StoryTable.h"
#include "TreePane.h"
#include "support/QtPrinting.h"
#include "support/Text.h"
#include "support/Waiting.h"

class QLineEdit;
class QPushButton;
class QTextEdit;
class QTreeView;

/// The desk in a window on the sample newsroom, with "journalist" signed on and the tree's first rows there. "producer"
/// works elsewhere.
class DeskTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Opens the desk anew, as it is started with these options.
    void start(const Desk::Options &options);
    /// Ends the window and the session.
    void end();

    Newsroom::Server &server() { return *session->server(); }
    Newsroom::Model &newsroom() { return *server().model(); }

    /// \name Hands
    /// \{
    void click(const QAbstractItemView &view, const QModelIndex &index);
    void press(const char *button);
    /// Presses the button with that text in the question that comes, and runs \a act, which brings it up. Returns what
    /// was asked; empty when nothing was.
    QString answer(const QString &button, const std::function<void()> &act);
    /// \}

    /// \name What a colleague does meanwhile: "producer"
    /// \{
    void changeElsewhere(qint32 story, const char *title);
    void deleteElsewhere(qint32 story);
    /// \}

    /// Opens a queue by clicks in the tree, and waits for its stories.
    void openQueue(const char *path);
    /// Clicks on the story and waits for its fields.
    void openStory(int row);
    /// Types words to be searched for, and Enter.
    void beginSearch(const char *words);
    /// The same, and waits for all hits.
    void search(const char *words);
    /// Takes the lock of the story.
    void beginEditing();
    /// Types into the field \a name, in place of what is there.
    void type(const char *name, const char *value);
    /// All of that: a story of SPORT.FOOTBALL is open, locked, and has that title, which is not saved. Its number.
    qint32 beginUnsaved(const char *title);

    QLineEdit &line(const char *field);
    QString label(const char *name);
    QPushButton &button(const char *name);
    /// What the queue has in that row under \a column.
    QString cell(int row, const char *column);
    /// What stands at the right above the table, and in its place when it is empty.
    static QString count(const Desk::TablePane &pane);
    static QString emptyText(const Desk::TablePane &pane);
    /// The first number of the story that is shown.
    qint32 storyNumber();
    /// The field of the story on the server.
    QString onServer(qint32 story, const char *field);

    std::unique_ptr<Desk::Session> session;
    std::unique_ptr<Desk::MainWindow> window;
};
