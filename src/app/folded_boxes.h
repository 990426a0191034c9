#pragma once

#include <functional>
#include <mutex>
#include <string>

#include "base/message_box.h"

namespace tessavo {

/// Shows the first of several equal boxes and counts the others.
///
/// For someone who asks once a second and would tell the same once a second. Any thread.
class FoldedBoxes : public IMessageBox {
 public:
    /// \param boxes shows what is new; outlives this
    /// \param counted told how many times the last text has come, with the time when it was shown, whenever
    /// it is not shown; 0 when such a text is forgotten. On the thread that caused it. May be empty.
    explicit FoldedBoxes(IMessageBox& boxes, std::function<void(int)> counted = {});

    /// A repeat of a box without a choice is answered at once, as if it had been closed.
    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override;

    /// The next box is a new one, whatever its text.
    void forget();

 private:
    IMessageBox& boxes_;
    std::function<void(int)> counted_;
    std::mutex mutex_;
    std::string last_;
    int times_ = 0;
};

}  // namespace tessavo
