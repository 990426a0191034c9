#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/message_box.h"

namespace tessavo::test {

/// A box as it was shown.
struct ShownBox {
    std::string text;
    BoxIcon icon;
    BoxButtons buttons;

    friend bool operator==(const ShownBox&, const ShownBox&) = default;
};

inline ShownBox errorBox(std::string text) {
    return {std::move(text), BoxIcon::error, BoxButtons::ok};
}

/// Writes boxes down and answers them with what the test chose. Boxes may be shown from several threads; the
/// test looks when no more come.
class RecordingBoxes : public IMessageBox {
 public:
    /// \param otherwise answer of a box for which the test chose none
    explicit RecordingBoxes(BoxAnswer otherwise = BoxAnswer::ok) : otherwise_(otherwise) {}

    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override {
        const std::lock_guard guard(mutex_);
        shown.push_back({std::string(text), icon, buttons});
        if (answers.empty()) {
            return otherwise_;
        }
        const BoxAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const ShownBox& box : shown) {
            all.push_back(box.text);
        }
        return all;
    }

    std::deque<BoxAnswer> answers;
    std::vector<ShownBox> shown;

 private:
    BoxAnswer otherwise_;
    std::mutex mutex_;
};

}  // namespace tessavo::test
