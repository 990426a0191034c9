#include <atomic>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <utility>

#include "support/harness.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;

/// What threads do with the two locks of a state, in order.
class LockEvents {
 public:
    void add(const std::string& event) {
        {
            const std::lock_guard guard(mutex_);
            events_.push_back(event);
        }
        changed_.notify_all();
    }
    [[nodiscard]] std::vector<std::string> all() const {
        const std::lock_guard guard(mutex_);
        return events_;
    }
    void clear() {
        const std::lock_guard guard(mutex_);
        events_.clear();
    }
    /// Waits until one of two events has come.
    /// \return the one that came first
    std::string waitForOneOf(const std::string& one, const std::string& other) {
        std::unique_lock lock(mutex_);
        std::string found;
        changed_.wait(lock, [&] {
            const auto event = std::find_if(events_.begin(), events_.end(),
                                            [&](const auto& e) { return e == one || e == other; });
            found = event == events_.end() ? "" : *event;
            return !found.empty();
        });
        return found;
    }

 private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> events_;
};

class WatchedLock : public CSemaphore {
 public:
    WatchedLock(std::string name, LockEvents& events) : name_(std::move(name)), events_(events) {}
    bool take(milliseconds limit) override {
        events_.add("want " + name_);
        const bool taken = CSemaphore::take(limit);
        if (taken) {
            events_.add("have " + name_);
            if (atTake) {
                atTake();
            }
        }
        return taken;
    }
    void release() override {
        if (atRelease) {
            atRelease();
        }
        events_.add("free " + name_);
        CSemaphore::release();
    }
    std::function<void()> atTake;
    std::function<void()> atRelease;

 private:
    std::string name_;
    LockEvents& events_;
};

/// Boxes that look at the state while they are shown.
class LookingBoxes : public RecordingBoxes {
 public:
    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override {
        if (look) {
            look();
        }
        return RecordingBoxes::show(text, icon, buttons);
    }
    std::function<void()> look;
};

class ImageCopyTest : public ::testing::Test {
 protected:
    LockEvents events_;
    LookingBoxes boxes_;
    WatchedLock* set_ = new WatchedLock("set", events_);
    WatchedLock* image_ = new WatchedLock("image", events_);
    TuningState state_{boxes_, std::unique_ptr<CSemaphore>(set_), std::unique_ptr<CSemaphore>(image_)};

    void SetUp() override {
        state_.start();
        events_.clear();
    }
    /// Copies the image on a thread of its own, as the worker does, and says so when it is through.
    std::thread copyInto(Bytes& copy) {
        return std::thread([this, &copy] {
            copy = bytesOf(state_.imageCopy());
            events_.add("copied");
        });
    }
};

TEST_F(ImageCopyTest, HoldsBothLocksTheWholeSetsOutside) {
    static_cast<void>(state_.imageCopy());
    EXPECT_EQ(events_.all(), (std::vector<std::string>{"want set", "have set", "want image", "have image",
                                                       "free image", "free set"}));
}

TEST_F(ImageCopyTest, WaitsWhileAnEditWritesTheImage) {
    Bytes copy;
    ASSERT_TRUE(image_->take(milliseconds(0))) << "as an edit does while it writes";
    events_.clear();
    std::thread worker = copyInto(copy);
    EXPECT_EQ(events_.waitForOneOf("want image", "copied"), "want image");
    image_->release();
    worker.join();
    EXPECT_SAME_BYTES(copy, bytesOf(state_.image()));
}

TEST_F(ImageCopyTest, TakesAChangeOfSetWithAllThatThePagesWriteInIt) {
    std::mt19937_64 random(1);
    state_.replaceStore(recordOf<ParameterStore>(randomStore(random)));
    events_.clear();
    Bytes copy;
    std::thread worker;
    state_.selectSet(3, [&] {
        events_.clear();
        worker = copyInto(copy);
        EXPECT_EQ(events_.waitForOneOf("want set", "copied"), "want set");
        state_.setSelectionMask(0xFF);
        state_.setVolume(5.5F, true);
        state_.setBandFrequency(4, 4321, true);
        EXPECT_TRUE(copy.empty());
    });
    worker.join();
    EXPECT_SAME_BYTES(copy, bytesOf(state_.image()));
    EXPECT_EQ(readAt<std::uint16_t>(copy, 36 + 16 + 64 + 2), 4321);
}

