#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "base/message_box.h"
#include "base/semaphore.h"
#include "dsp/filter_methods.h"
#include "params/channels.h"
#include "params/field_table.h"
#include "params/parameter_image.h"
#include "params/records.h"
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

/// A value that an edit writes into a field, in its stored form.
struct FieldValue {
    FieldId field;
    double stored;
};

/// A band of an output channel.
struct EditedBand {
    RecordChannel channel;
    std::size_t band = 0;
    friend bool operator==(const EditedBand&, const EditedBand&) = default;
};

/// Everything that is being tuned: the five sets, the current set's image and coefficients, and the edit
/// operations that keep the three in step.
///
/// The image is derived from the current set, with one exception: a set that was received keeps its image
/// byte by byte, which says more than the record it was converted into. Each of the five sets keeps the image
/// that it was received with until an edit changes something in its record that the image carries; choosing
/// the set again until then brings that image back, bypass bytes, coefficient words and spare bytes included.
/// A set received into another place writes its router sources into all five records: the kept images follow
/// in the words of the sources that changed and stay in every other byte. A loaded store drops all of them.
///
/// Used on the user-interface thread, except for the flags, imageCopy() and takeUpdate(), which any thread
/// may use. Arguments that name a band, crossover, channel or set outside its range change nothing.
class TuningState {
 public:
    /// \param boxes shows the generators' warning; outlives this object.
    /// \param exclusion the mutual-exclusion object; a CSemaphore of its own when empty.
    /// \param imageGuard what an edit holds while it writes the image; a CSemaphore of its own when empty.
    explicit TuningState(IMessageBox& boxes, std::unique_ptr<CSemaphore> exclusion = nullptr,
                         std::unique_ptr<CSemaphore> imageGuard = nullptr);
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

    [[nodiscard]] const ParameterStore& store() const { return store_; }
    [[nodiscard]] const ParameterSet& currentParameterSet() const { return store_.sets[currentSet_]; }
    [[nodiscard]] const ParameterImage& image() const { return image_; }
    /// The image as it is between two edits and between two changes of the whole set: waits for the
    /// mutual-exclusion object, at most 5000 ms, and goes on without it. Any thread, but not from within the
    /// callback of selectSet(), which runs under that object.
    [[nodiscard]] ParameterImage imageCopy() const;
    [[nodiscard]] const BiquadWords& bandWords(RecordChannel channel, std::size_t band) const;
    [[nodiscard]] const BiquadWords& crossoverWords(RecordChannel channel, std::size_t crossover) const;
    [[nodiscard]] const BiquadWords& inputWords(std::size_t inputBand) const;
    [[nodiscard]] IcoefficientGenerator& generator() const { return *generators_[filterMode_]; }

    [[nodiscard]] std::uint32_t currentSet() const { return currentSet_; }
    [[nodiscard]] std::uint32_t filterMode() const { return filterMode_; }
    [[nodiscard]] std::uint8_t selectionMask() const { return selectionMask_; }
    /// The band that was edited last, by frequency, type, gain or Q; the first channel's first band until
    /// then. Its channel's curve is drawn where no channel is selected.
    [[nodiscard]] EditedBand lastEditedBand() const { return lastEditedBand_; }

    // --- application state

    /// Makes a set current, brings coefficients in step, and then, under the mutual-exclusion object (waiting
    /// at most 500 ms, going on without it), writes the image and runs `whileLocked` (the pages' change of
    /// set). The image becomes the one that the set keeps from its receipt, or is derived from the record;
    /// derived, it keeps the bypass bytes and spare bytes it has.
    void selectSet(std::uint32_t setIndex, const std::function<void()>& whileLocked = {});
    /// 0 BZT, 1 MZT, 2 BZT/MZT. Recomputes nothing; the next edit does.
    void setFilterMode(std::uint32_t mode);
    void setSelectionMask(std::uint8_t mask) { selectionMask_ = mask; }

    /// Brings coefficients in step with a loaded store, and then, under the mutual-exclusion object (waiting
    /// at most 5000 ms, going on without it), replaces all five sets by it and writes the image. The image
    /// keeps its bypass bytes and spare bytes; no set keeps the image it was received with.
    void replaceStore(const ParameterStore& store);
    /// Replaces the image by received bytes, its first word by 3384; the sets stay.
    void replaceImage(const ParameterImage& received);
    /// Converts the image into the current set, under the mutual-exclusion object (waiting at most 5000 ms
    /// and going on without it), and brings the coefficient tables in step. The image stays byte by byte, and
    /// the set keeps it.
    void imageToSet();

    /// Computes the curve of a channel or of the input side and hands it to the display, if there is one.
    void showOutputCurve(RecordChannel channel);
    void showInputCurve();

    // --- flags (any thread)

    [[nodiscard]] bool liveMode() const { return liveMode_; }
    [[nodiscard]] bool liveTransferEnabled() const { return liveTransferEnabled_; }
    [[nodiscard]] bool updatePending() const { return updatePending_; }
    /// Sets `liveMode` and `liveTransferEnabled` together; switching on also raises `updatePending`.
    void setLiveMode(bool on);
    void raiseUpdatePending() { updatePending_ = true; }
    /// The worker's look: true when live transfer is enabled and an update is pending, which is then cleared.
    bool takeUpdate();

