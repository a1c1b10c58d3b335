#pragma once

#include <memory>

#include <quire/newsroom/server/Fault.h>
#include <quire/orvex/Orvex.h>

namespace Newsroom {

class ServerCore;

/// The address of one out-value of a call, whatever its type, so that it can be emptied before the call and be given a
/// wrong result by an injected fault.
class OutValue
{
public:
    OutValue() = default;

    /// A number, a text, an array, an interface pointer, a VARIANT that holds one object ...
    template<class Value>
    explicit OutValue(Value *address)
        : m_address(address)
        , m_empty([](void *value) { empty(*static_cast<Value *>(value)); })
        , m_spoil([](void *value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core) {
            spoil(*static_cast<Value *>(value), kind, core);
        })
    {}

    /// A VARIANT that holds an array of objects.
    static OutValue ofList(VARIANT *address);

    bool isNull() const { return !m_address; }

    /// Sets the value to null, empty or 0. What it held is not freed: a caller's out-value is not initialised.
    void setEmpty() const { m_empty(m_address); }

    /// Gives the value the result of a fault that answers S_OK. It was emptied before.
    void setWrong(Fault::Kind kind, const std::shared_ptr<ServerCore> &core) const { m_spoil(m_address, kind, core); }

private:
    template<class Number>
    static void empty(Number &value)
    {
        value = Number();
    }
    static void empty(VARIANT &value) { VariantInit(&value); }

    template<class Value>
    static void spoil(Value &, Fault::Kind, const std::shared_ptr<ServerCore> &)
    {}
    static void spoil(VARIANT &value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core);
    static void spoil(IDispatch *&value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core);
    static void spoil(SAFEARRAY *&value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core);
    static void spoilList(VARIANT &value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core);

    void *m_address = nullptr;
    void (*m_empty)(void *) = nullptr;
    void (*m_spoil)(void *, Fault::Kind, const std::shared_ptr<ServerCore> &) = nullptr;
};

} // namespace Newsroom
