#include "app/comm_link.h"

#include <algorithm>
#include <span>
#include <utility>

namespace tessavo {

CommLink::CommLink(TuningState& tuning, IMessageBox& boxes, std::unique_ptr<CSerial> port)
    : tuning_(tuning),
      port_(std::move(port)),
      engine_(outside(boxes)),
      backgroundBoxes_(boxes, [this](int times) { calls_.call([this, times] { emit boxRepeated(times); }); }),
      backgroundEngine_(outside(backgroundBoxes_)),
      foreground_(engine_),
      background_(tuning, backgroundEngine_, backgroundBoxes_),
      worker_(tuning, engine_, clock_, boxes, [this](LiveWorker::State state) { noteWorkerState(state); }) {}

CommLink::~CommLink() {
    shutDown();
}

TransferEngine::Outside CommLink::outside(IMessageBox& boxes) {
    return {*port_,
            clock_,
            *this,
            boxes,
            transferLock_,
            [this] { return portName(); },
            [this](std::size_t done, std::size_t all) {
                calls_.call([this, done, all, at = clock_.now().count()] { emit blockSent(done, all, at); });
            },
            [this](ExchangeEnd end) { noteExchangeEnd(end); },
            [this] { ++exchanges_; }};
}

bool CommLink::startWorker() {
    return worker_.start();
}

void CommLink::shutDown() {
    cancelExchanges();
    worker_.stop();
}

void CommLink::cancelExchanges() {
    clock_.interrupt();
    port_->Cancel();
}

std::string CommLink::portName() const {
    const std::lock_guard guard(guard_);
    return portName_;
}

void CommLink::setPortName(const std::string& name) {
    {
        const std::lock_guard guard(guard_);
        if (portName_ == name) {
            return;
        }
        portName_ = name;
    }
    // What another port confirmed says nothing about this one, nor does a transfer that is under way.
    forgetConfirmation();
    forgetRepeatedBoxes();
    emit portNameChanged(QString::fromStdString(name));
}

bool CommLink::isFree() const {
    const bool editWaits = tuning_.liveTransferEnabled() && tuning_.updatePending();
    return !editWaits && !liveTransferRuns_ && !foreground_.running();
}

std::optional<ParameterImage> CommLink::confirmedImage() const {
    const std::lock_guard guard(guard_);
    return confirmedImage_;
}

bool CommLink::imageIsConfirmed() const {
    const auto confirmed = confirmedImage();
    const auto bytesOf = [](const ParameterImage& image) { return std::as_bytes(std::span(&image, 1)); };
    return confirmed && std::ranges::equal(bytesOf(*confirmed), bytesOf(tuning_.image()));
}

void CommLink::forgetConfirmation() {
    const std::lock_guard guard(guard_);
    confirmedImage_.reset();
    imageUnderWay_.reset();
}

void CommLink::noteWorkerState(LiveWorker::State state) {
    const bool starts = state == LiveWorker::State::sending;
    {
        const std::lock_guard guard(guard_);
        if (starts) {
            // The worker takes its own copy right after this; an edit between the two is one that waits.
            imageUnderWay_ = tuning_.imageCopy();
        }
        if (state == LiveWorker::State::confirmed) {
            confirmedImage_ = imageUnderWay_;
        } else {
            confirmedImage_.reset();
        }
    }
    liveTransferRuns_ = starts;
    calls_.call([this, state] { emit workerState(state); });
}

void CommLink::noteExchangeEnd(ExchangeEnd end) {
    if (end != ExchangeEnd::lineBusy) {
        --exchanges_;
    }
    if (end != ExchangeEnd::portNotOpened && end != ExchangeEnd::lineBusy) {
        forgetRepeatedBoxes();
    }
    if (end == ExchangeEnd::noAnswer || end == ExchangeEnd::portNotOpened) {
        // An image that is under way stays: the target is still asked whether it has that one.
        const std::lock_guard guard(guard_);
        confirmedImage_.reset();
    }
    calls_.call([this, end] { emit exchangeEnded(end); });
}

void CommLink::log(LogKind kind, std::string_view text) {
    calls_.call(
        [this, kind, line = std::string(text)] { emit lineLogged(kind, QString::fromStdString(line)); });
}

}  // namespace tessavo
