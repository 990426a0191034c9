#include "pages/input/value_scale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "dsp/saturate.h"

namespace tessavo {

namespace {

const QString& silence() {
    static const auto text = QStringLiteral("-Inf.");
    return text;
}

bool isSilence(const QString& text) {
    return text == silence() || text == QLatin1String("-inf.");
}

}  // namespace

ValueScale sliderScale(FieldId field, Qt::Orientation orientation) {
    const Field& described = fieldOf(field);
    ValueScale scale;
    scale.decimals = described.decimals;
    scale.stepsPerUnit = described.decimals > 0 ? 10 : 1;
    scale.negated = orientation == Qt::Vertical;
    scale.attenuation = field == FieldId::decoderGain;
    const int low = truncateTo<int>(std::round(described.minimum * scale.stepsPerUnit));
    const int high = truncateTo<int>(std::round(described.maximum * scale.stepsPerUnit));
    scale.minimum = scale.negated ? -high : low;
    scale.maximum = scale.negated ? -low : high;
    return scale;
}

double valueAt(const ValueScale& scale, int position) {
    const double value = static_cast<double>(position) / scale.stepsPerUnit;
    return scale.negated && position != 0 ? -value : value;
}

int positionOf(const ValueScale& scale, double value) {
    const int position = truncateTo<int>(std::round(value * scale.stepsPerUnit * (scale.negated ? -1 : 1)));
    return std::clamp(position, scale.minimum, scale.maximum);
}

double highestValue(const ValueScale& scale) {
    return valueAt(scale, scale.negated ? scale.minimum : scale.maximum);
}

QString textAt(const ValueScale& scale, int position) {
    if (scale.attenuation) {
        const double value = valueAt(scale, position);
        return value <= 0 ? silence() : numberText((value - highestValue(scale)) / 10.0, 1);
    }
    return numberText(valueAt(scale, position), scale.decimals);
}

double readTenths(const QString& text) {
    // Long enough for every number that fits a slider; more digits cannot change the clamped result.
    constexpr double enough = 1e15;
    const QString trimmed = text.trimmed();
    qsizetype place = 0;
    const bool negative = trimmed.startsWith(QLatin1Char('-'));
    if (negative) {
        ++place;
    }
    // Digits are gathered as a whole number, so that 0.7 gives 7 and not the product of a rounded 0.7.
    double digits = 0;
    double tail = 0;
    double weight = 1;
    bool pointSeen = false;
    bool tenthSeen = false;
    for (; place < trimmed.size(); ++place) {
        const char32_t unit = trimmed[place].unicode();
        if ((unit == U'.' || unit == U',') && !pointSeen) {
            pointSeen = true;
        } else if (unit >= U'0' && unit <= U'9') {
            const auto digit = static_cast<double>(unit - U'0');
            if (!pointSeen || !tenthSeen) {
                digits = std::min(digits * 10 + digit, enough);
                tenthSeen = pointSeen;
            } else {
                weight /= 10;
                tail += digit * weight;
            }
        } else {
            break;
        }
    }
    const double tenths = (tenthSeen ? digits : digits * 10) + tail;
    return negative ? -tenths : tenths;
}

int typedPosition(const ValueScale& scale, const QString& text) {
    if (scale.attenuation) {
        const bool silent = isSilence(text.trimmed());
        return positionOf(scale, silent ? 0 : highestValue(scale) + std::trunc(readTenths(text)));
    }
    // Ten steps to a unit are the tenths themselves: no rounding on the way.
    const double tenths = readTenths(text);
    const double steps = std::trunc(scale.stepsPerUnit == 10 ? tenths : tenths / 10.0 * scale.stepsPerUnit);
    const int position = truncateTo<int>(scale.negated ? -steps : steps);
    return std::clamp(position, scale.minimum, scale.maximum);
}

bool isWholeText(const ValueScale& scale, const QString& text) {
    return !scale.attenuation || isSilence(text.trimmed()) ||
           std::any_of(text.begin(), text.end(), [](QChar unit) { return unit >= u'0' && unit <= u'9'; });
}

QString exactText(const ValueScale& scale, double value) {
    const int position = positionOf(scale, value);
    const auto single = static_cast<float>(value);
    // Most values are stored as singles, in which no tenth is exact.
    if (static_cast<float>(valueAt(scale, position)) == single) {
        return textAt(scale, position);
    }
    std::array<char, 64> digits{};
    char* const last = digits.data() + digits.size();
    const bool isSingle = std::isnan(value) || double{single} == value;
    const auto written =
        isSingle ? std::to_chars(digits.data(), last, single) : std::to_chars(digits.data(), last, value);
    return QString::fromLatin1(digits.data(), written.ptr - digits.data());
}

QString numberText(double value, int decimals) {
    return QString::number(value, 'f', decimals);
}

}  // namespace tessavo
