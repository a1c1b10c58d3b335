#pragma once

#include <memory>

#include <QString>

#include <quire/newsroom/model/Model.h>
#include <quire/newsroom/server/CallRecorder.h>
#include <quire/newsroom/server/Census.h>
#include <quire/newsroom/server/FaultPlan.h>
#include <quire/newsroom/server/Options.h>
#include <quire/newsroom/server/Registration.h>
#include <quire/orvex/Orvex.h>

namespace Newsroom {

class Delivery;
class ServerCore;

/// A newsroom behind the server's automation interfaces.
///
///     Newsroom::Server server(Newsroom::Model::fromText(text));
///     const Newsroom::Registration registration = server.registerClass();
///     // CoCreateInstance(__uuidof(Orvex::Signon), ...) now makes sign-on objects of this newsroom
///     server.calls().start();
///     server.faults().failNext("IQueue2::GetList", Newsroom::Fault::hresult(E_FAIL));
///
/// Any number of sign-on objects share the newsroom; several servers may also share one Model. The objects are
/// free-threaded: any thread may call them, and any thread may call the operations of this class.
///
/// Events go out from a thread of the server's own, one at a time, and no lock of the server is held meanwhile: a sink
/// may call whatever it likes. Unadvise waits for the event that runs in its sink, unless it is called from inside an
/// event; so who calls it must hold nothing that the sink waits for.
///
/// When the Server goes, the sessions end, the sinks are released and that thread stops, after the event that runs
/// unless the Server goes from inside it. Objects that clients still hold answer RPC_E_DISCONNECTED from then on.
class Server
{
public:
    /// Serves \a model, which must not be null.
    explicit Server(std::shared_ptr<Model> model);
    ~Server();

    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    /// The newsroom.
    const std::shared_ptr<Model> &model() const;

    // ---- ways in

    /// Puts this server behind the class identifier of Orvex::Signon for as long as the result lives. On Windows the
    /// calling thread must have entered an apartment.
    Registration registerClass();

    /// A class object of this server; each call makes one.
    IClassFactoryPtr classFactory();

    /// A new sign-on object, not signed on.
    Orvex::ISignon4Ptr createSignon();

    /// A new sign-on object, signed on; raises `_com_error` when that is refused.
    Orvex::ISignon4Ptr connect(const QString &user, const QString &password);

    // ---- what tests look at and break

    /// The record of calls, off until it is started.
    CallRecorder &calls();
    /// What is to go wrong; nothing at first.
    FaultPlan &faults();
    /// How the server behaves where servers differ.
    Options &options();

    /// What clients hold of this server. The result may outlive the server.
    std::shared_ptr<const Census> census() const;

    /// The number of the last search that was started, 0 before the first. They are numbered from 1.
    LONG lastSearchId() const;

    // ---- events

    /// Tells the sign-ons of a user (letter case ignored) that they are logged out, and ends their sessions. Answers
    /// how many there were.
    int triggerLogout(const QString &user);

    /// The same for everybody.
    int triggerLogout();

    /// The thread on which events go out: to hold them back, or to wait until all are delivered.
    Delivery &delivery();

    /// Waits until every event has gone out, generously; false when one still has not after that time.
    bool waitForEvents(int milliseconds = 10000);

private:
    template<class Wanted>
    int logOut(const Wanted &wanted);

    const std::shared_ptr<ServerCore> m_core;
};

} // namespace Newsroom
