#include "pages/form/box_marks.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

namespace tessavo {

namespace {

constexpr double wordOfZeroDb = 1 << 24;
constexpr double samplesPerMs = 49.5;
constexpr int manyDigits = 7;

QString numberWith(double value, int decimals, const QString& unit) {
    const QString rounded = numberText(value, decimals);
    const QString number =
        isSameNumber(rounded.toDouble(), value) ? rounded : QString::number(value, 'g', manyDigits);
    return unit.isEmpty() ? number : number + QLatin1Char(' ') + unit;
}

QString together(const QString& note, bool withOther, const char* other) {
    return withOther ? note + QStringLiteral(", together with the ") + QLatin1String(other) : note;
}

// One word stands for the sum of a channel's volume and its group's gain.
QString playedGain(const TuningState& tuning, FieldId field, std::size_t channel) {
    const OutputChannelParams& params = tuning.currentParameterSet().channels[channel];
    const std::uint32_t word = tuning.image().channels[channel].gainWord;
    const double playedDb = 20 * std::log10(static_cast<double>(word) / wordOfZeroDb);
    const bool ofVolume = field == FieldId::volume;
    const float own = ofVolume ? params.volumeDb : params.groupGainDb;
    const float other = ofVolume ? params.groupGainDb : params.volumeDb;
    if (isSameNumber(playedDb, static_cast<double>(own + other))) {
        return {};
    }
    const QString level =
        word == 0 ? QStringLiteral("-Inf.") : numberText(playedDb, 1) + QStringLiteral(" dB");
    return together(QStringLiteral("Plays ") + level, other != 0,
                    ofVolume ? "group gain" : "channel's volume");
}

QString playedDelay(const TuningState& tuning, FieldId field, std::size_t channel) {
    const OutputChannelParams& params = tuning.currentParameterSet().channels[channel];
    const std::uint32_t samples = tuning.image().channels[channel].delaySamples;
    const double playedMs = samples / samplesPerMs;
    const bool ofChannel = field == FieldId::delay;
    const float own = ofChannel ? params.delayMs : params.groupDelayMs;
    const float other = ofChannel ? params.groupDelayMs : params.delayMs;
    if (isSameNumber(playedMs, static_cast<double>(own + other))) {
        return {};
    }
    return together(QStringLiteral("Plays %1 samples, %2 ms").arg(samples).arg(numberText(playedMs, 3)),
                    other != 0, ofChannel ? "group delay" : "channel's delay");
}

}  // namespace

bool isSameNumber(double one, double other) {
    constexpr double relative = 1e-6;
    return std::abs(one - other) <= relative * std::max({1.0, std::abs(one), std::abs(other)});
}

QString exactUnitText(const ValueScale& scale, double value) {
    if (!scale.attenuation) {
        return numberWith(value, scale.decimals, scale.unit);
    }
    return value <= 0 ? textAt(scale, 0) : numberWith((value - highestValue(scale)) / 10, 1, scale.unit);
}

std::optional<double> imageNumber(const TuningState& tuning, FieldId id, FieldIndex index) {
    const Field& field = fieldOf(id);
    switch (field.rule) {
        case ImageRule::copy:
        case ImageRule::wholeNumber:
        case ImageRule::flag:
        case ImageRule::neverCleared:
        case ImageRule::allSets:
            break;
        default:
            return {};
    }
    const auto* image = reinterpret_cast<const unsigned char*>(&tuning.image());
    const std::size_t offset = static_cast<std::size_t>(field.imageOffset) + imageStrideOf(field, index);
    return readNumber(image + offset, field.imageType) / field.storedPerShown;
}

QString playedNote(const TuningState& tuning, FieldId id, FieldIndex index) {
    const Field& field = fieldOf(id);
    switch (field.rule) {
        case ImageRule::gainWord:
        case ImageRule::groupGain:
            return playedGain(tuning, id, index.outer);
        case ImageRule::delaySamples:
        case ImageRule::groupDelay:
            return playedDelay(tuning, id, index.outer);
        case ImageRule::copy:
        case ImageRule::wholeNumber:
            break;
        default:
            return {};
    }
    const double played = imageNumber(tuning, id, index).value_or(0);
    if (isSameNumber(played, shownValue(tuning.currentParameterSet(), field, index))) {
        return {};
    }
    return QStringLiteral("Plays ") + exactUnitText(sliderScale(id, Qt::Vertical), played);
}

QString markText(std::optional<double> boxNumber, double inForce, const QString& inForceText,
                 const QString& played) {
    QStringList phrases;
    if (!boxNumber || !isSameNumber(*boxNumber, inForce)) {
        phrases << QStringLiteral("In force: ") + inForceText;
    }
    if (!played.isEmpty()) {
        phrases << played;
    }
    return phrases.join(QStringLiteral(". "));
}

QString distanceMark(std::optional<double> boxNumberCm, double inForceCm, const QString& played) {
    constexpr double halfATenth = 0.0501;
    if (boxNumberCm && std::abs(*boxNumberCm - inForceCm) <= halfATenth) {
        boxNumberCm = inForceCm;
    }
    return markText(boxNumberCm, inForceCm, numberText(inForceCm, 1) + QStringLiteral(" cm"), played);
}

}  // namespace tessavo
