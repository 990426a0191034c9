#include "app/plot_note.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "dsp/filter_methods.h"

namespace tessavo {

namespace {

constexpr std::array<const char*, inputSectionCount> inputNames{
    "60 Hz", "170 Hz", "310 Hz", "600 Hz", "1K", "3K", "6K", "12K", "14K", "16K", "Bass", "Mid", "Treble"};
constexpr std::uint32_t wordOfZeroDb = 1U << 24U;

// Numerator and denominator are alike but for their last digits: the numerator has two bits less.
bool isFlat(const BiquadWords& words) {
    constexpr std::int64_t tolerance = 8;
    const auto alike = [](std::int32_t b, std::int32_t a) {
        return std::abs(std::int64_t{b} * 4 - std::int64_t{a}) <= tolerance;
    };
    return std::abs(std::int64_t{words.b0} - unityNumeratorWord) <= 2 && alike(words.b1, words.a1) &&
           alike(words.b2, words.a2);
}

// "Filter 3", "Filters 1, 3", "Filters 1-8"; empty without any.
QString named(const char* one, unsigned sections) {
    constexpr unsigned longestPair = 2;
    QStringList numbers;
    for (unsigned first = 0; sections >> first != 0; ++first) {
        const auto run = static_cast<unsigned>(std::countr_one(sections >> first));
        if (run > longestPair) {
            numbers << QStringLiteral("%1-%2").arg(first + 1).arg(first + run);
            first += run - 1;
        } else if (run > 0) {
            numbers << QString::number(first + 1);
        }
    }
    if (numbers.isEmpty()) {
        return {};
    }
    const bool several = std::popcount(sections) > 1;
    return QString(QLatin1String(one)) + QLatin1String(several ? "s " : " ") +
           numbers.join(QStringLiteral(", "));
}

QString namedInput(unsigned sections) {
    if (sections == (1U << inputSectionCount) - 1) {
        return QStringLiteral("all bands");
    }
    QStringList names;
    for (std::size_t i = 0; i < inputNames.size(); ++i) {
        if ((sections >> i & 1U) != 0) {
            names << QLatin1String(inputNames[i]);
        }
    }
    return names.join(QStringLiteral(", "));
}

QString isOrAre(const QString& subject, unsigned sections, const char* what) {
    return subject + QLatin1String(std::popcount(sections) > 1 ? " are " : " is ") + QLatin1String(what);
}

QString sectionsText(const ForeignWords::Channel& channel) {
    QStringList phrases{named("Filter", channel.bands), named("Crossover", channel.crossovers)};
    phrases.removeAll(QString());
    return phrases.join(QStringLiteral(", "));
}

QString methodName(const TuningState& tuning) {
    const std::string_view name = filterMethodNames.at(tuning.filterMode());
    return QLatin1String(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

QStringList outputCurveNotes(const TuningState& tuning, RecordChannel channel, const ForeignWords& foreign) {
    const ChannelImageBlock& block = tuning.image().channels.at(channel.value);
    unsigned off = 0;
    ForeignWords::Channel other;
    // A flat section makes no difference to a curve, whatever its words.
    ForeignWords::Channel otherMethod = foreign.drawn[channel.value];
    for (std::size_t b = 0; b < bandCount; ++b) {
        const BiquadWords& drawn = tuning.bandWords(channel, b);
        if (isFlat(drawn)) {
            otherMethod.bands &= ~(1U << b);
        } else if (block.bands[b].off != 0) {
            off |= 1U << b;
        }
        other.bands |= block.bandWords[b] != drawn ? 1U << b : 0U;
    }
    unsigned disabled = 0;
    unsigned fourth = 0;
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        const bool enabled = block.crossovers[k].enabled != 0;
        disabled |= enabled ? 0U : 1U << k;
        fourth |= enabled && block.crossovers[k].order == 4 ? 1U << k : 0U;
        other.crossovers |= block.crossoverWords[k] != tuning.crossoverWords(channel, k) ? 1U << k : 0U;
    }
    QStringList notes;
    if (off != 0) {
        notes << isOrAre(named("Filter", off), off, "off but drawn");
    }
    if (disabled != 0) {
        notes << isOrAre(named("Crossover", disabled), disabled, "off but drawn");
    }
    if (fourth != 0) {
        notes << isOrAre(named("Crossover", fourth), fourth, "4th order: drawn once");
    }
    if (other != ForeignWords::Channel{}) {
        notes << QStringLiteral("Other words play than drawn: ") + sectionsText(other);
    }
    if (otherMethod != ForeignWords::Channel{}) {
        notes << QStringLiteral("Not drawn with %1: ").arg(methodName(tuning)) + sectionsText(otherMethod);
    }
    if (block.gainWord != wordOfZeroDb) {
        const double levelDb = 20 * std::log10(static_cast<double>(block.gainWord) / wordOfZeroDb);
        notes << (block.gainWord == 0
                      ? QStringLiteral("Volume is left out: -Inf.")
                      : QStringLiteral("Volume is left out: %1 dB").arg(QString::number(levelDb, 'f', 1)));
    }
    if (block.invertPhase != 0) {
        notes << QStringLiteral("Inverted phase is left out");
    }
    return notes;
}

QStringList inputCurveNotes(const TuningState& tuning, const ForeignWords& foreign) {
    const ParameterImage& image = tuning.image();
    unsigned drawnBands = 0;
    unsigned finer = 0;
    for (std::size_t i = 0; i < inputSectionCount; ++i) {
        drawnBands |= isFlat(tuning.inputWords(i)) ? 0U : 1U << i;
        const bool graphic = i < inputBandCount;
        const float gainDb = graphic ? tuning.currentParameterSet().inputEqBands[i].gainDb
                                     : tuning.currentParameterSet().inputToneBands[i - inputBandCount].gainDb;
        const int playsDb =
            graphic ? image.inputRow0.bandGainDb[i] : image.inputRow0.toneGainDb[i - inputBandCount];
        finer |= gainDb != static_cast<float>(playsDb) ? 1U << i : 0U;
    }
    QStringList notes;
    if (image.inputRow0.bypass == 1 && drawnBands != 0) {
        notes << QStringLiteral("Equalizer is off but drawn");
    }
    if (finer != 0) {
        notes << QStringLiteral("Plays whole dB, drawn in tenths: ") + namedInput(finer);
    }
    if (const unsigned otherMethod = foreign.inputDrawn & drawnBands; otherMethod != 0) {
        notes << QStringLiteral("Not drawn with %1: ").arg(methodName(tuning)) + namedInput(otherMethod);
    }
    QStringList levels;
    const std::array<std::pair<int, const char*>, 4> levelsDb{{{image.inputGainDb, "Gain"},
                                                               {image.preampGainDb, "Preamp"},
                                                               {image.powerampGainDb, "Poweramp"},
                                                               {image.lineInGainDb, "Line-In Gain"}}};
    for (const auto& [levelDb, name] : levelsDb) {
        if (levelDb != 0) {
            levels << QLatin1String(name);
        }
    }
    if (!levels.isEmpty()) {
        notes << QStringLiteral("Left out: ") + levels.join(QStringLiteral(", "));
    }
    return notes;
}

QString foreignWordsNote(const TuningState& tuning, const ForeignWords& foreign) {
    QStringList lines;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const std::size_t channel = recordChannelAt({position}).value;
        const ForeignWords::Channel all{
            foreign.playing[channel].bands | foreign.drawn[channel].bands,
            foreign.playing[channel].crossovers | foreign.drawn[channel].crossovers};
        if (all != ForeignWords::Channel{}) {
            lines << QStringLiteral("Channel %1: ").arg(position + 1) + sectionsText(all);
        }
    }
    if (foreign.inputDrawn != 0) {
        lines << QStringLiteral("Input: ") + namedInput(foreign.inputDrawn);
    }
    if (!lines.isEmpty()) {
        lines.prepend(QStringLiteral("Not computed by %1 until edited:").arg(methodName(tuning)));
    }
    return lines.join(QLatin1Char('\n'));
}

}  // namespace tessavo
