#pragma once

#include <QEnterEvent>
#include <QFocusEvent>
#include <QWheelEvent>

#include "controls/focus_ring.h"

namespace tessavo {

/// Base of a control that looks different while the pointer is over it: knows whether it is, and repaints the
/// control when that changes.
/// \tparam Widget what the control would derive from otherwise: QLineEdit, QComboBox, ...
template <typename Widget>
class HoverTracked : public Widget {
 public:
    using Widget::Widget;

 protected:
    [[nodiscard]] bool isHovered() const { return hovered_; }

    void enterEvent(QEnterEvent* event) override {
        hovered_ = true;
        Widget::enterEvent(event);
        this->update();
    }

    void leaveEvent(QEvent* event) override {
        hovered_ = false;
        Widget::leaveEvent(event);
        this->update();
    }

 private:
    bool hovered_ = false;
};

/// Base of a control that shows a ring while it has the focus by the keyboard: knows whether it shows one,
/// and repaints the control when that changes.
/// \tparam Widget what the control would derive from otherwise, HoverTracked widgets included
template <typename Widget>
class FocusTracked : public Widget {
 public:
    using Widget::Widget;

 protected:
    [[nodiscard]] bool isRingShown() const { return ring_.isShown(); }

    void focusInEvent(QFocusEvent* event) override {
        ring_.focusIn(*event);
        Widget::focusInEvent(event);
        this->update();
    }

    void focusOutEvent(QFocusEvent* event) override {
        ring_.focusOut(*event);
        Widget::focusOutEvent(event);
        this->update();
    }

 private:
    FocusRing ring_;
};

/// Base of a control that the wheel changes only while the control has the focus. Otherwise the wheel scrolls
/// the page below, and nothing on it changes by accident.
/// \tparam Widget what the control would derive from otherwise
template <typename Widget>
class WheelWithFocus : public Widget {
 public:
    using Widget::Widget;

 protected:
    void wheelEvent(QWheelEvent* event) override {
        if (this->hasFocus()) {
            Widget::wheelEvent(event);
        } else {
            event->ignore();
        }
    }
};

}  // namespace tessavo
