#include "controls/transfer_line.h"

#include <algorithm>

#include "controls/accessible.h"
#include "controls/control_id.h"
#include "controls/skin_painter.h"

namespace tessavo {
namespace {

constexpr int textGap = 10;
constexpr int grooveHeight = 6;
constexpr int smallestFill = 4;
constexpr int blocksBeforeEstimate = 4;

QString minutesAndSeconds(std::chrono::milliseconds time) {
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(time).count();
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace

TransferLine::TransferLine(int controlId, QWidget* parent) : QWidget(parent) {
    installAccessibility();
    setControlId(*this, controlId);
    setFont(theme::font(11));
    setAccessibleName(QStringLiteral("Transfer progress"));
    showIdle();
}

void TransferLine::setLineLength(int pixels) {
    lineLength_ = pixels;
    update();
}

void TransferLine::enter(Phase phase, const QString& text) {
    phase_ = phase;
    text_ = text;
    announceValue(*this, sent_);
    update();
}

void TransferLine::showIdle() {
    sent_ = 0;
    blocks_ = 0;
    enter(Phase::idle, QStringLiteral("No transfer"));
}

void TransferLine::showProgress(int blocksSent, int blocks, std::chrono::milliseconds elapsed) {
    blocks_ = std::max(0, blocks);
    sent_ = std::clamp(blocksSent, 0, blocks_);
    const std::int64_t share = blocks_ == 0 ? 0 : std::int64_t{100} * sent_ / blocks_;
    QString text = QStringLiteral("Block %1 of %2, %3 %").arg(sent_).arg(blocks_).arg(share);
    if (sent_ >= blocksBeforeEstimate) {
        text += QStringLiteral(", %1 left").arg(minutesAndSeconds(elapsed * (blocks_ - sent_) / sent_));
    }
    enter(Phase::running, text);
}

void TransferLine::showStopped() {
    enter(Phase::stopped, QStringLiteral("Stopped at block %1 of %2").arg(sent_).arg(blocks_));
}

void TransferLine::showDone() {
    sent_ = blocks_;
    enter(Phase::done, QStringLiteral("Done, %1 blocks").arg(blocks_));
}

int TransferLine::neededWidth() const {
    return lineLength_ + textGap + fontMetrics().horizontalAdvance(text_);
}

void TransferLine::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    const double top = (height() - grooveHeight) / 2.0;
    painter.roundFrame(QRectF(0, top, lineLength_, grooveHeight), grooveHeight / 2.0,
                       QColor::fromRgb(theme::sunk), QColor::fromRgb(theme::line));
    if (sent_ > 0 || phase_ == Phase::done) {
        const double share = blocks_ == 0 ? 1.0 : static_cast<double>(sent_) / blocks_;
        const double length = std::max<double>(smallestFill, (lineLength_ - 2) * share);
        const QRgb color = phase_ == Phase::stopped ? theme::clip
                           : phase_ == Phase::done  ? theme::live
                                                    : theme::level;
        painter.roundFrame(QRectF(1, top + 1, length, grooveHeight - 2), 2, QColor::fromRgb(color));
    }
    const int left = lineLength_ + textGap;
    painter.text(QRectF(left, 0, width() - left, height()), Qt::AlignLeft | Qt::AlignVCenter,
                 phase_ == Phase::idle ? theme::text3 : theme::text, text_);
}

}  // namespace tessavo
