#include "controls/skin_button.h"

#include "controls/control_id.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int clearance = 4;
constexpr int lampLeft = 10;
constexpr int lampSize = 10;
constexpr int lampRoom = 20;  ///< the caption is centred in what is right of it

}  // namespace

CxSkinButton::CxSkinButton(const QString& caption, int controlId, QWidget* parent)
    : SkinButtonBase(caption, parent) {
    setControlId(*this, controlId);
    setFont(theme::font(12, QFont::Medium));
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
}

void CxSkinButton::setToggle(bool toggle) {
    setCheckable(toggle);
    update();
}

void CxSkinButton::setOn(bool on) {
    setChecked(on);
}

void CxSkinButton::setAccented(bool accented) {
    accented_ = accented;
    update();
}

int CxSkinButton::neededWidth() const {
    const int caption = fontMetrics().horizontalAdvance(text()) + 2 * clearance;
    return isCheckable() ? caption + lampRoom : caption;
}

QSize CxSkinButton::sizeHint() const {
    return {neededWidth() + 2 * clearance, 28};
}

void CxSkinButton::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    const bool down = isDown() && isEnabled();
    unsigned state = markState();
    state |= isEnabled() ? 0U : skinDisabled;
    state |= isHovered() ? skinHovered : 0U;
    state |= down ? skinPressed : 0U;
    state |= isOn() ? skinOn : 0U;
    state |= accented_ ? skinAccented : 0U;
    state |= isRingShown() ? skinRinged : 0U;
    painter.piece({}, {SkinPiece::Kind::button, state, size()});

    const double shift = down ? 1 : 0;
    QRectF caption(0, shift, width(), height());
    if (isCheckable()) {
        const unsigned lit = isOn() ? skinOn : 0U;
        painter.piece({lampLeft - 3.0, height() / 2.0 - lampSize / 2.0 - 3 + shift},
                      {SkinPiece::Kind::lamp, lit, QSize(lampSize + 6, lampSize + 6)});
        caption.setLeft(lampRoom);
    }
    const bool filled = isOn() || accented_;
    const QRgb color = !isEnabled() ? theme::text3 : filled ? theme::white : theme::text;
    painter.text(caption, Qt::AlignCenter | Qt::TextHideMnemonic, color, text());
}

}  // namespace tessavo
