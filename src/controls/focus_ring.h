#pragma once

#include <QFocusEvent>

namespace tessavo {

/// Remembers whether a control came by its focus through the keyboard, for only then it shows a ring.
class FocusRing {
 public:
    void focusIn(const QFocusEvent& event) {
        switch (event.reason()) {
            case Qt::TabFocusReason:
            case Qt::BacktabFocusReason:
            case Qt::ShortcutFocusReason:
                shown_ = true;
                break;
            case Qt::ActiveWindowFocusReason:
            case Qt::PopupFocusReason:
                // The window or a menu gives back what it took.
                shown_ = before_;
                break;
            default:
                shown_ = false;
        }
    }

    void focusOut(const QFocusEvent& event) {
        before_ = shown_ &&
                  (event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason);
        shown_ = false;
    }

    [[nodiscard]] bool isShown() const { return shown_; }

 private:
    bool shown_ = false;
    bool before_ = false;
};

}  // namespace tessavo
