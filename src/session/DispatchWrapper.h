#pragma once

/// \file
/// One cached handle of a server object.

#include <quire/platform/Automation.h>
#include <quire/platform/Export.h>

namespace Quire {

/// Holds one counted reference to a server object: what the tables of DispatchCache are made of.
///
/// A plain value. Copying adds a reference, destruction releases it; both are calls to the server's object, so neither
/// may happen while a mutex is held that the object could need.
class QUIRE_EXPORT DispatchWrapper
{
public:
    /// Holds nothing.
    DispatchWrapper();
    /// Holds \a handle with a reference of its own; an empty handle is held as such.
    explicit DispatchWrapper(const IDispatchPtr &handle);
    /// Holds the same object with a reference of its own.
    DispatchWrapper(const DispatchWrapper &other);
    /// Releases its own and holds the other's object.
    DispatchWrapper &operator=(const DispatchWrapper &other);
    virtual ~DispatchWrapper();

    /// The handle; the caller's copy is a reference of its own.
    const IDispatchPtr &Handle() const { return m_handle; }

private:
    IDispatchPtr m_handle;
};

} // namespace Quire
