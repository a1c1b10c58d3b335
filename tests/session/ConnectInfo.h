#pragma once

#include <quire/session/QuireCOM.h>

#include "support/Text.h"

/// Where and as whom the session is signed on: "[SERVER] [user] [password]".
inline QString connectInfo(Quire::QuireCOM &session)
{
    QString server = text("before");
    QString user = text("before");
    QString password = text("before");
    session.GetConnectInfo(server, user, password);
    return QStringLiteral("[%1] [%2] [%3]").arg(server, user, password);
}

/// The same of a session that is not signed on.
const char *const nobody = "[] [] []";
