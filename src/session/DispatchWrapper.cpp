#include <quire/session/DispatchWrapper.h>

namespace Quire {

DispatchWrapper::DispatchWrapper() = default;
DispatchWrapper::DispatchWrapper(const IDispatchPtr &handle)
    : m_handle(handle)
{}
DispatchWrapper::DispatchWrapper(const DispatchWrapper &other) = default;
DispatchWrapper &DispatchWrapper::operator=(const DispatchWrapper &other) = default;
DispatchWrapper::~DispatchWrapper() = default;

} // namespace Quire
