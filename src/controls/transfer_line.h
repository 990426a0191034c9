#pragma once

#include <QWidget>
#include <chrono>

#include "controls/theme.h"

namespace tessavo {

/// Shows the progress of a transfer: by a line that fills as blocks are sent, and by words at its right.
class TransferLine : public QWidget {
    Q_OBJECT

 public:
    enum class Phase { idle, running, stopped, done };

    explicit TransferLine(int controlId, QWidget* parent = nullptr);

    /// Sets the length of the line; the words begin ten pixels behind it.
    void setLineLength(int pixels);

    void showIdle();
    /// Shows how far a transfer has come. From the fourth block on the words also tell the time that is left,
    /// estimated from the time that the blocks so far took.
    /// \param blocksSent blocks that were sent and confirmed
    /// \param blocks blocks of the whole transfer
    /// \param elapsed time since the first block began
    void showProgress(int blocksSent, int blocks, std::chrono::milliseconds elapsed);
    /// Shows that the transfer stopped after the block shown last.
    void showStopped();
    void showDone();

    [[nodiscard]] Phase phase() const { return phase_; }
    [[nodiscard]] int blocksSent() const { return sent_; }
    [[nodiscard]] int blocks() const { return blocks_; }
    [[nodiscard]] const QString& text() const { return text_; }
    /// Width that line and words need, in pixels.
    [[nodiscard]] int neededWidth() const;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void enter(Phase phase, const QString& text);

    Phase phase_ = Phase::idle;
    int sent_ = 0;
    int blocks_ = 0;
    int lineLength_ = 470;
    QString text_;
};

}  // namespace tessavo
