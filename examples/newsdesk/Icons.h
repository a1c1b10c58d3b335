#pragma once

#include <QIcon>

namespace Desk {

/// The icons of the desk, drawn in the colours of its appearance: no file has to be found for them.
class Icons
{
public:
    enum Kind { Directory, Queue, Lock, Refresh, Edit, Save, Search, Theme };

    /// The icon, in the colour of faint text unless told otherwise. Ask again after the appearance has changed.
    static QIcon icon(Kind kind);
    static QIcon icon(Kind kind, const QColor &colour);
};

} // namespace Desk
