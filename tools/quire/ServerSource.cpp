#include "ServerSource.h"

#include <quire/newsroom/sample/Sample.h>

#include "Failure.h"
#include "trace/Tracing.h"

namespace Tool {

namespace {

/// The class object that the sign-on class leads to; empty when it leads to none.
IClassFactoryPtr reachableClass()
{
    IClassFactoryPtr factory;
    CoGetClassObject(__uuidof(Orvex::Signon), CLSCTX_ALL, nullptr, IID_IClassFactory,
                     reinterpret_cast<void **>(&factory));
    return factory;
}

/// Puts \a trace before the server that \a factory makes sign-on objects of.
Newsroom::Registration registerTraced(const IClassFactoryPtr &factory, const CallTracePtr &trace)
{
    const IClassFactoryPtr traced = tracedFactory(factory, trace);
    Newsroom::Registration registration(__uuidof(Orvex::Signon), traced);
    // A class that somebody else registered within this process comes first.
    if (reachableClass() != traced)
        throw Failure(ExitCode::Failed, QStringLiteral("cannot trace the server: its class does not let us before it"));
    return registration;
}

} // namespace

ServerSource::ServerSource(const Options &options, Access access)
{
    if (options.newsroom.isNull() && !options.builtIn) {
        const IClassFactoryPtr registered = reachableClass();
        if (registered && options.trace)
            m_registration = registerTraced(registered, options.trace);
        if (registered)
            return;
    }
    m_server = std::make_unique<Newsroom::Server>(options.newsroom.isNull() ? Newsroom::sampleModel()
                                                                            : openFolder(options.newsroom, access));
    m_registration =
        options.trace ? registerTraced(m_server->classFactory(), options.trace) : m_server->registerClass();
}

std::shared_ptr<Newsroom::Model> ServerSource::openFolder(const QString &folder, Access access)
{
    m_folder = folder;
    m_readAt = QDateTime::currentDateTime();
    QString error;
    std::shared_ptr<Newsroom::Model> model;
    if (access == Access::Write) {
        m_store = Newsroom::Store::open(folder, &error);
        model = m_store ? m_store->model() : nullptr;
    } else {
        model = Newsroom::Store::read(folder, &error);
    }
    if (!model)
        throw Failure(ExitCode::Failed, QStringLiteral("cannot open the newsroom folder: %1").arg(error));
    return model;
}

ServerSource::~ServerSource() = default;

QString ServerSource::description() const
{
    if (!m_server)
        return QStringLiteral("registered server");
    return m_folder.isEmpty() ? QStringLiteral("built-in sample") : QStringLiteral("folder %1").arg(m_folder);
}

QString ServerSource::folder() const
{
    return m_folder;
}

std::shared_ptr<Newsroom::Model> ServerSource::model() const
{
    return m_server ? m_server->model() : nullptr;
}

Newsroom::User ServerSource::firstOfUsers() const
{
    if (!m_server)
        throw Failure(ExitCode::Usage,
                      QStringLiteral("name the user to sign on with --user, and --password (or QUIRE_PASSWORD): this "
                                     "machine has a registered server. --built-in opens the sample"));
    return m_server->model()->users().value(0);
}

QString ServerSource::firstUser() const
{
    return firstOfUsers().name;
}

QString ServerSource::firstPassword() const
{
    return firstOfUsers().password;
}

void ServerSource::logOut(const QString &user)
{
    if (m_server)
        m_server->triggerLogout(user);
}

void ServerSource::follow(const QString &path)
{
    if (m_folder.isEmpty() || m_store)
        return;
    if (!m_follower)
        m_follower = std::make_unique<Newsroom::Follower>(m_folder, model(), m_readAt);
    m_follower->follow(path);
}

void ServerSource::catchUp()
{
    if (m_follower)
        m_follower->look();
}

void ServerSource::keep()
{
    if (m_store && !m_store->flush())
        throw Failure(ExitCode::Failed,
                      QStringLiteral("done, but not kept in the folder: %1").arg(m_store->lastError()));
}

} // namespace Tool
