#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

// How GoogleTest shows the framework's texts in a failure.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << (text.isNull() ? "(null)" : '"' + text.toStdString() + '"');
}

inline void PrintTo(const QStringList &texts, std::ostream *out)
{
    for (const QString &text : texts) {
        *out << "\n    ";
        PrintTo(text, out);
    }
}
