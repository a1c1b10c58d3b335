#include "newsdesk/DeskFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>

using Newsroom::Fault;

namespace {

const char *const queuePath = "SPORT.FOOTBALL";

/// Editing under the lock: nothing that somebody typed is lost.
class EditingTest : public DeskTest
{
protected:
    void SetUp() override
    {
        DeskTest::SetUp();
        openQueue(queuePath);
        openStory(0);
        m_story = storyNumber();
        before = onServer(m_story, "title");
    }
    qint32 story() const { return m_story; }
    QString title() { return onServer(m_story, "title"); }
    QString holder() { return newsroom().lockHolder(m_story).value; }
    Desk::Banner &banner() { return window->story().banner(); }
    void save()
    {
        press("save");
        ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    }

    QString before;

private:
    qint32 m_story = 0;
};

} // namespace

TEST_F(EditingTest, EditingTakesTheLockAndSavingKeepsIt)
{
    beginEditing();
    EXPECT_EQ(holder(), text("journalist"));
    EXPECT_FALSE(line("title").isReadOnly());
    EXPECT_TRUE(line("create-by").isReadOnly());
    EXPECT_FALSE(window->story().text().isReadOnly());
    EXPECT_FALSE(button("save").isEnabled());
    type("title", "Rovers win");
    QTest::keyClicks(&window->story().text(), text("At last. "));
    EXPECT_EQ(title(), before);
    EXPECT_TRUE(button("save").isEnabled());
    save();
    EXPECT_EQ(title(), text("Rovers win"));
    EXPECT_TRUE(newsroom().story(story()).value->text().body.contains(text("At last. ")));
    EXPECT_EQ(holder(), text("journalist"));
    EXPECT_FALSE(button("save").isEnabled());
    press("done");
    EXPECT_TRUE(comes([this] { return holder().isEmpty(); }));
    EXPECT_TRUE(line("title").isReadOnly());
}

TEST_F(EditingTest, TheKeysDoTheSame)
{
    QTest::keyClick(window.get(), Qt::Key_E, Qt::ControlModifier);
    ASSERT_TRUE(comes([this] { return window->story().model().isLocked(); }));
    type("title", "Rovers win");
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(comes([this] { return title() == text("Rovers win"); }));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(comes([this] { return holder().isEmpty(); }));
}

TEST_F(EditingTest, TextIsMadeBoldItalicOrUnderlinedByKeys)
{
    beginEditing();
    QTextEdit &body = window->story().text();
    body.setFocus();
    body.selectAll();
    QTest::keyClicks(&body, text("plain "));
    for (const Qt::Key key : {Qt::Key_B, Qt::Key_I, Qt::Key_U}) {
        QTest::keyClick(&body, key, Qt::ControlModifier);
        QTest::keyClicks(&body, text("x"));
        QTest::keyClick(&body, key, Qt::ControlModifier);
    }
    save();
    EXPECT_EQ(newsroom().story(story()).value->text().body, text("<p>plain <b>x</b><i>x</i><u>x</u></p>"));
}

TEST_F(EditingTest, TheCursorStaysWhereItWasWhenSaved)
{
    beginEditing();
    QTextEdit &body = window->story().text();
    body.moveCursor(QTextCursor::End);
    QTest::keyClicks(&body, text(" More."));
    const int position = body.textCursor().position();
    save();
    EXPECT_EQ(body.textCursor().position(), position);
    EXPECT_TRUE(body.toPlainText().endsWith(text(" More.")));
}

TEST_F(EditingTest, ARefusedLockNamesTheHolder)
{
    const auto producer = newsroom().signOn(text("producer"), text("air"), QString());
    ASSERT_EQ(newsroom().lock(producer.value, story(), 1).refusal, Newsroom::Refusal::None);
    press("edit");
    ASSERT_TRUE(comes([this] { return !banner().isHidden(); }));
    EXPECT_EQ(banner().text(), text("producer is editing this story. You can read it meanwhile."));
    EXPECT_TRUE(line("title").isReadOnly());
    newsroom().signOff(producer.value);
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    QTest::mouseClick(banner().findChild<QPushButton *>(text("bannerAction")), Qt::LeftButton);
    EXPECT_TRUE(comes([this] { return window->story().model().isLocked(); }));
    EXPECT_TRUE(banner().isHidden());
}

