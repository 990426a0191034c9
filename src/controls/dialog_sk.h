#pragma once

#include <QDialog>
#include <QPixmap>

namespace tessavo {

/// Dialog or page on a background that is drawn once for each size and scale.
///
/// As a page inside a window (its window flags are then Qt::Widget) it leaves Enter and Escape to its
/// controls; as a dialog of its own it keeps their usual meaning.
class CDialogSK : public QDialog {
    Q_OBJECT

 public:
    explicit CDialogSK(QWidget* parent = nullptr);

 protected:
    /// Draws the background; (0, 0) to `size` in logical pixels. The base fills it with the window's colour.
    virtual void paintBackground(QPainter& painter, QSize size) const;
    /// Call when `paintBackground` would draw something else.
    void backgroundChanged();

    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    QPixmap background_;
    QSize backgroundSize_;
};

}  // namespace tessavo
