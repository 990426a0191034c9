#include "response/complex_response.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "dsp/filter_kind.h"
#include "plot/centered_quadratic.h"

namespace tessavo {

namespace {

using Block = FrequencyGrid::Block;
using Lanes = FrequencyGrid::Lanes;
constexpr std::size_t lanes = FrequencyGrid::lanes;

constexpr double wholeTurn = 360.0;
constexpr double samplesPerMs = responseSamplingRateHz / 1000.0;
constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

// One quadratic of a section, seen from 0 Hz, and from 24750 Hz, where z^-1 is -1.
struct TwoSided : CenteredQuadratic {
    double mirroredSum;  // c0 - c1 + c2
    double middle;       // c1

    TwoSided(double c0, double c1, double c2)
        : CenteredQuadratic(c0, c1, c2), mirroredSum(sumOfThree(c0, -c1, c2)), middle(c1) {}
};

// A quadratic at one frequency, and what its logarithm's derivative is made of.
struct Value {
    double real;
    double imaginary;
    double power;
    double perSquare;  // 1 / power
    double growth;     // d ln |value| / dw
    double delay;      // - d arg value / dw, less the sample of delay that both quadratics of a section have
    double turns;      // the phase by the ratio of its parts, at most 0.012 turns beside it
};

// Everything is a sum of terms that do not take each other away where the quadratic is small.
inline Value valueAt(const TwoSided& c, const Block& at, std::size_t i) {
    const double side = at.side[i];
    const double square = at.halfAngleSquare[i];
    const double sum = side > 0.0 ? c.sum : c.mirroredSum;
    const double real = side * (sum - c.twiceOuter * square);
    const double imaginary = c.outerDifference * at.sine[i];
    const double power = real * real + imaginary * imaginary;
    // Where the value is 0, so is all that this factor meets. A condition instead of the sum would keep the compiler from
    // computing several frequencies at once.
    const double perSquare = 1.0 / (power + std::numeric_limits<double>::min());
    const double inner = sum - 2.0 * side * c.middle * square;
    const double lean = c.outerDifference * c.outerDifference * at.cosine[i] - c.twiceOuter / 2.0 * real;
    const double parts = std::fabs(real) + std::fabs(imaginary);
    return {real,
            imaginary,
            power,
            perSquare,
            at.sine[i] * lean * perSquare,
            -c.outerDifference * inner * perSquare,
            std::copysign(0.25 - 0.25 * (real / parts), imaginary)};
}

// The diamond's angle is beside the circle's by less than this, in turns; with all quadratics of a channel together it
// must stay below half a turn, so that the exact phase tells the rest.
constexpr double diamondErrorTurns = 0.0114;
static_assert(2 * ChannelModel::mostSections * diamondErrorTurns < 0.3);

// What a channel has come to at the frequencies of a block.
struct Running {
    Lanes real{};
    Lanes imaginary{};
    Lanes growth{};
    Lanes delay{};
    Lanes turns{};

    void multiply(const Section& section, const Block& at) {
        const TwoSided numerator(section.b0, section.b1, section.b2);
        const TwoSided denominator(1.0, section.a1, section.a2);
        for (std::size_t i = 0; i < lanes; ++i) {
            const Value n = valueAt(numerator, at, i);
            const Value d = valueAt(denominator, at, i);
            // A pole on the very frequency leaves 0 / 0.
            const double perSquare = d.power > 0.0 ? d.perSquare : undefined;
            const double quotientReal = (n.real * d.real + n.imaginary * d.imaginary) * perSquare;
            const double quotientImaginary = (n.imaginary * d.real - n.real * d.imaginary) * perSquare;
            const double before = real[i];
            real[i] = before * quotientReal - imaginary[i] * quotientImaginary;
            imaginary[i] = before * quotientImaginary + imaginary[i] * quotientReal;
            growth[i] += n.growth - d.growth;
            delay[i] += n.delay - d.delay;
            turns[i] += n.turns - d.turns;
        }
    }

    void start(double gain) {
        real.fill(gain);
        turns.fill(std::signbit(gain) ? 0.5 : 0.0);
    }

    void delayBy(double samples, const Block& at) {
        for (std::size_t i = 0; i < lanes; ++i) {
            // Whole turns are taken off before anything is rounded.
            const double coarse = samples * at.coarseHz[i];
            const double whole = std::nearbyint(coarse / responseSamplingRateHz);
            const double rest = (coarse - whole * responseSamplingRateHz) + samples * at.fineHz[i];
            const CirclePoint point = circlePoint(std::remainder(rest / responseSamplingRateHz, 1.0));
            const double before = real[i];
            real[i] = before * point.cosine + imaginary[i] * point.sine;
            imaginary[i] = imaginary[i] * point.cosine - before * point.sine;
            delay[i] += samples;
            turns[i] -= samples * (at.coarseHz[i] + at.fineHz[i]) / responseSamplingRateHz;
        }
    }
};

// Adds a value to a sum. \return what rounding took off, exactly
double addTo(double& sum, double value) {
    const double before = sum;
    sum = before + value;
    const double added = sum - before;
    return (before - (sum - added)) + (value - added);
}

// A sum, what rounding took off it, and what it took off that. Together they hold the sum of numbers exactly that lie
// within 600 dB: channels that take each other away leave nothing, in whatever order they come.
struct CarriedSum {
    double sum = 0.0;
    double lost = 0.0;
    double lostOfThat = 0.0;

