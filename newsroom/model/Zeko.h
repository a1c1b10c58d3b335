#pragma once

/// \file
/// The newsroom's story markup: a checking scanner and the writing of texts and attributes.

#include <QString>
#include <QVector>

namespace Newsroom {

/// An attribute of a markup element, or a name and value anywhere else in the newsroom.
struct NameValue
{
    QString name;
    QString value;

    friend bool operator==(const NameValue &a, const NameValue &b) { return a.name == b.name && a.value == b.value; }
    friend bool operator!=(const NameValue &a, const NameValue &b) { return !(a == b); }
};

/// Reading and writing story markup. Everything here is linear in its input and uses no recursion, so that hostile text
/// costs neither stack nor time. Free of state, any thread.
namespace Zeko {

/// Replaces "&", "<" and ">" by their entities, and what no file in UTF-8 can hold (a half of a surrogate pair, a NUL)
/// by a numeric one.
QString escapeText(const QString &text);

/// Undoes escapeText(): the entities amp, lt, gt, quot and apos in any letter case and decimal or hexadecimal numeric
/// references; a reference to 0 vanishes, anything else that begins with "&" stays as it is.
QString unescapeText(const QString &text);

/// ` name=value`, with its leading blank: bare where the value allows, in double quotes where it is empty, holds white
/// space or a quote, or ends in "/". "&", "<", ">" and the double quote are written as entities.
QString attributeText(const QString &name, const QString &value);

/// Whether \a name can stand as the name of an element or attribute: not empty, no white space, control characters,
/// surrogate halves or any of `<>"'/=&`.
bool isName(const QString &name);

/// \a name without a leading "zeko:".
QString localName(const QString &name);

/// One piece of markup.
struct Token
{
    enum Kind {
        End,   ///< Nothing is left.
        Error, ///< The text is no markup from `start` on.
        Text,  ///< Characters between tags, as they stand: use unescapeText().
        CData, ///< A CDATA section; `content` limits what it encloses.
        Other, ///< A comment, declaration or processing instruction.
        Open,  ///< `<name ...>`
        Close, ///< `</name>`
        Empty  ///< `<name .../>`
    };
    Kind kind = End;
    int start = 0;        ///< Where the token starts in the text.
    int end = 0;          ///< One past its last character.
    int contentStart = 0; ///< Of text, CDATA: the enclosed characters. Of a tag: what stands between its brackets.
    int contentEnd = 0;
};

/// Cuts a markup text into tokens, one call of next() each. A tag reaches from "<" to the next ">", whatever stands
/// between, as every reader of this markup has it. Keeps a reference-counted copy of the text.
class Scanner
{
public:
    explicit Scanner(const QString &text, int from = 0);

    /// The next token. After Error or End every further call gives the same again.
    Token next();

    /// The element name of an Open, Close or Empty token.
    QString name(const Token &tag) const;

    /// The attributes of an Open or Empty token in order, values decoded; a bare word has an empty value. False when a
    /// quoted value has no end or a name is none; \a attributes then holds those before it.
    bool attributes(const Token &tag, QVector<NameValue> *attributes) const;

    /// The decoded characters of a Text or CData token; nothing of any other.
    QString text(const Token &token) const;

private:
    QString m_text;
    int m_pos;
    bool m_failed = false;

    Token tagAt(int start);
    Token special(int start, Token::Kind kind, int prefix, const QString &terminator);
    Token declaration(int start);
    Token error(int start);
};

/// Keeps the balance of open elements while a text is scanned. "meta" never has an end tag and is not counted; an
/// anchor
/// ("a") may stay open: an outer end tag closes it.
class Balance
{
public:
    /// Follows one tag; false when an end tag closes nothing.
    bool follow(const Token &token, const QString &name);

    /// How many elements are open, open anchors included.
    int depth() const { return m_open.size(); }

    /// Forgets open anchors at the end of the text; true when nothing else is open.
    bool finish();

private:
    QVector<QString> m_open;
};

/// Whether \a text is well-formed story markup: no "<" without ">", balanced elements, readable attributes.
bool isWellFormed(const QString &text);

} // namespace Zeko
} // namespace Newsroom
