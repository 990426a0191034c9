#include "params/tuning_state.h"

#include <algorithm>
#include <chrono>

#include "params/factory_defaults.h"
#include "params/image_conversion.h"
#include "params/section_words.h"

namespace tessavo {

namespace {

constexpr std::chrono::milliseconds setChangeWait{500};
constexpr std::chrono::milliseconds wholeImageWait{5000};
constexpr std::uint8_t firstPageChannel = 0x80;

}  // namespace

TuningState::TuningState(IMessageBox& boxes, std::unique_ptr<CSemaphore> exclusion,
                         std::unique_ptr<CSemaphore> imageGuard)
    : boxes_(boxes),
      store_(emptyStore()),
      imageGuard_(imageGuard ? std::move(imageGuard) : std::make_unique<CSemaphore>()),
      exclusion_(exclusion ? std::move(exclusion) : std::make_unique<CSemaphore>()) {
    generators_ = makeFilterMethods([this](std::string_view text) { warn(text); });
    image_.imageSize = parameterImageSize;
}

TuningState::~TuningState() = default;

void TuningState::start() {
    writeDefaults(store_);
    received_ = {};
    notes_ = {};
    selectionMask_ = firstPageChannel;
    computeAll(currentParameterSet());
    deriveImage();
}

ParameterImage TuningState::imageCopy() const {
    const SemaphoreHold wholeSet(*exclusion_, wholeImageWait);
    const SemaphoreHold hold(*imageGuard_);
    return image_;
}

const BiquadWords& TuningState::bandWords(RecordChannel channel, std::size_t band) const {
    return bandWords_.at(channel.value).at(band);
}

const BiquadWords& TuningState::crossoverWords(RecordChannel channel, std::size_t crossover) const {
    return crossoverWords_.at(channel.value).at(crossover);
}

const BiquadWords& TuningState::inputWords(std::size_t inputBand) const {
    return inputWords_.at(inputBand);
}

void TuningState::selectSet(std::uint32_t setIndex, const std::function<void()>& whileLocked) {
    if (setIndex >= setCount) {
        return;
    }
    notifyHistory(TuningEvent::setIsChosen);
    const RunningChange running(*this);
    currentSet_ = setIndex;
    // Done before the lock is taken: a generator may show its warning here, and a transfer would wait for the
    // answer.
    computeAll(currentParameterSet());
    {
        const SemaphoreHold wholeSet(*exclusion_, setChangeWait);
        if (const auto& received = received_[setIndex]) {
            const SemaphoreHold hold(*imageGuard_);
            image_ = received->image;
        } else {
            deriveImage();
        }
        if (whileLocked) {
            whileLocked();
        }
    }
    notifyHistory(TuningEvent::setWasChosen);
    notifyChange();
}

void TuningState::setFilterMode(std::uint32_t mode) {
    if (mode < generators_.size()) {
        filterMode_ = mode;
    }
}

void TuningState::replaceStore(const ParameterStore& store) {
    const RunningChange running(*this);
    // Done before the lock is taken and before the store changes: a generator may show its warning here.
    // While the warning is open, a transfer sends the former set, whole and without waiting.
    computeAll(store.sets[currentSet_]);
    {
        const SemaphoreHold wholeSet(*exclusion_, wholeImageWait);
        store_ = store;
        received_ = {};
        deriveImage();
    }
    notifyHistory(TuningEvent::changed);
    notifyChange();
}

void TuningState::replaceImage(const ParameterImage& received) {
    {
        const SemaphoreHold hold(*imageGuard_);
        image_ = received;
        image_.imageSize = parameterImageSize;
    }
    notifyHistory(TuningEvent::changed);
    notifyChange();
}

void TuningState::imageToSet() {
    const RunningChange running(*this);
    {
        const SemaphoreHold wholeSet(*exclusion_, wholeImageWait);
        const ParameterStore before = store_;
        readImageFields(store_, currentSet_, image_);
        storeReceivedImage(before);
    }
    computeAll(currentParameterSet());
    notifyHistory(TuningEvent::changed);
    notifyChange();
}

void TuningState::storeReceivedImage(const ParameterStore& before) {
    received_[currentSet_] = {image_, currentParameterSet()};
    const Field& source = fieldOf(FieldId::routerSource);
    for (std::size_t set = 0; set < setCount; ++set) {
        if (set == currentSet_ || !received_[set]) {
            continue;
        }
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            if (store_.sets[set].routerSource[channel] != before.sets[set].routerSource[channel]) {
                writeImageField(received_[set]->image, store_.sets[set], source, {channel, 0});
            }
        }
        received_[set]->record = store_.sets[set];
    }
}

