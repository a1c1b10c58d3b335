#pragma once

/// \file
/// Texts that should not stay in memory.

#include <QString>

#include <cstddef>

#include <quire/platform/Bstr.h>

namespace Platform {

/// Overwrites memory that held a secret with zeros, also when nobody is going to read it again.
inline void overwrite(void *memory, std::size_t size) noexcept
{
    volatile unsigned char *const bytes = static_cast<unsigned char *>(memory);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = 0;
}

/// A copy of \a secret that shares no memory with it, so that forget() can overwrite it.
inline QString copyOfSecret(const QString &secret)
{
    return secret.isNull() ? QString() : QString(secret.constData(), secret.size());
}

/// Makes \a secret a null text. Its characters are overwritten, unless another QString has them, too: then they are
/// somebody else's to forget.
inline void forget(QString &secret)
{
    if (secret.isDetached())
        overwrite(secret.data(), static_cast<std::size_t>(secret.size()) * sizeof(QChar));
    secret = QString();
}

/// Owns a BSTR as Bstr does, and overwrites the text before it is freed: a password while a server call runs. The
/// system keeps freed BSTRs for a while, with what is in them.
class SecretBstr
{
public:
    /// Owns a copy of the text. Raises `_com_error` E_OUTOFMEMORY.
    explicit SecretBstr(const QString &secret)
        : m_text(secret)
    {}
    SecretBstr(const SecretBstr &) = delete;
    SecretBstr &operator=(const SecretBstr &) = delete;
    ~SecretBstr() { clear(); }

    /// The BSTR, still owned here.
    BSTR get() const noexcept { return m_text.get(); }
    /// Overwrites the text, whose length stays.
    void clear() noexcept { overwrite(m_text.get(), SysStringByteLen(m_text.get())); }

private:
    const Bstr m_text;
};

} // namespace Platform
