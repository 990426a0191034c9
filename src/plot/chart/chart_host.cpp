#include "plot/chart/chart_host.h"

#include <QColorDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <cstdlib>

#include "controls/screen_room.h"

namespace tessavo {
namespace {

// The longest style of a family is read whole.
constexpr QSize fontDialogSize(720, 460);

/// The same font as the dialog has it in its lists, which know families by one name and weights by their
/// styles.
QFont listed(const QFont& font) {
    const QFontInfo info(font);
    QFont start(info.family());
    start.setPointSize(info.pointSize());
    start.setUnderline(font.underline());
    start.setStrikeOut(font.strikeOut());
    QString nearest;
    int least = 0;
    for (const QString& style : QFontDatabase::styles(info.family())) {
        // The toolkit calls an oblique style upright.
        const bool slanted =
            QFontDatabase::italic(info.family(), style) || style.contains(QLatin1String("Oblique"));
        // A wide or narrow variant comes last: it says so in its name.
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
    // The lists may have rounded what they were given.
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