TEST_F(EditingTest, TheHolderIsForgottenWhenTheLockComesByTheButton)
{
    const auto producer = newsroom().signOn(text("producer"), text("air"), QString());
    ASSERT_EQ(newsroom().lock(producer.value, story(), 1).refusal, Newsroom::Refusal::None);
    press("edit");
    ASSERT_TRUE(comes([this] { return !banner().isHidden(); }));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    newsroom().signOff(producer.value);
    beginEditing();
    EXPECT_TRUE(banner().isHidden());
}

TEST_F(EditingTest, ASaveThatFailsKeepsWhatWasTyped)
{
    beginEditing();
    type("title", "Rovers win");
    QTest::keyClicks(&window->story().text(), text("At last. "));
    server().faults().failNext(text("IStory2::Save"), Fault::hresult(static_cast<HRESULT>(0x80040405)));
    save();
    EXPECT_EQ(banner().text(), text("Not saved: Command is not authorized. What you typed is still here."));
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    EXPECT_TRUE(window->story().text().toPlainText().contains(text("At last. ")));
    EXPECT_EQ(title(), before);
    QTest::mouseClick(banner().findChild<QPushButton *>(text("bannerAction")), Qt::LeftButton);
    EXPECT_TRUE(comes([this] { return title() == text("Rovers win"); }));
}

TEST_F(EditingTest, AnotherStoryIsShownOnlyAfterAQuestion)
{
    beginEditing();
    type("title", "Rovers win");
    const Quire::QueueModel &queue = window->queue().model();
    const QModelIndex other = queue.index(1, queue.columnOf(text("title")));
    const QString asked = answer(text("Keep editing"), [&] { click(window->queue().table(), other); });
    EXPECT_EQ(asked, text("This story has changes that are not saved."));
    EXPECT_EQ(storyNumber(), story());
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    EXPECT_EQ(window->queue().table().currentIndex().row(), 0);
    answer(text("Discard"), [&] { click(window->queue().table(), other); });
    ASSERT_TRUE(comes([this] { return storyNumber() != story(); }));
    EXPECT_EQ(title(), before);
    EXPECT_TRUE(comes([this] { return holder().isEmpty(); }));
}

TEST_F(EditingTest, TheQuestionDoesNotHoldUpWhatBringsItUp)
{
    beginEditing();
    type("title", "Rovers win");
    bool returned = false;
    bool held = false;
    QTimer answering;
    QObject::connect(&answering, &QTimer::timeout, [&] {
        auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        held = held || (box && !returned);
        if (box)
            box->reject();
    });
    answering.start(10);
    window->openQueue(text("WIRES.FLASH"));
    returned = true;
    EXPECT_FALSE(held);
    EXPECT_TRUE(comes([] { return !QApplication::activeModalWidget(); }));
    EXPECT_EQ(storyNumber(), story());
}

TEST_F(EditingTest, WhileAQuestionIsOpenNothingElseTakesTheStoryAway)
{
    beginEditing();
    type("title", "Rovers win");
    window->openQueue(text("WIRES.FLASH"));
    window->openQueue(text("WIRES.WORLD"));
    window->story().model().refresh();
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_EQ(storyNumber(), story());
    answer(text("Discard"), [] {});
    EXPECT_TRUE(comes([this] { return window->queue().model().path() == text("WIRES.FLASH"); }));
}

