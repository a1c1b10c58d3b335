#include "StartTagReader.h"

#include <algorithm>

#include <quire/markup/NamedTag.h>

namespace XML {

namespace {

/// Goes through the attributes of a start tag.
class AttributeScanner
{
public:
    AttributeScanner(const QChar *begin, const QChar *end)
        : m_At(begin)
        , m_End(end)
    {}

    /// Reads the next key and its value; a value is null where the tag gives none. False when the reading is over.
    bool next(QStringView &key, QStringView &value)
    {
        m_At = std::find_if_not(m_At, m_End, isSpace);
        key = takeUntil([](QChar c) { return c == QLatin1Char('=') || isSpace(c); });
        value = QStringView();
        if (key.isEmpty())
            return false;
        if (m_At == m_End || *m_At != QLatin1Char('='))
            return true;
        ++m_At;
        if (m_At != m_End)
            value = *m_At == QLatin1Char('"') ? takeQuoted() : takeUntil(isSpace);
        return true;
    }

private:
    static bool isSpace(QChar c) { return c.isSpace(); }

    template<class Ends>
    QStringView takeUntil(Ends ends)
    {
        const QChar *begin = m_At;
        m_At = std::find_if(m_At, m_End, ends);
        return QStringView(begin, m_At);
    }

    QStringView takeQuoted()
    {
        ++m_At;
        const QChar *begin = m_At;
        m_At = findChar(begin, m_End, u'"');
        const QStringView value(begin, m_At);
        if (m_At != m_End)
            ++m_At;
        return value.isEmpty() ? QStringView() : value;
    }

    const QChar *m_At;
    const QChar *m_End;
};

} // namespace

void readStartTag(QStringView params, NamedTag &element, StringPool &strings)
{
    const QChar *const end = params.end();
    const QChar *const blank = findChar(params.begin(), end, u' ');
    element.m_Name = strings.get(QStringView(params.begin(), blank));
    AttributeScanner scanner(blank, end);
    QStringView key;
    QStringView value;
    while (scanner.next(key, value)) {
        // Attributes in order, as the writer leaves them, need no search for their place.
        QMap<QString, QString> &attributes = element.m_Attributes;
        attributes.insert(attributes.constEnd(), strings.get(key), value.isNull() ? QString() : strings.get(value));
    }
}

} // namespace XML
