#include <quire/testkit/FailEachCall.h>

#include <quire/testkit/Checks.h>

namespace Quire {
namespace TestKit {

namespace {

constexpr int mostCalls = 10000;

/// One run; true when the fault happened in it.
bool run(StandIn &newsroom, int call, const Fault &fault, const std::function<void()> &action, const Place &place)
{
    const Note note(QStringLiteral("call %1 of the server goes wrong").arg(call));
    newsroom.faults().clear();
    newsroom.faults().failCall(call, fault);
    const Outcome outcome = outcomeOf(action);
    const bool happened = newsroom.faults().faultsDone() > 0;
    newsroom.faults().clear();
    if (outcome.raised)
        report(place, QStringLiteral("The action raised ") + inWords(outcome.result));
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
