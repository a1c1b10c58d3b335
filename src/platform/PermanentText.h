#pragma once

/// \file
/// Texts that live as long as the process.

#include <QString>

namespace Platform {

/// A copy of \a text, ASCII, that is never freed. Copies of it count no references, which among a hundred thousand
/// items is felt. Meant for what is made once: each call takes memory for good.
inline QString permanentText(const char *text)
{
    QString made = QString::fromLatin1(text);
    if (!made.isEmpty())
        made.data_ptr()->ref.atomic.storeRelaxed(-1); // as the texts of QStringLiteral have it
    return made;
}

} // namespace Platform
