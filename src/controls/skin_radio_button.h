#pragma once

#include <QRadioButton>

#include "controls/focus_ring.h"

namespace tessavo {

/// Radio button. The mark is 16 pixels wide and stands 3 pixels from the left edge of the widget, the
/// caption 6 pixels behind it.
class SkinRadioButton : public QRadioButton {
    Q_OBJECT

 public:
    SkinRadioButton(const QString& caption, int controlId, QWidget* parent = nullptr);

    /// Width that mark and caption need.
    [[nodiscard]] int neededWidth() const;
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& place) const override { return rect().contains(place); }

 private:
    bool hovered_ = false;
    FocusRing ring_;
};

}  // namespace tessavo
