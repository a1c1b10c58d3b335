#include <quire/newsroom/server/EntryObject.h>

#include <quire/newsroom/server/DirectoryObject.h>
#include <quire/newsroom/server/QueueObject.h>

namespace Newsroom {

Owned<IDispatch> makeEntryObject(const std::shared_ptr<Session> &session, const Entry &entry)
{
    if (entry.isQueue())
        return makeOwned<QueueObject>(session, entry.number());
    return makeOwned<DirectoryObject>(session, entry.path);
}

} // namespace Newsroom
