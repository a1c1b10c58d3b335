#include <quire/platform/native/ComString.h>

#include <quire/platform/Bstr.h>

#include <QByteArray>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

BSTR required(BSTR string)
{
    if (!string)
        _com_issue_error(E_OUTOFMEMORY);
    return string;
}

BSTR copyOf(BSTR string)
{
    if (!string)
        return nullptr;
    return required(SysAllocStringByteLen(reinterpret_cast<LPCSTR>(string), SysStringByteLen(string)));
}

BSTR copyOf(const OLECHAR *text)
{
    return text ? required(SysAllocString(text)) : nullptr;
}

} // namespace

namespace _com_util {

BSTR ConvertStringToBSTR(const char *text)
{
    return text ? Platform::toBstr(QString::fromLocal8Bit(text)) : nullptr;
}

char *ConvertBSTRToString(BSTR string)
{
    if (!string)
        return nullptr;
    const QByteArray bytes = Platform::toQString(string).toLocal8Bit();
    char *text = new char[static_cast<std::size_t>(bytes.size()) + 1];
    std::memcpy(text, bytes.constData(), static_cast<std::size_t>(bytes.size()) + 1);
    return text;
}

} // namespace _com_util

/// The text with its 8-bit form, which is made when somebody asks for it.
struct _bstr_t::Data
{
    explicit Data(BSTR owned)
        : wide(owned)
    {}
    Data(const Data &) = delete;
    Data &operator=(const Data &) = delete;
    ~Data()
    {
        SysFreeString(wide);
        delete[] narrow;
    }

    BSTR wide;
    char *narrow = nullptr;
};

_bstr_t::_bstr_t(const char *text)
    : _bstr_t(_com_util::ConvertStringToBSTR(text), false)
{}

_bstr_t::_bstr_t(const OLECHAR *text)
    : _bstr_t(copyOf(text), false)
{}

_bstr_t::_bstr_t(BSTR string, bool copy)
{
    Attach(copy ? copyOf(string) : string);
}

_bstr_t &_bstr_t::operator=(const char *text)
{
    operator=(_bstr_t(text));
    return *this;
}

_bstr_t &_bstr_t::operator=(const OLECHAR *text)
{
    operator=(_bstr_t(text));
    return *this;
}

_bstr_t &_bstr_t::operator+=(const _bstr_t &other)
{
    return operator=(*this + other);
}

_bstr_t _bstr_t::operator+(const _bstr_t &other) const
{
    BSTR joined = required(SysAllocStringLen(nullptr, length() + other.length()));
    std::copy_n(string(), length(), joined);
    std::copy_n(other.string(), other.length(), joined + length());
    return _bstr_t(joined, false);
}

_bstr_t::operator char *() const
{
    if (!string())
        return nullptr;
    if (!m_data->narrow)
        m_data->narrow = _com_util::ConvertBSTRToString(string());
    return m_data->narrow;
}

_bstr_t::operator const char *() const
{
    return operator char *();
}

BSTR _bstr_t::copy(bool copy) const
{
    return copy ? copyOf(string()) : string();
}

void _bstr_t::Assign(BSTR string)
{
    Attach(copyOf(string));
}

BSTR &_bstr_t::GetBSTR()
{
    if (!m_data)
        Attach(nullptr);
    return m_data->wide;
}

BSTR *_bstr_t::GetAddress()
{
    Attach(nullptr);
    return &m_data->wide;
}

void _bstr_t::Attach(BSTR string)
{
    try {
        m_data = std::make_shared<Data>(string);
    } catch (const std::bad_alloc &) {
        SysFreeString(string);
        _com_issue_error(E_OUTOFMEMORY);
    }
}

BSTR _bstr_t::Detach()
{
    if (!m_data || m_data.use_count() != 1)
        _com_issue_error(E_POINTER);
    BSTR string = std::exchange(m_data->wide, nullptr);
    m_data.reset();
    return string;
}

BSTR _bstr_t::string() const noexcept
{
    return m_data ? m_data->wide : nullptr;
}

int _bstr_t::compare(const _bstr_t &other) const noexcept
{
    if (!string() || !other.string())
        return (string() ? 1 : 0) - (other.string() ? 1 : 0);
    return std::u16string_view(string(), length()).compare(std::u16string_view(other.string(), other.length()));
}

_bstr_t operator+(const char *left, const _bstr_t &right)
{
    return _bstr_t(left) + right;
}

_bstr_t operator+(const OLECHAR *left, const _bstr_t &right)
{
    return _bstr_t(left) + right;
}
