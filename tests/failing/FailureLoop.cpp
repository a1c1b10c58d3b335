#include "failing/FailureLoop.h"

#include <QRegularExpression>

#include <algorithm>
#include <iostream>
#include <limits>
#include <new>

#include "support/QtPrinting.h"

namespace Failing {

using Newsroom::Fault;

namespace {

struct FaultCase
{
    const char *name;
    Faults group;
    Fault fault;
};

Fault failure(quint32 code)
{
    return Fault::hresult(static_cast<HRESULT>(code));
}

const std::vector<FaultCase> &faultCases()
{
    static const std::vector<FaultCase> all{
        {"E_FAIL", Plain, Fault::hresult(E_FAIL)},
        {"E_POINTER", Plain, Fault::hresult(E_POINTER)},
        {"E_NOINTERFACE", NoInterface, Fault::hresult(E_NOINTERFACE)},
        {"E_OUTOFMEMORY", Refused, Fault::hresult(E_OUTOFMEMORY)},
        {"0x80040401", Refused, failure(0x80040401)},
        {"0x8004040B", Refused, failure(0x8004040B)},
        {"0x8004040E", BeingEdited, failure(0x8004040E)},
        {"0x80040416", Refused, failure(0x80040416)},
        {"0x8004045C", Refused, failure(0x8004045C)},
        {"RPC_E_DISCONNECTED", Refused, Fault::hresult(RPC_E_DISCONNECTED)},
        {"raised E_FAIL", Raised, Fault::raise(E_FAIL)},
        {"raised 0x80040450", Raised, Fault::raise(static_cast<HRESULT>(0x80040450))},
        {"std::bad_alloc", OutOfMemory, Fault::outOfMemory()},
        {"a null result", Null, Fault::nullResult()},
        {"a wrong type", Wrong, Fault::wrongType()},
        {"wrong elements", Wrong, Fault::wrongElements()},
        {"strangers", Wrong, Fault::strangers()},
        {"null elements", Null, Fault::nullElements()},
        {"a hang", Late, Fault::hang(1)},
    };
    return all;
}

const std::vector<Documented> &commonOutcomes()
{
    static const std::vector<Documented> all{
        {"get_Connected", Fails | Empty, "-"},
        {"*", Raised, "raised H"},
        {"*", OutOfMemory, "out of memory"},
        {"*", Late, "="},
    };
    return all;
}

/// Whether a call is one of those named in a line of documentation.
bool concerns(const Documented &line, unsigned group, const QString &call)
{
    if ((line.faults & group) == 0)
        return false;
    const QStringList names = text(line.calls).split(QLatin1Char(' '));
    return std::any_of(names.begin(), names.end(), [&call](const QString &name) {
        const bool wholeInterface = name.endsWith(QLatin1String("::*")) && call.startsWith(name.chopped(1));
        return wholeInterface || name == QLatin1String("*") || name == call || name == call.section(text("::"), 1);
    });
}

/// The outcomes of a line of documentation, in words.
QStringList outcomesOf(const Operation &operation, State state, const Documented &line)
{
    QStringList outcomes = QString::fromStdString(line.outcome).split(text(" | "));
    const char *const undisturbed = (state & signedOn) ? operation.done : operation.without;
    outcomes.replaceInStrings(text("="), text(undisturbed));
    outcomes.replaceInStrings(QRegularExpression(text("^-$")), text(operation.without));
    return outcomes;
}

/// What an operation may give; empty when nothing is documented.
QStringList documented(const Operation &operation, State state, unsigned group, const QString &call)
{
    std::vector<Documented> lines = operation.failed;
    lines.insert(lines.end(), commonOutcomes().begin(), commonOutcomes().end());
    const auto found =
        std::find_if(lines.begin(), lines.end(), [&](const Documented &line) { return concerns(line, group, call); });
    return found == lines.end() ? QStringList() : outcomesOf(operation, state, *found);
}

/// What it may give when some text or array finds no memory, wherever.
QStringList documentedWithoutMemory(const Operation &operation, State state)
{
    QStringList outcomes = outcomesOf(operation, state, {"*", Refused, "= | - | raised H"});
    for (const Documented &line : operation.failed) {
        if (line.faults & (Refused | Raised))
            outcomes += outcomesOf(operation, state, line);
    }
    return outcomes;
}

QString outcomeOf(const Operation &operation, World &world)
{
    return attempt(world, [&] { return operation.run(world); });
}

/// What would have been kept if the operation had gone well, and is not there.
QStringList lost(const QStringList &before, const QStringList &keptOtherwise, const QStringList &after)
{
    QStringList missing;
    for (const QString &each : before) {
        if (keptOtherwise.contains(each) && !after.contains(each))
            missing.append(each);
    }
    return missing;
}

const State allStates[] = {NoSession, Unloaded, Disconnected, Connected, Cached};

/// The one in which the library knows most of those in which the operation is called.
State lastState(const Operation &operation)
{
    State last = NoSession;
    for (const State state : allStates)
        last = (operation.states & state) ? state : last;
    return last;
}

/// Whether the next kind of fault is to be tried.
bool isSampled()
{
    static const int step = std::max(1, qEnvironmentVariableIntValue("QUIRE_FAILING_SAMPLE"));
    static int count = 0;
    return count++ % step == 0;
}

/// One operation in one state.
class Loop
{
public:
    Loop(const Operation &operation, State state)
        : m_operation(operation)
        , m_state(state)
    {}

