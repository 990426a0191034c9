#include "plot/chart/tick_marks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/number_text.h"
#include "base/saturate.h"

namespace tessavo {
namespace {

// Two marks a billionth of their distance apart are one mark.
constexpr double snap = 1e-9;

double scaledByTen(double value, int exponent) {
    // Dividing by an exact power keeps 0.3 the double nearest to 0.3.
    return exponent >= 0 ? value * std::pow(10.0, exponent) : value / std::pow(10.0, -exponent);
}

struct RoundStep {
    int mantissa = 1;
    int exponent = 0;

    [[nodiscard]] double value() const { return scaledByTen(mantissa, exponent); }
};

std::int64_t firstMultiple(double minimum, double step) {
    const double count = minimum / step;
    return truncateTo<std::int64_t>(std::ceil(count - snap - std::abs(count) * 1e-15));
}

std::int64_t lastMultiple(double maximum, double step) {
    const double count = maximum / step;
    return truncateTo<std::int64_t>(std::floor(count + snap + std::abs(count) * 1e-15));
}

std::int64_t multiplesIn(AxisRange range, double step) {
    return lastMultiple(range.maximum, step) - firstMultiple(range.minimum, step) + 1;
}

RoundStep nextStep(RoundStep step, TickSteps steps) {
    if (steps == TickSteps::decibel) {
        constexpr std::array decibels{1, 2, 3, 6, 12, 24};
        if (step.exponent == 0 && step.mantissa < decibels.back()) {
            return {*std::ranges::upper_bound(decibels, step.mantissa), 0};
        }
        if (step.exponent == 0 && step.mantissa == decibels.back()) {
            return {5, 1};
        }
    }
    switch (step.mantissa) {
        case 1:
            return {2, step.exponent};
        case 2:
            return {5, step.exponent};
        default:
            return {1, step.exponent + 1};
    }
}

RoundStep chooseStep(AxisRange range, int maxMajor, TickSteps steps) {
    const double wish = (range.maximum - range.minimum) / (maxMajor + 1);
    RoundStep step{1, truncateTo<int>(std::floor(std::log10(wish)))};
    // Steps of decibels are no powers of ten, so the search begins at the smallest.
    if (steps == TickSteps::decibel && step.exponent == 1) {
        step.exponent = 0;
    }
    while (multiplesIn(range, step.value()) > maxMajor) {
        step = nextStep(step, steps);
    }
    return step;
}

/// Into how many parts a step may be divided so that the parts are round again.
int subdivisionsOf(RoundStep step, int maxMinor) {
    static constexpr std::array<int, 3> one{2, 5, 10};
    static constexpr std::array<int, 2> two{2, 4};
    static constexpr std::array<int, 1> three{3};
    static constexpr std::array<int, 2> five{5, 10};
    static constexpr std::array<int, 3> six{2, 3, 6};
    static constexpr std::array<int, 5> dozens{2, 4, 6, 8, 12};
    std::span<const int> allowed = dozens;
    switch (step.mantissa) {
        case 1:
            allowed = one;
            break;
        case 2:
            allowed = two;
            break;
        case 3:
            allowed = three;
            break;
        case 5:
            allowed = five;
            break;
        case 6:
            allowed = six;
            break;
        default:
            break;
    }
    int subdivisions = 1;
    for (const int candidate : allowed) {
        if (candidate <= maxMinor + 1 && (step.mantissa < 12 || step.mantissa % candidate == 0)) {
            subdivisions = candidate;
        }
    }
    return subdivisions;
}

int decadeOf(double value) {
    return truncateTo<int>(std::floor(std::log10(value) + snap));
}

/// Multiples of powers of ten that carry labels.
struct LogFamily {
    std::span<const int> mantissas;
    int everyDecade = 1;
};

bool isMultiple(int decade, int everyDecade) {
    return (decade % everyDecade + everyDecade) % everyDecade == 0;
}

std::vector<Tick> logTicksOf(AxisRange range, const LogFamily& family, bool withMinor) {
    std::vector<Tick> ticks;
    const bool oneADecade = family.mantissas.size() == 1;
    for (int decade = decadeOf(range.minimum); decade <= decadeOf(range.maximum); ++decade) {
        for (int mantissa = 1; mantissa <= 9; ++mantissa) {
            const double value = scaledByTen(mantissa, decade);
            if (value < range.minimum * (1 - snap) || value > range.maximum * (1 + snap)) {
                continue;
            }
            const bool labelled = isMultiple(decade, family.everyDecade) &&
                                  std::ranges::find(family.mantissas, mantissa) != family.mantissas.end();
            if (labelled) {
                const bool strong = mantissa == 1 || oneADecade;
                ticks.push_back({value, true, strong ? GridRank::major : GridRank::minor});
            } else if (withMinor && (family.everyDecade == 1 || mantissa == 1)) {
                ticks.push_back({value, false, GridRank::minor});
            }
        }
    }
    return ticks;
}

}  // namespace

TickSet linearTicks(AxisRange range, int maxMajor, int maxMinor, TickSteps steps) {
    if (maxMajor <= 0) {
        return {};
    }
    const RoundStep step = chooseStep(range, maxMajor, steps);
    const int subdivisions = subdivisionsOf(step, maxMinor);
    TickSet set;
    set.resolution = step.value();
    const double subdivision = step.value() / subdivisions;
    const std::int64_t last = lastMultiple(range.maximum, subdivision);
    for (std::int64_t n = firstMultiple(range.minimum, subdivision); n <= last; ++n) {
        const bool labelled = n % subdivisions == 0;
        // This is a whole number for labelled ticks.
        const double multiple = static_cast<double>(n * step.mantissa) / subdivisions;
        const GridRank minorOrMajor = labelled ? GridRank::major : GridRank::minor;
        set.ticks.push_back(
            {scaledByTen(multiple, step.exponent), labelled, n == 0 ? GridRank::zero : minorOrMajor});
    }
    return set;
}

TickSet logarithmicTicks(AxisRange range, int maxMajor, int maxMinor) {
    if (maxMajor <= 0) {
        return {};
    }
    static constexpr std::array<int, 9> all{1, 2, 3, 4, 5, 6, 7, 8, 9};
    static constexpr std::array<int, 7> seven{1, 2, 3, 4, 5, 6, 8};
    static constexpr std::array<int, 6> six{1, 2, 3, 4, 6, 8};
    static constexpr std::array<int, 4> four{1, 2, 3, 5};
    static constexpr std::array<int, 3> three{1, 2, 5};
    static constexpr std::array<int, 3> evenly{1, 3, 6};
    static constexpr std::array<int, 2> two{1, 2};
    static constexpr std::array<int, 2> halves{1, 3};
    static constexpr std::array<int, 1> one{1};
    static constexpr std::array<int, 1> twos{2};
    static constexpr std::array<int, 1> fives{5};
    // Where several give as many labels, the first is taken.
    const std::array families{LogFamily{all},     LogFamily{three},   LogFamily{one},     LogFamily{four},
                              LogFamily{six},     LogFamily{seven},   LogFamily{evenly},  LogFamily{halves},
                              LogFamily{two},     LogFamily{twos},    LogFamily{fives},   LogFamily{one, 2},
                              LogFamily{one, 5},  LogFamily{one, 10}, LogFamily{one, 20}, LogFamily{one, 50},
                              LogFamily{one, 100}};
    const double decades = std::log10(range.maximum) - std::log10(range.minimum);
    // Two labels in a part of a decade tell less than those of a linear axis.
    const int least = decades < 1 ? 3 : 2;
    std::vector<Tick> best;
    std::ptrdiff_t most = least - 1;
    for (const LogFamily& family : families) {
        std::vector<Tick> ticks = logTicksOf(range, family, maxMinor > 0 && decades <= 20);
        const std::ptrdiff_t labelled = std::ranges::count_if(ticks, &Tick::labelled);
        if (labelled > most && labelled <= maxMajor) {
            most = labelled;
            best = std::move(ticks);
        }
    }
    return best.empty() ? linearTicks(range, maxMajor, maxMinor, TickSteps::decimal)
                        : TickSet{std::move(best), 0};
}

AxisRange roundOutwards(AxisRange range, int maxMajor, TickSteps steps) {
    const RoundStep step = chooseStep(range, std::max(maxMajor, 2), steps);
    const double size = step.value();
    const auto valueOf = [&](double multiple) {
        return scaledByTen(multiple * static_cast<double>(step.mantissa), step.exponent);
    };
    return {valueOf(std::floor(range.minimum / size + snap)),
            valueOf(std::ceil(range.maximum / size - snap))};
}

AxisRange roundOutwardsLogarithmic(AxisRange range) {
    constexpr std::array mantissas{1, 2, 5, 10};
    AxisRange rounded = range;
    const int low = decadeOf(range.minimum);
    const int high = decadeOf(range.maximum);
    for (const int mantissa : mantissas) {
        if (scaledByTen(mantissa, low) <= range.minimum * (1 + snap)) {
            rounded.minimum = scaledByTen(mantissa, low);
        }
    }
    for (const int mantissa : mantissas) {
        if (scaledByTen(mantissa, high) >= range.maximum * (1 - snap)) {
            rounded.maximum = scaledByTen(mantissa, high);
            break;
        }
    }
    return rounded;
}

QString tickLabel(double value, double resolution, LabelForm form) {
    double shown = value;
    QString unit;
    if (form == LabelForm::kilo) {
        struct Prefix {
            double factor;
            char16_t letter;
        };
        constexpr std::array prefixes{Prefix{1e9, u'G'}, Prefix{1e6, u'M'}, Prefix{1e3, u'k'}};
        for (const Prefix& prefix : prefixes) {
            if (std::abs(value) >= prefix.factor * (1 - snap) && std::abs(value) < 1e12) {
                shown = value / prefix.factor;
                unit = QChar(prefix.letter);
                break;
            }
        }
    }
    int digits = 6;
    if (resolution > 0 && value != 0) {
        digits = std::clamp(truncateTo<int>(std::ceil(std::log10(std::abs(value) / resolution))) + 2, 6, 15);
    }
    QString text = QString::fromStdString(shortNumber(shown, digits)) + unit;
    if (form == LabelForm::withSign && value > 0) {
        text.prepend(QLatin1Char('+'));
    }
    return text;
}

}  // namespace tessavo
