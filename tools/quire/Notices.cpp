#include "Notices.h"

#include <atomic>

#include <quire/notify/Notification.h>

namespace Tool {

namespace {

std::atomic<bool> loggedOut{false};

void noteLogout()
{
    loggedOut = true;
}

} // namespace

Notices::Notices()
{
    loggedOut = false;
    Quire::NotificationInit(nullptr, nullptr, noteLogout);
}

Notices::~Notices()
{
    Quire::NotificationRelease();
}

bool Notices::isLoggedOut() const
{
    return loggedOut;
}

} // namespace Tool
