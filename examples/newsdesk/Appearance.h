#pragma once

#include <QColor>

namespace Desk {

/// The colours of the window.
struct Colours
{
    QColor window; ///< Behind the panes.
    QColor pane;   ///< Of tables, trees and texts.
    QColor stripe; ///< Of every second row.
    QColor text;
    QColor faint; ///< Labels and what matters less.
    QColor line;
    QColor thumb;  ///< Of scroll bars.
    QColor accent; ///< Selection, links, the default button.
    QColor onAccent;
    QColor selection; ///< Behind selected rows.
    QColor news;      ///< What has just changed.
    QColor newsTint;  ///< Behind a row that has just changed.
    QColor warning;   ///< Behind a warning.
    QColor onWarning;
    QColor urgent;
};

/// How the desk looks: light or dark. Of the user interface's thread.
class Appearance
{
public:
    /// Gives the application its style, font, palette and style sheet.
    static void apply(bool dark);
    static bool isDark();
    static const Colours &colours();
};

} // namespace Desk
