#pragma once

#include <memory>
#include <utility>

namespace Newsroom {

/// Gives an interface pointer's reference back.
struct Releaser
{
    template<class Interface>
    void operator()(Interface *pointer) const
    {
        pointer->Release();
    }
};

/// One reference to a COM object, given back at the end of the scope. It never queries, so it also takes the server's
/// own classes, which have no interface identifier.
template<class Interface>
using Owned = std::unique_ptr<Interface, Releaser>;

/// Makes one of the server's own objects; the result holds its first reference.
template<class Object, class... Arguments>
Owned<Object> makeOwned(Arguments &&...arguments)
{
    return Owned<Object>(new Object(std::forward<Arguments>(arguments)...));
}

/// A further reference to an object that is alive.
template<class Interface>
Owned<Interface> share(Interface *pointer)
{
    if (pointer)
        pointer->AddRef();
    return Owned<Interface>(pointer);
}

} // namespace Newsroom