TEST_F(ImageCopyTest, WaitsForALoadAndForAConversionToo) {
    std::mt19937_64 random(2);
    const Bytes store = randomStore(random);
    const auto changes = std::vector<std::function<void()>>{
        [&] { state_.replaceStore(recordOf<ParameterStore>(store)); },
        [&] { state_.imageToSet(); },
    };
    for (const auto& change : changes) {
        Bytes copy;
        std::thread worker;
        set_->atTake = [&, first = true]() mutable {
            if (!std::exchange(first, false)) {
                return;  // the copy's own turn
            }
            events_.clear();
            worker = copyInto(copy);
            EXPECT_EQ(events_.waitForOneOf("want set", "copied"), "want set");
        };
        change();
        ASSERT_TRUE(worker.joinable()) << "the change takes the lock";
        worker.join();
        EXPECT_SAME_BYTES(copy, bytesOf(state_.image()));
    }
}

TEST(ImageCopyWithoutTheLock, AsksForFiveSecondsAndGoesOn) {
    Tuning tuning;
    tuning.lock = {};
    tuning.lock.granted = false;
    EXPECT_SAME_BYTES(bytesOf(tuning.state.imageCopy()), tuning.image());
    EXPECT_EQ(tuning.lock.asked, std::vector<milliseconds>{milliseconds(5000)});
    EXPECT_EQ(tuning.lock.released, 0);
    tuning.lock = {};
    static_cast<void>(tuning.state.imageCopy());
    EXPECT_EQ(tuning.lock.released, 1);
}

TEST_F(ImageCopyTest, EveryWriteOfTheImageHappensUnderTheLockThatACopyTakes) {
    Bytes last = bytesOf(state_.image());
    image_->atTake = [&] { EXPECT_SAME_BYTES(bytesOf(state_.image()), last) << "written without the lock"; };
    image_->atRelease = [&] { last = bytesOf(state_.image()); };
    std::mt19937_64 random(3);
    const Bytes store = randomStore(random);
    const auto edits = std::vector<std::function<void()>>{
        [&] { state_.setDelay(1.5F, true); },
        [&] { state_.setVolume(3.5F, true); },
        [&] { state_.setInvertPhase(true, 1); },
        [&] { state_.setBandFrequency(1, 555, true); },
        [&] { state_.setBandType(1, 0); },
        [&] { state_.setBandGainOrQ(1, BandValue::gain, 4, true); },
        [&] { state_.setBandGainOrQ(1, BandValue::q, 4, true); },
        [&] { state_.setBandOff(1, 0); },
        [&] { state_.setCrossover(0, 1, 4, 1); },
        [&] { state_.setCrossoverFrequency(0, 444, true); },
        [&] { state_.setLimiter(LimiterField::gain, -22, true); },
        [&] { state_.setGroupGain({4}, 2); },
        [&] { state_.setGroupDelay({4}, 2); },
        [&] { state_.setGainGroup({4}, 3); },
        [&] { state_.setDelayGroup({4}, 3); },
        [&] { state_.setChannelFlag({4}, 1); },
        [&] { state_.setRouterSource({4}, 12); },
        [&] { state_.setInputBandGain(3, 9, true); },
        [&] { state_.setInputEqOn(false); },
        [&] { state_.edit(FieldId::pone, {}, -33, true); },
        [&] { state_.replaceStore(recordOf<ParameterStore>(store)); },
        [&] { state_.selectSet(2); },
        [&] { state_.replaceImage(recordOf<ParameterImage>(Bytes(imageSize, 9))); },
        [&] { state_.imageToSet(); },
    };
    state_.setSelectionMask(0xFF);
    for (std::size_t i = 0; i < edits.size(); ++i) {
        const Bytes before = bytesOf(state_.image());
        edits[i]();
        EXPECT_SAME_BYTES(bytesOf(state_.image()), last) << "edit " << i << " writes after its lock";
        EXPECT_TRUE(bytesOf(state_.image()) != before || i + 1 == edits.size()) << "edit " << i;
    }
}

class WarningBox : public ImageCopyTest, public ::testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(, WarningBox, ::testing::Values(0, 1, 2));

