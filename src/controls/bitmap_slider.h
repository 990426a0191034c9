#pragma once

#include <QTimer>
#include <QVarLengthArray>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "controls/mixed_mark.h"
#include "controls/slider_arithmetic.h"
#include "controls/theme.h"
#include "controls/tracked_widget.h"

namespace tessavo {

class SkinPainter;

/// Slider with a cap on a groove. When a person moves it, it posts `SliderEvent`s to its parent widget; the
/// functions below post nothing.
///
/// The minimum is at the left or at the top. A vertical slider that shows its highest value at the top
/// therefore has the negated value as its position; "up" on the keyboard, the wheel or by a screen reader
/// always means towards the top.
class CBitmapSlider : public FocusTracked<HoverTracked<QWidget>> {
    Q_OBJECT

 public:
    /// Text of a position with its unit, for screen readers.
    using Formatter = std::function<QString(int position)>;

    /// \param orientation vertical or horizontal
    /// \param controlId number in the posted events, see setControlId()
    /// \param parent gets the posted events
    CBitmapSlider(Qt::Orientation orientation, int controlId, QWidget* parent = nullptr);

    [[nodiscard]] int minimum() const { return minimum_; }
    [[nodiscard]] int maximum() const { return maximum_; }
    [[nodiscard]] int position() const { return position_; }
    [[nodiscard]] bool isVertical() const { return vertical_; }
    [[nodiscard]] bool isDragging() const { return dragging_; }
    /// The cap's way in pixels, at the slider's present size.
    [[nodiscard]] SliderTrack track() const;

    /// Sets the range of positions and clamps the position into it. A maximum below the minimum becomes the
    /// minimum.
    void setRange(int minimum, int maximum);
    /// Shows a position, clamped into the range.
    void setPosition(int position);

    /// Colour of the fill: theme::level, theme::frequency or theme::quality.
    void setColor(QRgb color);
    /// Takes the slider's colour away while what it sets is bypassed; it can still be moved.
    void setBypassed(bool bypassed);
    /// Positions of the ticks; without a call they stand at the quarters of the range. A tick where the fill
    /// begins is longer, unless it stands at an end. The fill begins at 0 where the range crosses 0,
    /// otherwise at the bottom or left end.
    void setTicks(std::vector<int> positions);

    /// Sets how long the wheel must rest until its turns count as finished, in milliseconds; 250 without a
    /// call.
    void setWheelRest(int milliseconds);

    /// Marks the value as one that not all of the channels have that an edit of it goes to. The note, their
    /// values, goes into the tooltip and to screen readers; an empty note takes the mark away.
    void setMixed(const QString& note) { mixed_.setNote(note); }
    [[nodiscard]] bool isMixed() const { return mixed_.isShown(); }

    /// Sets how the value becomes text for screen readers; without a call it is a plain number.
    void setFormatter(Formatter formatter);
    /// Sets how screen readers count: value = position × perStep + offset.
    void setValueScale(double perStep, double offset = 0);

    /// The present value as screen readers say it.
    [[nodiscard]] QString valueText() const;
    [[nodiscard]] double valueOf(int position) const { return position * perStep_ + offset_; }
    [[nodiscard]] double valuePerStep() const { return perStep_; }
    /// Moves the slider to a value, as a person does with one press and release of a key: both events are
    /// posted. Does nothing for a value that is not finite, and while the slider is disabled.
    void setValueByUser(double value);
    /// Moves the slider by steps as a person does with a key: upwards in value for a positive number.
    void stepValueByUser(int steps);
    /// Ends what a person does with it just now, as if button and keys had come up and the wheel rested.
    void finish() { finishAll(); }

    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
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
    /// The position that a key asks for, not clamped; nothing for keys that do not move the slider.
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
    bool bypassed_ = false;
    bool stepped_ = false;  ///< a key or the wheel moved the slider, and SliderEvent::released is still due
    int minimum_ = 0;
    int maximum_ = 100;
    int position_ = 0;
    int wheelTravel_ = 0;
    double thumbPixel_ = 0;  ///< where the thumb's centre is, or was dragged to
    double dragOffset_ = 0;
    double dragStartPixel_ = 0;
    int dragStartPosition_ = 0;
    double perStep_ = 1;
    double offset_ = 0;
    QRgb color_ = theme::level;
    std::optional<std::vector<int>> ticks_;
    Formatter formatter_;
    MixedMark mixed_{*this};
    QTimer wheelRest_;
    QVarLengthArray<int, 4> heldKeys_;
};

}  // namespace tessavo
