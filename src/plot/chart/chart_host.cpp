#include "plot/chart/chart_host.h"

#include <QColorDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <cstdlib>

#include "controls/screen_room.h"

namespace tessavo {
namespace {

// Wide enough to show the longest name of a style.
constexpr QSize fontDialogSize(720, 460);

/// The same font in the terms of the dialog's lists, which know a family by one name and a weight by the name
/// of its style.
QFont listed(const QFont& font) {
    const QFontInfo info(font);
    QFont start(info.family());
    start.setPointSize(info.pointSize());
    start.setUnderline(font.underline());
    start.setStrikeOut(font.strikeOut());
    QString nearest;
    int least = 0;
    for (const QString& style : QFontDatabase::styles(info.family())) {
        // The toolkit does not count oblique styles as italic.
        const bool slanted =
            QFontDatabase::italic(info.family(), style) || style.contains(QLatin1String("Oblique"));
        // A narrow variant, which can be told by its name only, is chosen last.
        const int distance = std::abs(QFontDatabase::weight(info.family(), style) - info.weight()) * 10 +
                             (slanted != info.italic() ? 100'000 : 0) +
                             (style.contains(QLatin1String("Condensed")) ? 1'000'000 : 0);
        if (nearest.isEmpty() || distance < least) {
            nearest = style;
            least = distance;
        }
    }
    start.setStyleName(nearest);
    return start;
}

}  // namespace

std::optional<QFont> DialogChartHost::askFont(QWidget* parent, const QFont& current) {
    QFontDialog dialog(parent);
    dialog.setOption(QFontDialog::DontUseNativeDialog);
    dialog.setCurrentFont(listed(current));
    dialog.resize(fontDialogSize.boundedTo(roomOnScreen(parent)));
    // The lists may have rounded the font; if the person changes nothing, the exact one is returned.
    const QFont start = dialog.currentFont();
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.selectedFont() == start ? current : dialog.selectedFont();
}

std::optional<QRgb> DialogChartHost::askColor(QWidget* parent, QRgb current) {
    const QColor color =
        QColorDialog::getColor(QColor(current), parent, QString(), QColorDialog::DontUseNativeDialog);
    return color.isValid() ? std::optional(color.rgb()) : std::nullopt;
}

}  // namespace tessavo
