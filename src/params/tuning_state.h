#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <utility>

#include "dsp/icoefficient_generator.h"
#include "params/channels.h"
#include "params/field_table.h"
#include "params/message_box.h"
#include "params/parameter_image.h"
#include "params/records.h"
#include "params/semaphore.h"
#include "plot/curve_display.h"

namespace tessavo {

/// Fields of a limiter that setLimiter() edits; the numbers are those of the target's operation.
enum class LimiterField : std::uint8_t {
    gain = 0,
    activateLevel = 1,
    deactivateLevel = 2,
    attack = 3,
    release = 4,
    enable = 5,
    disable = 6
};

enum class BandValue : std::uint8_t { gain = 0, q = 1 };

/// Everything that is being tuned: the five sets, the current set's image and coefficients, and the edit
/// operations that keep the three in step.
///
/// Used on the user-interface thread, except for the flags, imageCopy() and takeUpdate(), which any thread
/// may use. Arguments that name a band, crossover, channel or set outside its range change nothing.
class TuningState {
 public:
    /// \param boxes shows the generators' warning; outlives this object.
    /// \param exclusion the mutual-exclusion object; a CSemaphore of its own when empty.
    explicit TuningState(IMessageBox& boxes, std::unique_ptr<CSemaphore> exclusion = nullptr);
    ~TuningState();
    TuningState(const TuningState&) = delete;
    TuningState& operator=(const TuningState&) = delete;

    /// Writes every page's defaults into all sets, selects the first channel and brings image and
    /// coefficients in step; the image's bypass bytes stay as they are. Called once, after construction.
    void start();

    /// Takes the curve of each edit from now on; null for none.
    void setCurveDisplay(ICurveDisplay* display) { curveDisplay_ = display; }

    /// Called on the user-interface thread whenever the image or `updatePending` may have changed: by every
    /// edit, dragging included, by a change of set and by a received or loaded one.
    void setChangeListener(std::function<void()> listener) { changeListener_ = std::move(listener); }

    // --- what is there
    // -------------------------------------------------------------------------------------------

    [[nodiscard]] const ParameterStore& store() const { return store_; }
    [[nodiscard]] const ParameterSet& currentParameterSet() const { return store_.sets[currentSet_]; }
    [[nodiscard]] const ParameterImage& image() const { return image_; }
    /// The image as it is between two edits. Any thread.
    [[nodiscard]] ParameterImage imageCopy() const;
    [[nodiscard]] const BiquadWords& bandWords(RecordChannel channel, std::size_t band) const;
    [[nodiscard]] const BiquadWords& crossoverWords(RecordChannel channel, std::size_t crossover) const;
    [[nodiscard]] const BiquadWords& inputWords(std::size_t inputBand) const;
    [[nodiscard]] IcoefficientGenerator& generator() const { return *generators_[filterMode_]; }

    [[nodiscard]] std::uint32_t currentSet() const { return currentSet_; }
    [[nodiscard]] std::uint32_t filterMode() const { return filterMode_; }
    [[nodiscard]] std::uint8_t selectionMask() const { return selectionMask_; }

    // --- application state
    // ---------------------------------------------------------------------------------------

    /// Makes a set current, then runs `whileLocked` (the pages' change of set) under the mutual-exclusion
    /// object (waiting at most 500 ms, going on without it), and brings image and coefficients in step first.
    void selectSet(std::uint32_t setIndex, const std::function<void()>& whileLocked = {});
    /// 0 BZT, 1 MZT, 2 BZT/MZT. Recomputes nothing; the next edit does.
    void setFilterMode(std::uint32_t mode);
    void setSelectionMask(std::uint8_t mask) { selectionMask_ = mask; }

    /// Replaces all five sets by a loaded store and brings image and coefficients in step.
    void replaceStore(const ParameterStore& store);
    /// Replaces the image by received bytes; the sets stay.
    void replaceImage(const ParameterImage& received);
    /// Converts the image into the current set (under the mutual-exclusion object, waiting at most 5000 ms
    /// and going on without it) and brings image and coefficients in step.
    void imageToSet();

    /// Computes the curve of a channel or of the input side and hands it to the display, if there is one.
    void showOutputCurve(RecordChannel channel);
    void showInputCurve();

    // --- flags (any thread)
    // --------------------------------------------------------------------------------------

