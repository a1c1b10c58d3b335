#include <quire/testkit/FailEachCall.h>

#include <exception>

#include <quire/testkit/Checks.h>

namespace Quire {
namespace TestKit {

namespace {

constexpr int mostCalls = 10000;

/// What the action raises, in words; null when that is nothing. Nothing leaves it, so that a run always ends its fault.
QString raisedBy(const std::function<void()> &action)
{
    try {
        action();
    } catch (const _com_error &error) {
        return inWords(error.Error());
    } catch (const std::exception &error) {
        return QStringLiteral("an exception: ") + QString::fromLocal8Bit(error.what());
    } catch (...) {
        return QStringLiteral("something that is no std::exception");
    }
    return {};
}

/// One run; true when the fault happened in it.
bool run(StandIn &newsroom, int call, const Fault &fault, const std::function<void()> &action, const Place &place)
{
    const Note note(QStringLiteral("call %1 of the server goes wrong").arg(call));
    newsroom.faults().clear();
    newsroom.faults().failCall(call, fault);
    const QString raised = raisedBy(action);
    const bool happened = newsroom.faults().faultsDone() > 0;
    // Before the report, which may throw to end the test: what comes then meets no fault.
    newsroom.faults().clear();
    if (!raised.isNull())
        report(place, QStringLiteral("The action raised ") + raised);
    return happened;
}

} // namespace

int failEachCall(StandIn &newsroom, const Fault &fault, const std::function<void()> &action, const Place &place)
{
    for (int call = 1; call <= mostCalls; ++call) {
        if (!run(newsroom, call, fault, action, place))
            return call - 1;
    }
    report(place, QStringLiteral("The action makes more than %1 calls").arg(mostCalls));
    return mostCalls;
}

} // namespace TestKit
} // namespace Quire
