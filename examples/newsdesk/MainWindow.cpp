#include "MainWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTableView>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

#include "Appearance.h"
#include "Banner.h"
#include "Icons.h"
#include "QueuePane.h"
#include "SearchPane.h"
#include "Session.h"
#include "StoryEditing.h"
#include "StoryPane.h"
#include "StoryTable.h"
#include "TreePane.h"

namespace Desk {

namespace {

constexpr int toldTime = 4000; // milliseconds

QWidget *framed(QWidget *content)
{
    auto *const frame = new QFrame;
    frame->setObjectName(QStringLiteral("pane"));
    auto *const layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
    return frame;
}

} // namespace

MainWindow::MainWindow(Session &session, QWidget *parent)
    : QMainWindow(parent)
    , m_session(session)
    , m_notice(new Banner)
    , m_tree(new TreePane)
    , m_queue(new QueuePane)
    , m_hits(new SearchPane)
    , m_tables(new QStackedWidget)
    , m_story(new StoryPane)
    , m_searchLine(new QLineEdit)
    , m_who(new QLabel(tr("Signing on…")))
{
    setWindowTitle(tr("Newsdesk"));
    resize(1360, 860);
    makePanes();
    makeActions();
    connectPanes();
    connectSession();
}

MainWindow::~MainWindow() = default;

void MainWindow::makePanes()
{
    m_tables->addWidget(m_queue);
    m_tables->addWidget(m_hits);
    auto *const right = new QSplitter(Qt::Vertical);
    right->addWidget(framed(m_tables));
    right->addWidget(framed(m_story));
    right->setStretchFactor(0, 1);
    right->setStretchFactor(1, 1);
    auto *const all = new QSplitter;
    all->addWidget(framed(m_tree));
    all->addWidget(right);
    all->setSizes({230, 1130});
    all->setStretchFactor(0, 0);
    all->setStretchFactor(1, 1);
    for (QSplitter *const splitter : {right, all}) {
        splitter->setHandleWidth(1);
        splitter->setChildrenCollapsible(false);
    }
    auto *const central = new QWidget;
    auto *const layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_notice);
    layout->addWidget(all, 1);
    setCentralWidget(central);
    statusBar()->addPermanentWidget(m_who);
    statusBar()->setSizeGripEnabled(false);
}