void TuningState::discardOutdatedImage(std::size_t set) {
    auto& received = received_[set];
    if (received && !haveEqualImageFields(received->record, store_.sets[set])) {
        received.reset();
    }
}

void TuningState::setNotes(const FileNotes& notes) {
    notes_ = wellFormed(notes);
    notifyHistory(TuningEvent::changed);
}

void TuningState::takeSnapshot(TuningSnapshot& snapshot) const {
    snapshot.store = store_;
    snapshot.image = image_;
    for (std::size_t set = 0; set < setCount; ++set) {
        if (const auto& received = received_[set]) {
            snapshot.received[set] = {1, received->image, received->record};
        } else {
            snapshot.received[set] = {};
        }
    }
    snapshot.bandWords = bandWords_;
    snapshot.crossoverWords = crossoverWords_;
    snapshot.inputWords = inputWords_;
    snapshot.currentSet = currentSet_;
    snapshot.notes = notes_;
}

void TuningState::restore(const TuningSnapshot& snapshot) {
    const RunningChange running(*this);
    {
        const SemaphoreHold wholeSet(*exclusion_, wholeImageWait);
        store_ = snapshot.store;
        for (std::size_t set = 0; set < setCount; ++set) {
            const ReceivedSnapshot& received = snapshot.received[set];
            received_[set] = received.isPresent != 0
                                 ? std::optional<Received>({received.image, received.record})
                                 : std::nullopt;
        }
        bandWords_ = snapshot.bandWords;
        crossoverWords_ = snapshot.crossoverWords;
        inputWords_ = snapshot.inputWords;
        currentSet_ = snapshot.currentSet;
        notes_ = snapshot.notes;
        const SemaphoreHold hold(*imageGuard_);
        image_ = snapshot.image;
    }
    raiseUpdatePending();
    notifyHistory(TuningEvent::changed);
    notifyChange();
}

void TuningState::showOutputCurve(RecordChannel channel) {
    if (curveDisplay_ == nullptr || channel.value >= channelCount) {
        return;
    }
    std::array<BiquadWords, bandCount + crossoverCount> cascade;
    const auto& bands = bandWords_[channel.value];
    const auto& crossovers = crossoverWords_[channel.value];
    std::copy(crossovers.begin(), crossovers.end(), std::copy(bands.begin(), bands.end(), cascade.begin()));
    curveDisplay_->setCurve(computeResponse(cascade));
}

void TuningState::showInputCurve() {
    if (curveDisplay_ != nullptr) {
        curveDisplay_->setCurve(computeResponse(inputWords_));
    }
}

void TuningState::setLiveMode(bool on) {
    liveMode_ = on;
    liveTransferEnabled_ = on;
    if (on) {
        raiseUpdatePending();
    }
    notifyChange();
}

bool TuningState::takeUpdate() {
    return liveTransferEnabled_ && updatePending_.exchange(false);
}

void TuningState::notifyChange() const {
    if (changeListener_) {
        changeListener_();
    }
}

void TuningState::notifyHistory(TuningEvent event) const {
    if (historyListener_) {
        historyListener_(event);
    }
}

// The edited value goes into the image before the box opens, because the box may stay open for long and a
// transfer would send the old value.
void TuningState::warn(std::string_view text) {
    if (runningEdit_) {
        const SemaphoreHold hold(*imageGuard_);
        writeToImage(runningEdit_->values, runningEdit_->index);
    }
    boxes_.showPlain(text);
}

void TuningState::computeBand(const ParameterSet& set, RecordChannel channel, std::size_t band) {
    computeBandWords(generator(), set.channels[channel.value].bands[band], bandWords_[channel.value][band]);
}

void TuningState::computeCrossovers(const ParameterSet& set, RecordChannel channel) {
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        computeCrossoverWords(generator(), set.channels[channel.value].crossovers[k],
                              crossoverWords_[channel.value][k]);
    }
}

void TuningState::computeInputBand(const ParameterSet& set, std::size_t inputBand) {
    computeBandWords(generator(), inputBandOf(set, inputBand), inputWords_[inputBand]);
}

void TuningState::computeAll(const ParameterSet& set) {
    for (std::size_t i = 0; i < inputSectionCount; ++i) {
        computeInputBand(set, i);
    }
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        for (std::size_t b = 0; b < bandCount; ++b) {
            computeBand(set, {c}, b);
        }
        computeCrossovers(set, {c});
    }
}

void TuningState::deriveImage() {
    const SemaphoreHold hold(*imageGuard_);
    writeImageFields(image_, currentParameterSet());
    for (std::size_t c = 0; c < channelCount; ++c) {
        image_.channels[c].bandWords = bandWords_[c];
        image_.channels[c].crossoverWords = crossoverWords_[c];
    }
}

}  // namespace tessavo
