#include <QTest>
#include <algorithm>
#include <array>
#include <atomic>
#include <random>
#include <set>

#include "comm/page/page_bench.h"
#include "controls/bitmap_slider.h"
#include "controls/clip_light.h"
#include "pages/input/input_eq.h"
#include "pages/output/clip_detect_dlg.h"
#include "pages/output/output_eq.h"
#include "pages/output/output_group.h"
#include "support/stepped_clock.h"

namespace tessavo::test {
namespace {

/// Everything that uses the line at once: the page's buttons, one worker for all the troubles to come, so
/// that its reply buffer meets them too, and the page that polls the clip state. Edits come from the pages'
/// controls and from the side.
class Soak : public PageBench {
 protected:
    Soak() {
        const auto add = [&](QWidget* made) {
            made->setParent(&pages_);
            made->show();
        };
        edited_ = {new CInputEQ(tuning.state, boxes), new COutputEQ(tuning.state, boxes),
                   new COutputGroup(tuning.state)};
        std::ranges::for_each(edited_, add);
        clip_ = new CClipDetectDlg({.ask =
                                        [this] {
                                            ++polls;
                                            return background_.ReadClipState();
                                        },
                                    .takeTurn = [this](const auto&) { return lineIsFree(); },
                                    .clock = &pollerClock_});
        add(clip_);
        pages_.resize(984, 596);
        pages_.show();
        pollerClock_.waitForPause();
    }
    ~Soak() override {
        pollerClock_.end();
        delete clip_;
    }

    /// Turns for polls of a poller whose time stands still meanwhile: one that cannot be had at once is none.
    bool lineIsFree() const {
        const bool editWaits = tuning.state.liveTransferEnabled() && tuning.state.updatePending();
        return !editWaits && !sends_ && !transfers->running();
    }
    void plug(const std::vector<std::string>& faults) {
        faults_ = faults;
        exchangeTarget(faults);
    }
    void switchClipDetection() { click(*clip_->findChild<CxSkinButton*>()); }
    bool lightIsOn(int id) {
        return !clip_->findChild<ClipLight*>(QStringLiteral("id%1").arg(id))->isHidden();
    }
    /// One second of the poller.
    void pollerStep() {
        pollerClock_.step();
        QCoreApplication::sendPostedEvents();
    }
    /// One look of the worker, judged by what is known of the target and of the reply buffer.
    void workerStep() {
        told_ = LiveWorker::State::idle;
        const auto before = shown.size();
        worker.step();
        const bool box = shown.size() > before;
        switch (told_) {
            case LiveWorker::State::idle:
                EXPECT_FALSE(box);
                return;
            case LiveWorker::State::confirmed:
                ++confirmed;
                EXPECT_FALSE(box);
                EXPECT_EQ(memory().live, imageBytes());
                bufferConfirms_ = true;
                break;
            case LiveWorker::State::wrongSet:
                ++failed;
                EXPECT_TRUE(box);
                EXPECT_EQ(faults_, std::vector<std::string>{"wrong-confirmation"});
                bufferConfirms_ = false;
                break;
            default:
                ++failed;
                // Without a new reply the verdict reads what the last one has left.
                if (noReplyComes.contains(faults_.front())) {
                    EXPECT_EQ(box, !bufferConfirms_) << faults_.front();
                    staleVerdicts += bufferConfirms_ ? 1 : 0;
                }
                bufferConfirms_ = !box;
        }
        if (box) {
            EXPECT_EQ(shown.back(), "Target received wrong set");
        }
    }

    void edit(std::mt19937& random) {
        if (random() % 3 == 0) {
            editOnAPage(random);
        } else {
            editFromTheSide(random);
        }
    }
    void editOnAPage(std::mt19937& random) {
        CTabDialog& onePage = *edited_[random() % edited_.size()];
        QList<CBitmapSlider*> sliders = onePage.findChildren<CBitmapSlider*>();
        sliders.removeIf([](const CBitmapSlider* each) { return !each->isVisible(); });
        ASSERT_FALSE(sliders.isEmpty());
        CBitmapSlider& slider = *sliders[static_cast<int>(random() % static_cast<unsigned>(sliders.size()))];
        constexpr std::array keys{Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};
        const Bytes before = tuning.store();
        QTest::keyClick(&slider, keys[random() % keys.size()]);
        QCoreApplication::sendPostedEvents();
        editsOnPages += tuning.store() == before ? 0 : 1;
    }
    void editFromTheSide(std::mt19937& random) {
        const auto at = [&](int low, int high) {
            return static_cast<float>(low + static_cast<int>(random() % static_cast<unsigned>(high - low)));
        };
        const bool final = random() % 4 != 0;
        TuningState& state = tuning.state;
        state.setSelectionMask(static_cast<std::uint8_t>(1U << (random() % 8)));
        switch (random() % 6) {
            case 0:
                state.setVolume(at(-60, 6), final);
                break;
            case 1:
                state.setBandFrequency(random() % 8, static_cast<std::uint16_t>(at(20, 20000)), final);
                break;
            case 2:
                state.setBandGainOrQ(random() % 8, BandValue::gain, at(-18, 18), final);
                break;
            case 3:
                state.setDelay(at(0, 20), final);
                break;
            case 4:
                state.setInputBandGain(random() % 13, at(-20, 20), final);
                break;
            default:
                state.setChannelFlag({static_cast<std::uint8_t>(random() % 8)}, random() % 2 == 0);
        }
    }

