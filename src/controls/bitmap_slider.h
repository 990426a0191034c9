#pragma once

#include <QTimer>
#include <QVarLengthArray>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "controls/focus_ring.h"
#include "controls/mixed_mark.h"
#include "controls/slider_arithmetic.h"
#include "controls/theme.h"

namespace tessavo {

class SkinPainter;

/// Slider with a cap on a groove. A person's moves are posted to the parent widget as `SliderEvent`s; the
/// functions of a program post nothing.
///
/// The left or top end is the minimum. A vertical slider whose top shall be the highest value therefore holds
/// the negated value; "up" on the keyboard, the wheel or by a screen reader always means towards the top.
class CBitmapSlider : public QWidget {
    Q_OBJECT

 public:
    /// Text of a position with its unit, for screen readers.
    using Formatter = std::function<QString(int position)>;

    CBitmapSlider(Qt::Orientation orientation, int controlId, QWidget* parent = nullptr);

    [[nodiscard]] int minimum() const { return minimum_; }
    [[nodiscard]] int maximum() const { return maximum_; }
    [[nodiscard]] int position() const { return position_; }
    [[nodiscard]] bool isVertical() const { return vertical_; }
    [[nodiscard]] bool isDragging() const { return dragging_; }
    [[nodiscard]] SliderTrack track() const;

    /// A maximum below the minimum becomes the minimum. The position is clamped.
    void setRange(int minimum, int maximum);
    /// Clamped into the range.
    void setPosition(int position);

    /// Colour of the fill: theme::level, theme::frequency or theme::quality.
    void setColor(QRgb color);
    /// A bypassed slider loses its colour and stays usable.
    void setBypassed(bool bypassed);
    /// Position at which the fill begins; without one it is 0 if the range crosses 0, else the low end
    /// (bottom of a vertical slider, left of a horizontal one).
    void setFillOrigin(std::optional<int> position);
    /// Positions of the ticks; without a call they stand at the quarters. A tick at the fill's origin between
    /// the ends is longer.
    void setTicks(std::vector<int> positions);

    /// Steps of the arrow and page keys, and of the arrow keys with Ctrl; 0 lets that be a twentieth of the
    /// range.
    void setSteps(int single, int page, int coarse);
    /// How long after the last turn the wheel counts as resting.
    void setWheelRest(int milliseconds);

    /// Marks the value as one that not every channel has which an edit goes to, with this note; takes the
    /// mark away without one.
    void setMixed(const QString& note) { mixed_.setNote(note); }
    [[nodiscard]] bool isMixed() const { return mixed_.isShown(); }

    void setFormatter(Formatter formatter);
    /// What screen readers count in: value = position × perStep + offset.
    void setValueScale(double perStep, double offset = 0);

    [[nodiscard]] QString valueText() const;
    [[nodiscard]] double valueOf(int position) const { return position * perStep_ + offset_; }
    [[nodiscard]] double valuePerStep() const { return perStep_ * singleStep_; }
    /// Moves the slider like one press and release of a key. Not finite values and disabled sliders are left
    /// alone.
    void setValueByUser(double value);
    /// Steps towards higher (+1) or lower (-1) values like a key.
    void stepValueByUser(int steps);

    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    void dragTo(double pixel);
    void stepTo(std::int64_t position);
    void movePosition(int position);
    void post(QEvent::Type type);
    void finishSteps();
    void finishAll();
    /// Position after a key, if the key is one that moves the slider.
    [[nodiscard]] std::optional<std::int64_t> keyTarget(const QKeyEvent& event) const;
    [[nodiscard]] int coarseStep() const;
    [[nodiscard]] double along(const QPointF& point) const { return vertical_ ? point.y() : point.x(); }
    [[nodiscard]] int fillOrigin() const;
    [[nodiscard]] unsigned capState() const;
    void moveThumb(double pixel);
    void updateBetween(double first, double second);
    void paintTicks(SkinPainter& painter) const;
    /// Upper left corner along the slider, in device pixels, of a cap centred on a logical pixel.
    [[nodiscard]] static int capStart(double scale, double pixel);

    bool vertical_;
    bool dragging_ = false;
    bool hovered_ = false;
    bool bypassed_ = false;
    bool stepped_ = false;  ///< a key or the wheel moved the slider and 10450 is still due
    int minimum_ = 0;
    int maximum_ = 100;
    int position_ = 0;
    int singleStep_ = 1;
    int pageStep_ = 10;
    int coarseStep_ = 0;
    int wheelTravel_ = 0;
    double thumbPixel_ = 0;  ///< where the thumb's centre is, or was dragged to
    double dragOffset_ = 0;
    double dragStartPixel_ = 0;
    int dragStartPosition_ = 0;
    double perStep_ = 1;
    double offset_ = 0;
    QRgb color_ = theme::level;
    std::optional<int> fillOrigin_;
    std::optional<std::vector<int>> ticks_;
    Formatter formatter_;
    FocusRing ring_;
    MixedMark mixed_{*this};
    QTimer wheelRest_;
    QVarLengthArray<int, 4> heldKeys_;
};

}  // namespace tessavo
