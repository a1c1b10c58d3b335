#pragma once

/// \file
/// The stand-in server for one check.

#include <QString>

#include <quire/testkit/Failure.h>
#include <quire/testkit/StandIn.h>

namespace Fuzz {

/// A newsroom from a text with a session, for one check. What the check leaves behind of the server is wrong, too.
class StandIn
{
public:
    explicit StandIn(const char *newsroom);
    ~StandIn();
    StandIn(const StandIn &) = delete;
    StandIn &operator=(const StandIn &) = delete;

    Quire::TestKit::StandIn &newsroom() { return *m_newsroom; }
    Quire::QuireCOM *session() { return m_session; }

    /// Ends the newsroom. Answers what the check has found, or else what was left behind.
    QString end(const QString &wrong);

private:
    Quire::TestKit::FailureHandler m_former;
    std::unique_ptr<Quire::TestKit::StandIn> m_newsroom;
    Quire::QuireCOM *m_session;
};

} // namespace Fuzz
