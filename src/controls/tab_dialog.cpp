#include "controls/tab_dialog.h"

#include <QPainter>

#include "controls/theme.h"

namespace tessavo {

CTabDialog::CTabDialog(QWidget* parent) : QWidget(parent) {}

void CTabDialog::changeSet(std::uint32_t) {
    refresh();
}

void CTabDialog::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor::fromRgb(theme::window));
}

}  // namespace tessavo
