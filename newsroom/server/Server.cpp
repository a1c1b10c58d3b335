#include <quire/newsroom/server/Server.h>

#include <quire/newsroom/server/ClassFactory.h>
#include <quire/newsroom/server/Delivery.h>
#include <quire/newsroom/server/ServerCore.h>
#include <quire/newsroom/server/Session.h>
#include <quire/newsroom/server/SignonObject.h>
#include <quire/platform/Bstr.h>

namespace Newsroom {

Server::Server(std::shared_ptr<Model> model)
    : m_core(ServerCore::make(std::move(model)))
{}

Server::~Server()
{
    m_core->close();
}

const std::shared_ptr<Model> &Server::model() const
{
    return m_core->sharedModel();
}

Registration Server::registerClass()
{
    return Registration(__uuidof(Orvex::Signon), makeOwned<ClassFactory>(m_core).get());
}

IClassFactoryPtr Server::classFactory()
{
    return IClassFactoryPtr(makeOwned<ClassFactory>(m_core).release(), false);
}

Orvex::ISignon4Ptr Server::createSignon()
{
    return Orvex::ISignon4Ptr(SignonObject::make(m_core).release(), false);
}

Orvex::ISignon4Ptr Server::connect(const QString &user, const QString &password)
{
    Orvex::ISignon4Ptr signon = createSignon();
    const Platform::Bstr userText(user);
    const Platform::Bstr passwordText(password);
    const HRESULT result = signon->Connect(userText.get(), passwordText.get(), nullptr, 0);
    if (FAILED(result))
        _com_issue_errorex(result, signon, __uuidof(Orvex::ISignon4));
    return signon;
}

CallRecorder &Server::calls()
{
    return m_core->calls();
}

FaultPlan &Server::faults()
{
    return m_core->faults();
}

Options &Server::options()
{
    return m_core->options();
}

std::shared_ptr<const Census> Server::census() const
{
    return m_core->sharedCensus();
}

LONG Server::lastSearchId() const
{
    return m_core->lastSearchId();
}

template<class Wanted>
int Server::logOut(const Wanted &wanted)
{
    int count = 0;
    for (const std::shared_ptr<Session> &session : m_core->sessions()) {
        if (!wanted(*session))
            continue;
        session->logOut();
        ++count;
    }
    return count;
}

int Server::triggerLogout(const QString &user)
{
    return logOut([&user](const Session &session) { return session.user().compare(user, Qt::CaseInsensitive) == 0; });
}

int Server::triggerLogout()
{
    return logOut([](const Session &) { return true; });
}

Delivery &Server::delivery()
{
    return m_core->delivery();
}

bool Server::waitForEvents(int milliseconds)
{
    return m_core->delivery().waitUntilIdle(milliseconds);
}

} // namespace Newsroom
