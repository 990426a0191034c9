#include "app/frame_closing.h"

#include <QApplication>
#include <chrono>
#include <string_view>
#include <utility>

#include "app/comm_link.h"
#include "comm/page/input_hold.h"

namespace tessavo {

namespace {

// More than twice what a poll of a target that answers takes.
constexpr std::chrono::seconds pollPatience{2};
constexpr std::string_view exitQuestion =
    "The current settings will be lost!\r\n Do you want to save settings?";
constexpr std::string_view breakExchangeQuestion =
    "An exchange with the target is still running.\r\nDo you want to wait until it ends?";
constexpr std::string_view breakSoftwareQuestion =
    "The software image is still being sent!\r\n"
    "If you close now, the target may be left without software.\r\n"
    "Do you want to wait until it is sent?";

}  // namespace

FrameClosing::FrameClosing(Dependencies dependencies) : dependencies_(std::move(dependencies)) {
    CommLink* const link = &dependencies_.link;
    ForegroundTransfers* const commands = &link->foreground();
    connect(link, &CommLink::exchangeEnded, this, [this] {
        if (!dependencies_.link.exchangeRuns()) {
            pollEnded();
        }
    });
    pollLimit_.setSingleShot(true);
    connect(&pollLimit_, &QTimer::timeout, this, &FrameClosing::pollEnded);
    // What has run the exchange has to return first.
    connect(link, &CommLink::workerState, this, &FrameClosing::closeOnceQuiet, Qt::QueuedConnection);
    connect(commands, &ForegroundTransfers::ended, this, &FrameClosing::closeOnceQuiet, Qt::QueuedConnection);
    connect(commands, &ForegroundTransfers::ended, this, [this] {
        if (closing_) {
            // The command that has run the exchange has to return first.
            QMetaObject::invokeMethod(
                this, [this] { dependencies_.leave(); }, Qt::QueuedConnection);
        }
    });
}

FrameClosing::~FrameClosing() = default;

bool FrameClosing::lineIsQuiet() const {
    return !dependencies_.link.foreground().running() && !dependencies_.link.liveTransferRuns();
}

bool FrameClosing::mayBreakOff() {
    if (lineIsQuiet()) {
        return true;
    }
    const bool software =
        dependencies_.link.foreground().activity() == ForegroundTransfers::Activity::sendingSoftware;
    // The default button waits: a key pressed too soon must not break anything off.
    const BoxAnswer answer = dependencies_.boxes.show(
        software ? breakSoftwareQuestion : breakExchangeQuestion, BoxIcon::error, BoxButtons::yesNoCancel);
    closeOnceQuiet_ = answer == BoxAnswer::yes;
    if (closeOnceQuiet_) {
        // The exchange may have ended while the question was open.
        QMetaObject::invokeMethod(this, &FrameClosing::closeOnceQuiet, Qt::QueuedConnection);
    }
    return answer == BoxAnswer::no;
}

void FrameClosing::closeOnceQuiet() {
    if (!closeOnceQuiet_ || !lineIsQuiet()) {
        return;
    }
    if (QApplication::activeModalWidget() != nullptr) {
        // A box tells what the exchange came to: that is read first.
        constexpr std::chrono::milliseconds lookAgain{100};
        QTimer::singleShot(lookAgain, this, &FrameClosing::closeOnceQuiet);
        return;
    }
    closeOnceQuiet_ = false;
    dependencies_.close();
}

// Nobody has started this exchange, so nobody is asked about it: it gets the moment that it needs.
void FrameClosing::closeAfterPoll() {
    closing_ = true;
    hold_ = std::make_unique<InputHold>();
    pollLimit_.start(pollPatience);
}

void FrameClosing::pollEnded() {
    if (!hold_) {
        return;
    }
    pollLimit_.stop();
    hold_.reset();
    // A live transfer may have waited for the line.
    if (mayBreakOff()) {
        dependencies_.leave();
    } else {
        closing_ = false;
    }
}

bool FrameClosing::mayClose() {
    switch (dependencies_.boxes.show(exitQuestion, BoxIcon::error, BoxButtons::yesNoCancel)) {
        case BoxAnswer::yes:
            dependencies_.saveAtExit();
            return true;
        case BoxAnswer::no:
            return true;
        default:
            return false;
    }
}

bool FrameClosing::request() {
    if (closing_) {
        return false;
    }
    const bool atOnce = nothingToLose_ && nothingToLose_();
    const bool quiet = lineIsQuiet();
    // A live transfer may begin while the second question is open.
    if (!atOnce && (!mayBreakOff() || !mayClose() || (quiet && !mayBreakOff()))) {
        return false;
    }
    if (dependencies_.link.foreground().running()) {
        closing_ = true;
        dependencies_.link.cancelExchanges();
        return false;
    }
    if (!atOnce && lineIsQuiet() && dependencies_.link.exchangeRuns()) {
        closeAfterPoll();
        return false;
    }
    return true;
}

}  // namespace tessavo
