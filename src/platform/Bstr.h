#pragma once

/// \file
/// BSTR and QString.

#include <quire/platform/Automation.h>

#include <QString>
#include <QStringView>

#include <utility>

namespace Platform {

/// The text of a BSTR, which stays the caller's; embedded NULs are kept. A null BSTR gives a null QString, an empty one
/// an empty QString that is not null. Half a character at the end (an odd byte length) is left out.
inline QString toQString(BSTR string)
{
    if (!string)
        return QString();
    return QString(reinterpret_cast<const QChar *>(string), static_cast<int>(SysStringLen(string)));
}

/// A new BSTR with the text, embedded NULs included; the caller owns it. Null and empty texts give an empty BSTR, never
/// a null one. Raises `_com_error` E_OUTOFMEMORY.
inline BSTR toBstr(const QString &text)
{
    BSTR string = SysAllocStringLen(reinterpret_cast<const OLECHAR *>(text.utf16()), static_cast<UINT>(text.size()));
    if (!string)
        _com_issue_error(E_OUTOFMEMORY);
    return string;
}

/// The one owner of a BSTR: an argument while a server call runs, or the text a server hands out. One thread at a time.
class Bstr
{
public:
    /// Owns nothing.
    Bstr() noexcept = default;
    /// Owns a copy of the text, as toBstr makes it. Raises `_com_error` E_OUTOFMEMORY.
    explicit Bstr(const QString &text)
        : m_string(toBstr(text))
    {}
    /// Takes over what \a other owns, which owns nothing afterwards.
    Bstr(Bstr &&other) noexcept
        : m_string(other.release())
    {}
    /// Frees what is owned and takes over what \a other owns.
    Bstr &operator=(Bstr &&other) noexcept
    {
        reset(other.release());
        return *this;
    }
    Bstr(const Bstr &) = delete;
    Bstr &operator=(const Bstr &) = delete;
    ~Bstr() { SysFreeString(m_string); }

    /// The BSTR, still owned here; may be null.
    BSTR get() const noexcept { return m_string; }
    /// The text without a copy of it, good for as long as this owner keeps the BSTR; null for a null BSTR.
    QStringView view() const
    {
        return m_string ? QStringView(m_string, static_cast<qsizetype>(SysStringLen(m_string))) : QStringView();
    }
    /// Frees what is owned and hands out the place, for an out-parameter.
    BSTR *out() noexcept
    {
        reset();
        return &m_string;
    }
    /// Hands the BSTR over to the caller and owns nothing afterwards.
    BSTR release() noexcept { return std::exchange(m_string, nullptr); }
    /// Frees what is owned and takes `string` over. Giving it its own BSTR changes nothing.
    void reset(BSTR string = nullptr) noexcept
    {
        if (string != m_string)
            SysFreeString(std::exchange(m_string, string));
    }

    /// No BSTR at all; an empty text is one.
    bool isNull() const noexcept { return !m_string; }
    /// There is a BSTR.
    explicit operator bool() const noexcept { return m_string != nullptr; }

    /// The text; see toQString.
    QString toString() const { return toQString(m_string); }

private:
    BSTR m_string = nullptr;
};

} // namespace Platform
