#pragma once

/// \file
/// Where failed checks go. No test framework is needed; each can be led the failures by one function.

#include <QString>

namespace Quire {
namespace TestKit {

/// A line of a test.
struct Place
{
    const char *file; ///< A literal; null when not known.
    int line;         ///< The number of the line.

    /// The line that calls this or, as the default of an argument, the line that calls the function.
    static Place here(const char *file = __builtin_FILE(), int line = __builtin_LINE()) { return {file, line}; }
};

/// One check that did not hold.
struct Failure
{
    Place place;  ///< Where.
    QString text; ///< One or more lines, without a line feed at the end.
};

/// Gets each failure, on the thread that checked. What it throws leaves the check, but never a destructor.
using FailureHandler = void (*)(const Failure &failure);

/// Has failures go to \a handler from now on and returns where they went before. Null stands for the handler that is
/// there at first, which writes "FILE:LINE: TEXT" to the standard error output. Any thread.
FailureHandler setFailureHandler(FailureHandler handler);

/// How many failures there have been in this process: without a framework, a test program ends with
/// `return Quire::TestKit::failureCount() > 0;`. Any thread.
int failureCount();

/// Reports a failure, with the notes that there are. Checks of a host's own may use it, too. Any thread.
void report(const Place &place, const QString &text);

/// For as long as it lives, failures say that they happened "while" this. Notes of all threads are told by the failures
/// of all, innermost last.
class Note
{
public:
    /// Failures say that they happened while \a text.
    explicit Note(const QString &text);
    ~Note();

private:
    Q_DISABLE_COPY(Note)
    int m_number;
};

} // namespace TestKit
} // namespace Quire
