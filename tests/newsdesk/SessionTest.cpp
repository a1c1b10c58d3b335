#include "newsdesk/DeskFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTreeView>

namespace {

/// Signing on, losing the server, and where a newsroom comes from.
class DeskSessionTest : public DeskTest
{
protected:
    void signOnAgain()
    {
        QTest::mouseClick(window->notice().findChild<QPushButton *>(text("bannerAction")), Qt::LeftButton);
        ASSERT_TRUE(comes([this] { return session->isSignedOn(); }));
        ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    }
};

} // namespace

TEST_F(DeskSessionTest, ALogoutIsToldAndSigningOnAgainGoesOn)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    openStory(2);
    EXPECT_TRUE(window->notice().isHidden());
    server().triggerLogout();
    ASSERT_TRUE(comes([this] { return !window->notice().isHidden(); }));
    EXPECT_EQ(window->notice().text(),
              text("The server has ended your session. What you see stays, and so does what you typed."));
    EXPECT_EQ(window->queue().model().rowCount(), 28);
    EXPECT_EQ(label("title"), text("Harbour tunnel floods"));
    signOnAgain();
    EXPECT_TRUE(window->notice().isHidden());
    ASSERT_TRUE(comes([this] { return !window->queue().model().isLoading(); }));
    EXPECT_EQ(window->queue().model().error(), 0);
    EXPECT_EQ(label("title"), text("Harbour tunnel floods"));
}

TEST_F(DeskSessionTest, TheTreeStaysAsItWasOpenedWhenOneSignsOnAgain)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    const Quire::DirectoryModel &tree = window->tree().model();
    QTreeView &view = window->tree().view();
    for (const char *path : {"MAIL", "SPORT", "ARCHIVE", "WIRES", "DESKS"}) {
        view.expand(tree.indexOf(text(path)));
        ASSERT_TRUE(comes([&] { return !tree.isLoading(); }));
    }
    ASSERT_TRUE(comes([&] { return view.verticalScrollBar()->maximum() > 0; })); // the view counts its rows later
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    const int scrolled = view.verticalScrollBar()->value();
    ASSERT_GT(scrolled, 0);
    server().triggerLogout();
    ASSERT_TRUE(comes([this] { return !window->notice().isHidden(); }));
    ASSERT_FALSE(newsroom().addQueue(text("SHOWS.EVENING.LATE")).value == 0);
    signOnAgain();
    ASSERT_TRUE(comes([&] { return tree.indexOf(text("SHOWS.EVENING.LATE")).isValid(); })); // it has been read anew
    ASSERT_TRUE(comes([&] { return !tree.isLoading(); }));
    for (const char *path : {"SHOWS", "SHOWS.EVENING"})
        EXPECT_TRUE(view.isExpanded(tree.indexOf(text(path)))) << path;
    EXPECT_EQ(tree.path(view.currentIndex()), text("SHOWS.EVENING.RUNDOWN"));
    EXPECT_TRUE(view.selectionModel()->isSelected(tree.indexOf(text("SHOWS.EVENING.RUNDOWN"))));
    EXPECT_EQ(view.verticalScrollBar()->value(), scrolled);
}

TEST_F(DeskSessionTest, WhatWasTypedOutlivesALogout)
{
    const qint32 story = beginUnsaved("Rovers win");
    server().triggerLogout();
    ASSERT_TRUE(comes([this] { return !window->notice().isHidden(); }));
    press("save");
    ASSERT_TRUE(comes([this] { return !window->story().banner().isHidden(); }));
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    signOnAgain();
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    ASSERT_TRUE(comes([this] { return window->story().model().isLocked(); }));
    EXPECT_TRUE(window->story().banner().isHidden());
    press("save");
    EXPECT_TRUE(comes([&] { return onServer(story, "title") == text("Rovers win"); }));
}

TEST_F(DeskSessionTest, WhatIsUnsavedCanStillBeSavedWhenTheLockHasGoneWithTheSession)
{
    const qint32 story = beginUnsaved("Rovers win");
    server().triggerLogout();
    press("save");
    ASSERT_TRUE(comes([this] { return !window->story().model().isLocked(); }));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_TRUE(button("save").isVisible());
    EXPECT_TRUE(button("save").isEnabled());
    EXPECT_TRUE(button("done").isVisible());
    session->signOn();
    ASSERT_TRUE(comes([this] { return session->isSignedOn(); }));
    ASSERT_TRUE(comes([this] { return window->story().model().isLocked(); }));
    press("save");
    EXPECT_TRUE(comes([&] { return onServer(story, "title") == text("Rovers win"); }));
    EXPECT_TRUE(comes([this] { return !button("save").isEnabled(); }));
}

