#include "controls/application_theme.h"

#include <QApplication>
#include <QPalette>

#include "controls/application_style.h"
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

}  // namespace

void applyTheme() {
    // The system's own dialogs would look different from the program.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setStyle(new ApplicationStyle);
    QApplication::setPalette(darkPalette());
    QApplication::setFont(theme::font(12));
}

}  // namespace tessavo
