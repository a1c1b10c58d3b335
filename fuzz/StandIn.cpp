#include "StandIn.h"

namespace Fuzz {

namespace {

QString reported; // one check runs at a time

void keep(const Quire::TestKit::Failure &failure)
{
    reported = failure.text;
}

} // namespace

StandIn::StandIn(const char *newsroom)
    : m_former(Quire::TestKit::setFailureHandler(keep))
    , m_newsroom(std::make_unique<Quire::TestKit::StandIn>(newsroom))
    , m_session(m_newsroom->signOn())
{}

StandIn::~StandIn()
{
    m_newsroom.reset();
    Quire::TestKit::setFailureHandler(m_former);
}

QString StandIn::end(const QString &wrong)
{
    m_newsroom.reset();
    const QString leftovers = std::exchange(reported, QString());
    return wrong.isEmpty() ? leftovers : wrong;
}

} // namespace Fuzz