TEST_F(DeskSessionTest, WhatSomebodyElseSavedMeanwhileIsToldBeforeItIsReplaced)
{
    const qint32 story = beginUnsaved("Rovers win");
    server().triggerLogout();
    ASSERT_TRUE(comes([this] { return !window->notice().isHidden(); }));
    changeElsewhere(story, "Rovers lose");
    signOnAgain();
    ASSERT_TRUE(comes([this] { return window->story().model().isLocked(); }));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_EQ(window->story().banner().text(),
              text("Somebody else has changed this meanwhile: Title. What you typed is still here; Save replaces "
                   "theirs, Done lets you drop yours."));
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    EXPECT_EQ(onServer(story, "title"), text("Rovers lose"));
    press("save");
    EXPECT_TRUE(comes([&] { return onServer(story, "title") == text("Rovers win"); }));
    EXPECT_TRUE(comes([this] { return window->story().banner().isHidden(); }));
}

TEST_F(DeskSessionTest, ARefusedSignOnSaysWhy)
{
    end();
    Desk::Options options;
    options.builtIn = true;
    options.user = text("journalist");
    options.password = text("wrong");
    start(options);
    ASSERT_TRUE(comes([this] { return !window->notice().isHidden(); }));
    EXPECT_TRUE(window->notice().text().startsWith(text("Signing on did not work: ")));
    EXPECT_FALSE(window->notice().text().contains(text("wrong")));
    EXPECT_FALSE(session->isSignedOn());
}

TEST_F(DeskSessionTest, AFolderThatIsNoneSaysSo)
{
    end();
    const QTemporaryDir folder;
    Desk::Options options;
    options.newsroom = folder.filePath(text("nowhere"));
    start(options);
    ASSERT_TRUE(comes([this] { return !window->notice().isHidden(); }));
    EXPECT_TRUE(window->notice().text().contains(text("nowhere"))) << window->notice().text().toStdString();
}

TEST_F(DeskSessionTest, AFolderKeepsWhatWasSaved)
{
    end();
    const QTemporaryDir folder;
    QString error;
    Desk::Options options;
    options.newsroom = folder.filePath(text("nr"));
    ASSERT_TRUE(Newsroom::Store::save(*Newsroom::sampleModel(), options.newsroom, &error)) << error.toStdString();
    start(options);
    ASSERT_TRUE(comes([this] { return session->isSignedOn(); }));
    ASSERT_TRUE(comes([this] { return window->tree().model().rowCount() > 0; }));
    const qint32 story = beginUnsaved("Rovers win");
    press("save");
    ASSERT_TRUE(comes([&] { return onServer(story, "title") == text("Rovers win"); }));
    end();
    const auto kept = Newsroom::Store::read(options.newsroom, &error);
    ASSERT_NE(kept, nullptr) << error.toStdString();
    EXPECT_EQ(kept->story(story).value->text().fieldValue(text("title")), text("Rovers win"));
}

TEST_F(DeskSessionTest, ALongQueueIsReadPageByPageAndAsAWhole)
{
    end();
    Desk::Options options;
    options.stories = 3000;
    start(options);
    ASSERT_TRUE(comes([this] { return session->isSignedOn(); }));
    ASSERT_TRUE(comes([this] { return window->tree().model().rowCount() > 0; }));
    openQueue("WIRES.W1");
    const int first = window->queue().model().rowCount();
    EXPECT_LT(first, 3000);
    window->queue().table().scrollToBottom();
    ASSERT_TRUE(comes([&] { return window->queue().model().rowCount() > first; }));
    QTest::keyClick(window.get(), Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(comes([this] { return window->queue().model().rowCount() == 3000; }));
}

TEST_F(DeskSessionTest, TheWindowGoesWhileTheServerHangs)
{
    server().faults().failEvery(text("IQueue2::GetList"), Newsroom::Fault::hang(patience));
    window->openQueue(text("ARCHIVE.NOTEBOOK"));
    ASSERT_TRUE(server().faults().waitForHang(patience));
    QElapsedTimer timer;
    timer.start();
    window.reset();
    EXPECT_LT(timer.elapsed(), patience / 2);
    server().faults().clear();
}
