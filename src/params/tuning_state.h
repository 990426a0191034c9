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
#include <vector>

#include "base/message_box.h"
#include "base/semaphore.h"
#include "dsp/filter_methods.h"
#include "params/channels.h"
#include "params/field_table.h"
#include "params/file_notes.h"
#include "params/parameter_image.h"
#include "params/records.h"
#include "params/tuning_snapshot.h"
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

/// Values of a band that setBandGainOrQ() edits; the numbers are those of the target's operation.
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

/// A set and what becomes of it.
struct SetReplacement {
    std::uint32_t set;  ///< 0 to 4
    ParameterSet record;
};

/// What a history has to know of a TuningState.
enum class TuningEvent : std::uint8_t {
    changed,       ///< something that a snapshot holds may have changed
    setIsChosen,   ///< another set is about to become current; nothing has changed yet
    setWasChosen,  ///< that has happened; it is no change of the sets
};

/// Everything that is being tuned: the five sets, the current set's image and coefficients, and the edit
/// operations that keep the three in step.
///
/// The image is derived from the current set, with one exception. A received image says more than the record
/// that it is converted into, because a conversion does not read its bypass bytes, coefficient words and
/// spare bytes. Therefore each of the five sets remembers the image that it was received with, byte by byte,
/// and choosing the set again brings that image back. A set forgets its received image as soon as an edit
/// changes something in its record that the image carries, and all sets forget theirs when a store is loaded.
/// When another set is received, its router sources are written into all five records; the remembered images
/// then change in the words of those sources and nowhere else.
///
/// Used on the user-interface thread, except for the flags, imageCopy() and takeUpdate(), which any thread
/// may use. Arguments that name a band, crossover, channel or set outside its range change nothing.
class TuningState {
 public:
    /// \param boxes shows the generators' warning; outlives this object
    /// \param exclusion the mutual-exclusion object: held while a whole set changes; a plain CSemaphore when
    ///     empty
    /// \param imageGuard held while an edit writes the image; a plain CSemaphore when empty
    explicit TuningState(IMessageBox& boxes, std::unique_ptr<CSemaphore> exclusion = nullptr,
                         std::unique_ptr<CSemaphore> imageGuard = nullptr);
    ~TuningState();
    TuningState(const TuningState&) = delete;
    TuningState& operator=(const TuningState&) = delete;

    /// Writes every page's defaults into all sets, selects the first channel, and computes image and
    /// coefficients from them. The image's bypass bytes stay as they are. Called once, after construction.
    void start();

    /// Sets the display that is given the curve of each edit from now on; null for none. The display outlives
    /// this object or is taken away before.
    void setCurveDisplay(ICurveDisplay* display) { curveDisplay_ = display; }

    /// Sets what is called, on the user-interface thread, whenever the image or `updatePending` may have
    /// changed: by every edit, also while a slider is dragged, by a change of set, and by a received or
    /// loaded set.
    void setChangeListener(std::function<void()> listener) { changeListener_ = std::move(listener); }

    /// Sets what is called on the user-interface thread for a history: by every edit, by a loaded or received
    /// set, by a new name, by other notes, and around a change of set.
    void setHistoryListener(std::function<void(TuningEvent)> listener) {
        historyListener_ = std::move(listener);
    }

    // --- what is there

    [[nodiscard]] const ParameterStore& store() const { return store_; }
    [[nodiscard]] const ParameterSet& currentParameterSet() const { return store_.sets[currentSet_]; }
    [[nodiscard]] const ParameterImage& image() const { return image_; }
    /// A copy of the image that holds no half of an edit and no half of a change of set. Waits for the
    /// mutual-exclusion object at most 5000 ms and then copies without it. Any thread, but not from within
    /// the callback of selectSet(), which runs under that object.
    [[nodiscard]] ParameterImage imageCopy() const;
    // Coefficients as they were computed last, whether or not the image holds them already.
    [[nodiscard]] const BiquadWords& bandWords(RecordChannel channel, std::size_t band) const;
    [[nodiscard]] const BiquadWords& crossoverWords(RecordChannel channel, std::size_t crossover) const;
    /// \param inputBand 0 to 9 for the graphic bands, 10 bass, 11 middle, 12 treble
    [[nodiscard]] const BiquadWords& inputWords(std::size_t inputBand) const;
    /// The generator of the current filter method.
    [[nodiscard]] IcoefficientGenerator& generator() const { return *generators_[filterMode_]; }

