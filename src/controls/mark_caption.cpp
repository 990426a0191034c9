#include "controls/mark_caption.h"

#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int captionLeft = 25;

}  // namespace

void paintMarkCaption(QAbstractButton& button, SkinPiece::Kind mark, bool hovered, bool ringed,
                      unsigned notes) {
    SkinPainter painter(&button);
    unsigned state = notes;
    state |= button.isEnabled() ? 0U : skinDisabled;
    state |= hovered ? skinHovered : 0U;
    state |= button.isChecked() ? skinOn : 0U;
    state |= ringed ? skinRinged : 0U;
    painter.piece({0, (button.height() - markBox) / 2.0}, {mark, state, QSize(markBox, markBox)});
    if (!button.text().isEmpty()) {
        painter.text(QRectF(captionLeft, 0, button.width() - captionLeft, button.height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic,
                     button.isEnabled() ? theme::text : theme::text3, button.text());
    }
}

int markCaptionWidth(const QAbstractButton& button) {
    const QString caption = button.text();
    return caption.isEmpty() ? markBox : captionLeft + button.fontMetrics().horizontalAdvance(caption);
}

}  // namespace tessavo