TEST_F(EditingTest, ARefreshThatFailsDuringTheQuestionDoesNotAnswerIt)
{
    beginEditing();
    type("title", "Rovers win");
    window->openQueue(text("WIRES.FLASH"));
    server().faults().failNext(text("IStory2::get_Field"), Fault::hresult(E_FAIL));
    window->story().model().refresh();
    ASSERT_TRUE(comes([this] { return window->story().model().error() != 0; }));
    answer(text("Save"), [] {});
    EXPECT_TRUE(comes([this] { return window->queue().model().path() == text("WIRES.FLASH"); }));
    EXPECT_EQ(title(), text("Rovers win"));
}

TEST_F(EditingTest, ASaveThatEndsDuringTheQuestionLeavesNothingToSave)
{
    beginEditing();
    type("title", "Rovers win");
    server().faults().failNext(text("IStory2::Save"), Fault::hang(patience));
    press("save");
    ASSERT_TRUE(server().faults().waitForHang(patience));
    window->openQueue(text("WIRES.FLASH"));
    server().faults().clear();
    ASSERT_TRUE(comes([this] { return !window->story().model().isModified(); }));
    answer(text("Save"), [] {});
    EXPECT_TRUE(comes([this] { return window->queue().model().path() == text("WIRES.FLASH"); }));
    EXPECT_EQ(title(), text("Rovers win"));
}

TEST_F(EditingTest, SavingInTheQuestionSavesBeforeItGoesOn)
{
    beginEditing();
    type("title", "Rovers win");
    const Quire::QueueModel &queue = window->queue().model();
    const QModelIndex other = queue.index(1, queue.columnOf(text("title")));
    answer(text("Save"), [&] { click(window->queue().table(), other); });
    ASSERT_TRUE(comes([this] { return storyNumber() != story(); }));
    EXPECT_EQ(title(), text("Rovers win"));
}

TEST_F(EditingTest, AQuestionWhoseSaveFailsStaysWithTheStory)
{
    beginEditing();
    type("title", "Rovers win");
    server().faults().failNext(text("IStory2::Save"), Fault::hresult(E_FAIL));
    answer(text("Save"), [&] { window->openQueue(text("WIRES.FLASH")); });
    ASSERT_TRUE(comes([this] { return !banner().isHidden(); }));
    EXPECT_EQ(storyNumber(), story());
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    EXPECT_EQ(window->queue().model().path(), text(queuePath));
}

TEST_F(EditingTest, TheWindowClosesOnlyAfterAQuestion)
{
    beginEditing();
    type("title", "Rovers win");
    answer(text("Keep editing"), [this] { window->close(); });
    EXPECT_TRUE(window->isVisible());
    answer(text("Save"), [this] { window->close(); });
    EXPECT_TRUE(comes([this] { return !window->isVisible(); }));
    EXPECT_EQ(title(), text("Rovers win"));
}

TEST_F(EditingTest, WithoutAChangeNothingIsAsked)
{
    beginEditing();
    const QString asked = answer(text("Keep editing"), [this] { press("done"); });
    EXPECT_EQ(asked, QString());
    EXPECT_FALSE(window->story().model().isLocked());
}

TEST_F(EditingTest, AChangeElsewhereLeavesWhatIsBeingTyped)
{
    beginEditing();
    type("title", "Rovers win");
    window->story().noteChanged(window->story().identifier());
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_EQ(line("title").text(), text("Rovers win"));
}

TEST_F(EditingTest, WhatIsTypedDuringASaveStays)
{
    beginEditing();
    type("title", "Rovers win");
    server().faults().failNext(text("IStory2::Save"), Fault::hang(patience));
    press("save");
    ASSERT_TRUE(server().faults().waitForHang(patience));
    QTest::keyClicks(&line("title"), text(" again"));
    server().faults().clear();
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_EQ(line("title").text(), text("Rovers win again"));
    EXPECT_EQ(title(), text("Rovers win"));
    EXPECT_TRUE(button("save").isEnabled());
    save();
    EXPECT_EQ(title(), text("Rovers win again"));
}
