#include "pages/form/value_scale.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/saturate.h"

namespace tessavo {

namespace {

const QString& silence() {
    static const auto text = QStringLiteral("-Inf.");
    return text;
}

bool isSilence(const QString& text) {
    return text == silence() || text == QLatin1String("-inf.");
}

struct Tenths {
    double value = 0;
    bool isThere = false;  ///< at least one digit was read
    bool isAll = false;    ///< nothing is left behind the number
};

bool isDigit(QChar letter) {
    return letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
}

bool isPoint(QChar letter) {
    return letter == QLatin1Char('.') || letter == QLatin1Char(',');
}

Tenths readNumberStart(const QString& text) {
    // Farther than every slider reaches.
    constexpr double enough = 1e15;
    const QString trimmed = text.trimmed();
    const auto* const end = std::find_if_not(trimmed.begin(), trimmed.end(), [](QChar letter) {
        return isDigit(letter) || isPoint(letter) || letter == QLatin1Char('-');
    });
    const NumberStart read = numberAtStart(trimmed.left(end - trimmed.begin()).toStdString());
    // Ten is a sum of two powers of two: the nearest double of a tenth, times ten, is whole again.
    return {std::clamp(read.value * 10, -enough, enough), read.isThere, read.isWhole && end == trimmed.end()};
}

/// A frequency with its unit as a plain number of Hz: "3k2" gives "3200". The digits are moved, not
/// multiplied, so that nothing is rounded. Any other text stays as it is.
QString withoutUnit(const QString& text) {
    QString rest = text.trimmed();
    if (rest.endsWith(QLatin1String("Hz"), Qt::CaseInsensitive)) {
        rest = rest.chopped(2).trimmed();
    }
    qsizetype index = rest.startsWith(QLatin1Char('-')) ? 1 : 0;
    QString whole = rest.left(index);
    QString fraction;
    const auto digitsInto = [&](QString& digits) {
        const qsizetype first = index;
        for (; index < rest.size() && isDigit(rest[index]); ++index) {
            digits += rest[index];
        }
        return index - first;
    };
    bool anyDigit = digitsInto(whole) > 0;
    const bool pointed = index < rest.size() && isPoint(rest[index]);
    if (pointed) {
        ++index;
        anyDigit = digitsInto(fraction) > 0 || anyDigit;
    }
    const qsizetype numberEnd = index;
    while (index < rest.size() && rest[index].isSpace()) {
        ++index;
    }
    const bool thousands = index < rest.size() && rest[index].toLower() == QLatin1Char('k');
    if (thousands) {
        ++index;
        if (!pointed && index == numberEnd + 1) {
            digitsInto(fraction);
        }
    }
    if (!anyDigit || index != rest.size()) {
        return text;
    }
    if (thousands) {
        fraction = fraction.leftJustified(3, QLatin1Char('0'));
        whole += QStringView(fraction).left(3);
        fraction.remove(0, 3);
    }
    return whole + QLatin1Char('.') + fraction;
}

Tenths readIn(const ValueScale& scale, const QString& text) {
    return readNumberStart(scale.unit == QLatin1String("Hz") ? withoutUnit(text) : text);
}

}  // namespace

ValueScale sliderScale(FieldId field, Qt::Orientation orientation) {
    const Field& described = fieldOf(field);
    ValueScale scale;
    scale.decimals = shownDecimals(described);
    scale.stepsPerUnit = described.decimals > 0 ? 10 : 1;
    scale.negated = orientation == Qt::Vertical;
    scale.attenuation = field == FieldId::decoderGain;
    scale.unit = scale.attenuation ? QStringLiteral("dB")
                                   : QString::fromUtf8(described.unit.data(),
                                                       static_cast<qsizetype>(described.unit.size()));
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

QString unitTextAt(const ValueScale& scale, int position) {
    const QString number = textAt(scale, position);
    return scale.unit.isEmpty() ? number : number + QLatin1Char(' ') + scale.unit;
}

double readTenths(const QString& text) {
    return readNumberStart(text).value;
}

TypedNumber readTyped(const ValueScale& scale, const QString& text) {
    if (scale.attenuation && isSilence(text.trimmed())) {
        return {true, true, false, positionOf(scale, 0)};
    }
    const Tenths read = readIn(scale, text);
    // Ten steps to a unit are the tenths themselves: no rounding on the way.
    double steps = std::trunc(scale.stepsPerUnit == 10 ? read.value : read.value / 10.0 * scale.stepsPerUnit);
    if (scale.attenuation) {
        steps = highestValue(scale) + std::trunc(read.value);
    }
    const int asked = truncateTo<int>(scale.negated ? -steps : steps);
    const int position = std::clamp(asked, scale.minimum, scale.maximum);
    return {read.isThere, read.isAll, asked != position, position};
}

int typedPosition(const ValueScale& scale, const QString& text, int current) {
    const TypedNumber typed = readTyped(scale, text);
    return scale.attenuation && !typed.isThere ? current : typed.position;
}

std::optional<double> numberIn(const ValueScale& scale, const QString& text) {
    if (scale.attenuation && isSilence(text.trimmed())) {
        return 0;
    }
    const Tenths read = readIn(scale, text);
    if (!read.isAll) {
        return {};
    }
    return scale.attenuation ? highestValue(scale) + read.value : read.value / 10;
}

QString typedWarning(const TypedNumber& typed, const QString& countsAs) {
    if (!typed.isThere) {
        return QStringLiteral("Not a number: counts as ") + countsAs;
    }
    if (typed.isClamped) {
        return QStringLiteral("Out of range: counts as ") + countsAs;
    }
    return typed.isWhole ? QString() : QStringLiteral("Not wholly a number: counts as ") + countsAs;
}

QString typedWarning(const ValueScale& scale, const QString& text, int current) {
    const TypedNumber typed = readTyped(scale, text);
    if (scale.attenuation && !typed.isThere) {
        return QStringLiteral("Not a number: %1 stays").arg(unitTextAt(scale, current));
    }
    return typedWarning(typed, unitTextAt(scale, typed.position));
}

QString exactText(const ValueScale& scale, double value) {
    const int position = positionOf(scale, value);
    const auto single = static_cast<float>(value);
    // Most values are stored as singles, in which no tenth is exact.
    if (static_cast<float>(valueAt(scale, position)) == single) {
        return textAt(scale, position);
    }
    const bool isSingle = std::isnan(value) || double{single} == value;
    return QString::fromStdString(isSingle ? shortestText(single) : shortestText(value));
}

QString numberText(double value, int decimals) {
    return QString::number(value, 'f', decimals);
}

}  // namespace tessavo
