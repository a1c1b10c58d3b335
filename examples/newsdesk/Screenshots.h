#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

namespace Newsroom {
class Server;
}

namespace Desk {

class MainWindow;
class Session;

/// Takes pictures of the window at work on the sample newsroom: the tree, a queue that loads, a story, a search, a
/// refused lock, an edit, an update, and dark colours. Somebody else who works there at the same time is played. Where
/// the newsroom is behind a registered server there is no loading, no refused lock and no update to be had.
class Screenshots : public QObject
{
    Q_OBJECT

public:
    /// Begins as soon as the session is signed on. All of them outlive this.
    Screenshots(MainWindow &window, Session &session, const QString &folder);

Q_SIGNALS:
    /// All are there; \a complete tells whether everything was seen that was to be.
    void finished(bool complete);

private:
    /// What is to be done, then what is to be waited for, then the picture's name; empty for none.
    struct Scene
    {
        QString name;
        std::function<void()> act;
        std::function<bool()> isReady;
    };

    void begin();
    void addTree();
    void addLoading();
    void addReading();
    void addRefusedLock();
    void addSearch();
    void addEditing();
    void addUpdate();
    void addDark();
    void next();
    void look();
    void choose(qint32 story);
    bool takePicture(const QString &name);
    bool isStoryThere() const;
    bool isQueueThere() const;

    MainWindow &m_window;
    Session &m_session;
    const QString m_folder;
    std::vector<Scene> m_scenes;
    std::size_t m_scene = 0;
    QTimer m_pause; // between looks
    int m_looks = 0;
    bool m_complete = true;
};

} // namespace Desk
