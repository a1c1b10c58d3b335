#include "Screenshots.h"

#include <QApplication>
#include <QDir>
#include <QHash>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QTextEdit>
#include <QTreeView>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <quire/newsroom/Newsroom.h>

#include "Banner.h"
#include "FieldsForm.h"
#include "MainWindow.h"
#include "QueuePane.h"
#include "SearchPane.h"
#include "Session.h"
#include "StoryEditing.h"
#include "StoryPane.h"
#include "StoryTable.h"
#include "TreePane.h"

namespace Desk {

namespace {

constexpr int step = 50;       // milliseconds between looks
constexpr int mostLooks = 400; // until a scene is given up
constexpr int settling = 4;    // looks that a scene has to be ready for: it is painted by then

const QLatin1String notebook("ARCHIVE.NOTEBOOK");
const QLatin1String rundown("SHOWS.EVENING.RUNDOWN");
constexpr int leastDistance = 12; // of two colours of a picture
constexpr int chunk = 20;         // stories that arrive together
constexpr int shownHit = 2;
constexpr qint32 tunnelStory = 1003; // which is formatted
constexpr qint32 portalStory = 1004; // which somebody edits
constexpr qint32 ferryStory = 1005;
constexpr qint32 railStory = 1006;

QString number(qint32 story)
{
    return QStringLiteral("%1:101:0").arg(story);
}

int distance(QRgb one, QRgb other)
{
    return std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
           std::abs(qBlue(one) - qBlue(other));
}

/// 256 colours of a picture: those in which most of it is painted, but none that look like one before.
QVector<QRgb> commonColours(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *const line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            ++counts[line[x]];
    }
    QList<QRgb> found = counts.keys();
    std::sort(found.begin(), found.end(), [&](QRgb one, QRgb other) {
        return std::make_pair(counts[one], one) > std::make_pair(counts[other], other);
    });
    QVector<QRgb> colours;
    for (const QRgb colour : qAsConst(found)) {
        const auto isLike = [&](QRgb other) { return distance(colour, other) < leastDistance; };
        if (colours.size() < 256 && std::none_of(colours.begin(), colours.end(), isLike))
            colours.append(colour);
    }
    return colours;
}

} // namespace

Screenshots::Screenshots(MainWindow &window, Session &session, const QString &folder)
    : m_window(window)
    , m_session(session)
    , m_folder(folder)
{
    QDir().mkpath(folder);
    QFont font = QApplication::font();
    font.setStyleStrategy(QFont::NoSubpixelAntialias); // coloured edges would double the pictures' size
    QApplication::setFont(font);
    m_pause.setSingleShot(true);
    m_pause.setInterval(step);
    connect(&m_pause, &QTimer::timeout, this, &Screenshots::look);
    connect(&session, &Session::signedOn, this, &Screenshots::begin);
}

/// What the built-in server is told to do cannot be had of a registered one.
void Screenshots::begin()
{
    addTree();
    if (m_session.server())
        addLoading();
    addReading();
    if (m_session.server())
        addRefusedLock();
    addSearch();
    addEditing();
    if (m_session.server())
        addUpdate();
    addDark();
    next();
}

bool Screenshots::isStoryThere() const
{
    return !m_window.story().model().isLoading() && m_window.story().model().rowCount() > 0;
}

bool Screenshots::isQueueThere() const
{
    return !m_window.queue().model().isLoading() && m_window.queue().model().rowCount() > 0;
}

void Screenshots::choose(qint32 story)
{
    const QModelIndex index = m_window.queue().model().indexOf(number(story));
    m_window.queue().table().setCurrentIndex(index.siblingAtColumn(1));
}

void Screenshots::addTree()
{
    m_scenes.push_back({QString(), [] {}, [this] { return m_window.tree().model().rowCount() > 0; }});
    for (const char *path : {"SHOWS", "SHOWS.EVENING", "WIRES", "SPORT"}) {
        m_scenes.push_back({QString(),
                            [this, path] {
                                Quire::DirectoryModel &tree = m_window.tree().model();
                                m_window.tree().view().expand(tree.indexOf(QLatin1String(path)));
                            },
                            [this] { return !m_window.tree().model().isLoading(); }});
    }
}

