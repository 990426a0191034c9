#include "controls/edit_frame.h"

#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int innerMargin = 2;  ///< that the toolkit keeps on both sides of a line edit's text

}  // namespace

void prepareEdit(QLineEdit& edit) {
    edit.setFrame(false);
    // A file that is dropped here is meant for the window; its name would be taken for text.
    edit.setAcceptDrops(false);
    edit.setFont(theme::font(12));
    QPalette colors = edit.palette();
    colors.setBrush(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, QColor::fromRgb(theme::text));
    colors.setColor(QPalette::Disabled, QPalette::Text, QColor::fromRgb(theme::text3));
    colors.setColor(QPalette::Highlight, QColor::fromRgb(theme::selected));
    colors.setColor(QPalette::HighlightedText, QColor::fromRgb(theme::white));
    edit.setPalette(colors);
    edit.setAttribute(Qt::WA_MacShowFocusRect, false);
}

void paintEditFrame(QLineEdit& edit, bool focused, bool hovered, QRgb stripe, unsigned notes) {
    SkinPainter painter(&edit);
    unsigned state = notes;
    state |= edit.isEnabled() ? 0U : skinDisabled;
    state |= edit.isReadOnly() ? skinReadOnly : 0U;
    state |= hovered ? skinHovered : 0U;
    state |= focused ? skinRinged : 0U;
    painter.piece({}, {SkinPiece::Kind::edit, state, edit.size(), stripe});
}

int editNeededWidth(const QLineEdit& edit, const QString& text) {
    const QMargins margins = edit.textMargins();
    return edit.fontMetrics().horizontalAdvance(text) + margins.left() + margins.right() + 2 * innerMargin;
}

}  // namespace tessavo
