#pragma once

#include <QAbstractButton>
#include <QString>

#include "controls/control_id.h"
#include "controls/mark_caption.h"
#include "controls/theme.h"
#include "controls/tracked_widget.h"

namespace tessavo {

/// Base of check box and radio button. The mark is 16 pixels wide and stands 3 pixels from the left edge of
/// the widget, the caption 6 pixels behind it; a click anywhere in the widget counts.
/// \tparam Button the toolkit's button, QCheckBox or QRadioButton
template <typename Button>
class CaptionedMark : public FocusTracked<HoverTracked<Button>> {
 public:
    explicit CaptionedMark(const QString& caption, int controlId, QWidget* parent = nullptr)
        : FocusTracked<HoverTracked<Button>>(caption, parent) {
        setControlId(*this, controlId);
        this->setFont(theme::font(12));
        this->setFocusPolicy(Qt::StrongFocus);
    }

    /// Width that mark and caption need, in pixels.
    [[nodiscard]] int neededWidth() const { return markCaptionWidth(*this); }
    [[nodiscard]] QSize sizeHint() const override { return {neededWidth(), markBox}; }

 protected:
    /// Draws mark and caption; for the paint event.
    /// \param states further states of the skin's piece
    void paintCaptioned(SkinPiece::Kind mark, unsigned states = 0) {
        paintMarkCaption(*this, mark, this->isHovered(), this->isRingShown(), states);
    }
    [[nodiscard]] bool hitButton(const QPoint& point) const override { return this->rect().contains(point); }
};

}  // namespace tessavo
