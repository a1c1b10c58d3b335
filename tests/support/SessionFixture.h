#pragma once

#include <gtest/gtest.h>

#include <quire/session/QuireCOM.h>

#include "support/DebugCapture.h"
#include "support/FakeServer.h"
#include "support/Results.h"

/// A session on a fake server with the tree
///     NEWS            directory
///     NEWS.SPORT      directory
///     NEWS.SPORT.SCORES  queue
///     NEWS.WORLD      queue
///     MAIL            queue
/// After each test the session is gone, no object of the server is left and nobody holds the access lock.
class SessionTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Signs on and forgets the calls that this took.
    void connect();
    /// Makes the session anew on a server whose sign-on object cannot be created.
    void unload();

    FakeServer::Server server;
    Quire::QuireCOM *session = nullptr;
};