    /// What a person wrote beside the sets.
    [[nodiscard]] const FileNotes& notes() const { return notes_; }
    /// Index of the current set, 0 to 4.
    [[nodiscard]] std::uint32_t currentSet() const { return currentSet_; }
    /// Index of the filter method in filterMethodNames.
    [[nodiscard]] std::uint32_t filterMode() const { return filterMode_; }
    /// The selected channels, one selectionBit() each.
    [[nodiscard]] std::uint8_t selectionMask() const { return selectionMask_; }
    /// The band whose frequency, type, gain or Q was edited last; before the first such edit the first
    /// channel's first band. Where no channel is selected, the curve of its channel is drawn.
    [[nodiscard]] EditedBand lastEditedBand() const { return lastEditedBand_; }

    // --- application state

    /// Makes a set current and computes its coefficients. Then, under the mutual-exclusion object (for which
    /// it waits at most 500 ms, and goes on without it), writes the image and runs `whileLocked`.
    ///
    /// The image becomes the one that the set was received with, if the set remembers it; otherwise it is
    /// derived from the record and keeps the bypass bytes and spare bytes that it has.
    /// \param whileLocked shows the new set on the pages; must not take the mutual-exclusion object
    void selectSet(std::uint32_t setIndex, const std::function<void()>& whileLocked = {});
    /// Chooses the method by which coefficients are computed from now on. Those computed already stay until
    /// an edit computes them anew.
    /// \param mode index in filterMethodNames: 0 BZT, 1 MZT, 2 BZT/MZT
    void setFilterMode(std::uint32_t mode);
    void setSelectionMask(std::uint8_t mask) { selectionMask_ = mask; }

    /// Computes the coefficients of a loaded store's current set. Then, under the mutual-exclusion object
    /// (for which it waits at most 5000 ms, and goes on without it), replaces all five sets by the store and
    /// writes the image. The image keeps its bypass bytes and spare bytes; no set remembers the image it was
    /// received with.
    void replaceStore(const ParameterStore& store);
    /// Makes a set what a record says, as if each value that differs had been edited by itself: in the current set only
    /// the coefficients that differing values shape are computed, from the whole new record, and go into the image with
    /// the values; the equalizer's switch brings the bypass bytes along. Another set only gets the record. Either forgets
    /// its received image where that is no longer true. The word of the record's size stays.
    ///
    /// Coefficients are computed first, so that a generator shows its warning while everything is as it was. Then all sets
    /// change under the mutual-exclusion object (for which it waits at most 5000 ms, and goes on without it). Raises
    /// `updatePending` when a value of the current set that the image is made of differs. A history sees one change. Shows
    /// no curve.
    /// \return false, and nothing is changed, where there is no such set or no byte differs
    bool replaceSet(std::uint32_t set, const ParameterSet& record) {
        return replaceSets(std::array{SetReplacement{set, record}});
    }
    /// The same for several sets, as one change; of two records for the same set the last one counts.
    bool replaceSets(std::span<const SetReplacement> replacements);
    /// Replaces the image by received bytes, except for its first word, which becomes 3384. The sets stay.
    void replaceImage(const ParameterImage& received);
    /// Converts the image into the current set, under the mutual-exclusion object (for which it waits at most
    /// 5000 ms, and goes on without it), and computes the coefficients. The image stays as it is, and the set
    /// remembers it.
    void imageToSet();

    /// Whether an edit, a change of set or a whole-set write is under way, which is seen only from within: a
    /// generator's warning may wait for its answer there.
    [[nodiscard]] bool changeRuns() const { return runningChanges_ > 0; }
    /// Replaces the notes beside the sets by these, as wellFormed() gives them. Neither the sets nor the image
    /// change, and `updatePending` is not raised: the target carries no notes.
    void setNotes(const FileNotes& notes);
    /// Copies everything that restore() brings back.
    void takeSnapshot(TuningSnapshot& snapshot) const;
    /// Brings back a state to the byte: sets, image, received images, coefficients, the current set and the
    /// notes, under the mutual-exclusion object (for which it waits at most 5000 ms, and goes on without it). Raises
    /// `updatePending` in any case: a target may hold another image than this one, as choosing a set sends nothing.
    /// Filter method and selected channels stay.
    /// \param snapshot its currentSet is 0 to 4
    void restore(const TuningSnapshot& snapshot);

