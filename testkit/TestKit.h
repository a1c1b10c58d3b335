#pragma once

/// \file
/// The test kit for hosts: a newsroom to test against, checks that say in words what a server answered, and waiting.
///
///     #include <quire/testkit/GoogleTest.h>   // or QtTest.h, or this header for no framework at all
///
///     TEST(Rundown, ShowsItsStories)
///     {
///         Quire::TestKit::StandIn newsroom("queue RUNDOWN\n"
///                                          "  story id=7\n"
///                                          "    title: Headlines\n");
///         newsroom.signOn();
///         RundownWindow window("RUNDOWN");                 // the host's own
///         QUIRE_EVENTUALLY(window.rowCount() == 1);
///     }
///
/// A window with models wants ServerModel::waitForServer after its end, before the newsroom goes, see StandIn.
///
/// When the newsroom goes, whatever the host has not given back is a failure of that test. Failures are injected
/// through StandIn::faults() and failEachCall().
///
/// A host that is tested as a program, from outside, wants its newsroom in a server of its own. On Windows the package
/// has one: Newsroom::Store::save writes a newsroom into a folder, the environment variable ORVEX_NEWSROOM names that
/// folder to the host, and QuireCOM::registerCOM enters OrvexCOMU_64.dll as the server.

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/testkit/Checks.h>
#include <quire/testkit/FailEachCall.h>
#include <quire/testkit/Failure.h>
#include <quire/testkit/Settings.h>
#include <quire/testkit/StandIn.h>
#include <quire/testkit/Waiting.h>
