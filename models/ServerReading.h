#pragma once

/// \file
/// What models ask the session for. On the ServerThread. Not part of the public surface.

#include <QString>

#include <vector>

#include <quire/forms/Field.h>
#include <quire/platform/Automation.h>
#include <quire/tree/Item.h>

namespace Quire {

/// Raises why there is nothing to be found on the server: the user is not signed on, or the entry does not exist.
[[noreturn]] void raiseMissing();

/// Raises when the user is not signed on (any more).
void requireSession();
/// Raises when the user is not signed on (any more), or anew since that number of QuireCOM::SignOnCount.
void requireSession(quint32 signOn);

/// The handle of the queue \a path; raises when there is none.
IDispatchPtr findQueue(const QString &path);

/// The fields of the form of a queue; none when the server does not deliver it. Ask before the queue is loaded: its
/// worker hardly lets go of the server.
std::vector<Field> readFormFields(const IDispatchPtr &queue);

/// The entries of the directory \a path; with \a anew what the session keeps of it is not trusted. Raises when there is
/// no such directory and what the server refuses.
std::vector<Item> readDirectory(const QString &path, bool anew);

/// Starts a search of the directory or queue \a path; its number. Raises when it is refused.
int startSearch(const QString &path, ItemType type, const QString &query);

} // namespace Quire
