#pragma once

#include <QFocusEvent>

namespace tessavo {

/// Decides whether a control shows a ring: while it has the focus, if the focus came by the keyboard. After a
/// click a ring would only distract.
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
                // The window comes to the front again, or a menu closes: the ring is as it was before.
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
