#pragma once

#include <QPushButton>

#include "controls/control_note.h"
#include "controls/focus_ring.h"

namespace tessavo {

/// Push button drawn from the skin's pixmaps. A plain one, one with a light that shows a state, or the
/// default button of a message box.
class CxSkinButton : public QPushButton {
    Q_OBJECT

 public:
    CxSkinButton(const QString& caption, int controlId, QWidget* parent = nullptr);

    /// Gives the button a light. A click does not switch it: whoever carries out the click calls `setOn`.
    void setToggle(bool toggle);
    void setOn(bool on);
    [[nodiscard]] bool isOn() const { return isCheckable() && isChecked(); }

    /// Draws the button as the default one.
    void setAccented(bool accented);

    /// Marks a caption or light that does not tell what is in force, with this note; takes the mark away
    /// without one.
    void setMark(const QString& note) { mark_.setNote(note); }
    [[nodiscard]] const QString& markNote() const { return mark_.note(); }

    /// Width that the caption needs with its clearance.
    [[nodiscard]] int neededWidth() const;
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& place) const override { return rect().contains(place); }
    void nextCheckState() override {}

 private:
    bool accented_ = false;
    bool hovered_ = false;
    FocusRing ring_;
    CornerNote mark_{*this};
};

}  // namespace tessavo
