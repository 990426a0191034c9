#pragma once

#include <QPushButton>

#include "controls/marked_widget.h"
#include "controls/tracked_widget.h"

namespace tessavo {

using SkinButtonBase = CornerMarked<FocusTracked<HoverTracked<QPushButton>>>;

/// Push button drawn from the skin's pieces: a plain one, one with a light that shows a state, or the default
/// button of a message box.
class CxSkinButton : public SkinButtonBase {
    Q_OBJECT

 public:
    CxSkinButton(const QString& caption, int controlId, QWidget* parent = nullptr);

    /// Gives the button a light or takes it away. A click does not switch the light: whoever carries out the
    /// click calls setOn() with the state that results.
    void setToggle(bool toggle);
    /// Switches the light. Without one it has no effect that can be seen.
    void setOn(bool on);
    [[nodiscard]] bool isOn() const { return isCheckable() && isChecked(); }

    /// Whether the button is drawn as the default one of a message box.
    void setAccented(bool accented);
    [[nodiscard]] bool isAccented() const { return accented_; }

    /// Width that the button needs for its caption and light, in pixels.
    [[nodiscard]] int neededWidth() const;
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& point) const override { return rect().contains(point); }
    void nextCheckState() override {}

 private:
    bool accented_ = false;
};

}  // namespace tessavo
