#pragma once

#include <QMainWindow>

class QLabel;
class QLineEdit;
class QStackedWidget;

namespace Desk {

class Banner;
class QueuePane;
class SearchPane;
class Session;
class StoryPane;
class TreePane;

/// The desk's window: the tree at the left, the queue or the hits of a search above, the story below.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The session outlives the window.
    explicit MainWindow(Session &session, QWidget *parent = nullptr);
    ~MainWindow() override;

    TreePane &tree() { return *m_tree; }
    QueuePane &queue() { return *m_queue; }
    SearchPane &hits() { return *m_hits; }
    StoryPane &story() { return *m_story; }
    Banner &notice() { return *m_notice; }
    QLineEdit &searchLine() { return *m_searchLine; }

    /// Shows the queue \a path, as when it is chosen in the tree.
    void openQueue(const QString &path);
    void setDark(bool dark);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    Q_DISABLE_COPY(MainWindow)

    void makeActions();
    void makePanes();
    void connectPanes();
    void connectSession();
    void openStory(const QString &queue, const QString &identifier);
    void lookForStory();
    void search();
    void refreshAll();
    void takeSignOn(const QString &user, const QString &place);

    Session &m_session;
    Banner *m_notice;
    TreePane *m_tree;
    QueuePane *m_queue;
    SearchPane *m_hits;
    QStackedWidget *m_tables;
    StoryPane *m_story;
    QLineEdit *m_searchLine;
    QLabel *m_who;
    bool m_leaving = false; // closing has been allowed
};

} // namespace Desk
