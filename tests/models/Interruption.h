#pragma once

#include <QObject>

#include <functional>
#include <string>

#include <quire/models/ServerModel.h>

/// Something that a slot does to a model, once: the first time that the model emits a signal.
class Interruption : public QObject
{
public:
    /// Connects \a action to the signal of that name, which ServerModel has.
    Interruption(Quire::ServerModel &model, const std::string &signal, std::function<void()> action);

    /// Whether the signal has come.
    bool happened() const { return m_happened; }

private:
    template<typename Signal>
    void connectTo(Quire::ServerModel &model, Signal signal);
    void act();

    std::function<void()> m_action;
    bool m_happened = false;
};

/// Runs the event loop for a moment, as a message box does.
void runEventLoop();

/// Whether what a SignalLog has taken tells of loads one after the other: each begins and then finishes or fails once,
/// unless a reset comes between.
bool isOrderly(const QStringList &signalLines);
