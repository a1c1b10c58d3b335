#pragma once

/// \file
/// How the bytes of an input become what a check wants.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace Fuzz {

/// The bytes of an input as text: UTF-8, or behind a byte FF UTF-16 as it stands, lone surrogates included.
QString textOf(const QByteArray &bytes);

/// \a text with a replacement character for each lone surrogate, thus of the same length: what a pattern can be matched
/// against, which finds nothing at all in a text that is not valid.
QString matchable(QString text);

/// The first \a count lines of an input, empty ones for those that it does not have, and then the rest as it stands.
QStringList linesOf(const QString &text, int count);

/// Takes an input apart from its beginning. Behind its end there are zeroes and empty texts.
class Input
{
public:
    explicit Input(const QByteArray &bytes);

    bool atEnd() const { return m_position >= m_bytes.size(); }
    quint8 byte();
    /// From 0 to \a limit - 1.
    int below(int limit) { return byte() % limit; }
    /// Four bytes, the lowest first.
    qint32 number();
    /// A byte that counts, and so many bytes, or as many as are left.
    QByteArray bytes();
    /// The same as text in UTF-8; null where the counting byte is 255.
    QString text();

private:
    const QByteArray m_bytes;
    int m_position = 0;
};

} // namespace Fuzz
