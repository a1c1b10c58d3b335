#pragma once

#include <gtest/gtest.h>

#include <string>

#include "failing/World.h"

/// \file
/// Fails every server call of every operation in turn.
///
/// For each operation and state: the operation is called with its first server call failing, then with the second, and
/// so on until it runs through without meeting the fault; the same for each interface that it asks an object for. And
/// all that with each kind of fault. Natively also with each text and array in turn finding no memory, in the library
/// or in the server: then it gives what it gives when some call is refused, or raises. After each case: the operation
/// gave what its header says; nobody holds a lock; what was there before is still there; a fresh call works; and when
/// everything has been let go no object, text or array is left.
///
/// QUIRE_FAILING_SAMPLE=N in the environment makes each operation, in each state, meet only every N-th kind of fault,
/// others than the one before: for slow machines.

namespace Failing {

/// Ways for a call to go wrong, as a line of documentation groups them.
enum Faults : unsigned {
    Refused = 1 << 0,     ///< a failure with a facility of the server's or of the system's
    Plain = 1 << 1,       ///< a failure of no facility: E_FAIL, E_POINTER
    NoInterface = 1 << 2, ///< E_NOINTERFACE
    BeingEdited = 1 << 3, ///< the code for a story that is being edited
    Raised = 1 << 4,      ///< `_com_error` is thrown
    OutOfMemory = 1 << 5, ///< `std::bad_alloc` is thrown
    Null = 1 << 6,        ///< S_OK and nothing
    Wrong = 1 << 7,       ///< S_OK and a result of a type that nobody expects
    Late = 1 << 8,        ///< the call hangs for a while
    Fails = Refused | Plain | NoInterface | BeingEdited,
    Throws = Raised | OutOfMemory,
    Empty = Null | Wrong,
    AnyFault = Fails | Throws | Empty | Late,
};

/// What an operation gives when one of these server calls ("Interface::Operation", "Operation", "Interface::*" or "*",
/// separated by blanks) goes wrong in one of these ways. "=" is what it gives when nothing goes wrong, "-" what it
/// gives without a connection, H the code of the fault; alternatives are separated by " | ".
struct Documented
{
    const char *calls;
    unsigned faults;
    std::string outcome;
};

/// What the server is to hold after an operation that changes it: the change when the operation says that it was made,
/// and what was there before when it fails or the server only claims to have made it. Never a part of it.
struct Stored
{
    const char *call = nullptr;         ///< the server's operation that makes the change
    QString (*held)(World &) = nullptr; ///< what the server holds, in words
};

/// An operation, by one line in a table.
struct Operation
{
    const char *name;
    unsigned states; ///< in which it is called
    World::Prepare prepare;
    QString (*run)(World &); ///< calls it and says what it gave
    const char *done;        ///< what it gives when nothing goes wrong
    const char *without;     ///< what it gives without a connection
    std::vector<Documented> failed;
    Stored stored = {};
    bool mayLose = false;     ///< it is meant to let go of what was there before it asks the server
    bool byTheSystem = false; ///< smart pointers and the system make the call: they let nothing be thrown, and Windows
                              ///< trusts a server not to give nothing
};

/// Lines of its own, and behind them those for finding a directory or queue by its path: another way is found when
/// anything goes wrong, unless what the server gave was something else.
std::vector<Documented> byPath(const std::vector<Documented> &own);

/// What every operation has in common, behind the lines of its own: what is raised leaves, what hangs is waited for,
/// and who cannot be asked for the connection is not connected.
void expectDocumented(const Operation &operation);

/// Runs the tables; each file of operations instantiates it.
class FailureLoop : public ::testing::TestWithParam<Operation>
{};

void PrintTo(const Operation &operation, std::ostream *out);

std::string nameOfTest(const ::testing::TestParamInfo<Operation> &info);

/// Any state in which there is a session; in which somebody is signed on.
const unsigned anySession = Unloaded | Disconnected | Connected | Cached;
const unsigned anyState = NoSession | anySession;
const unsigned signedOn = Connected | Cached;

} // namespace Failing
