#include <QRegularExpression>

#include <quire/newsroom/model/Zeko.h>

#include "NewsroomChecks.h"
#include "fuzz/Input.h"

namespace NewsroomFuzz {

namespace {

using namespace Newsroom;

QString withoutNul(QString text)
{
    return text.remove(QChar(0));
}

QString character(uint code)
{
    return code == 0 ? QString() : QString::fromUcs4(&code, 1);
}

/// The characters that a reference stands for, itself when it is none.
QString meaning(const QRegularExpressionMatch &reference)
{
    const QString name = reference.captured(1).toLower();
    const QStringList names{QStringLiteral("amp"), QStringLiteral("lt"), QStringLiteral("gt"), QStringLiteral("quot"),
                            QStringLiteral("apos")};
    const int known = names.indexOf(name);
    if (known >= 0)
        return QString(QLatin1Char("&<>\"'"[known]));
    const bool hexadecimal = name.startsWith(QLatin1String("#x"));
    bool ok = false;
    const uint code = name.mid(hexadecimal ? 2 : 1).toUInt(&ok, hexadecimal ? 16 : 10);
    if (!ok || code > 0x10FFFF)
        return reference.captured();
    return code >= 0xD800 && code < 0xE000 ? QString(QChar(code)) : character(code);
}

QString unescapedSlowly(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("&([a-zA-Z]+|#[0-9]+|#[xX][0-9a-fA-F]+);"));
    QString out;
    int done = 0;
    auto matches = pattern.globalMatch(Fuzz::matchable(text));
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        out += text.midRef(done, match.capturedStart() - done);
        const int longest = 12; // with its end, a reference that is one
        out += match.capturedLength() - 1 > longest ? match.captured() : meaning(match);
        done = match.capturedEnd();
    }
    return out + text.mid(done);
}

QString checkPieces(const QString &text)
{
    Zeko::Scanner scanner(text);
    int at = 0;
    for (;;) {
        const Zeko::Token token = scanner.next();
        if (token.start != at)
            return QStringLiteral("a gap at %1").arg(at);
        if (token.contentStart < token.start || token.contentEnd < token.contentStart || token.contentEnd > token.end)
            return QStringLiteral("a content outside of its token");
        if (token.kind == Zeko::Token::End || token.kind == Zeko::Token::Error) {
            const bool same = scanner.next().kind == token.kind;
            const bool whole = token.kind == Zeko::Token::Error || at == text.size();
            return same && whole ? QString() : QStringLiteral("the scan does not end");
        }
        if (token.end <= token.start)
            return QStringLiteral("an empty token");
        at = token.end;
    }
}

QString checkAttribute(const QString &name, const QString &value)
{
    if (!Zeko::isName(name))
        return QString();
    for (const char *const end : {">", "/>"}) {
        const QString tag = QLatin1String("<x") + Zeko::attributeText(name, value) + QLatin1String(end);
        Zeko::Scanner scanner(tag);
        const Zeko::Token token = scanner.next();
        QVector<NameValue> read;
        if (token.end != tag.size() || !scanner.attributes(token, &read) || read.size() != 1 ||
            read.first() != NameValue{name, withoutNul(value)})
            return QStringLiteral("an attribute is not read as it was written: ") + tag;
    }
    return QString();
}

} // namespace

QString checkMarkup(const QString &text)
{
    const QString escaped = Zeko::escapeText(text);
    if (escaped.contains(QLatin1Char('<')) || escaped.contains(QLatin1Char('>')))
        return QStringLiteral("markup was left in");
    if (Zeko::unescapeText(escaped) != withoutNul(text))
        return QStringLiteral("what was escaped does not come back");
    if (Zeko::unescapeText(text) != unescapedSlowly(text))
        return QStringLiteral("a reference means something else");
    QString wrong = checkPieces(text);
    if (!wrong.isEmpty())
        return wrong;
    const QStringList lines = Fuzz::linesOf(text, 1);
    wrong = checkAttribute(lines[0], lines[1]);
    if (!wrong.isEmpty())
        return wrong;
    const QString wrapped = QLatin1String("<x>") + text + QLatin1String("</x>");
    if (Zeko::isWellFormed(text) && !Zeko::isWellFormed(wrapped))
        return QStringLiteral("not well-formed within an element");
    return QString();
}

} // namespace NewsroomFuzz
