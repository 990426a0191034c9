#include "controls/application_theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

#include "controls/theme.h"

namespace tessavo {
namespace {

QPalette darkPalette() {
    using namespace theme;
    QPalette colors;
    const auto set = [&colors](QPalette::ColorRole role, QRgb color) {
        colors.setColor(role, QColor::fromRgb(color));
    };
    set(QPalette::Window, window);
    set(QPalette::WindowText, text2);
    set(QPalette::Base, sunk);
    set(QPalette::AlternateBase, inset);
    set(QPalette::Text, text);
    set(QPalette::Button, buttonBottom);
    set(QPalette::ButtonText, text);
    set(QPalette::BrightText, white);
    set(QPalette::Light, edge);
    set(QPalette::Midlight, line);
    set(QPalette::Mid, line);
    set(QPalette::Dark, sunk);
    set(QPalette::Shadow, 0xFF000000);
    set(QPalette::Highlight, selected);
    set(QPalette::HighlightedText, white);
    set(QPalette::Link, lightBlue);
    set(QPalette::LinkVisited, quality);
    set(QPalette::ToolTipBase, buttonBottom);
    set(QPalette::ToolTipText, text);
    set(QPalette::PlaceholderText, text3);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colors.setColor(QPalette::Disabled, role, QColor::fromRgb(text3));
    }
    colors.setColor(QPalette::Disabled, QPalette::Base, QColor::fromRgb(inset));
    colors.setColor(QPalette::Disabled, QPalette::Highlight, QColor::fromRgb(line));
    return colors;
}

/// Names between '@' signs are colours.
constexpr char sheet[] = R"(
QMenuBar { background: @bars@; color: @text@; padding: 2px 6px; border: none; }
QMenuBar::item { background: transparent; padding: 4px 10px; border-radius: 4px; }
QMenuBar::item:selected, QMenuBar::item:pressed { background: @edge@; }
QMenu { background: @button@; border: 1px solid @edge@; padding: 4px; color: @text@; }
QMenu::item { padding: 5px 24px 5px 12px; border-radius: 3px; background: transparent; }
QMenu::item:selected { background: @selected@; color: @white@; }
QMenu::item:disabled { color: @dim@; background: transparent; }
QMenu::separator { height: 1px; background: @edge@; margin: 4px 8px; }
QComboBox { combobox-popup: 0; }
QListView { background: @sunk@; border: 1px solid @edge@; border-radius: 4px; padding: 1px; color: @text@; outline: 0; }
QListView:focus { border: 2px solid @focus@; padding: 0; }
QLineEdit { background: @sunk@; border: 1px solid @edge@; border-radius: 4px; padding: 2px 6px; color: @text@; }
QLineEdit:focus { border: 2px solid @focus@; padding: 1px 5px; }
tessavo--NumberEdit, tessavo--CReadOnlyEdit, tessavo--TextEditBox,
tessavo--NumberEdit:focus, tessavo--CReadOnlyEdit:focus, tessavo--TextEditBox:focus,
QSpinBox QLineEdit, QSpinBox QLineEdit:focus { background: transparent; border: none; padding: 0; }
tessavo--CReadOnlyEdit { color: @label@; }
QLineEdit:disabled { color: @dim@; }
QListView:disabled { background: @inset@; border-color: @line@; color: @dim@; }
QComboBox QAbstractItemView, QComboBox QAbstractItemView:focus {
  background: @button@; border: 1px solid @edge@; border-radius: 0; padding: 3px; outline: 0;
}
QListView::item { height: 18px; }
QListView::item:selected { background: @selected@; color: @white@; }
QScrollBar:vertical { background: transparent; width: 8px; margin: 0; border: none; }
QScrollBar:horizontal { background: transparent; height: 8px; margin: 0; border: none; }
QScrollBar::handle { background: @edge@; border-radius: 4px; }
QScrollBar::handle:vertical { min-height: 24px; }
QScrollBar::handle:horizontal { min-width: 24px; }
QScrollBar::handle:hover, QScrollBar::handle:pressed { background: @mark@; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; border: none; background: none; }
QScrollBar::add-page, QScrollBar::sub-page { background: none; }
QAbstractScrollArea::corner { background: transparent; border: none; }
QToolTip { background: @button@; color: @text@; border: 1px solid @edge@; padding: 3px 6px; }
)";

QString styleSheet() {
    QString text = QString::fromLatin1(sheet);
    const std::pair<const char*, QRgb> colors[]{
        {"@bars@", theme::bars},   {"@text@", theme::text},   {"@edge@", theme::edge},
        {"@line@", theme::line},   {"@mark@", theme::mark},   {"@button@", theme::buttonBottom},
        {"@sunk@", theme::sunk},   {"@inset@", theme::inset}, {"@selected@", theme::selected},
        {"@white@", theme::white}, {"@dim@", theme::text3},   {"@focus@", theme::focus},
        {"@label@", theme::text2},
    };
    for (const auto& [name, color] : colors) {
        text.replace(QLatin1String(name), QColor::fromRgb(color).name());
    }
    return text;
}

}  // namespace

void applyTheme(QApplication& application) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(darkPalette());
    QApplication::setFont(theme::font(12));
    application.setStyleSheet(styleSheet());
}

}  // namespace tessavo
