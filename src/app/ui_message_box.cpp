#include "app/ui_message_box.h"

#include <QThread>
#include <optional>

namespace tessavo {

struct UiMessageBox::Request {
    QString text;
    BoxIcon icon;
    BoxButtons buttons;
    std::optional<BoxAnswer> answer;
};

UiMessageBox::UiMessageBox(Presenter presenter) : presenter_(std::move(presenter)) {}

BoxAnswer UiMessageBox::show(std::string_view text, BoxIcon icon, BoxButtons buttons) {
    const QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    if (QThread::currentThread() == calls_.thread()) {
        return presenter_(shown, icon, buttons);
    }
    // The request outlives this call when the program ends while the box is still to come.
    const auto request = std::make_shared<Request>(Request{shown, icon, buttons, std::nullopt});
    calls_.call([this, request] {
        {
            const std::lock_guard guard(mutex_);
            if (stopped_) {
                return;
            }
        }
        const BoxAnswer answer = presenter_(request->text, request->icon, request->buttons);
        const std::lock_guard guard(mutex_);
        request->answer = answer;
        answered_.notify_all();
    });
    std::unique_lock guard(mutex_);
    answered_.wait(guard, [&] { return stopped_ || request->answer.has_value(); });
    return request->answer.value_or(answerWhenClosed(buttons));
}

void UiMessageBox::stopAnswering() {
    const std::lock_guard guard(mutex_);
    stopped_ = true;
    answered_.notify_all();
}

BoxAnswer answerWhenClosed(BoxButtons buttons) {
    return buttons == BoxButtons::ok ? BoxAnswer::ok : BoxAnswer::cancel;
}

}  // namespace tessavo