    /// Computes the curve of an output channel, from its bands and crossovers, and gives it to the display,
    /// if there is one.
    void showOutputCurve(RecordChannel channel);
    /// The same for the input side, from its graphic and tone bands.
    void showInputCurve();

    // --- flags (any thread)

    /// Whether the user has switched Live Mode on.
    [[nodiscard]] bool liveMode() const { return liveMode_; }
    /// Whether the live worker may send.
    [[nodiscard]] bool liveTransferEnabled() const { return liveTransferEnabled_; }
    /// Whether the image has changed since the live worker sent it.
    [[nodiscard]] bool updatePending() const { return updatePending_; }
    /// Sets `liveMode` and `liveTransferEnabled` together; switching on also raises `updatePending`.
    void setLiveMode(bool on);
    void raiseUpdatePending() { updatePending_ = true; }
    /// The live worker asks this before it sends.
    /// \return true when live transfer is enabled and an update was pending; it is pending no more
    bool takeUpdate();

    // --- the operation that every edit goes through

    /// Writes elements of the current set that share one index: each value into the record and, in the
    /// target's form, into the image. Recomputes the coefficients that the first field shapes, and only
    /// those, copies them into the image, and shows the curve that they belong to. Every edit below is a
    /// caller of this one or of editSelected().
    /// \param values fields that shape the same coefficients; several of them only where one edit writes them
    ///     together
    /// \param final false while a slider moves; true raises `updatePending`
    /// \return false, and nothing is changed, when a field may not be edited or has no such element
    bool edit(std::span<const FieldValue> values, FieldIndex index, bool final);
    bool edit(FieldId field, FieldIndex index, double stored, bool final) {
        return edit(std::array{FieldValue{field, stored}}, index, final);
    }

    /// Edits every selected channel, in page order, as edit() edits one element. Shows one curve at the end:
    /// that of the last channel written, or, where none is selected, that of the band edited last.
    /// \param values as for edit()
    /// \param inner band or crossover, counted from 0; 0 for fields that a channel has once
    /// \param final as for edit()
    /// \return as edit(); false also for a field that is not one of an output channel
    bool editSelected(std::span<const FieldValue> values, std::size_t inner, bool final);
    bool editSelected(FieldId field, std::size_t inner, double stored, bool final) {
        return editSelected(std::array{FieldValue{field, stored}}, inner, final);
    }

    // --- edits of the selected channels; those without `final` always raise `updatePending`

    void setDelay(float delayMs, bool final);
    void setVolume(float volumeDb, bool final);
    /// Writes the phase byte of the image; that of the record only when `apply` is true.
    /// \param value 1 inverts
    void setInvertPhase(bool apply, std::uint8_t value);
    void setBandFrequency(std::size_t band, std::uint16_t frequencyHz, bool final);
    void setBandType(std::size_t band, std::uint8_t type);
    void setBandGainOrQ(std::size_t band, BandValue which, float value, bool final);
    /// Bypasses a band (1) or puts it back into the circuit (0). Coefficients and curve stay as they are.
    void setBandOff(std::size_t band, std::uint8_t off);
    void setCrossover(std::size_t crossover, std::uint8_t kind, std::uint8_t order, std::uint8_t enabled);
    void setCrossoverFrequency(std::size_t crossover, std::uint16_t frequencyHz, bool final);
    /// \param value tenths of a dB for levels and gain, milliseconds for times; not read for enable and
    ///     disable
    void setLimiter(LimiterField which, std::int32_t value, bool final);

    // --- edits of one channel, by record channel

    void setGroupGain(RecordChannel channel, float groupGainDb);
    void setGroupDelay(RecordChannel channel, float groupDelayMs);
    void setGainGroup(RecordChannel channel, std::uint32_t group);
    void setDelayGroup(RecordChannel channel, std::uint32_t group);
    void setChannelFlag(RecordChannel channel, std::uint8_t value);
    void setRouterSource(RecordChannel channel, std::uint8_t source);

