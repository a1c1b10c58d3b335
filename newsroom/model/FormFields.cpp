#include <quire/newsroom/model/FormFields.h>

#include <QSet>

#include <quire/newsroom/model/Zeko.h>

namespace Newsroom {

QStringList formFields(const QString &markup)
{
    QStringList fields;
    QSet<QString> known;
    Zeko::Scanner scanner(markup);
    QVector<NameValue> attributes;
    for (;;) {
        const Zeko::Token token = scanner.next();
        if (token.kind == Zeko::Token::End || token.kind == Zeko::Token::Error)
            return fields;
        const bool opens = token.kind == Zeko::Token::Open || token.kind == Zeko::Token::Empty;
        if (!opens || scanner.name(token) != QLatin1String("zeko:cell"))
            continue;
        scanner.attributes(token, &attributes);
        for (const NameValue &attribute : qAsConst(attributes)) {
            if (attribute.name != QLatin1String("idref") || attribute.value.isEmpty())
                continue;
            const QString key = attribute.value.toCaseFolded();
            if (!known.contains(key))
                fields.append(attribute.value);
            known.insert(key);
        }
    }
}

} // namespace Newsroom
