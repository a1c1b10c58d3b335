#pragma once

/// \file
/// Checks of what server calls answer. Each is an expression: true when the check holds. When it does not, that is
/// reported, in the words of getErrorString, and the test goes on; `if (!QUIRE_SUCCEEDED(...)) return;` ends it.

#include <QString>

#include <type_traits>

#include <quire/platform/Automation.h>
#include <quire/story/Story.h>
#include <quire/testkit/Failure.h>

namespace Quire {
namespace TestKit {

/// What a call came to.
struct Outcome
{
    HRESULT result = S_OK; ///< What it answered, or the code of the `_com_error` that it raised.
    bool raised = false;   ///< It raised `_com_error`.
    bool refused = false;  ///< It answered false.
};

/// The HRESULT \a code in words and digits: "Entry no longer exists. (0x8004040b)". Where signing on gives the code
/// another meaning, that is said, too.
QString inWords(HRESULT code);

/// Makes a call and tells what it came to. The call answers an HRESULT (also in a long), a bool, or nothing.
template<typename Call>
Outcome outcomeOf(const Call &call)
{
    using Answer = std::decay_t<decltype(call())>;
    Outcome outcome;
    try {
        if constexpr (std::is_void_v<Answer>)
            call();
        else if constexpr (std::is_same_v<Answer, bool>)
            outcome.refused = !call();
        else
            outcome.result = static_cast<HRESULT>(call());
    } catch (const _com_error &error) {
        outcome.result = error.Error();
        outcome.raised = true;
    }
    return outcome;
}

/// Reports \a call, as it is written, unless it succeeded.
bool succeeded(const Place &place, const char *call, const Outcome &outcome);
/// Reports \a call unless it failed with \a code, answered or raised.
bool failedWith(const Place &place, const char *call, HRESULT code, const Outcome &outcome);
/// The outcome of a call on \a story, which keeps the HRESULT for itself.
Outcome withErrorOf(const Story &story, Outcome outcome);

} // namespace TestKit
} // namespace Quire

/// Checks that a call that answers an HRESULT, or nothing, neither fails nor raises `_com_error`:
/// `QUIRE_SUCCEEDED(session->Connect(QString(), user, password, 0));`
#define QUIRE_SUCCEEDED(...)                                                                                           \
    Quire::TestKit::succeeded({__FILE__, __LINE__}, #__VA_ARGS__, QUIRE_TESTKIT_OUTCOME(__VA_ARGS__))

/// Checks that a call fails with the HRESULT \a code, answered or raised.
#define QUIRE_FAILED_WITH(code, ...)                                                                                   \
    Quire::TestKit::failedWith({__FILE__, __LINE__}, #__VA_ARGS__, static_cast<HRESULT>(code),                         \
                               QUIRE_TESTKIT_OUTCOME(__VA_ARGS__))

/// Checks that a call on a Story does not answer false, leaves no failure in its GetError() and does not raise
/// `_com_error`: `QUIRE_STORY_SUCCEEDED(*story, story->Save(false));`
#define QUIRE_STORY_SUCCEEDED(story, ...)                                                                              \
    Quire::TestKit::succeeded({__FILE__, __LINE__}, #__VA_ARGS__,                                                      \
                              Quire::TestKit::withErrorOf(story, QUIRE_TESTKIT_OUTCOME(__VA_ARGS__)))

/// What the checks above make of an expression.
#define QUIRE_TESTKIT_OUTCOME(...) Quire::TestKit::outcomeOf([&] { return __VA_ARGS__; })
