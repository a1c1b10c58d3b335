#include <quire/newsroom/server/StrangerObject.h>

namespace Newsroom {

namespace {

const CallInterface StrangerInterface{"IDispatch", IID_IDispatch};

} // namespace

StrangerObject::StrangerObject(const std::shared_ptr<ServerCore> &core)
    : ComObject(core, ObjectKind::Stranger, StrangerInterface)
{}

} // namespace Newsroom