    // --- edits of the input side and of the whole set

    /// \param inputBand 0 to 9 for the graphic bands, 10 bass, 11 middle, 12 treble
    void setInputBandGain(std::size_t inputBand, float gainDb, bool final);
    /// Switches the input equalizer, in the record and in both bypass bytes of the image.
    void setInputEqOn(bool on);
    /// Names the set; a name longer than 31 UTF-16 units is cut. Does not raise `updatePending`, because the
    /// target does not carry the name.
    void setName(std::u16string_view name);

 private:
    template <typename Act>
    void forSelectedChannels(Act act) const;
    [[nodiscard]] static bool mayWrite(std::span<const FieldValue> values, FieldIndex index);
    void write(std::span<const FieldValue> values, FieldIndex index);
    void compute(FieldId id, FieldIndex index);
    /// Computes what an element shapes from a set.
    void computeShaped(const ParameterSet& set, FieldId id, FieldIndex index);
    /// Copies the coefficients of the channel that a value shapes into the image. The caller holds the image guard.
    void takeWords(Shapes shapes, FieldIndex index);
    void showCurveOf(FieldId id, RecordChannel channel);
    /// Writes what the image holds of these values. The caller holds the image guard.
    void writeToImage(std::span<const FieldValue> values, FieldIndex index);
    /// An element whose value differs.
    struct ChangedValue {
        const Field* field;
        FieldIndex index;
    };
    [[nodiscard]] static std::vector<ChangedValue> changedValues(const ParameterSet& before,
                                                                 const ParameterSet& after);
    void computeChanged(std::span<const ChangedValue> changed, const ParameterSet& set);
    /// Writes what the image holds of these values and their coefficients. The caller holds the image guard.
    void writeToImage(std::span<const ChangedValue> changed);
    void warn(std::string_view text);
    // These compute coefficients from a set.
    void computeBand(const ParameterSet& set, RecordChannel channel, std::size_t band);
    void computeCrossovers(const ParameterSet& set, RecordChannel channel);
    void computeInputBand(const ParameterSet& set, std::size_t inputBand);
    void computeAll(const ParameterSet& set);
    void deriveImage();
    void storeReceivedImage(const ParameterStore& before);
    void discardOutdatedImage(std::size_t set);
    void finish(bool final);
    void notifyChange() const;
    void notifyHistory(TuningEvent event) const;
    ParameterSet& editedSet() { return store_.sets[currentSet_]; }

    /// What a set remembers of its receipt.
    struct Received {
        ParameterImage image;
        ParameterSet record;  ///< as the conversion left it; an edit is found by comparing with it
    };
    /// Counts a change as running for as long as it lives.
    class RunningChange {
     public:
        explicit RunningChange(TuningState& state) : state_(state) { ++state_.runningChanges_; }
        ~RunningChange() { --state_.runningChanges_; }
        RunningChange(const RunningChange&) = delete;
        RunningChange& operator=(const RunningChange&) = delete;

     private:
        TuningState& state_;
    };
    /// An edit whose coefficients are being computed. While the warning of a generator waits for its answer,
    /// the image must hold the edited value already.
    struct RunningEdit {
        std::span<const FieldValue> values;
        FieldIndex index;
    };

    IMessageBox& boxes_;
    ParameterStore store_;
    ParameterImage image_;
    std::array<std::optional<Received>, setCount> received_;  ///< by set
    FileNotes notes_;
    std::optional<RunningEdit> runningEdit_;
    int runningChanges_ = 0;
    /// Held for the few microseconds in which the image is written or copied, so that a copy never holds half
    /// an edit. May be taken while the mutual-exclusion object is held, never the other way round: two
    /// threads could wait for each other. Never held while coefficients are computed, because a warning may
    /// wait for its answer there.
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

    /// The mutual-exclusion object. Held while the image changes as a whole and while a copy of it is taken,
    /// so that a copy holds one set.
    std::unique_ptr<CSemaphore> exclusion_;
    ICurveDisplay* curveDisplay_ = nullptr;
    std::function<void()> changeListener_;
    std::function<void(TuningEvent)> historyListener_;
};

}  // namespace tessavo
