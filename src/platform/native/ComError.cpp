#include <quire/platform/native/ComError.h>

#include <cstdio>
#include <iterator>
#include <string>

namespace {

constexpr HRESULT firstCode = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x200);
constexpr HRESULT lastCode = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF + 1, 0) - 1;

/// Memory from LocalAlloc; null without memory.
TCHAR *messageWithoutEntry(HRESULT result, WORD code) noexcept
{
    char text[32];
    if (code != 0)
        std::snprintf(text, sizeof text, "IDispatch error #%d", static_cast<int>(code));
    else
        std::snprintf(text, sizeof text, "Unknown error 0x%0X", static_cast<unsigned>(result));
    auto *message = static_cast<TCHAR *>(LocalAlloc(LMEM_ZEROINIT, std::size(text) * sizeof(TCHAR)));
    for (std::size_t i = 0; message && text[i] != 0; ++i)
        message[i] = static_cast<TCHAR>(text[i]);
    return message;
}

} // namespace

_com_error::_com_error(HRESULT result, IErrorInfo *info, bool addRef) noexcept
    : m_result(result)
    , m_info(info)
    , m_message(nullptr)
{
    if (m_info && addRef)
        m_info->AddRef();
}

_com_error::_com_error(const _com_error &other) noexcept
    : _com_error(other.m_result, other.m_info, true)
{}

_com_error::~_com_error() noexcept
{
    if (m_info)
        m_info->Release();
    LocalFree(m_message);
}

_com_error &_com_error::operator=(const _com_error &other) noexcept
{
    if (this == &other)
        return *this;
    IErrorInfo *const old = m_info;
    m_result = other.m_result;
    m_info = other.ErrorInfo();
    m_message = static_cast<TCHAR *>(LocalFree(m_message));
    if (old)
        old->Release();
    return *this;
}

IErrorInfo *_com_error::ErrorInfo() const noexcept
{
    if (m_info)
        m_info->AddRef();
    return m_info;
}

namespace {

using TextGetter = HRESULT (STDMETHODCALLTYPE IErrorInfo::*)(BSTR *);

_bstr_t textOf(IErrorInfo *info, TextGetter getter)
{
    BSTR text = nullptr;
    if (info)
        (info->*getter)(&text);
    return _bstr_t(text, false);
}

} // namespace

_bstr_t _com_error::Description() const
{
    return textOf(m_info, &IErrorInfo::GetDescription);
}

_bstr_t _com_error::HelpFile() const
{
    return textOf(m_info, &IErrorInfo::GetHelpFile);
}

_bstr_t _com_error::Source() const
{
    return textOf(m_info, &IErrorInfo::GetSource);
}

DWORD _com_error::HelpContext() const noexcept
{
    DWORD context = 0;
    if (m_info)
        m_info->GetHelpContext(&context);
    return context;
}

GUID _com_error::GUID_() const noexcept
{
    GUID guid = GUID_NULL;
    if (m_info)
        m_info->GetGUID(&guid);
    return guid;
}

const TCHAR *_com_error::ErrorMessage() const noexcept
{
    if (m_message)
        return m_message;
    constexpr DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length = FormatMessageW(flags, nullptr, static_cast<DWORD>(m_result), 0, reinterpret_cast<LPWSTR>(&m_message),
                                  0, nullptr);
    if (length == 0) {
        m_message = messageWithoutEntry(m_result, WCode());
        return m_message;
    }
    while (length > 0 && (m_message[length - 1] == u'\n' || m_message[length - 1] == u'\r'))
        m_message[--length] = 0;
    return m_message;
}

HRESULT _com_error::WCodeToHRESULT(WORD code) noexcept
{
    return code >= 0xFE00 ? lastCode : firstCode + code;
}

WORD _com_error::HRESULTToWCode(HRESULT result) noexcept
{
    return result >= firstCode && result <= lastCode ? static_cast<WORD>(result - firstCode) : WORD(0);
}

void _com_raise_error(HRESULT result, IErrorInfo *info)
{
    throw _com_error(result, info);
}

void _com_issue_error(HRESULT result)
{
    _com_raise_error(result, nullptr);
}

void _com_issue_errorex(HRESULT result, IUnknown *object, REFIID riid)
{
    IErrorInfo *info = nullptr;
    ISupportErrorInfo *support = nullptr;
    if (object && SUCCEEDED(object->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void **>(&support)))) {
        const bool supported = support->InterfaceSupportsErrorInfo(riid) == S_OK;
        support->Release();
        if (!supported || GetErrorInfo(0, &info) != S_OK)
            info = nullptr;
    }
    _com_raise_error(result, info);
}
