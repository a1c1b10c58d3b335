#include <quire/newsroom/server/Registration.h>

#include <utility>

namespace Newsroom {

Registration::Registration(REFCLSID clsid, IUnknown *factory)
    : m_result(CoRegisterClassObject(clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie))
{
    if (FAILED(m_result))
        m_cookie = 0;
}

Registration::~Registration()
{
    revoke();
}

Registration::Registration(Registration &&other) noexcept
    : m_cookie(std::exchange(other.m_cookie, 0))
    , m_result(other.m_result)
{}

Registration &Registration::operator=(Registration &&other) noexcept
{
    if (this != &other) {
        revoke();
        m_cookie = std::exchange(other.m_cookie, 0);
        m_result = other.m_result;
    }
    return *this;
}

void Registration::revoke()
{
    if (m_cookie)
        CoRevokeClassObject(std::exchange(m_cookie, 0));
}

} // namespace Newsroom
