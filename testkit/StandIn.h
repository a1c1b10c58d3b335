#pragma once

/// \file
/// A newsroom for one test.

#include <QString>
#include <QStringList>

#include <memory>

#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Apartment.h>
#include <quire/session/QuireCOM.h>
#include <quire/testkit/Failure.h>
#include <quire/testkit/Settings.h>

namespace Quire {
namespace TestKit {

using Newsroom::Fault;

/// A newsroom that stands in for the server while it lives: whoever creates the sign-on object by its class identifier
/// gets this one's, so a host is tested as it is. One at a time, made and destroyed on one thread, which joins a COM
/// apartment meanwhile.
///
/// When it goes, it ends the library's notices and session, deletes the searches that the host left (their lists go
/// with them), forgets the forms that the library keeps, and sets the library's settings to what they were. What the
/// host still holds of the server then (objects, connections, the server access lock) is reported as a failure at the
/// line where the newsroom was made. Models must have gone before that, and ServerModel::waitForServer must have told
/// that nothing of theirs still runs.
///
/// The newsroom is described as Newsroom::NewsroomText says. A text that names no user gets one: "host", password
/// "host". A text that is wrong is reported, with its line; what stood before that is there.
class StandIn
{
public:
    /// The sample newsroom.
    explicit StandIn(const Place &place = Place::here());
    /// A newsroom from a text in UTF-8.
    explicit StandIn(const char *text, const Place &place = Place::here());
    /// A newsroom from a text.
    explicit StandIn(const QString &text, const Place &place = Place::here());
    /// A newsroom that is there; null is reported.
    explicit StandIn(std::shared_ptr<Newsroom::Model> model, const Place &place = Place::here());
    ~StandIn();

    /// Makes the library's session anew and signs it on as the newsroom's first user, for tests of what comes after
    /// signing on. Null, and reported, when that is refused.
    QuireCOM *signOn(const Place &place = Place::here());

    /// The server: its calls, its faults, its events, how it behaves.
    Newsroom::Server &server() { return *m_server; }
    /// What is in the newsroom, to be looked at and changed behind the host's back.
    Newsroom::Model &model() { return *m_server->model(); }

    /// Which coming calls go wrong and how, as in
    /// `faults().failNext("IQueue2::GetList", Fault::hresult(E_FAIL))`, Fault::raise(E_FAIL), Fault::hang(5000).
    Newsroom::FaultPlan &faults() { return m_server->faults(); }

    /// Records calls from now on.
    void startCalls() { m_server->calls().start(); }
    /// The calls recorded so far, each as "IQueue2::GetList(0, 20)" with " = 0x8004040b" behind it when it failed.
    /// They are forgotten then; recording goes on.
    QStringList takeCalls() { return m_server->calls().takeTexts(); }

    /// How long the destructor waits, processing events, for what is still held to be given back: milliseconds,
    /// initially 5000. Negative: it does not look.
    void setLeftoverPatience(int milliseconds) { m_leftoverPatience = milliseconds; }

private:
    Q_DISABLE_COPY(StandIn)

    static std::shared_ptr<Newsroom::Model> build(const QString &text, const Place &place);
    static std::shared_ptr<Newsroom::Model> checked(std::shared_ptr<Newsroom::Model> model, const Place &place);
    void end();
    QString leftovers();

    const Place m_place;
    const Settings m_settings;
    const Platform::Apartment m_apartment;
    std::unique_ptr<Newsroom::Server> m_server;
    Newsroom::Registration m_registration;
    int m_leftoverPatience = 5000;
};

} // namespace TestKit
} // namespace Quire