// A high shelf of 24 dB at 5 kHz does not fit into the words; whichever of its numbers comes last warns.
TEST_P(WarningBox, ComesWhenTheImageHoldsTheEditedValueAndBeforeItHoldsNewWords) {
    const std::vector<std::function<void()>> steps{
        [&] { state_.setBandType(0, 0); },
        [&] { state_.setBandFrequency(0, 5000, true); },
        [&] { state_.setBandGainOrQ(0, BandValue::gain, 24.0F, true); },
    };
    state_.setBandFrequency(0, 19000, true);
    const auto last = static_cast<std::size_t>(GetParam());
    for (std::size_t step = 0; step < steps.size(); ++step) {
        if (step != last) {
            steps[step]();
        }
    }
    ASSERT_TRUE(boxes_.shown.empty());
    const Bytes before = bytesOf(state_.image());
    Bytes atBox;
    boxes_.look = [&] {
        std::thread worker = copyInto(atBox);
        worker.join();
    };
    steps[last]();
    ASSERT_EQ(boxes_.shown.size(), 1U);

    Bytes expected = before;
    const std::size_t band = imageBlockOffset(7) + 16;
    expected[band] = 0;
    writeAt(expected, band + 2, std::uint16_t{5000});
    writeAt(expected, band + 4, 24.0F);
    EXPECT_SAME_BYTES(atBox, expected);
    writeAt(expected, imageBlockOffset(7) + 200, state_.bandWords({7}, 0));
    EXPECT_SAME_BYTES(bytesOf(state_.image()), expected);
    EXPECT_NE(readAt<BiquadWords>(atBox, imageBlockOffset(7) + 200), state_.bandWords({7}, 0));
}

TEST_F(ImageCopyTest, IsNotHeldUpByAWarningWhileASetIsChosen) {
    Bytes store = bytesOf(state_.store());
    writeAt(store, setSize + recordChannelOffset(0), std::uint8_t{0});
    writeAt(store, setSize + recordChannelOffset(0) + 2, std::uint16_t{10000});
    writeAt(store, setSize + recordChannelOffset(0) + 4, 24.0F);
    state_.replaceStore(recordOf<ParameterStore>(store));
    const Bytes before = bytesOf(state_.image());
    Bytes atBox;
    boxes_.look = [&] {
        std::thread worker = copyInto(atBox);
        worker.join();
    };
    state_.selectSet(1);
    ASSERT_EQ(boxes_.shown.size(), 1U);
    EXPECT_SAME_BYTES(atBox, before) << "the set before, whole";
}

TEST_F(ImageCopyTest, IsNotHeldUpByAWarningWhileAFileIsLoaded) {
    Bytes store = bytesOf(state_.store());
    writeAt(store, recordChannelOffset(0), std::uint8_t{0});
    writeAt(store, recordChannelOffset(0) + 2, std::uint16_t{10000});
    writeAt(store, recordChannelOffset(0) + 4, 24.0F);
    const Bytes imageBefore = bytesOf(state_.image());
    const Bytes storeBefore = bytesOf(state_.store());
    Bytes atBox;
    boxes_.look = [&] {
        events_.clear();
        std::thread worker = copyInto(atBox);
        worker.join();
        EXPECT_EQ(events_.all(), (std::vector<std::string>{"want set", "have set", "want image", "have image",
                                                           "free image", "free set", "copied"}))
            << "at once, and not for want of the lock";
        EXPECT_SAME_BYTES(bytesOf(state_.store()), storeBefore) << "image and sets agree while it stands";
    };
    state_.replaceStore(recordOf<ParameterStore>(store));
    ASSERT_EQ(boxes_.shown.size(), 1U);
    EXPECT_SAME_BYTES(atBox, imageBefore) << "the set before, whole";
    EXPECT_SAME_BYTES(bytesOf(state_.store()), store);
    EXPECT_EQ(readAt<float>(bytesOf(state_.image()), imageBlockOffset(0) + 16 + 4), 24.0F);
    EXPECT_EQ(readAt<BiquadWords>(bytesOf(state_.image()), imageBlockOffset(0) + 200),
              state_.bandWords({0}, 0));
}

}  // namespace
}  // namespace tessavo::test
