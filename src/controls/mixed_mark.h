#pragma once

#include <QRectF>
#include <QString>

class QWidget;

namespace tessavo {

class SkinPainter;

/// Mark of a control whose value is not that of everything an edit of it goes to: a dashed outline, and a
/// note in its tooltip and its description for screen readers, behind what these say anyway. Part of the
/// control.
class MixedMark {
 public:
    explicit MixedMark(QWidget& control) : control_(control) {}

    /// Puts the mark on with these lines, or takes it away with none.
    void setNote(const QString& note);
    /// The same for a control that tells the note itself.
    void setShown(bool shown);
    [[nodiscard]] bool isShown() const { return shown_; }

    /// Draws the outline just inside a rectangle of the control, in logical pixels; nothing while it is off.
    void paint(SkinPainter& painter, const QRectF& place) const;
    /// The same around the whole control, over what its own paint event has drawn.
    void paintOverControl() const;

 private:
    QWidget& control_;
    QString note_;
    bool shown_ = false;
};

}  // namespace tessavo