void MainWindow::makeActions()
{
    auto *const bar = addToolBar(tr("Desk"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setIconSize(QSize(16, 16));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [&](const QString &text, Icons::Kind icon, const QKeySequence &keys, const auto &run) {
        QAction *const action = bar->addAction(Icons::icon(icon), text);
        action->setShortcut(keys);
        action->setToolTip(tr("%1 (%2)").arg(text, keys.toString(QKeySequence::NativeText)));
        action->setProperty("deskIcon", int{icon});
        connect(action, &QAction::triggered, this, run);
    };
    add(tr("Refresh"), Icons::Refresh, QKeySequence(Qt::Key_F5), [this] { refreshAll(); });
    add(tr("Load all"), Icons::Queue, QKeySequence(Qt::CTRL + Qt::Key_L), [this] { m_queue->loadAll(); });
    add(tr("Colours"), Icons::Theme, QKeySequence(Qt::CTRL + Qt::Key_D), [this] { setDark(!Appearance::isDark()); });
    auto *const space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    m_searchLine->setObjectName(QStringLiteral("search"));
    m_searchLine->setPlaceholderText(tr("Search the newsroom (Ctrl+F)"));
    m_searchLine->setAccessibleName(tr("Search the newsroom"));
    m_searchLine->setClearButtonEnabled(true);
    m_searchLine->setFixedWidth(320);
    bar->addWidget(m_searchLine);
    connect(m_searchLine, &QLineEdit::returnPressed, this, &MainWindow::search);

    const auto onKey = [this](const QKeySequence &keys, const auto &run) {
        auto *const action = new QAction(this);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, run);
        addAction(action);
    };
    onKey(QKeySequence(Qt::CTRL + Qt::Key_F), [this] {
        m_searchLine->setFocus();
        m_searchLine->selectAll();
    });
    onKey(QKeySequence(Qt::CTRL + Qt::Key_E), [this] { m_story->editing().begin(); });
    onKey(QKeySequence(Qt::CTRL + Qt::Key_S), [this] { m_story->editing().save(); });
    onKey(QKeySequence(Qt::Key_Escape), [this] { m_story->editing().finish(); });
    onKey(QKeySequence(Qt::CTRL + Qt::Key_1), [this] { m_tree->view().setFocus(); });
    onKey(QKeySequence(Qt::CTRL + Qt::Key_2), [this] { m_queue->table().setFocus(); });
    onKey(QKeySequence(Qt::CTRL + Qt::Key_Q), [this] { close(); });
}

void MainWindow::connectPanes()
{
    const auto tell = [this](const QString &text) { statusBar()->showMessage(text, toldTime); };
    connect(m_tree, &TreePane::queueChosen, this, &MainWindow::openQueue);
    connect(m_tree, &TreePane::failed, this, tell);
    connect(m_queue, &QueuePane::storyChosen, this, &MainWindow::openStory);
    connect(m_queue, &QueuePane::storyChanged, m_story, &StoryPane::noteChanged);
    connect(m_queue, &QueuePane::read, this, &MainWindow::lookForStory);
    connect(m_queue, &QueuePane::failed, this, tell);
    connect(m_hits, &SearchPane::storyChosen, this, &MainWindow::openStory);
    connect(m_hits, &SearchPane::failed, this, tell);
    connect(m_hits, &SearchPane::closed, this, [this] { m_tables->setCurrentWidget(m_queue); });
    connect(m_story, &StoryPane::told, this, tell);
}

void MainWindow::connectSession()
{
    connect(&m_session, &Session::signedOn, this, &MainWindow::takeSignOn);
    connect(&m_session, &Session::refused, this, [this](const QString &text) {
        m_who->setText(tr("Not signed on"));
        m_notice->tell(tr("Signing on did not work: %1").arg(text), tr("&Try again"));
    });
    connect(&m_session, &Session::loggedOut, this, [this] {
        m_who->setText(tr("Not signed on"));
        m_notice->tell(tr("The server has ended your session. What you see stays, and so does what you typed."),
                       tr("&Sign on again"));
    });
    connect(m_notice, &Banner::acted, this, [this] {
        m_who->setText(tr("Signing on…"));
        m_session.signOn();
    });
}

void MainWindow::takeSignOn(const QString &user, const QString &place)
{
    m_notice->clear();
    m_who->setText(tr("%1 on %2").arg(user, place));
    m_tree->open();
    m_queue->refresh();
    if (!m_story->identifier().isEmpty())
        m_story->resume();
}

void MainWindow::openQueue(const QString &path)
{
    m_story->editing().leave(
        [this, path] {
            m_story->close();
            m_tables->setCurrentWidget(m_queue);
            m_tree->select(path);
            m_queue->open(path);
        },
        [this] { m_tree->select(m_queue->model().path()); });
}

void MainWindow::openStory(const QString &queue, const QString &identifier)
{
    m_story->editing().leave([this, queue, identifier] { m_story->open(queue, identifier); },
                             [this] {
                                 m_queue->select(m_story->identifier());
                                 m_hits->select(m_story->identifier());
                             });
}

/// Whether somebody has taken the story that is shown out of the queue; only a queue that has been read whole can tell.
void MainWindow::lookForStory()
{
    const Quire::QueueModel &queue = m_queue->model();
    const QString story = m_story->identifier();
    const bool isOfQueue = !story.isEmpty() && m_story->model().queuePath() == queue.path();
    if (isOfQueue && !queue.canFetchMore(QModelIndex()) && !queue.indexOf(story).isValid())
        m_story->noteGone();
}

void MainWindow::search()
{
    const QString words = m_searchLine->text().trimmed();
    if (words.isEmpty())
        return;
    m_tables->setCurrentWidget(m_hits);
    m_hits->search(QStringLiteral("."), Quire::Item_Directory, words);
}

void MainWindow::refreshAll()
{
    m_tree->refresh();
    m_queue->refresh();
    m_story->model().refresh();
}

void MainWindow::setDark(bool dark)
{
    Appearance::apply(dark);
    for (QAction *const action : findChildren<QAction *>()) {
        const QVariant kind = action->property("deskIcon");
        if (kind.type() == QVariant::Int)
            action->setIcon(Icons::icon(static_cast<Icons::Kind>(kind.toInt())));
    }
    m_story->repaintText();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (m_leaving || !m_story->model().isModified())
        return QMainWindow::closeEvent(event);
    event->ignore();
    m_story->editing().leave(
        [this] {
            m_leaving = true;
            close();
        },
        [] {});
}

} // namespace Desk
