#pragma once

#include <array>

#include <QStringList>

#include <quire/newsroom/server/CallArgument.h>
#include <quire/newsroom/server/OutValue.h>

namespace Newsroom {

class ServerCore;
class Session;

/// What an object answers to, for the call record and for error information.
struct CallInterface
{
    const char *name;
    const IID &iid;
};

/// One call of one operation of a server's object. Every method makes one, names its arguments and lets it run the
/// method's body:
///
///     return CallScope(core(), Interface, "GetList").in(first).in(count).outList(list).run([&] { ... });
///
/// It empties the out-values; records the call; lets the fault plan have its way; refuses when an out-value has no
/// address, when the server is gone or the session over; turns the exceptions of the body into codes; and sets the
/// error information of a failure. The body sets its out-values last, when nothing can fail any more.
class CallScope
{
public:
    CallScope(const std::shared_ptr<ServerCore> &core, const CallInterface &answering, const char *operation);

    /// An in-argument, for the call record.
    template<class Value>
    CallScope &in(const Value &value)
    {
        if (m_recorded)
            m_arguments << CallArgument::text(value);
        return *this;
    }
    CallScope &inTruth(VARIANT_BOOL value);

    /// An in-argument that the call record must not show.
    CallScope &inSecret();

    /// An out-value.
    template<class Value>
    CallScope &out(Value *address)
    {
        return add(OutValue(address), address);
    }

    /// An out-value that is a list of objects.
    CallScope &outList(VARIANT *address);

    /// The call is refused unless this session, which may be null, goes on.
    CallScope &within(const std::shared_ptr<Session> &session);

    /// Runs the body, a callable that answers an HRESULT. Throws `_com_error` or `std::bad_alloc` when a fault says so,
    /// nothing else.
    template<class Body>
    HRESULT run(Body &&body)
    {
        return perform([](void *callable) -> HRESULT { return (*static_cast<Body *>(callable))(); }, &body);
    }

private:
    using Invoke = HRESULT (*)(void *);

    CallScope &add(const OutValue &out, const void *address);
    HRESULT perform(Invoke invoke, void *body);
    HRESULT answer(const Fault &fault, Invoke invoke, void *body) const noexcept;
    HRESULT check() const;
    void spoil(Fault::Kind kind) const;

    const std::shared_ptr<ServerCore> m_core;
    const CallInterface &m_interface;
    const char *const m_operation;
    const bool m_recorded;
    QStringList m_arguments;
    std::array<OutValue, 6> m_outs;
    std::size_t m_outCount = 0;
    bool m_nullOut = false;
    bool m_needsSession = false;
    const Session *m_session = nullptr;
};

} // namespace Newsroom
