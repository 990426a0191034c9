#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

#include "base/message_box.h"

namespace tessavo {

class CommLink;
class InputHold;

/// How the window closes: the questions before it, and the waiting for what still has the line to the target.
///
/// A command or a live transfer that runs is asked about; a person may wait for its end and is asked to close
/// then. What nobody has started, as a poll, gets the moment that it needs. User-interface thread.
class FrameClosing : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        CommLink& link;
        IMessageBox& boxes;
        std::function<void()> saveAtExit;  ///< a person wants the settings saved first
        std::function<void()> close;       ///< asks the window to close, as its cross does
        std::function<void()> leave;       ///< ends the program: nothing is asked or waited for any more
    };

    /// \param dependencies outlive this object
    explicit FrameClosing(Dependencies dependencies);
    ~FrameClosing() override;

    /// When this answers true the window closes without a question.
    void setNothingToLose(std::function<bool()> nothingToLose) { nothingToLose_ = std::move(nothingToLose); }

    /// The window was asked to close. Asks what has to be asked.
    /// \return true where it closes now; otherwise it stays open, for good or until `leave` is called at the
    ///     end of the exchange that is waited for
    bool request();

 private:
    [[nodiscard]] bool lineIsQuiet() const;
    bool mayBreakOff();
    void closeOnceQuiet();
    bool mayClose();
    void closeAfterPoll();
    void pollEnded();

    Dependencies dependencies_;
    std::function<bool()> nothingToLose_;
    bool closing_ = false;         ///< all questions are answered; only an exchange has still to end
    bool closeOnceQuiet_ = false;  ///< a person waits for the end of an exchange, to be asked to close then
    std::unique_ptr<InputHold> hold_;  ///< while a background exchange is waited for
    QTimer pollLimit_;                 ///< how long that may last
};

}  // namespace tessavo
