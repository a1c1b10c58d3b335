#pragma once

#include <quire/newsroom/model/Answer.h>
#include <quire/platform/Automation.h>

namespace Newsroom {

/// The model's refusals as a method answers them.
inline HRESULT toResult(Refusal refusal)
{
    return static_cast<HRESULT>(code(refusal));
}

/// Hands the value of an answer to `use`; a refusal is the result.
template<class Value, class Use>
HRESULT handOver(const Answer<Value> &answer, const Use &use)
{
    if (answer.ok())
        use(answer.value);
    return toResult(answer.refusal);
}

} // namespace Newsroom