    const std::set<std::string> noReplyComes{"no-request", "wrong-request=2", "negative=1",
                                             "silence=1",  "damaged-reply",   "truncated-reply=100",
                                             "late=11000"};
    int confirmed = 0;
    int failed = 0;
    int staleVerdicts = 0;  ///< failures without a box, for what the buffer held
    int editsOnPages = 0;
    std::atomic<int> polls = 0;
    std::function<void()> whileSending;
    LiveWorker worker{tuning.state, *engine, clock, boxes,
                      [this](LiveWorker::State state, const ParameterImage&) {
                          told_ = state;
                          sends_ = state == LiveWorker::State::sending;
                          if (sends_ && whileSending) {
                              whileSending();
                          }
                      }};

 private:
    QWidget pages_;
    std::vector<CTabDialog*> edited_;
    CClipDetectDlg* clip_ = nullptr;
    SteppedClock pollerClock_;
    TargetCommands background_{tuning.state, *engine, boxes};
    std::vector<std::string> faults_;
    std::atomic<bool> sends_ = false;
    bool bufferConfirms_ = false;
    LiveWorker::State told_ = LiveWorker::State::idle;
};

TEST_F(Soak, TwoThousandEditsWithRandomTroubleEndInStep) {
    const std::vector<std::string> troubles[]{{},
                                              {},
                                              {"no-request"},
                                              {"wrong-request=2"},
                                              {"negative=1"},
                                              {"silence=1"},
                                              {"junk=2"},
                                              {"damaged-reply"},
                                              {"truncated-reply=100"},
                                              {"late=11000"},
                                              {"wrong-confirmation"},
                                              {"no-disconnect"},
                                              {"cable=2000"},
                                              {"cable=5000"}};
    std::mt19937 random(2026);
    whileSending = [&] {
        const int before = polls;
        pollerStep();
        EXPECT_EQ(polls, before) << "no poll while the image is under way";
    };
    switchClipDetection();
    plug({});
    tuning.state.setLiveMode(true);
    for (int i = 0; i < 2000 && !HasFatalFailure(); ++i) {
        if (i % 25 == 0) {
            plug(troubles[random() % std::size(troubles)]);
        }
        edit(random);
        if (random() % 8 == 0) {
            workerStep();
        }
        if (random() % 16 == 0) {
            pollerStep();
        }
        if (random() % 100 == 0) {
            click(saveButton(static_cast<int>(random() % 6)));
        }
        if (random() % 100 == 0) {
            click(button(comm_id::update));
        }
    }
    EXPECT_GT(confirmed, 20);
    EXPECT_GT(failed, 20);
    EXPECT_GT(staleVerdicts, 5);
    EXPECT_GT(polls, 20);
    EXPECT_GT(editsOnPages, 300);
    plug({});
    tuning.state.setVolume(-1.0F, true);
    workerStep();
    EXPECT_EQ(memory().live, imageBytes());
    EXPECT_FALSE(tuning.state.updatePending());
    // The poller has lived through it too.
    ClipBytes clipping{};
    clipping[0] = 1;
    device->clip().hold(clipping);
    pollerStep();
    EXPECT_TRUE(lightIsOn(1386));
    device->clip().hold({});
    pollerStep();
    EXPECT_FALSE(lightIsOn(1386));
    click(saveButton(5));
    EXPECT_EQ(memory().sets[5], imageBytes());
    tuning.state.setLiveMode(false);
    tuning.state.setVolume(-33.0F, true);
    click(loadButton(5));
    const auto& back = memory().sets[5];
    EXPECT_SAME_BYTES(tuning.image(), Bytes(back.begin(), back.end()));
}

class StormOfEdits : public PageBench {};

TEST_F(StormOfEdits, AnEditDuringASendIsSentNext) {
    tuning.state.setLiveMode(true);
    int edits = 0;
    LiveWorker worker(tuning.state, *engine, clock, boxes,
                      [&](LiveWorker::State state, const ParameterImage&) {
                          // The worker has taken the update by now: this edit comes while the image before it
                          // is under way.
                          if (state == LiveWorker::State::sending && edits < 500) {
                              ++edits;
                              tuning.state.setVolume(static_cast<float>(-(edits % 60)), true);
                          }
                      });
    int rounds = 0;
    while (tuning.state.updatePending() && rounds < 1000) {
        worker.step();
        ++rounds;
    }
    EXPECT_EQ(edits, 500);
    EXPECT_EQ(rounds, 501);
    EXPECT_EQ(memory().live, imageBytes());
    EXPECT_TRUE(shown.empty());
}

}  // namespace
}  // namespace tessavo::test
