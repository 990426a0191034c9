#pragma once

#include <QRectF>
#include <QString>

class QWidget;

namespace tessavo {

class SkinPainter;

/// Tells that a control shows one value in place of several different ones, those of the channels that an
/// edit of it goes to: by a dashed outline, and by a note in its tooltip and its description for screen
/// readers. A member of the control.
class MixedMark {
 public:
    /// \param control outlives this object
    explicit MixedMark(QWidget& control) : control_(control) {}

    /// Sets the note and shows the outline; an empty note takes both away.
    void setNote(const QString& note);
    /// Shows or hides the outline, for a control that tells its note itself.
    void setShown(bool shown);
    [[nodiscard]] bool isShown() const { return shown_; }

    /// Draws the outline, if it is shown, just inside a rectangle of the control in logical pixels.
    void paint(SkinPainter& painter, const QRectF& bounds) const;
    /// Draws the outline, if it is shown, around the whole control, over what is painted already.
    void paintOverControl() const;

 private:
    QWidget& control_;
    QString note_;
    bool shown_ = false;
};

}  // namespace tessavo
