#include <quire/testkit/StandIn.h>

#include <atomic>
#include <utility>

#include <quire/forms/FormCache.h>
#include <quire/notify/Notification.h>
#include <quire/notify/Search.h>
#include <quire/testkit/Checks.h>
#include <quire/testkit/Waiting.h>

namespace Quire {
namespace TestKit {

namespace {

std::atomic<int> theNewsrooms{0};

QString heldObjects(const Newsroom::Census &census)
{
    return census.live() ? census.text() : QString();
}

QString heldLock()
{
    const quint32 thread = QuireCOM::m_LockThreadID;
    return thread ? QStringLiteral("the server access lock, by thread %1").arg(thread) : QString();
}

/// The next newsroom numbers its searches from 1 again; the library would take them for these.
void endSearches(LONG last)
{
    Search *const searcher = Search::GetSearcherIfMade();
    for (LONG id = 1; searcher && id <= last; ++id)
        searcher->DeleteSearch(id);
}

} // namespace

StandIn::StandIn(const Place &place)
    : StandIn(Newsroom::sampleModel(), place)
{}

StandIn::StandIn(const char *text, const Place &place)
    : StandIn(QString::fromUtf8(text), place)
{}

StandIn::StandIn(const QString &text, const Place &place)
    : StandIn(build(text, place), place)
{}

StandIn::StandIn(std::shared_ptr<Newsroom::Model> model, const Place &place)
    : m_place(place)
    , m_server(std::make_unique<Newsroom::Server>(checked(std::move(model), place)))
    , m_registration(m_server->registerClass())
{
    if (theNewsrooms > 0)
        report(place, QStringLiteral("Another newsroom stands in already"));
    else if (!m_registration.isActive())
        report(place, QStringLiteral("The newsroom cannot be registered: ") + inWords(m_registration.result()));
    ++theNewsrooms;
}

StandIn::~StandIn()
{
    try {
        end();
    } catch (...) {
        // A failure handler threw; it has had its failure.
    }
    --theNewsrooms;
}

std::shared_ptr<Newsroom::Model> StandIn::build(const QString &text, const Place &place)
{
    auto model = std::make_shared<Newsroom::Model>();
    QString error;
    if (!Newsroom::NewsroomText::addTo(model.get(), text, &error))
        report(place, QStringLiteral("The text of the newsroom is wrong: ") + error);
    if (model->users().isEmpty()) {
        Newsroom::User user;
        user.name = user.password = QStringLiteral("host");
        model->setUser(user);
    }
    return model;
}

std::shared_ptr<Newsroom::Model> StandIn::checked(std::shared_ptr<Newsroom::Model> model, const Place &place)
{
    if (model)
        return model;
    report(place, QStringLiteral("There is no newsroom"));
    return std::make_shared<Newsroom::Model>();
}

QuireCOM *StandIn::signOn(const Place &place)
{
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    const QVector<Newsroom::User> users = model().users();
    if (users.isEmpty()) {
        report(place, QStringLiteral("The newsroom has no user to sign on"));
        return nullptr;
    }
    const Newsroom::User &user = users.first();
    const auto result = static_cast<HRESULT>(session->Connect(QString(), user.name, user.password, 0));
    if (SUCCEEDED(result) && session->IsLoaded())
        return session;
    const HRESULT reason = session->IsLoaded() ? result : static_cast<HRESULT>(session->GetCOMError());
    report(place, QStringLiteral("Signing on as \"%1\" failed: %2").arg(user.name, inWords(reason)));
    return nullptr;
}

QString StandIn::leftovers()
{
    const std::shared_ptr<const Newsroom::Census> census = m_server->census();
    waitUntil([&] { return census->live() == 0 && QuireCOM::m_LockThreadID == 0; }, m_leftoverPatience);
    QStringList held{heldObjects(*census), heldLock()};
    held.removeAll(QString());
    return held.join(QStringLiteral("; "));
}

void StandIn::end()
{
    faults().clear();
    NotificationRelease();
    endSearches(m_server->lastSearchId());
    QuireCOM::UnloadCOM();
    FormCache::Clear();
    m_registration.revoke();
    if (m_leftoverPatience < 0)
        return;
    const QString held = leftovers();
    if (!held.isEmpty())
        report(m_place, QStringLiteral("The newsroom goes, but this is still held: ") + held);
}

} // namespace TestKit
} // namespace Quire
