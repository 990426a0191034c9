#include "app/handed_files.h"

#include <QApplication>
#include <chrono>

#include "app/comm_link.h"
#include "app/main_frame.h"

namespace tessavo {

namespace {

constexpr std::chrono::milliseconds lookInterval{50};

}  // namespace

HandedFiles::HandedFiles(CMainFrame& frame, CommLink& link) : frame_(frame), link_(link) {
    look_.setInterval(lookInterval);
    connect(&look_, &QTimer::timeout, this, &HandedFiles::loadNext);
    // Between two polls the line may be free for a moment only.
    connect(&link_, &CommLink::exchangeEnded, this, &HandedFiles::loadNext, Qt::QueuedConnection);
}

bool HandedFiles::take(const QString& path) {
    if (!frame_.isVisible() || waiting_.size() >= mostWaiting) {
        return false;
    }
    bringToFront();
    if (!path.isEmpty()) {
        waiting_.push_back(path);
        look_.start();
        // Whoever has handed it over waits for the answer first.
        QMetaObject::invokeMethod(this, &HandedFiles::loadNext, Qt::QueuedConnection);
    }
    return true;
}

void HandedFiles::bringToFront() {
    frame_.setWindowState(frame_.windowState() & ~Qt::WindowMinimized);
    frame_.raise();
    // Under a box the window itself takes no input.
    QWidget* box = QApplication::activeModalWidget();
    QWidget& front = box != nullptr ? *box->window() : static_cast<QWidget&>(frame_);
    front.raise();
    front.activateWindow();
    // Where the desktop lets no program come to the front by itself, it shows that this one wants to.
    QApplication::alert(&front);
}

bool HandedFiles::mayLoad() const {
    return !loading_ && frame_.isVisible() && QApplication::activeModalWidget() == nullptr &&
           QApplication::activePopupWidget() == nullptr && QApplication::mouseButtons() == Qt::NoButton &&
           !link_.foreground().running() && !link_.liveTransferRuns() && !link_.exchangeRuns();
}

void HandedFiles::loadNext() {
    if (waiting_.empty() || !mayLoad()) {
        return;
    }
    const QString path = waiting_.front();
    waiting_.pop_front();
    if (waiting_.empty()) {
        look_.stop();
    }
    // A box about this file lets the next one wait.
    loading_ = true;
    frame_.openFile(path);
    loading_ = false;
}

}  // namespace tessavo
