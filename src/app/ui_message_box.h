#pragma once

#include <QString>
#include <QWidget>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

#include "base/message_box.h"
#include "controls/ui_calls.h"

namespace tessavo {

/// Message boxes of the window. A box asked for by another thread appears on the user-interface thread, and
/// that thread waits for the answer.
class UiMessageBox : public IMessageBox {
 public:
    /// Shows one box on the user-interface thread and returns its answer.
    using Presenter = std::function<BoxAnswer(const QString& text, BoxIcon icon, BoxButtons buttons)>;

    /// \param presenter the real dialog, or a test's answers
    explicit UiMessageBox(Presenter presenter);

    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override;

    /// From now on boxes of other threads are answered as if closed, those that wait included. Called at
    /// exit, before those threads are joined.
    void stopAnswering();

    /// Replaces the presenter; user-interface thread.
    void setPresenter(Presenter presenter) { presenter_ = std::move(presenter); }

 private:
    struct Request;

    Presenter presenter_;
    std::mutex mutex_;
    std::condition_variable answered_;
    bool stopped_ = false;
    UiCalls calls_;
};

/// The answer of a box that was closed without one.
[[nodiscard]] BoxAnswer answerWhenClosed(BoxButtons buttons);

}  // namespace tessavo
