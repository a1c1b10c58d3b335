#include "newsdesk/DeskFixture.h"

#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>
#include <QTreeView>

#include <quire/notify/Search.h>
#include <quire/tree/ItemList.h>

#include "Appearance.h"

using Newsroom::Fault;

namespace {

const auto codeWithoutSentence = static_cast<HRESULT>(0x80040403);

/// Reading: the tree, queues, stories, searches.
class ReadingTest : public DeskTest
{
protected:
    /// A colour of the window as it is seen.
    QColor seen(QWidget &widget) { return widget.grab().toImage().pixelColor(3, widget.height() - 3); }
    /// Adds a hit to the search that runs; false when none does.
    static bool addHit()
    {
        Quire::Search *const searcher = Quire::Search::GetSearcher();
        for (long id = 1; id < 10; ++id) {
            if (Quire::ItemList *const list = searcher->AccessSearchResults(id)) {
                list->Append(Quire::Item(text("Found early"), Quire::Item_SearchHit));
                searcher->EndAccessSearchResults(id);
                return true;
            }
        }
        return false;
    }
};

} // namespace

TEST_F(ReadingTest, ADirectoryIsReadWhenItIsOpened)
{
    QTreeView &view = window->tree().view();
    Quire::DirectoryModel &tree = window->tree().model();
    EXPECT_FALSE(tree.indexOf(text("SHOWS.EVENING")).isValid());
    view.setFocus();
    view.setCurrentIndex(tree.indexOf(text("SHOWS")));
    QTest::keyClick(&view, Qt::Key_Right);
    ASSERT_TRUE(comes([&] { return tree.indexOf(text("SHOWS.EVENING")).isValid(); }));
    EXPECT_TRUE(view.isExpanded(tree.indexOf(text("SHOWS"))));
    EXPECT_TRUE(window->queue().model().path().isEmpty());
}

TEST_F(ReadingTest, AQueueShowsItsStories)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    EXPECT_EQ(window->queue().model().rowCount(), 28);
    EXPECT_EQ(cell(2, "title"), text("Harbour tunnel floods"));
    EXPECT_TRUE(window->queue().table().isVisible());
    EXPECT_EQ(count(window->queue()), text("28 stories, live"));
}

TEST_F(ReadingTest, AnEmptyQueueSaysSo)
{
    openQueue("ARCHIVE.EMPTY");
    EXPECT_FALSE(window->queue().table().isVisible());
    EXPECT_EQ(emptyText(window->queue()), text("There are no stories in this queue."));
}

TEST_F(ReadingTest, TheBarRunsWhileAQueueLoads)
{
    auto &bar = *window->queue().findChild<QProgressBar *>(text("progress"));
    EXPECT_EQ(bar.maximum(), 1);
    server().faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    window->openQueue(text("ARCHIVE.NOTEBOOK"));
    ASSERT_TRUE(server().faults().waitForHang(patience));
    ASSERT_TRUE(comes([this] { return window->queue().model().rowCount() == 20; }));
    EXPECT_EQ(bar.maximum(), 0);
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(count(window->queue()), text("loading, 20 so far"));
    EXPECT_EQ(cell(0, "title").isEmpty(), false); // and what has come can be read
    server().faults().clear();
    ASSERT_TRUE(comes([this] { return !window->queue().model().isLoading(); }));
    EXPECT_EQ(bar.maximum(), 1);
    EXPECT_EQ(count(window->queue()), text("45 stories"));
}

TEST_F(ReadingTest, AQueueThatCannotBeReadAgainKeepsItsRowsAndSaysWhy)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    server().faults().failNext(text("IQueue2::GetList"), Fault::hresult(static_cast<HRESULT>(0x80040405)));
    QTest::keyClick(window.get(), Qt::Key_F5);
    ASSERT_TRUE(comes([this] { return !window->queue().model().errorText().isEmpty(); }));
    EXPECT_EQ(window->queue().model().rowCount(), 28);
    EXPECT_EQ(count(window->queue()), text("28 stories, not up to date: Command is not authorized."));
}

TEST_F(ReadingTest, AQueueThatIsRefusedWithoutASentenceIsNotCalledEmpty)
{
    server().faults().failEvery(text("IQueue2::GetList"), Fault::hresult(codeWithoutSentence));
    window->openQueue(text("SPORT.FOOTBALL"));
    ASSERT_TRUE(comes([this] { return !window->queue().model().isLoading(); }));
    EXPECT_EQ(window->queue().model().rowCount(), 0);
    EXPECT_EQ(emptyText(window->queue()), text("Unexpected error, code = x80040403."));
    EXPECT_EQ(count(window->queue()), text("0 stories, not up to date: Unexpected error, code = x80040403."));
}

TEST_F(ReadingTest, AQueueThatIsRefusedWithoutASentenceWhenItIsReadAgainSaysSo)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    server().faults().failNext(text("IQueue2::GetList"), Fault::hresult(codeWithoutSentence));
    QTest::keyClick(window.get(), Qt::Key_F5);
    ASSERT_TRUE(comes([this] { return window->queue().model().error() != 0; }));
    EXPECT_EQ(count(window->queue()), text("28 stories, not up to date: Unexpected error, code = x80040403."));
}

