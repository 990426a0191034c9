#include <array>

#include "base/number_text.h"
#include "compare/channel_clip.h"
#include "history/element_words.h"

namespace tessavo {

namespace {

// Tenths, and all digits only where there are more.
std::string numberOf(float value) {
    std::string tenths = fixedText(static_cast<double>(value), 1);
    const auto back = finiteNumber(tenths);
    return back && static_cast<float>(*back) == value ? tenths : shortestText(value);
}

std::string tenthsOf(std::int32_t value) {
    return fixedText(static_cast<double>(value) / 10, 1);
}

// Another program's letters and fonts need not have more than ASCII.
std::string wordOf(FieldId id, double stored) {
    const FieldCode* code = codeOf(fieldOf(id), stored);
    return code != nullptr ? std::string(code->shown) : std::string("code ").append(shortestText(stored));
}

std::string_view switchWord(bool on) {
    return on ? "ON" : "OFF";
}

class Lines {
 public:
    Lines& begin(std::string_view name) {
        text_.append(name).append(":");
        isFirst_ = true;
        return *this;
    }
    Lines& add(std::string_view part) {
        text_.append(isFirst_ ? " " : "  ").append(part);
        isFirst_ = false;
        return *this;
    }
    Lines& add(std::string_view name, std::string_view value, std::string_view unit = {}) {
        add(name);
        text_.append(" ").append(value);
        if (!unit.empty()) {
            text_.append(" ").append(unit);
        }
        return *this;
    }
    void end() { text_.append("\n"); }
    [[nodiscard]] const std::string& text() const { return text_; }

 private:
    std::string text_;
    bool isFirst_ = true;
};

std::string numbered(std::string_view name, std::size_t index) {
    return std::string(name).append(" ").append(std::to_string(index + 1));
}

void addFilters(Lines& lines, const OutputChannelParams& params) {
    for (std::size_t b = 0; b < bandCount; ++b) {
        const EqBandParams& band = params.bands[b];
        lines.begin(numbered("Filter", b))
            .add(switchWord(band.off == 0))
            .add(wordOf(FieldId::bandType, band.type))
            .add("Fc", fixedText(band.frequencyHz, 1), "Hz")
            .add("Gain", numberOf(band.gainDb), "dB")
            .add("Q", numberOf(band.q))
            .end();
    }
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        const CrossoverParams& crossover = params.crossovers[k];
        lines.begin(numbered("Crossover", k))
            .add(switchWord(crossover.enabled != 0))
            .add(wordOf(FieldId::crossoverKind, crossover.kind))
            .add("Fc", fixedText(crossover.frequencyHz, 1), "Hz")
            .add("Order", wordOf(FieldId::crossoverOrder, crossover.order))
            .end();
    }
}

void addLevels(Lines& lines, const OutputChannelParams& params) {
    lines.begin("Volume").add(numberOf(params.volumeDb).append(" dB")).end();
    lines.begin("Group gain")
        .add(numberOf(params.groupGainDb).append(" dB"))
        .add("Group", wordOf(FieldId::gainGroup, params.gainGroup))
        .end();
    lines.begin("Delay").add(numberOf(params.delayMs).append(" ms")).end();
    lines.begin("Group delay")
        .add(numberOf(params.groupDelayMs).append(" ms"))
        .add("Group", wordOf(FieldId::delayGroup, params.delayGroup))
        .end();
    lines.begin("Invert Phase").add(switchWord(params.invertPhase != 0)).end();
}

void addLimiter(Lines& lines, const LimiterParams& limiter) {
    lines.begin("Limiter")
        .add(switchWord(limiter.enabled != 0))
        .add("Attack", std::to_string(limiter.attackMs), "ms")
        .add("Release", std::to_string(limiter.releaseMs), "ms")
        .add("Gain", tenthsOf(limiter.gainTenthDb), "dB")
        .add("Activate", tenthsOf(limiter.activateTenthDb), "dB")
        .add("Deactivate", tenthsOf(limiter.deactivateTenthDb), "dB")
        .end();
}

}  // namespace

std::string channelClipText(const ChannelClip& clip) {
    Lines lines;
    const std::array<std::size_t, 1> record{clip.channel.value};
    lines.begin(channelList(record)).add(wordOf(FieldId::routerSource, clip.source)).end();
    addFilters(lines, clip.params);
    addLevels(lines, clip.params);
    addLimiter(lines, clip.limiter);
    return lines.text();
}

}  // namespace tessavo
