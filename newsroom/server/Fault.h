#pragma once

#include <quire/platform/Automation.h>

namespace Newsroom {

/// One way for a call to go wrong; a small value, made by one of the static operations and given to a FaultPlan.
class Fault
{
public:
    /// The ways, each made by the operation of its name.
    enum class Kind {
        None,
        Result,
        Raise,
        OutOfMemory,
        Hang,
        NullResult,
        WrongType,
        WrongElements,
        Strangers,
        NullElements,
    };

    /// No fault: the call is made as usual.
    Fault() = default;

    /// The call does nothing and answers `code`, with error information; its out-values are empty.
    static Fault hresult(HRESULT code) { return {Kind::Result, code, 0}; }

    /// The call does nothing and throws `_com_error` with `code` out of the method, as a raising proxy does.
    static Fault raise(HRESULT code) { return {Kind::Raise, code, 0}; }

    /// The call does nothing and throws `std::bad_alloc` out of the method, as if the client's memory ran out there.
    static Fault outOfMemory() { return {Kind::OutOfMemory, E_OUTOFMEMORY, 0}; }

    /// The call hangs for that time and then goes on as usual. FaultPlan::clear() and the end of the server wake it.
    static Fault hang(int milliseconds) { return {Kind::Hang, S_OK, milliseconds}; }

    /// The call does nothing and answers S_OK; its out-values are null, empty or 0.
    static Fault nullResult() { return {Kind::NullResult, S_OK, 0}; }

    /// The call does nothing and answers S_OK with a result of a type that nobody expects: a VARIANT holds a VT_I4, an
    /// object has no interface but IUnknown and IDispatch, an array has VT_I4 elements. Other out-values are empty.
    static Fault wrongType() { return {Kind::WrongType, S_OK, 0}; }

    /// The call does nothing and answers S_OK with an array of VT_I4 elements; out-values of no array are empty.
    static Fault wrongElements() { return {Kind::WrongElements, S_OK, 0}; }

    /// The call does nothing and answers S_OK with an object that has no interface but IUnknown and IDispatch; a list
    /// holds one of them.
    static Fault strangers() { return {Kind::Strangers, S_OK, 0}; }

    /// The call does nothing and answers S_OK; a VARIANT holds a null object, a list holds one.
    static Fault nullElements() { return {Kind::NullElements, S_OK, 0}; }

    /// Which way.
    Kind kind() const { return m_kind; }
    /// The code; S_OK where there is none.
    HRESULT code() const { return m_code; }
    /// How long a call hangs; else 0.
    int milliseconds() const { return m_milliseconds; }

private:
    Fault(Kind kind, HRESULT code, int milliseconds)
        : m_kind(kind)
        , m_code(code)
        , m_milliseconds(milliseconds)
    {}

    Kind m_kind = Kind::None;
    HRESULT m_code = S_OK;
    int m_milliseconds = 0;
};

} // namespace Newsroom
