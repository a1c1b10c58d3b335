#include "models/Interruption.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <map>
#include <ostream>
#include <utility>

using Quire::ServerModel;

Interruption::Interruption(ServerModel &model, const std::string &signal, std::function<void()> action)
    : m_action(std::move(action))
{
    const std::map<std::string, std::function<void()>> connects = {
        {"modelAboutToBeReset", [&] { connectTo(model, &ServerModel::modelAboutToBeReset); }},
        {"modelReset", [&] { connectTo(model, &ServerModel::modelReset); }},
        {"columnsAboutToBeInserted", [&] { connectTo(model, &ServerModel::columnsAboutToBeInserted); }},
        {"columnsInserted", [&] { connectTo(model, &ServerModel::columnsInserted); }},
        {"rowsAboutToBeInserted", [&] { connectTo(model, &ServerModel::rowsAboutToBeInserted); }},
        {"rowsInserted", [&] { connectTo(model, &ServerModel::rowsInserted); }},
        {"rowsAboutToBeRemoved", [&] { connectTo(model, &ServerModel::rowsAboutToBeRemoved); }},
        {"rowsRemoved", [&] { connectTo(model, &ServerModel::rowsRemoved); }},
        {"rowsAboutToBeMoved", [&] { connectTo(model, &ServerModel::rowsAboutToBeMoved); }},
        {"rowsMoved", [&] { connectTo(model, &ServerModel::rowsMoved); }},
        {"layoutAboutToBeChanged", [&] { connectTo(model, &ServerModel::layoutAboutToBeChanged); }},
        {"layoutChanged", [&] { connectTo(model, &ServerModel::layoutChanged); }},
        {"dataChanged", [&] { connectTo(model, &ServerModel::dataChanged); }},
        {"loadingStarted", [&] { connectTo(model, &ServerModel::loadingStarted); }},
        {"loadingChanged", [&] { connectTo(model, &ServerModel::loadingChanged); }},
        {"progress", [&] { connectTo(model, &ServerModel::progress); }},
        {"finished", [&] { connectTo(model, &ServerModel::finished); }},
        {"failed", [&] { connectTo(model, &ServerModel::failed); }},
    };
    connects.at(signal)();
}

template<typename Signal>
void Interruption::connectTo(ServerModel &model, Signal signal)
{
    connect(&model, signal, this, [this] { act(); });
}

void Interruption::act()
{
    if (!std::exchange(m_happened, true))
        m_action();
}

void Moment::act(const std::function<void()> &act) const
{
    const int waiting = 60; // milliseconds
    act();
    QElapsedTimer timer;
    timer.start();
    while (waits && !timer.hasExpired(waiting))
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
}

std::vector<Moment> moments(const std::vector<std::string> &signalNames, const std::vector<std::string> &actions)
{
    std::vector<Moment> all;
    for (const std::string &signal : signalNames) {
        const bool isEarly = signal.find("AboutTo") != std::string::npos;
        for (const std::string &action : actions) {
            if (action != "Destroy" || !isEarly)
                all.push_back({signal, action, false});
            if (action != "Destroy")
                all.push_back({signal, action, true});
        }
    }
    return all;
}

std::string momentName(const ::testing::TestParamInfo<Moment> &test)
{
    return test.param.signal + test.param.action + (test.param.waits ? "AndWait" : "");
}

std::ostream &operator<<(std::ostream &stream, const Moment &moment)
{
    return stream << moment.action << " at " << moment.signal;
}

::testing::AssertionResult isOrderly(const QStringList &signalLines)
{
    bool loads = false;
    for (const QString &line : signalLines) {
        const bool begins = line == QLatin1String("loading");
        const bool ends = line == QLatin1String("finished") || line.startsWith(QLatin1String("failed"));
        if ((begins && loads) || (ends && !loads))
            return ::testing::AssertionFailure() << signalLines.join(QLatin1String(", ")).toStdString();
        loads = begins || (loads && !ends && line != QLatin1String("reset"));
    }
    return ::testing::AssertionSuccess();
}