    void add(double value) { lostOfThat += addTo(lost, addTo(sum, value)); }
    [[nodiscard]] double whole() const { return sum + (lost + lostOfThat); }
};

double degreesOf(double real, double imaginary) {
    const double degrees = std::atan2(imaginary, real) * (180.0 / std::numbers::pi);
    // A zero's sign is no angle.
    return degrees <= -180.0 ? 180.0 : degrees + 0.0;
}

}  // namespace

ComplexResponse::ComplexResponse(std::size_t size)
    : real_(size), imaginary_(size), growth_(size), groupDelaySamples_(size), turns_(size) {}

double ComplexResponse::levelDb(std::size_t point) const {
    constexpr double smallest = 1e-290;
    constexpr double largest = 1e290;
    const double power = std::norm(at(point));
    const double level = power > smallest && power < largest ? 10.0 * std::log10(power)
                                                             : 20.0 * std::log10(std::abs(at(point)));
    return level + 0.0;
}

double ComplexResponse::phaseDegrees(std::size_t point) const {
    return at(point) == 0.0 ? undefined : degreesOf(real_[point], imaginary_[point]);
}

double ComplexResponse::unwrappedPhaseDegrees(std::size_t point) const {
    const double wrapped = phaseDegrees(point);
    return wrapped + wholeTurn * std::nearbyint(turns_[point] - wrapped / wholeTurn);
}

double ComplexResponse::groupDelayMs(std::size_t point) const {
    return at(point) == 0.0 ? undefined : groupDelaySamples_[point] / samplesPerMs + 0.0;
}

double ComplexResponse::growthPerHz(std::size_t point) const {
    return at(point) == 0.0 ? undefined : growth_[point] * (2.0 * std::numbers::pi / responseSamplingRateHz);
}

ComplexResponse ComplexResponse::ofChannel(const ChannelModel& channel, const FrequencyGrid& grid) {
    ComplexResponse response(grid.size());
    std::size_t first = 0;
    for (const Block& block : grid.blocks()) {
        Running running;
        running.start(channel.gain);
        for (const Section& section : channel.sections) {
            running.multiply(section, block);
        }
        if (channel.delaySamples > 0) {
            running.delayBy(channel.delaySamples, block);
        }
        for (std::size_t i = 0; i < lanes && first < grid.size(); ++i, ++first) {
            response.real_[first] = running.real[i];
            response.imaginary_[first] = running.imaginary[i];
            response.growth_[first] = running.growth[i];
            response.groupDelaySamples_[first] = running.delay[i];
            response.turns_[first] = running.turns[i];
        }
    }
    return response;
}

ComplexResponse ComplexResponse::sumOf(std::span<const ComplexResponse* const> responses,
                                       const FrequencyGrid& grid) {
    ComplexResponse sum(grid.size());
    for (std::size_t i = 0; i < grid.size(); ++i) {
        CarriedSum real;
        CarriedSum imaginary;
        std::complex<double> slope = 0.0;
        for (const ComplexResponse* response : responses) {
            real.add(response->real_[i]);
            imaginary.add(response->imaginary_[i]);
            slope += response->at(i) *
                     std::complex<double>(response->growth_[i], -response->groupDelaySamples_[i]);
        }
        const std::complex<double> value(real.whole(), imaginary.whole());
        sum.real_[i] = value.real();
        sum.imaginary_[i] = value.imag();
        const std::complex<double> logarithmic = slope / value;
        sum.growth_[i] = logarithmic.real();
        sum.groupDelaySamples_[i] = -logarithmic.imag();
    }
    sum.followPhase(grid);
    return sum;
}

void ComplexResponse::followPhase(const FrequencyGrid& grid) {
    const std::vector<double>& hertz = grid.frequenciesHz();
    std::optional<std::size_t> last;
    for (std::size_t i = 0; i < size(); ++i) {
        const double wrapped = phaseDegrees(i) / wholeTurn;
        turns_[i] = wrapped;
        if (std::isnan(wrapped)) {
            continue;
        }
        if (last) {
            const double meanSamples = (groupDelaySamples_[*last] + groupDelaySamples_[i]) / 2.0;
            const double expected =
                turns_[*last] - meanSamples * (hertz[i] - hertz[*last]) / responseSamplingRateHz;
            turns_[i] += std::nearbyint(expected - wrapped);
        }
        last = i;
    }
}

std::vector<double> roundingErrorDb(const ComplexResponse& played, const ComplexResponse& ideal) {
    std::vector<double> errors(played.size());
    for (std::size_t i = 0; i < errors.size(); ++i) {
        errors[i] = played.levelDb(i) - ideal.levelDb(i);
    }
    return errors;
}

}  // namespace tessavo
