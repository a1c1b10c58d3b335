#include <quire/newsroom/server/CallScope.h>

#include <new>

#include <quire/newsroom/server/ErrorInfo.h>
#include <quire/newsroom/server/ServerCore.h>
#include <quire/newsroom/server/Session.h>

namespace Newsroom {

namespace {

/// Raises the way that a raising proxy does: with the error information of the call.
[[noreturn]] void raise(HRESULT code)
{
    IErrorInfo *info = nullptr;
    if (GetErrorInfo(0, &info) != S_OK)
        info = nullptr;
    throw _com_error(code, info);
}

} // namespace

CallScope::CallScope(const std::shared_ptr<ServerCore> &core, const CallInterface &answering, const char *operation)
    : m_core(core)
    , m_interface(answering)
    , m_operation(operation)
    , m_recorded(core->calls().isOn())
{}

CallScope &CallScope::inTruth(VARIANT_BOOL value)
{
    if (m_recorded)
        m_arguments << CallArgument::truth(value);
    return *this;
}

CallScope &CallScope::inSecret()
{
    if (m_recorded)
        m_arguments << QStringLiteral("***");
    return *this;
}

CallScope &CallScope::outList(VARIANT *address)
{
    return add(OutValue::ofList(address), address);
}

CallScope &CallScope::within(const std::shared_ptr<Session> &session)
{
    m_needsSession = true;
    m_session = session.get();
    return *this;
}

CallScope &CallScope::add(const OutValue &out, const void *address)
{
    if (!address) {
        m_nullOut = true;
        return *this;
    }
    out.setEmpty();
    m_outs.at(m_outCount) = out;
    ++m_outCount;
    return *this;
}

HRESULT CallScope::perform(Invoke invoke, void *body)
{
    const quint64 entry = m_recorded ? m_core->calls().begin(m_interface.name, m_operation, m_arguments) : 0;
    const Fault fault = m_core->faults().next(m_interface.name, m_operation);
    m_core->faults().delay();
    if (fault.kind() == Fault::Kind::Hang)
        m_core->faults().hang(fault.milliseconds());

    const HRESULT result = answer(fault, invoke, body);
    if (FAILED(result))
        ErrorInfo::set(result, m_interface.iid);
    if (entry)
        m_core->calls().end(entry, result);
    if (fault.kind() == Fault::Kind::Raise)
        raise(fault.code());
    if (fault.kind() == Fault::Kind::OutOfMemory)
        throw std::bad_alloc();
    return result;
}

HRESULT CallScope::answer(const Fault &fault, Invoke invoke, void *body) const noexcept
try {
    if (m_nullOut)
        return E_POINTER;
    switch (fault.kind()) {
    case Fault::Kind::Result:
    case Fault::Kind::Raise:
    case Fault::Kind::OutOfMemory:
        return fault.code();
    case Fault::Kind::NullResult:
    case Fault::Kind::WrongType:
    case Fault::Kind::WrongElements:
    case Fault::Kind::Strangers:
    case Fault::Kind::NullElements:
        spoil(fault.kind());
        return S_OK;
    case Fault::Kind::None:
    case Fault::Kind::Hang:
        break;
    }
    const HRESULT refusal = check();
    return FAILED(refusal) ? refusal : invoke(body);
} catch (const _com_error &error) {
    return error.Error();
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
} catch (...) {
    return E_UNEXPECTED;
}

HRESULT CallScope::check() const
{
    if (!m_core->isOpen())
        return RPC_E_DISCONNECTED;
    if (m_needsSession && !(m_session && m_session->isOpen()))
        return static_cast<HRESULT>(Refusal::NotSignedOn);
    return S_OK;
}

void CallScope::spoil(Fault::Kind kind) const
{
    for (std::size_t i = 0; i < m_outCount; ++i)
        m_outs.at(i).setWrong(kind, m_core);
}

} // namespace Newsroom
