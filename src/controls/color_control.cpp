#include "controls/color_control.h"

#include <QPaintEvent>
#include <QPainter>

#include "controls/control_id.h"
#include "controls/theme.h"

namespace tessavo {

CColorControl::CColorControl(const QString& text, int controlId, QWidget* parent) : QLabel(text, parent) {
    setControlId(*this, controlId);
    setFont(theme::font(11));
    setTextFormat(Qt::PlainText);
    setColors(QColor::fromRgb(theme::text2));
}

void CColorControl::setColors(const QColor& text, const QColor& background) {
    text_ = text;
    background_ = background;
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, text);
    colors.setColor(QPalette::Disabled, QPalette::WindowText, QColor::fromRgb(theme::text3));
    setPalette(colors);
    update();
}

void CColorControl::paintEvent(QPaintEvent* event) {
    if (background_.isValid()) {
        QPainter(this).fillRect(event->rect(), background_);
    }
    QLabel::paintEvent(event);
}

}  // namespace tessavo
