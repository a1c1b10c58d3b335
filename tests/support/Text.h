#pragma once

#include <QString>
#include <QStringList>

#include <initializer_list>

/// A UTF-8 literal as a string; null for a null pointer.
inline QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

/// Each of the literals as a string.
inline QStringList texts(std::initializer_list<const char *> literals)
{
    QStringList all;
    for (const char *literal : literals)
        all.append(text(literal));
    return all;
}
