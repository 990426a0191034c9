#pragma once

#include <QTest>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <string>
#include <unistd.h>
#include <vector>

#include "app/page_factory.h"
#include "app/status_line.h"
#include "comm/page/communication.h"
#include "comm/page/log_view.h"
#include "comm/page/page_bench.h"
#include "pages/output/clip_detect_dlg.h"
#include "support/environment.h"
#include "support/frame_fixture.h"
#include "target/pty_target.h"

namespace tessavo::test {

/// Takes the lowest free numbers of pseudo-terminals while it lives. A terminal made meanwhile gets a higher
/// one, which nobody else on the machine is given for a while once it is free: a port that is opened again
/// after it vanished is then not another program's.
class LowNumbersTaken {
 public:
    LowNumbersTaken() {
        for (int& terminal : terminals_) {
            terminal = posix_openpt(O_RDWR | O_NOCTTY);
        }
    }
    ~LowNumbersTaken() {
        for (const int terminal : terminals_) {
            ::close(terminal);
        }
    }
    LowNumbersTaken(const LowNumbersTaken&) = delete;
    LowNumbersTaken& operator=(const LowNumbersTaken&) = delete;

 private:
    std::array<int, 16> terminals_{};
};

/// The whole frame with its real pages and its worker, on a pseudo-terminal to a simulated target.
class OnALine : public FrameTest {
 protected:
    ~OnALine() override {
        boxes.stopAnswering();
        link.shutDown();
        frame.reset();
    }

    /// Starts a target with these faults and, the first time, the frame with its pages and the worker.
    void startTarget(const std::vector<std::string>& faults = {}) {
        PtyTarget::Options options;
        for (const std::string& fault : faults) {
            ASSERT_EQ(addFault(options.faults, fault), "");
        }
        const TargetMemory kept = target ? target->memory() : TargetMemory::holding(factoryImage());
        if (target) {
            target->stop();
        }
        target = std::make_unique<PtyTarget>(kept, std::move(options),
                                             [this](TargetLogKind /*kind*/, std::string_view text) {
                                                 const std::lock_guard guard(saidMutex_);
                                                 said_.emplace_back(text);
                                             });
        {
            const LowNumbersTaken taken;
            ASSERT_EQ(target->start(), "");
        }
        if (!started_) {
            started_ = true;
            makeFrame(pageFactory({tuning,
                                   boxes,
                                   dialogs,
                                   *profile,
                                   link,
                                   [this] { return std::vector<std::string>{lineName()}; },
                                   {},
                                   [this] { frame->view().refreshPages(); }}));
            ASSERT_EQ(view().pages().size(), pageCount);
            ASSERT_TRUE(link.startWorker());
        } else {
            click(comm_id::refresh);
        }
    }

    /// The port as the page lists it.
    [[nodiscard]] virtual std::string lineName() const { return target->portName(); }

    /// Clicks a button of the communication page, or the switch of the other one, with its page in front.
    /// Numbers are those of one page only; another page may have the same.
    void click(int id) {
        const Page page = id == clip_id::onOff ? Page::clipDetection : Page::communication;
        view().showPage(page);
        auto* clicked = view().pages()[static_cast<std::size_t>(page)]->findChild<CxSkinButton*>(
            QStringLiteral("id%1").arg(id));
        ASSERT_NE(clicked, nullptr);
        ASSERT_TRUE(clicked->isVisible());
        QTest::mouseClick(clicked, Qt::LeftButton);
    }
    void toggleLiveMode() { QTest::mouseClick(&eqMode(), Qt::LeftButton); }
    [[nodiscard]] std::string sentence() const { return frame->statusLine().paneText(0).toStdString(); }
    [[nodiscard]] std::string words() const { return frame->statusLine().target().state.toStdString(); }
    [[nodiscard]] TargetStatus::Light light() const { return frame->statusLine().target().light; }
    bool becomesConfirmed() {
        return passEventsUntil([this] { return light() == TargetStatus::Light::confirmed; });
    }
    [[nodiscard]] bool targetHoldsTheImage() const {
        const ImageBytes live = target->memory().live;
        return std::memcmp(live.data(), &tuning.image(), live.size()) == 0;
    }
    LogView& log() { return control<LogView>(comm_id::log); }
    /// What the targets so far have told of themselves.
    [[nodiscard]] std::vector<std::string> said() {
        const std::lock_guard guard(saidMutex_);
        return said_;
    }
    [[nodiscard]] int timesSaid(const std::string& line) {
        const std::vector<std::string> lines = said();
        return static_cast<int>(std::count(lines.begin(), lines.end(), line));
    }
    [[nodiscard]] std::vector<std::string> shownTexts() const {
        std::vector<std::string> texts;
        for (const ShownBox& box : shown) {
            texts.push_back(box.text);
        }
        return texts;
    }

    OwnRunFolder runFolder;

 private:
    bool started_ = false;
    std::mutex saidMutex_;
    std::vector<std::string> said_;

 protected:
    std::unique_ptr<PtyTarget> target;  ///< last: its thread tells into the lines above
};

}  // namespace tessavo::test
