#include <quire/markup/Entities.h>

#include "EntityCodec.h"
#include "TextSearch.h"
#include "TextSink.h"

namespace XML {

bool xZEKO_Mode = true;

bool IsSpecialChar(QChar &c)
{
    return isSpecial(c, xZEKO_Mode);
}

void EncodeString(QString &s)
{
    const bool zeko = xZEKO_Mode;
    const QChar *begin = s.constData();
    if (findSpecial(begin, begin + s.size(), zeko) == begin + s.size())
        return;
    QString encoded;
    {
        TextSink sink(encoded);
        putEncoded(sink, begin, s.size(), zeko);
    }
    s = encoded;
}

void DecodeString(QString &s)
{
    const QChar *const end = s.constData() + s.size();
    if (findChar(s.constData(), end, u'&') == end)
        return;
    QChar *text = s.data();
    s.truncate(decode(text, s.size()));
}

} // namespace XML
