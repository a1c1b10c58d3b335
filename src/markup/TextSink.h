#pragma once

/// \file
/// Appends to a QString at the speed of a plain buffer.

#include <algorithm>
#include <climits>
#include <cstring>

#include <QString>

namespace XML {

/// The greatest length of a QString: its memory, header and closing null included, is counted in an int.
constexpr int MaxTextLength = (INT_MAX - int(sizeof(QStringData)) - int(sizeof(QChar))) / int(sizeof(QChar));

/// Appends pieces of text to a QString, which has its true length only after flush() or once the sink is gone.
///
/// A piece that does not fit below the limit is left out whole, and so is every later one.
class TextSink
{
public:
    /// Appends to \a out, which must outlive the sink, up to a length of \a limit.
    explicit TextSink(QString &out, int limit = MaxTextLength)
        : m_Out(out)
        , m_Limit(limit)
    {
        resume();
    }

    ~TextSink() { flush(); }

    TextSink(const TextSink &) = delete;
    TextSink &operator=(const TextSink &) = delete;

    /// Appends \a length characters.
    void put(const QChar *text, int length)
    {
        if (length <= 0 || (length > m_Room && !grow(length)))
            return;
        std::memcpy(m_End, text, std::size_t(length) * sizeof(QChar));
        m_End += length;
        m_Room -= length;
    }

    void put(const QString &text) { put(text.constData(), text.size()); }

    void put(QChar c) { put(&c, 1); }

    /// Appends a literal.
    template<std::size_t N>
    void put(const char16_t (&literal)[N])
    {
        put(reinterpret_cast<const QChar *>(literal), int(N - 1));
    }

    /// Gives the string its true length, so that others may append to it until resume().
    void flush()
    {
        if (m_Begin)
            m_Out.resize(int(m_End - m_Begin));
        m_Begin = nullptr;
    }

    /// Goes on at the end of the string, whatever has happened to it since flush().
    void resume()
    {
        m_Begin = m_End = nullptr;
        m_Room = 0;
    }

    /// The string that is appended to.
    QString &text() { return m_Out; }

    /// Whether a piece has been left out.
    bool isFull() const { return m_Full; }

private:
    bool grow(int length)
    {
        const int used = m_Begin ? int(m_End - m_Begin) : m_Out.size();
        if (m_Full || length > m_Limit - used) {
            m_Full = true;
            m_Room = 0;
            return false;
        }
        const int needed = used + length;
        const int wanted = used > m_Limit / 2 ? m_Limit : std::max({needed, used * 2, m_Out.capacity(), SmallText});
        const int size = std::max(needed, std::min(wanted, m_Limit));
        m_Out.resize(size);
        m_Begin = m_Out.data();
        m_End = m_Begin + used;
        m_Room = size - used;
        return true;
    }

    static constexpr int SmallText = 120;

    QString &m_Out;
    int m_Limit;
    QChar *m_Begin = nullptr; // Null while the string has its true length.
    QChar *m_End = nullptr;
    int m_Room = 0;
    bool m_Full = false;
};

} // namespace XML
