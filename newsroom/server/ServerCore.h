#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include <quire/newsroom/model/Model.h>
#include <quire/newsroom/server/CallRecorder.h>
#include <quire/newsroom/server/Census.h>
#include <quire/newsroom/server/Delivery.h>
#include <quire/newsroom/server/FaultPlan.h>
#include <quire/newsroom/server/Options.h>

namespace Newsroom {

class Connections;
class Session;

/// What the objects of one server share. It outlives the Server for as long as a client still holds an object; after
/// close() the objects only answer that the server is gone.
///
/// Any thread may call any operation.
class ServerCore final : public Observer, public std::enable_shared_from_this<ServerCore>
{
public:
    static std::shared_ptr<ServerCore> make(std::shared_ptr<Model> model);

    explicit ServerCore(std::shared_ptr<Model> model);
    ~ServerCore() override;
    ServerCore(const ServerCore &) = delete;
    ServerCore &operator=(const ServerCore &) = delete;

    Model &model() { return *m_model; }
    const std::shared_ptr<Model> &sharedModel() const { return m_model; }
    CallRecorder &calls() { return m_calls; }
    FaultPlan &faults() { return m_faults; }
    Census &census() { return *m_census; }
    const std::shared_ptr<Census> &sharedCensus() const { return m_census; }
    Delivery &delivery() { return m_delivery; }
    Options &options() { return m_options; }

    bool isOpen() const { return m_open; }

    /// Ends all sessions, lets all sinks go and ends the delivery thread; nothing when done already.
    void close();

    /// What a planned fault makes of a query for an interface of an object of that name; S_OK when nothing. Throws
    /// `_com_error` or `std::bad_alloc` when the fault says so.
    HRESULT queryFault(const char *interfaceName);

    /// A text as it is handed out. Throws when there is no memory for it.
    BSTR toText(const QString &text) const;

    /// A number for a new search, above 0.
    LONG nextSearchId() { return ++m_lastSearch; }
    /// The last such number, 0 before the first.
    LONG lastSearchId() const { return m_lastSearch; }

    // ---- who is there; held weakly

    void add(const std::shared_ptr<Connections> &connections);
    void add(const std::shared_ptr<Session> &session);

    /// The sessions that go on.
    std::vector<std::shared_ptr<Session>> sessions();

    /// Tells every session that watches the queue.
    void changed(const Change &change) override;

private:
    const std::shared_ptr<Model> m_model;
    CallRecorder m_calls;
    FaultPlan m_faults;
    const std::shared_ptr<Census> m_census;
    Options m_options;
    std::atomic<bool> m_open{true};
    std::atomic<LONG> m_lastSearch{0};

    std::mutex m_mutex; // guards what follows; a leaf
    std::vector<std::weak_ptr<Connections>> m_connections;
    std::vector<std::weak_ptr<Session>> m_sessions;

    Delivery m_delivery; // last: its thread ends before the rest goes
};

} // namespace Newsroom
