#include "plot/chart/chart_host.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFontDialog>
#include <QGuiApplication>

#include "controls/skin_message_box.h"

namespace tessavo {

void DialogChartHost::showMessage(QWidget* parent, const QString& text) {
    SkinMessageBox(QGuiApplication::applicationDisplayName(), text, SkinMessageBox::Icon::stop,
                   SkinMessageBox::Buttons::ok, parent)
        .ask();
}

std::optional<QString> DialogChartHost::askSavePath(QWidget* parent, const QString& filter,
                                                    const QString& suffix) {
    QFileDialog dialog(parent, {}, {}, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return dialog.selectedFiles().first();
}

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
