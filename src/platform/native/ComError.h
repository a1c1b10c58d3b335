#pragma once

/// \file
/// _com_error, the exception that stands for a failed HRESULT, and what raises it.

#include <quire/platform/native/ComString.h>
#include <quire/platform/native/ErrorInfo.h>
#include <quire/platform/native/System.h>

/// A failed HRESULT with the error information that came with it, if any. Copies share the information.
class QUIRE_PLATFORM_EXPORT _com_error
{
public:
    /// Takes the reference on `info` over unless `addRef` is true.
    _com_error(HRESULT result, IErrorInfo *info = nullptr, bool addRef = false) noexcept;
    _com_error(const _com_error &other) noexcept;
    virtual ~_com_error() noexcept;
    _com_error &operator=(const _com_error &other) noexcept;

    HRESULT Error() const noexcept { return m_result; }
    /// The number of an IDispatch error, 0 for any other.
    WORD WCode() const noexcept { return HRESULTToWCode(m_result); }
    /// The information with a reference for the caller; null when there is none.
    IErrorInfo *ErrorInfo() const noexcept;

    _bstr_t Description() const;
    _bstr_t HelpFile() const;
    _bstr_t Source() const;
    DWORD HelpContext() const noexcept;
    GUID GUID_() const noexcept;

    /// The system's message without its line break, or "IDispatch error #N", or "Unknown error 0xX". Owned by this
    /// object; null only without memory.
    const TCHAR *ErrorMessage() const noexcept;

    static HRESULT WCodeToHRESULT(WORD code) noexcept;
    static WORD HRESULTToWCode(HRESULT result) noexcept;

private:
    HRESULT m_result;
    IErrorInfo *m_info;
    mutable TCHAR *m_message;
};

/// Throws `_com_error`, which takes the reference on `info` over.
[[noreturn]] QUIRE_PLATFORM_EXPORT void _com_raise_error(HRESULT result, IErrorInfo *info = nullptr);

/// Raises with the thread's error information when `object` (may be null) supports it for that interface, else without.
[[noreturn]] QUIRE_PLATFORM_EXPORT void _com_issue_errorex(HRESULT result, IUnknown *object, REFIID riid);
