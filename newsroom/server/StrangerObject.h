#pragma once

#include <quire/newsroom/server/ComObject.h>
#include <quire/newsroom/server/DispatchBase.h>

namespace Newsroom {

/// An object that is neither directory nor queue nor story: what an injected fault hands out in their place.
class StrangerObject final : public ComObject<DispatchBase<IDispatch>, IDispatch>
{
public:
    explicit StrangerObject(const std::shared_ptr<ServerCore> &core);
};

} // namespace Newsroom
