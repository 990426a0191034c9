#include "plot/chart/chart_host.h"

#include <QColorDialog>
#include <QFontDialog>

namespace tessavo {

std::optional<QFont> DialogChartHost::askFont(QWidget* parent, const QFont& current) {
    bool chosen = false;
    const QFont font = QFontDialog::getFont(&chosen, current, parent);
    return chosen ? std::optional(font) : std::nullopt;
}

std::optional<QRgb> DialogChartHost::askColor(QWidget* parent, QRgb current) {
    const QColor color = QColorDialog::getColor(QColor(current), parent);
    return color.isValid() ? std::optional(color.rgb()) : std::nullopt;
}

}  // namespace tessavo