    [[nodiscard]] bool liveMode() const { return liveMode_; }
    [[nodiscard]] bool liveTransferEnabled() const { return liveTransferEnabled_; }
    [[nodiscard]] bool updatePending() const { return updatePending_; }
    /// Sets `liveMode` and `liveTransferEnabled` together; switching on also raises `updatePending`.
    void setLiveMode(bool on);
    void raiseUpdatePending() { updatePending_ = true; }
    /// The worker's look: true when live transfer is enabled and an update is pending, which is then cleared.
    bool takeUpdate();

    // --- edits of the selected channels
    // -------------------------------------------------------------------------- `final` is false while a
    // slider moves; true raises `updatePending`. Edits without it always raise it.

    void setDelay(float delayMs, bool final);
    void setVolume(float volumeDb, bool final);
    /// Writes the image's phase byte always, the record's only when `apply` is true.
    void setInvertPhase(bool apply, std::uint8_t value);
    void setBandFrequency(std::size_t band, std::uint16_t frequencyHz, bool final);
    void setBandType(std::size_t band, std::uint8_t type);
    void setBandGainOrQ(std::size_t band, BandValue which, float value, bool final);
    /// Leaves coefficients and curve as they are.
    void setBandOff(std::size_t band, std::uint8_t off);
    void setCrossover(std::size_t crossover, std::uint8_t kind, std::uint8_t order, std::uint8_t enabled);
    void setCrossoverFrequency(std::size_t crossover, std::uint16_t frequencyHz, bool final);
    /// \param value tenths of a dB, milliseconds, or nothing for enable and disable
    void setLimiter(LimiterField which, std::int32_t value, bool final);

    // --- edits of one channel, by record channel
    // -----------------------------------------------------------------

    void setGroupGain(RecordChannel channel, float groupGainDb);
    void setGroupDelay(RecordChannel channel, float groupDelayMs);
    void setGainGroup(RecordChannel channel, std::uint32_t group);
    void setDelayGroup(RecordChannel channel, std::uint32_t group);
    void setChannelFlag(RecordChannel channel, std::uint8_t value);
    void setRouterSource(RecordChannel channel, std::uint8_t source);

    // --- edits of the input side and of the whole set
    // ------------------------------------------------------------

    /// \param inputBand 0 to 9 graphic bands, 10 bass, 11 middle, 12 treble
    void setInputBandGain(std::size_t inputBand, float gainDb, bool final);
    /// Writes record and both bypass bytes.
    void setInputEqOn(bool on);
    /// Writes any field that shapes no filter, in its stored form, and its place in the image.
    void setField(FieldId id, FieldIndex index, double storedValue, bool final);
    /// At most 31 UTF-16 units are kept. Does not raise `updatePending`: the target does not carry the name.
    void setName(std::u16string_view name);

 private:
    template <typename Act>
    void forSelectedChannels(Act act) const;
    template <typename Change>
    void editBands(std::size_t band, FieldId id, Change change, bool final);
    template <typename Change>
    void editCrossovers(std::size_t crossover, Change change, bool final);
    void computeBand(RecordChannel channel, std::size_t band);
    void computeCrossovers(RecordChannel channel);
    void computeInputBand(std::size_t inputBand);
    void bringInStep(bool withBypass);
    /// Writes the field's place in the image from the current set.
    void mirror(FieldId id, FieldIndex index = {});
    void finish(bool final);
    void tellChange() const;
    ParameterSet& editedSet() { return store_.sets[currentSet_]; }
    OutputChannelParams& edited(RecordChannel channel) { return editedSet().channels[channel.value]; }

    ParameterStore store_;
    ParameterImage image_;
    /// Held for the few microseconds in which an edit writes the image or a copy is taken, so that a copy
    /// never holds half an edit of a channel. Never held while coefficients are computed: that may show a
    /// warning and wait for its answer.
    mutable std::mutex imageGuard_;

    std::array<std::array<BiquadWords, bandCount>, channelCount> bandWords_{};
    std::array<std::array<BiquadWords, crossoverCount>, channelCount> crossoverWords_{};
    std::array<BiquadWords, inputSectionCount> inputWords_{};

    std::array<std::unique_ptr<IcoefficientGenerator>, 3> generators_;
    std::uint32_t currentSet_ = 0;
    std::uint32_t filterMode_ = 0;
    std::uint8_t selectionMask_ = 0;
    std::atomic<bool> liveMode_ = false;
    std::atomic<bool> liveTransferEnabled_ = false;
    std::atomic<bool> updatePending_ = false;

    std::unique_ptr<CSemaphore> exclusion_;
    ICurveDisplay* curveDisplay_ = nullptr;
    std::function<void()> changeListener_;
};

}  // namespace tessavo