    // --- the door for edits

    /// Writes elements of the current set that share one index: each value into the record and, in the target's form,
    /// into the image. Recomputes the coefficients that the first field shapes, and only those, copies them into the
    /// image, and shows the curve that they belong to. Every other edit below comes through here.
    /// \param values fields that shape the same coefficients; several of them only where one edit writes them together
    /// \param final false while a slider moves; true raises `updatePending`
    /// \return false, and nothing is changed, when a field may not be edited or has no such element
    bool edit(std::span<const FieldValue> values, FieldIndex index, bool final);
    bool edit(FieldId field, FieldIndex index, double stored, bool final) {
        return edit(std::array{FieldValue{field, stored}}, index, final);
    }

    /// The same for every selected channel, in page order, with one curve at the end: that of the last channel written,
    /// or of the band edited last where none is selected.
    /// \param inner band or crossover; 0 for fields that a channel has once
    /// \return false also for a field that is not one of an output channel
    bool editSelected(std::span<const FieldValue> values, std::size_t inner, bool final);
    bool editSelected(FieldId field, std::size_t inner, double stored, bool final) {
        return editSelected(std::array{FieldValue{field, stored}}, inner, final);
    }

    // --- edits of the selected channels; those without `final` always raise `updatePending`

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

    void setGroupGain(RecordChannel channel, float groupGainDb);
    void setGroupDelay(RecordChannel channel, float groupDelayMs);
    void setGainGroup(RecordChannel channel, std::uint32_t group);
    void setDelayGroup(RecordChannel channel, std::uint32_t group);
    void setChannelFlag(RecordChannel channel, std::uint8_t value);
    void setRouterSource(RecordChannel channel, std::uint8_t source);

    // --- edits of the input side and of the whole set

    /// \param inputBand 0 to 9 graphic bands, 10 bass, 11 middle, 12 treble
    void setInputBandGain(std::size_t inputBand, float gainDb, bool final);
    /// Writes record and both bypass bytes.
    void setInputEqOn(bool on);
    /// At most 31 UTF-16 units are kept. Does not raise `updatePending`: the target does not carry the name.
    void setName(std::u16string_view name);

 private:
    template <typename Act>
    void forSelectedChannels(Act act) const;
    [[nodiscard]] static bool mayWrite(std::span<const FieldValue> values, FieldIndex index);
    void write(std::span<const FieldValue> values, FieldIndex index);
    void compute(FieldId id, FieldIndex index);
    void showCurveOf(FieldId id, RecordChannel channel);
    /// Writes the places of the values in the image; the image guard is held.
    void mirror(std::span<const FieldValue> values, FieldIndex index);
    void warn(std::string_view text);
    // Compute the tables' words from a set.
    void computeBand(const ParameterSet& set, RecordChannel channel, std::size_t band);
    void computeCrossovers(const ParameterSet& set, RecordChannel channel);
    void computeInputBand(const ParameterSet& set, std::size_t inputBand);
    void computeAll(const ParameterSet& set);
    void deriveImage();
    void keepReceivedImage(const ParameterStore& before);
    void dropChangedImage();
    void finish(bool final);
    void tellChange() const;
    ParameterSet& editedSet() { return store_.sets[currentSet_]; }

    /// What a set was received as.
    struct Received {
        ParameterImage image;
        ParameterSet record;  ///< as the conversion left it
    };
    /// The places of an edit whose coefficients are being computed.
    struct UnderWay {
        std::span<const FieldValue> values;
        FieldIndex index;
    };

    IMessageBox& boxes_;
    ParameterStore store_;
    ParameterImage image_;
    std::array<std::optional<Received>, setCount> received_;  ///< by set
    std::optional<UnderWay> underWay_;
    /// Held for the few microseconds in which the image is written or copied, so that a copy never holds half
    /// an edit of a channel. Taken inside the mutual-exclusion object, never the other way round, and never
    /// held while coefficients are computed: that may show a warning and wait for its answer.
    std::unique_ptr<CSemaphore> imageGuard_;

    std::array<std::array<BiquadWords, bandCount>, channelCount> bandWords_{};
    std::array<std::array<BiquadWords, crossoverCount>, channelCount> crossoverWords_{};
    std::array<BiquadWords, inputSectionCount> inputWords_{};

    FilterMethods generators_;
    std::uint32_t currentSet_ = 0;
    std::uint32_t filterMode_ = 0;
    std::uint8_t selectionMask_ = 0;
    EditedBand lastEditedBand_{recordChannelAt({0}), 0};
    std::atomic<bool> liveMode_ = false;
    std::atomic<bool> liveTransferEnabled_ = false;
    std::atomic<bool> updatePending_ = false;

    /// Held while the image changes as a whole and while a copy of it is taken, so that a copy holds one set.
    std::unique_ptr<CSemaphore> exclusion_;
    ICurveDisplay* curveDisplay_ = nullptr;
    std::function<void()> changeListener_;
};

}  // namespace tessavo
