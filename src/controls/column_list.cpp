#include "controls/column_list.h"

#include <QColor>

#include "controls/theme.h"

namespace tessavo {

namespace {

QString colorName(QRgb color) {
    return QColor::fromRgb(color).name();
}

}  // namespace

// The edge shows where the keyboard is.
QString columnListSheet() {
    return QStringLiteral(
               "QTreeView { background: %1; border: 1px solid %2; border-radius: 4px; padding: 1px; }"
               "QTreeView:focus { border: 2px solid %3; padding: 0; }"
               "QTreeView::item { color: %4; }"
               "QTreeView::item:selected { background: %5; color: %6; }"
               "QHeaderView::section { background: %7; color: %8; padding: 4px 3px; border: none;"
               " border-bottom: 1px solid %2; }")
        .arg(colorName(theme::sunk), colorName(theme::edge), colorName(theme::focus), colorName(theme::text),
             colorName(theme::selected), colorName(theme::white), colorName(theme::bars),
             colorName(theme::text2));
}

}  // namespace tessavo
