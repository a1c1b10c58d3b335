#pragma once

#include <quire/newsroom/server/ComObject.h>

namespace Newsroom {

/// Makes sign-on objects of one server.
class ClassFactory final : public ComObject<IClassFactory, IClassFactory>
{
public:
    explicit ClassFactory(const std::shared_ptr<ServerCore> &core);

    STDMETHODIMP CreateInstance(IUnknown *outer, REFIID iid, void **object) override;
    STDMETHODIMP LockServer(BOOL lock) override;
};

} // namespace Newsroom
