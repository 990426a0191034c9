#include "app/folded_boxes.h"

#include <utility>

namespace tessavo {

FoldedBoxes::FoldedBoxes(IMessageBox& boxes, std::function<void(int)> counted)
    : boxes_(boxes), counted_(std::move(counted)) {}

BoxAnswer FoldedBoxes::show(std::string_view text, BoxIcon icon, BoxButtons buttons) {
    int times = 1;
    {
        const std::lock_guard guard(mutex_);
        if (buttons == BoxButtons::ok && times_ > 0 && last_ == text) {
            times = ++times_;
        } else {
            last_ = text;
            times_ = 1;
        }
    }
    if (times == 1) {
        return boxes_.show(text, icon, buttons);
    }
    if (counted_) {
        counted_(times);
    }
    return BoxAnswer::ok;
}

void FoldedBoxes::forget() {
    bool counted = false;
    {
        const std::lock_guard guard(mutex_);
        counted = times_ > 1;
        times_ = 0;
        last_.clear();
    }
    if (counted && counted_) {
        counted_(0);
    }
}

}  // namespace tessavo
