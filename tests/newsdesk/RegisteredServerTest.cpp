#include "newsdesk/DeskFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include <algorithm>

#include <quire/Quire.h>

#include "windows/ServerFolder.h"

namespace {

/// The desk on a server that the registry names: it gets nothing of it but what goes through COM.
class DeskOnRegisteredServerTest : public DeskTest
{
protected:
    void SetUp() override { ASSERT_TRUE(Quire::QuireCOM::registerCOM(m_folder.path())); }

    void signOn(const char *password)
    {
        Desk::Options options;
        options.user = text("journalist");
        options.password = text(password);
        start(options);
    }

    void signOnAndLook()
    {
        signOn("news");
        ASSERT_TRUE(comes([this] { return session->isSignedOn(); })) << window->notice().text().toStdString();
        ASSERT_TRUE(comes([this] { return window->tree().model().rowCount() > 0; }));
    }

    QString titleInQueue(int row)
    {
        const Quire::QueueModel &queue = window->queue().model();
        return queue.index(row, queue.columnOf(text("title"))).data().toString();
    }

private:
    const ServerFolder m_folder;
};

} // namespace

TEST_F(DeskOnRegisteredServerTest, SignsOnWithoutAServerOfItsOwn)
{
    signOnAndLook();
    EXPECT_EQ(session->server(), nullptr);
    const auto labels = window->findChildren<QLabel *>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(),
                            [](QLabel *label) { return label->text() == text("journalist on registered server"); }));
}

TEST_F(DeskOnRegisteredServerTest, ShowsAQueueAndAStory)
{
    signOnAndLook();
    openQueue("SHOWS.EVENING.RUNDOWN");
    EXPECT_EQ(window->queue().model().rowCount(), 28);
    openStory(2);
    EXPECT_EQ(label("title"), text("Harbour tunnel floods"));
}

TEST_F(DeskOnRegisteredServerTest, SavesAnEditAndHearsOfIt)
{
    signOnAndLook();
    openQueue("SHOWS.EVENING.RUNDOWN"); // which the server reports on
    openStory(0);
    beginEditing();
    type("title", "Headlines at six");
    press("save");
    EXPECT_TRUE(comes([this] { return titleInQueue(0) == text("Headlines at six"); }));
    EXPECT_FALSE(window->story().model().isModified());
}

TEST_F(DeskOnRegisteredServerTest, FindsStories)
{
    signOnAndLook();
    QTest::keyClicks(&window->searchLine(), text("tunnel"));
    QTest::keyClick(&window->searchLine(), Qt::Key_Return);
    ASSERT_TRUE(comes([this] { return !window->hits().model().isLoading(); }));
    EXPECT_GT(window->hits().model().rowCount(), 0);
}

TEST_F(DeskOnRegisteredServerTest, SaysWhyASignOnWasRefused)
{
    signOn("wrong");
    ASSERT_TRUE(comes([this] { return !window->notice().isHidden(); }));
    EXPECT_EQ(window->notice().text(), text("Signing on did not work: Invalid user name or password."));
    EXPECT_FALSE(session->isSignedOn());
}
