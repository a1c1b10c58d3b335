#include <quire/newsroom/server/StrangerObject.h>

namespace Newsroom {

namespace {

const CallInterface Interface{"IDispatch", IID_IDispatch};

} // namespace

StrangerObject::StrangerObject(const std::shared_ptr<ServerCore> &core)
    : ComObject(core, ObjectKind::Stranger, Interface)
{}

} // namespace Newsroom
