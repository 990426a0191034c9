#pragma once

#include <QWidget>
#include <chrono>

#include "controls/theme.h"

namespace tessavo {

/// Progress of a transfer: a line that fills with the blocks sent, and the same in words at its right.
class TransferLine : public QWidget {
    Q_OBJECT

 public:
    enum class Phase { idle, running, stopped, done };

    explicit TransferLine(int controlId, QWidget* parent = nullptr);

    /// Length of the line; the words begin ten pixels behind it.
    void setLineLength(int pixels);

    void showIdle();
    /// `elapsed` is the time since the first block began; from the fourth block on it tells the time left.
    void showProgress(int blocksSent, int blocks, std::chrono::milliseconds elapsed);
    /// The transfer ended before its end, at the block shown last.
    void showStopped();
    void showDone();

    [[nodiscard]] Phase phase() const { return phase_; }
    [[nodiscard]] int blocksSent() const { return sent_; }
    [[nodiscard]] int blocks() const { return blocks_; }
    [[nodiscard]] const QString& text() const { return text_; }
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
