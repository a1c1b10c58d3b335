#pragma once

#include <memory>

#include <quire/newsroom/model/Entry.h>
#include <quire/newsroom/server/Owned.h>
#include <quire/platform/Automation.h>

namespace Newsroom {

class Session;

/// The directory or queue object of an entry of the tree, for a session.
Owned<IDispatch> makeEntryObject(const std::shared_ptr<Session> &session, const Entry &entry);

} // namespace Newsroom