TEST_F(ReadingTest, AStoryShowsItsFieldsAndItsFormattedText)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    openStory(2);
    EXPECT_EQ(label("title"), text("Harbour tunnel floods"));
    EXPECT_EQ(line("format").text(), text("PKG"));
    EXPECT_EQ(line("tape-time").text(), text("2:05"));
    EXPECT_TRUE(line("title").isReadOnly());
    const QTextEdit &body = window->story().text();
    EXPECT_TRUE(body.isReadOnly());
    EXPECT_TRUE(body.toPlainText().startsWith(text("The tunnel under the harbour")));
    QTextCursor tape = body.document()->find(text("TAPE IN:"));
    EXPECT_GE(tape.charFormat().fontWeight(), int{QFont::Bold});
    tape = body.document()->find(text("2:05"));
    EXPECT_TRUE(tape.charFormat().fontItalic());
}

TEST_F(ReadingTest, TheArrowKeysGoThroughTheStories)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    openStory(2);
    window->queue().table().setFocus();
    QTest::keyClick(&window->queue().table(), Qt::Key_Down);
    EXPECT_TRUE(comes([this] { return label("title") == text("Tunnel: Nora live at the portal"); }));
}

TEST_F(ReadingTest, AStoryThatCannotBeReadSaysWhyAndIsTriedAgain)
{
    openQueue("SPORT.FOOTBALL");
    server().faults().failEvery(text("IStory2::get_Field"), Fault::hresult(static_cast<HRESULT>(0x80040405)));
    const Quire::QueueModel &queue = window->queue().model();
    click(window->queue().table(), queue.index(0, queue.columnOf(text("title"))));
    ASSERT_TRUE(comes([this] { return !window->story().banner().isHidden(); }));
    EXPECT_EQ(window->story().banner().text(), text("Command is not authorized."));
    server().faults().clear();
    QTest::mouseClick(window->story().banner().findChild<QPushButton *>(text("bannerAction")), Qt::LeftButton);
    EXPECT_TRUE(comes([this] { return window->story().model().rowCount() > 0; }));
}

TEST_F(ReadingTest, ASearchShowsItsHitsAndAHitItsStory)
{
    search("solheim");
    const Quire::SearchModel &hits = window->hits().model();
    EXPECT_TRUE(window->hits().isVisible());
    ASSERT_GT(hits.rowCount(), 1);
    EXPECT_EQ(count(window->hits()), text("%1 stories found").arg(hits.rowCount()));
    click(window->hits().table(), hits.index(0, 0));
    ASSERT_TRUE(comes([this] { return !window->story().identifier().isEmpty(); }));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_EQ(window->story().model().queuePath(), hits.index(0, 0).data(Quire::PathRole).toString());
    const QString all = label("title") + window->story().text().toPlainText() + line("title").text();
    EXPECT_TRUE(all.contains(text("Solheim"))) << all.toStdString();
}

TEST_F(ReadingTest, ASearchThatFailsHalfwaySaysThatItsHitsAreNotAll)
{
    server().delivery().pause();
    beginSearch("solheim");
    ASSERT_TRUE(comes([] { return addHit(); }));
    ASSERT_TRUE(comes([this] { return window->hits().model().rowCount() == 1; }));
    server().triggerLogout();
    server().delivery().resume();
    ASSERT_TRUE(comes([this] { return !window->hits().model().isLoading(); }));
    EXPECT_EQ(count(window->hits()), text("1 story found before it failed: User not logged in."));
}

TEST_F(ReadingTest, ASearchInVainSaysSoAndLeadsBack)
{
    openQueue("SPORT.FOOTBALL");
    search("nosuchwordanywhere");
    EXPECT_EQ(window->hits().model().rowCount(), 0);
    EXPECT_EQ(emptyText(window->hits()), text("Nothing was found."));
    QTest::mouseClick(window->hits().findChild<QPushButton *>(text("back")), Qt::LeftButton);
    EXPECT_TRUE(window->queue().isVisible());
}

TEST_F(ReadingTest, ColoursAreLightOrDark)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    const QColor light = seen(window->tree().view());
    EXPECT_GT(light.lightness(), 200);
    QTest::keyClick(window.get(), Qt::Key_D, Qt::ControlModifier);
    ASSERT_TRUE(comes([] { return Desk::Appearance::isDark(); }));
    EXPECT_LT(seen(window->tree().view()).lightness(), 60);
    EXPECT_LT(seen(window->story()).lightness(), 60);
    QTest::keyClick(window.get(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(seen(window->tree().view()), light);
}

TEST_F(ReadingTest, EveryControlHasANameForThoseWhoCannotSee)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    openStory(2);
    for (QWidget *const widget : window->findChildren<QWidget *>()) {
        const bool isControl = qobject_cast<QLineEdit *>(widget) || qobject_cast<QTextEdit *>(widget) ||
                               widget->inherits("QTreeView") || widget->inherits("QTableView") ||
                               widget->inherits("QProgressBar");
        if (isControl) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
        }
        const auto *const button = qobject_cast<QAbstractButton *>(widget);
        if (button && button->isVisible() && button->focusPolicy() != Qt::NoFocus) {
            EXPECT_FALSE(button->text().isEmpty()) << widget->objectName().toStdString();
        }
    }
}

TEST_F(ReadingTest, NoServerCallIsMadeByTheWindowsThread)
{
    const DWORD own = GetCurrentThreadId();
    server().calls().start();
    openQueue("SHOWS.EVENING.RUNDOWN");
    openStory(2);
    search("tunnel");
    const auto calls = server().calls().take();
    EXPECT_FALSE(calls.empty());
    for (const Newsroom::Call &call : calls)
        EXPECT_NE(call.threadId, own) << call.text().toStdString();
}
