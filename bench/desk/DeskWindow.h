#pragma once

#include <QApplication>
#include <QElapsedTimer>

#include <memory>

#include "MainWindow.h"
#include "Options.h"
#include "QueuePane.h"
#include "Session.h"
#include "StoryTable.h"
#include "TreePane.h"

/// Runs the event loop until \a ended is true.
template<typename Condition>
void waitFor(const Condition &ended)
{
    while (!ended())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
}

inline double millisecondsOf(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

/// The desk's window, signed on to a newsroom with one queue of 100,000 stories, WIRES.W1.
class DeskWindow
{
public:
    static constexpr int stories = 100000;

    DeskWindow()
        : m_session(options())
        , m_window(std::make_unique<Desk::MainWindow>(m_session))
    {
        m_window->show();
        m_session.signOn();
        waitFor([this] { return m_window->tree().model().rowCount() > 0; });
    }
    ~DeskWindow()
    {
        m_window.reset();
        m_session.end(60000);
    }
    DeskWindow(const DeskWindow &) = delete;
    DeskWindow &operator=(const DeskWindow &) = delete;

    Desk::QueuePane &queue() { return m_window->queue(); }
    Desk::StoryTable &table() { return m_window->queue().table(); }
    Quire::QueueModel &model() { return m_window->queue().model(); }
    Desk::Session &session() { return m_session; }
    void openQueue() { m_window->openQueue(path()); }
    void closeQueue() { m_window->queue().open(QString()); }

    static QString path() { return QStringLiteral("WIRES.W1"); }

private:
    static Desk::Options options()
    {
        Desk::Options options;
        options.stories = stories;
        return options;
    }

    Desk::Session m_session;
    std::unique_ptr<Desk::MainWindow> m_window;
};
