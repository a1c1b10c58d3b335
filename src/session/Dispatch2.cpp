#include <quire/session/Dispatch2.h>

namespace Quire {

// The smart pointers' converting constructors query, let E_NOINTERFACE pass as empty and raise the rest.

Orvex::IDirectory2Ptr Dispatch2Dir(const IDispatchPtr &handle)
{
    return Orvex::IDirectory2Ptr(handle);
}

Orvex::IQueue2Ptr Dispatch2Queue(const IDispatchPtr &handle)
{
    return Orvex::IQueue2Ptr(handle);
}

Orvex::IStory2Ptr Dispatch2Story(const IDispatchPtr &handle)
{
    return Orvex::IStory2Ptr(handle);
}

} // namespace Quire