/// A queue whose second chunk takes its time.
void Screenshots::addLoading()
{
    m_scenes.push_back({QStringLiteral("loading"),
                        [this] {
                            m_session.server()->faults().failNext(QStringLiteral("IQueue2::GetList"),
                                                                  Newsroom::Fault::hang(3000), 2);
                            m_window.openQueue(notebook);
                        },
                        [this] {
                            const Quire::QueueModel &queue = m_window.queue().model();
                            return queue.isLoading() && queue.rowCount() == chunk;
                        }});
}

void Screenshots::addReading()
{
    m_scenes.push_back(
        {QStringLiteral("tree"), [this] { m_window.openQueue(rundown); }, [this] { return isQueueThere(); }});
    m_scenes.push_back({QStringLiteral("story"), [this] { choose(tunnelStory); }, [this] { return isStoryThere(); }});
}

void Screenshots::addRefusedLock()
{
    m_scenes.push_back({QStringLiteral("locked"),
                        [this] {
                            m_session.server()->model()->lockElsewhere(portalStory, QStringLiteral("sports"), 1);
                            choose(portalStory);
                        },
                        [this] {
                            if (!isStoryThere())
                                return false;
                            if (m_window.story().banner().isHidden())
                                m_window.story().editing().begin();
                            return !m_window.story().banner().isHidden();
                        }});
}

void Screenshots::addSearch()
{
    m_scenes.push_back({QStringLiteral("search"),
                        [this] {
                            m_window.searchLine().setText(QStringLiteral("tunnel"));
                            Q_EMIT m_window.searchLine().returnPressed();
                        },
                        [this] {
                            if (m_window.hits().model().isLoading())
                                return false;
                            const QModelIndex hit = m_window.hits().model().index(shownHit, 0);
                            if (m_window.hits().table().currentIndex() != hit)
                                m_window.hits().table().setCurrentIndex(hit);
                            return isStoryThere();
                        }});
}

void Screenshots::addEditing()
{
    m_scenes.push_back({QString(),
                        [this] {
                            Q_EMIT m_window.hits().closed();
                            choose(ferryStory);
                        },
                        [this] { return isStoryThere(); }});
    m_scenes.push_back({QString(), [this] { m_window.story().editing().begin(); },
                        [this] { return m_window.story().model().isLocked(); }});
    m_scenes.push_back({QStringLiteral("edit"),
                        [this] {
                            m_window.story().text().setFocus();
                            m_window.story().text().textCursor().insertText(QStringLiteral("Good evening. "));
                        },
                        [this] { return m_window.story().model().isModified(); }});
}

/// A story that a colleague changes.
void Screenshots::addUpdate()
{
    m_scenes.push_back({QStringLiteral("live"),
                        [this] {
                            const auto newsroom = m_session.server()->model();
                            const auto colleague =
                                newsroom->signOn(QStringLiteral("producer"), QStringLiteral("air"), QString());
                            auto draft = newsroom->edit(colleague.value, railStory);
                            draft.value.putField(QStringLiteral("title"), QStringLiteral("Rail strike called off"));
                            newsroom->save(colleague.value, draft.value);
                        },
                        [this] { return m_window.queue().marks().isMarked(number(railStory)); }});
}

void Screenshots::addDark()
{
    m_scenes.push_back({QString(),
                        [this] {
                            m_window.story().model().discard();
                            m_window.story().editing().finish();
                        },
                        [this] { return !m_window.story().model().isLocked(); }});
    m_scenes.push_back({QStringLiteral("dark"), [this] { m_window.setDark(true); }, [] { return true; }});
}

/// In the 256 colours that are most of it: a third of the room, and nobody sees it.
bool Screenshots::takePicture(const QString &name)
{
    const QImage picture = m_window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage smaller = picture.convertToFormat(QImage::Format_Indexed8, commonColours(picture));
    return smaller.save(QDir(m_folder).filePath(name + QStringLiteral(".png")), nullptr, 0);
}

void Screenshots::next()
{
    if (m_scene == m_scenes.size()) {
        Q_EMIT finished(m_complete);
        return;
    }
    m_looks = 0;
    m_scenes[m_scene].act();
    m_pause.start();
}

void Screenshots::look()
{
    const Scene &scene = m_scenes[m_scene];
    const bool ready = scene.isReady();
    ++m_looks;
    if ((!ready || m_looks < settling) && m_looks < mostLooks) {
        m_pause.start();
        return;
    }
    m_complete = m_complete && ready;
    if (!scene.name.isEmpty())
        m_complete &= takePicture(scene.name);
    ++m_scene;
    next();
}

} // namespace Desk