    /// Calls the operation without a fault, and then with each fault at each place.
    void run();

private:
    enum class Place { Call, Query, Allocation };

    void runUndisturbed();
    void runSeries(Place place, const FaultCase &fault);
    bool runCase(Place place, int n, const FaultCase &fault);
    void examine(World &world, const QString &what, const QStringList &before, unsigned group);
    QString undisturbed() const;
    QString heldBefore() const;
    QString held(World &world) const;
    bool wasAskedToStore(World &world) const;
    QStringList mayBeHeld(Place place, const FaultCase &fault, const QString &call, const QString &outcome,
                          bool wasAsked) const;

    const Operation &m_operation;
    const State m_state;
    QStringList m_kept;  // what is there after a call that went well
    QString m_heldFirst; // what the server holds without a call
    QString m_heldThen;  // and after one that went well
};

/// Only the code counts.
const FaultCase noMemory{"no memory", Refused, Fault::hresult(E_OUTOFMEMORY)};

int casesRun = 0;

/// The first call of an operation hangs that many milliseconds in the last of its states; all others hang shortly,
/// because there are many.
const Fault longHang = Fault::hang(50);

#ifdef Q_OS_WIN
const bool isWindows = true;
#else
const bool isWindows = false;
#endif

void Loop::run()
{
    m_heldFirst = heldBefore();
    runUndisturbed();
    for (const FaultCase &fault : faultCases()) {
        if (!isSampled())
            continue;
        if (m_operation.byTheSystem && ((fault.group & Throws) || (isWindows && (fault.group & Empty))))
            continue;
        runSeries(Place::Call, fault);
        if (fault.group & Fails) // the smart pointers' queries let nothing be thrown
            runSeries(Place::Query, fault);
    }
    runSeries(Place::Allocation, noMemory);
}

void Loop::runUndisturbed()
{
    World world(m_state, m_operation.prepare);
    const QString what = text(nameOf(m_state));
    EXPECT_EQ(outcomeOf(m_operation, world), undisturbed()) << nameOf(m_state);
    m_heldThen = held(world);
    if (m_operation.stored.held && m_state == lastState(m_operation)) {
        EXPECT_NE(m_heldFirst, m_heldThen) << what.toStdString() << ", stored";
    }
    m_kept = world.possessions();
    examine(world, what, {}, 0);
}

void Loop::runSeries(Place place, const FaultCase &fault)
{
    const bool hangsLong = fault.group == Late && m_state == lastState(m_operation);
    int n = 1;
    if (hangsLong && !runCase(place, n++, {fault.name, fault.group, longHang}))
        return;
    while (runCase(place, n, fault))
        ++n;
}

/// False when the operation did not come to the n-th call.
bool Loop::runCase(Place place, int n, const FaultCase &fault)
{
    World world(m_state, m_operation.prepare);
    const QStringList before = world.possessions();
    const auto plan = [&](Newsroom::FaultPlan &faults) {
        if (place == Place::Call)
            faults.failCall(n, fault.fault);
        else if (place == Place::Query)
            faults.failNext(text("QueryInterface"), fault.fault, n);
        else
            world.failAllocation(n);
    };
    if (m_operation.stored.held)
        world.server().calls().start();
    world.arm(plan, fault.fault.code());
    const QString outcome = outcomeOf(m_operation, world);
    world.disarm();
    const QString call = world.met();
    if (call.isEmpty())
        return false;
    ++casesRun;
    const QString what = text("%1, %2 (%3) gives %4").arg(text(nameOf(m_state)), call).arg(n).arg(text(fault.name));
    QStringList allowed = place == Place::Allocation ? documentedWithoutMemory(m_operation, m_state)
                                                     : documented(m_operation, m_state, fault.group, call);
    if (fault.fault.code() != S_OK) // a documented code may happen to be that of the fault
        allowed.replaceInStrings(World::hexadecimal(fault.fault.code()), text("H"));
    EXPECT_TRUE(allowed.contains(outcome)) << what.toStdString() << "\n    gave       " << outcome.toStdString()
                                           << "\n    documented " << allowed.join(text(" | ")).toStdString();
    if (m_operation.stored.held) {
        const QStringList mayBe = mayBeHeld(place, fault, call, outcome, wasAskedToStore(world));
        const QString there = held(world);
        EXPECT_TRUE(mayBe.contains(there))
            << what.toStdString() << "\n    gave         " << outcome.toStdString() << "\n    stored       "
            << there.toStdString() << "\n    should store " << mayBe.join(text(" | ")).toStdString();
    }
    examine(world, what, before, fault.group);
    return true;
}

QString Loop::undisturbed() const
{
    return text((m_state & signedOn) ? m_operation.done : m_operation.without);
}

/// What the server holds without a call of the operation.
QString Loop::heldBefore() const
{
    World world(m_state, m_operation.prepare);
    return held(world);
}

QString Loop::held(World &world) const
{
    return m_operation.stored.held ? attempt(world, [&] { return m_operation.stored.held(world); }) : QString();
}

/// Whether the server was asked for the change; ends the record of its calls.
bool Loop::wasAskedToStore(World &world) const
{
    world.server().calls().stop();
    const std::vector<Newsroom::Call> calls = world.server().calls().take();
    return std::any_of(calls.begin(), calls.end(),
                       [this](const Newsroom::Call &each) { return each.operation == text(m_operation.stored.call); });
}

/// What the server may hold after a fault, as the operation said and as far as it had come.
QStringList Loop::mayBeHeld(Place place, const FaultCase &fault, const QString &call, const QString &outcome,
                            bool wasAsked) const
{
    const bool isTheOne = call.section(text("::"), 1) == text(m_operation.stored.call);
    if (place == Place::Call && fault.group != Late && isTheOne)
        return {m_heldFirst}; // whatever the server claims
    const bool tellsApart = text(m_operation.done) != text(m_operation.without);
    if (tellsApart && outcome == undisturbed())
        return {m_heldThen};
    if (place == Place::Allocation) // the server's memory may run out before the change or behind it
        return {m_heldFirst, m_heldThen};
    return {wasAsked ? m_heldThen : m_heldFirst};
}

/// That nothing is held, lost or left, and that a fresh call works.
void Loop::examine(World &world, const QString &what, const QStringList &before, unsigned group)
{
    EXPECT_EQ(world.heldLocks(), QStringList()) << what.toStdString();
    if (!m_operation.mayLose) {
        EXPECT_EQ(lost(before, m_kept, world.possessions()), QStringList()) << what.toStdString();
    }
    if (group & Wrong)
        world.forgetHandles(); // what is neither may be kept as a directory or queue: that is what the server said
    world.renew();
    EXPECT_EQ(outcomeOf(m_operation, world), text(m_operation.done)) << what.toStdString() << ", called again";
    EXPECT_EQ(world.leftovers(), QStringList()) << what.toStdString();
}

/// Says how much was done.
class Summary : public ::testing::Environment
{
public:
    void TearDown() override { std::cout << casesRun << " cases of a failed server call\n"; }
};

const ::testing::Environment *const summary = ::testing::AddGlobalTestEnvironment(new Summary);

} // namespace

void expectDocumented(const Operation &operation)
{
    for (const State state : allStates) {
        if (operation.states & state)
            Loop(operation, state).run();
    }
}

std::vector<Documented> byPath(const std::vector<Documented> &own)
{
    std::vector<Documented> all{
        {"get_Connected", Throws, "- | raised H | out of memory"}, // dropped on the way, not at its end
        {"IDirectory2::get_Item", Wrong, "= | -"},
        {"IDirectory2::get_Item", AnyFault, "="},
        {"IDirectory2::get_Name", AnyFault, "="},
        {"IDirectory2::QueryInterface", Fails, "="},
        {"GetDirectory", AnyFault, "-"},
    };
    all.insert(all.begin(), own.begin(), own.end());
    return all;
}

TEST_P(FailureLoop, GivesWhatIsDocumentedAndLeavesNothing)
{
    expectDocumented(GetParam());
}

void PrintTo(const Operation &operation, std::ostream *out)
{
    *out << operation.name;
}

std::string nameOfTest(const ::testing::TestParamInfo<Operation> &info)
{
    return testName(info.param.name);
}

} // namespace Failing
