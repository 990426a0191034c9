#pragma once

#include <QDialog>
#include <QPixmap>

namespace tessavo {

/// Dialog or page on a background that is drawn once for each size and scale.
///
/// As a page inside a window, with the window flags Qt::Widget, it leaves Enter and Escape to its controls.
/// As a dialog of its own it closes by them as usual.
class CDialogSK : public QDialog {
    Q_OBJECT

 public:
    explicit CDialogSK(QWidget* parent = nullptr);

 protected:
    /// Draws the background. This class fills it with the window's colour; derived ones may draw more.
    /// \param painter draws in logical pixels, from (0, 0) to `size`
    /// \param size of the dialog
    virtual void paintBackground(QPainter& painter, QSize size) const;
    /// Draws the strip at the bottom that the buttons of a dialog stand on.
    /// \param size of the dialog
    /// \param height of the strip, in logical pixels
    static void paintFoot(QPainter& painter, QSize size, int height);
    /// Has the background drawn anew. A derived class calls it when paintBackground() would draw something
    /// else than before.
    void backgroundChanged();

    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    QPixmap background_;
    QSize backgroundSize_;
};

}  // namespace tessavo
