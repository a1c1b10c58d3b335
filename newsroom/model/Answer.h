#pragma once

/// \file
/// A value or the reason why there is none.

#include <utility>

#include <quire/newsroom/model/Refusal.h>

namespace Newsroom {

/// What an operation answers that can be refused: either `refusal` is None and `value` holds the result, or `refusal`
/// says why not and `value` is default-constructed. A plain value.
template<typename T>
struct Answer
{
    Refusal refusal = Refusal::None; ///< Why there is no value.
    T value{};                       ///< The result.

    Answer() = default;
    /// The result.
    Answer(T result)
        : value(std::move(result))
    {} // NOLINT(google-explicit-constructor): reads as a return value
    /// A refusal.
    Answer(Refusal why)
        : refusal(why)
    {} // NOLINT(google-explicit-constructor): reads as a return value

    /// There is a value.
    bool ok() const { return refusal == Refusal::None; }
    /// As ok().
    explicit operator bool() const { return ok(); }
};

} // namespace Newsroom
