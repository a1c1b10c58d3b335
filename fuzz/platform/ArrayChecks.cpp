#include <vector>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/System.h>

#include "PlatformChecks.h"
#include "fuzz/Input.h"

namespace PlatformFuzz {

namespace {

constexpr ULONG most = 12;

/// An array of texts, and the list that it has to be.
class Texts
{
public:
    explicit Texts(Fuzz::Input &input)
        : m_lower(input.below(2) == 0 ? 0 : input.number() / 2)
        , m_list(input.byte() % most)
        , m_array(SafeArrayCreateVector(VT_BSTR, m_lower, static_cast<ULONG>(m_list.size())))
    {}

    /// One call, which the input chooses.
    QString step(Fuzz::Input &input)
    {
        switch (input.below(5)) {
        case 0:
            return put(index(input), input.text());
        case 1:
            return get(index(input));
        case 2:
            return resize(input.byte() % most);
        case 3:
            return copy();
        default:
            return whileLocked(index(input));
        }
    }

    QString difference(SAFEARRAY *array) const
    {
        const Platform::SafeArrayAccess access(array);
        if (access.size() != m_list.size())
            return QStringLiteral("%1 elements instead of %2").arg(access.size()).arg(m_list.size());
        const BSTR *const texts = access.as<BSTR>();
        for (std::size_t i = 0; i < m_list.size(); ++i) {
            if (Platform::toQString(texts[i]) != m_list[i])
                return QStringLiteral("element %1 is another").arg(i);
        }
        return QString();
    }

    SAFEARRAY *array() const { return m_array.get(); }

private:
    LONG index(Fuzz::Input &input) const { return m_lower - 1 + input.byte() % static_cast<int>(most + 2); }

    /// Null when the index is outside.
    QString *at(LONG index)
    {
        const auto position = static_cast<std::size_t>(index - m_lower);
        return index >= m_lower && position < m_list.size() ? &m_list[position] : nullptr;
    }

    QString put(LONG index, const QString &text)
    {
        const Platform::Bstr string(text);
        const HRESULT result = SafeArrayPutElement(m_array.get(), &index, string.get());
        QString *const place = at(index);
        if (SUCCEEDED(result) != bool(place))
            return QStringLiteral("put outside, or not inside");
        if (place)
            *place = text;
        return QString();
    }

    QString get(LONG index)
    {
        Platform::Bstr string;
        const HRESULT result = SafeArrayGetElement(m_array.get(), &index, string.out());
        const QString *const place = at(index);
        if (SUCCEEDED(result) != bool(place) || (place && string.toString() != *place))
            return QStringLiteral("got from outside, or another text");
        return QString();
    }

    QString resize(ULONG size)
    {
        SAFEARRAYBOUND bound{size, m_lower};
        if (FAILED(SafeArrayRedim(m_array.get(), &bound)))
            return QStringLiteral("cannot be resized");
        m_list.resize(size);
        return QString();
    }

    QString copy()
    {
        Platform::SafeArray twin;
        if (FAILED(SafeArrayCopy(m_array.get(), twin.out())))
            return QStringLiteral("cannot be copied");
        std::swap(twin, m_array); // the copy lives on
        return difference(twin.get());
    }

    QString whileLocked(LONG index)
    {
        SafeArrayLock(m_array.get());
        void *place = nullptr;
        const HRESULT result = SafeArrayPtrOfIndex(m_array.get(), &index, &place);
        const QString *const text = at(index);
        const bool isRight =
            SUCCEEDED(result) == bool(text) && (!text || Platform::toQString(*static_cast<BSTR *>(place)) == *text);
        SAFEARRAYBOUND bound{1, 0};
        const bool kept = FAILED(SafeArrayRedim(m_array.get(), &bound)) && FAILED(SafeArrayDestroy(m_array.get()));
        SafeArrayUnlock(m_array.get());
        if (!isRight)
            return QStringLiteral("another place");
        return kept ? QString() : QStringLiteral("a locked array was resized or destroyed");
    }

    const LONG m_lower;
    std::vector<QString> m_list;
    Platform::SafeArray m_array;
};

} // namespace

QString checkArrays(const QByteArray &bytes)
{
    const auto strings = Platform::liveBstrs();
    const auto arrays = Platform::liveArrays();
    {
        Fuzz::Input input(bytes);
        Texts texts(input);
        while (!input.atEnd()) {
            QString wrong = texts.step(input);
            if (wrong.isEmpty())
                wrong = texts.difference(texts.array());
            if (!wrong.isEmpty())
                return wrong;
        }
    }
    const bool left = Platform::liveBstrs() != strings || Platform::liveArrays() != arrays;
    return left ? QStringLiteral("something is left") : QString();
}

} // namespace PlatformFuzz
