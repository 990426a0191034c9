#include "cli/edit_script.h"

namespace tessavo::cli {

namespace {

/// What each operation of a script does; all of them are final edits.
struct Apply {
    TuningState& tuning;

    void operator()(const edit::SelectSet& e) const { tuning.selectSet(e.setIndex); }
    void operator()(const edit::SelectMode& e) const { tuning.setFilterMode(e.filterMode); }
    void operator()(const edit::SelectChannels& e) const { tuning.setSelectionMask(e.mask); }
    void operator()(const edit::SetVolume& e) const { tuning.setVolume(e.volumeDb, true); }
    void operator()(const edit::SetDelay& e) const { tuning.setDelay(e.delayMs, true); }
    void operator()(const edit::SetGroupGain& e) const { tuning.setGroupGain(e.channel, e.groupGainDb); }
    void operator()(const edit::SetGroupDelay& e) const { tuning.setGroupDelay(e.channel, e.groupDelayMs); }
    void operator()(const edit::SetInvertPhase& e) const { tuning.setInvertPhase(true, e.value); }
    void operator()(const edit::SetBandFrequency& e) const {
        tuning.setBandFrequency(e.band, e.frequencyHz, true);
    }
    void operator()(const edit::SetBandType& e) const { tuning.setBandType(e.band, e.type); }
    void operator()(const edit::SetBandGainOrQ& e) const {
        tuning.setBandGainOrQ(e.band, e.which, e.value, true);
    }
    void operator()(const edit::SetBandOff& e) const { tuning.setBandOff(e.band, e.off); }
    void operator()(const edit::SetCrossover& e) const {
        tuning.setCrossover(e.crossover, e.kind, e.order, e.enabled);
    }
    void operator()(const edit::SetCrossoverFrequency& e) const {
        tuning.setCrossoverFrequency(e.crossover, e.frequencyHz, true);
    }
    void operator()(const edit::SetInputBandGain& e) const {
        tuning.setInputBandGain(e.inputBand, e.gainDb, true);
    }
    void operator()(const edit::SetInputEqOn& e) const { tuning.setInputEqOn(e.on); }
    void operator()(const edit::SetLimiter& e) const { tuning.setLimiter(e.which, e.value, true); }
    void operator()(const edit::SetRouterSource& e) const { tuning.setRouterSource(e.channel, e.source); }
    void operator()(const edit::SetName& e) const { tuning.setName(e.name); }
};

}  // namespace

std::set<std::size_t> setsUsed(std::span<const ScriptLine> script) {
    std::set<std::size_t> used;
    std::size_t current = 0;
    for (const ScriptLine& line : script) {
        if (const auto* change = std::get_if<edit::SelectSet>(&line.edit)) {
            current = change->setIndex;
        } else if (!std::holds_alternative<edit::SelectMode>(line.edit) &&
                   !std::holds_alternative<edit::SelectChannels>(line.edit)) {
            used.insert(current);
        }
    }
    used.insert(current);
    return used;
}

void applyScript(TuningState& tuning, std::span<const ScriptLine> script) {
    for (const ScriptLine& line : script) {
        std::visit(Apply{tuning}, line.edit);
    }
}

}  // namespace tessavo::cli
