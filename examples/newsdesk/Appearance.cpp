#include "Appearance.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

namespace Desk {

namespace {

Colours lightColours()
{
    Colours colours;
    colours.window = QColor(0xeef0f3);
    colours.pane = QColor(0xffffff);
    colours.stripe = QColor(0xf7f8fa);
    colours.text = QColor(0x1d232b);
    colours.faint = QColor(0x66707c);
    colours.line = QColor(0xd6dae0);
    colours.thumb = QColor(0xb9c0c9);
    colours.accent = QColor(0x1f5fbf);
    colours.onAccent = QColor(0xffffff);
    colours.selection = QColor(0xd9e6fa);
    colours.news = QColor(0xd9730d);
    colours.newsTint = QColor(0xfff1dc);
    colours.warning = QColor(0xfdf0d0);
    colours.onWarning = QColor(0x5c4300);
    colours.urgent = QColor(0xc62828);
    return colours;
}

Colours darkColours()
{
    Colours colours;
    colours.window = QColor(0x1a1d21);
    colours.pane = QColor(0x22262b);
    colours.stripe = QColor(0x262b31);
    colours.text = QColor(0xe4e7eb);
    colours.faint = QColor(0x9aa4b0);
    colours.line = QColor(0x363c44);
    colours.thumb = QColor(0x4d5661);
    colours.accent = QColor(0x5b9bf0);
    colours.onAccent = QColor(0x0e1a2b);
    colours.selection = QColor(0x2c4568);
    colours.news = QColor(0xf0a04b);
    colours.newsTint = QColor(0x453320);
    colours.warning = QColor(0x463a1c);
    colours.onWarning = QColor(0xf6dfa4);
    colours.urgent = QColor(0xff7b72);
    return colours;
}

struct Current
{
    bool dark = false;
    Colours colours = lightColours();
};

Current &current()
{
    static Current only;
    return only;
}

QPalette paletteOf(const Colours &colours)
{
    QPalette palette(colours.window);
    palette.setColor(QPalette::Window, colours.window);
    palette.setColor(QPalette::WindowText, colours.text);
    palette.setColor(QPalette::Base, colours.pane);
    palette.setColor(QPalette::AlternateBase, colours.stripe);
    palette.setColor(QPalette::Text, colours.text);
    palette.setColor(QPalette::Button, colours.window);
    palette.setColor(QPalette::ButtonText, colours.text);
    palette.setColor(QPalette::ToolTipBase, colours.pane);
    palette.setColor(QPalette::ToolTipText, colours.text);
    palette.setColor(QPalette::PlaceholderText, colours.faint);
    palette.setColor(QPalette::Highlight, colours.selection);
    palette.setColor(QPalette::HighlightedText, colours.text);
    palette.setColor(QPalette::Link, colours.accent);
    palette.setColor(QPalette::Mid, colours.line);
    palette.setColor(QPalette::Disabled, QPalette::Text, colours.faint);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, colours.faint);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, colours.faint);
    return palette;
}

/// What a palette cannot say. Names in capitals stand for the colours.
QString styleSheetOf(const Colours &colours)
{
    QString sheet = QStringLiteral(R"(
QToolBar { background: PANE; border: none; border-bottom: 1px solid LINE; padding: 5px 8px; spacing: 6px; }
QToolBar QToolButton { border: 1px solid transparent; border-radius: 4px; padding: 4px 9px; }
QToolBar QToolButton:hover, QToolBar QToolButton:focus { background: WINDOW; border-color: LINE; }
QToolBar QToolButton:pressed { background: SELECTION; }
QStatusBar { background: PANE; border-top: 1px solid LINE; color: FAINT; }
QStatusBar::item { border: none; }
QStatusBar QLabel { color: FAINT; padding: 2px 8px; }
QSplitter::handle { background: LINE; }
QTreeView, QTableView { border: none; outline: none; background: PANE; }
QTreeView { show-decoration-selected: 1; }
QHeaderView { background: PANE; border: none; }
QHeaderView::section { background: PANE; color: FAINT; border: none; border-bottom: 1px solid LINE; padding: 5px 6px; }
QLineEdit, QTextEdit { background: PANE; border: 1px solid LINE; border-radius: 4px; padding: 4px 6px;
    selection-background-color: ACCENT; selection-color: ON_ACCENT; }
QLineEdit:focus, QTextEdit:focus { border-color: ACCENT; }
QLineEdit[readOnly="true"], QTextEdit[readOnly="true"] { border-color: transparent; background: transparent; }
QLineEdit[readOnly="true"]:focus, QTextEdit[readOnly="true"]:focus { border-color: LINE; }
QPushButton { background: PANE; border: 1px solid LINE; border-radius: 4px; padding: 5px 14px; }
QPushButton:hover { border-color: FAINT; }
QPushButton:focus { border-color: ACCENT; }
QPushButton:default { background: ACCENT; color: ON_ACCENT; border-color: ACCENT; }
QPushButton:disabled { color: FAINT; }
QPushButton:default:disabled { background: WINDOW; color: FAINT; border-color: LINE; }
QProgressBar { border: none; background: LINE; max-height: 3px; }
QProgressBar::chunk { background: ACCENT; }
QFrame#pane { background: PANE; }
QLabel#heading { font-weight: 600; color: TEXT; }
QLabel#caption, QLabel#count { color: FAINT; }
QLabel#empty { color: FAINT; }
QFrame#banner { background: WARNING; border: none; }
QFrame#banner QLabel { color: ON_WARNING; }
QScrollArea { border: none; background: transparent; }
QScrollBar { background: transparent; border: none; }
QScrollBar:vertical { width: 10px; margin: 0; }
QScrollBar:horizontal { height: 10px; margin: 0; }
QAbstractScrollArea::corner { background: PANE; border: none; }
QScrollBar::handle { background: THUMB; border-radius: 3px; margin: 2px; }
QScrollBar::handle:hover { background: FAINT; }
QScrollBar::handle:vertical { min-height: 30px; }
QScrollBar::handle:horizontal { min-width: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QToolTip { background: PANE; color: TEXT; border: 1px solid LINE; padding: 3px; }
)");
    const std::pair<const char *, QColor> names[] = {
        {"ON_ACCENT", colours.onAccent}, {"ON_WARNING", colours.onWarning}, {"WARNING", colours.warning},
        {"ACCENT", colours.accent},      {"SELECTION", colours.selection},  {"WINDOW", colours.window},
        {"PANE", colours.pane},          {"FAINT", colours.faint},          {"TEXT", colours.text},
        {"LINE", colours.line},          {"THUMB", colours.thumb},
    };
    for (const auto &[name, colour] : names)
        sheet.replace(QLatin1String(name), colour.name());
    return sheet;
}

/// The first of some fonts that read well on screens; the system's where there is none of them.
QFont font()
{
    QFont font = QApplication::font();
    const QStringList families = QFontDatabase().families();
    for (const char *family : {"Segoe UI", "Open Sans", "Noto Sans"}) {
        if (families.contains(QLatin1String(family))) {
            font.setFamily(QLatin1String(family));
            break;
        }
    }
    font.setPointSizeF(10);
    return font;
}

} // namespace

void Appearance::apply(bool dark)
{
    current() = {dark, dark ? darkColours() : lightColours()};
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(font());
    QApplication::setPalette(paletteOf(colours()));
    qApp->setStyleSheet(styleSheetOf(colours()));
}

bool Appearance::isDark()
{
    return current().dark;
}

const Colours &Appearance::colours()
{
    return current().colours;
}

} // namespace Desk
