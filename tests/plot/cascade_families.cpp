#include "plot/cascade_families.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "base/saturate.h"
#include "dsp/filter_methods.h"
#include "plot/response_terms.h"

namespace tessavo::test {
namespace {

using Random = std::mt19937_64;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

std::size_t below(Random& random, std::size_t limit) {
    return static_cast<std::size_t>(random() % limit);
}

std::int32_t anyWord(Random& random) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(random()));
}

std::int32_t wordOf(double value, int bits) {
    return truncateTo<std::int32_t>(std::round(std::ldexp(value, bits)));
}

double gridAngle(std::size_t point) {
    return 2 * std::numbers::pi * 20.0 * static_cast<double>(point) / 49500.0;
}

/// A point of the grid, 1 to 1000; each fourth time 825, whose angle has the exact cosine -1/2.
std::size_t gridPoint(Random& random) {
    return below(random, 4) == 0 ? 825 : 1 + below(random, 1000);
}

Cascade sections(Random& random, BiquadWords (*draw)(Random&)) {
    Cascade cascade(10 + below(random, 4));
    for (BiquadWords& words : cascade) {
        words = draw(random);
    }
    return cascade;
}

BiquadWords anySection(Random& random) {
    return {anyWord(random), anyWord(random), anyWord(random), anyWord(random), anyWord(random)};
}

IcoefficientGenerator& anyGenerator(Random& random) {
    static const FilterMethods generators = makeFilterMethods();
    return *generators[below(random, generators.size())];
}

BiquadWords crossoverAt(Random& random, std::uint32_t frequencyHz) {
    BiquadWords words{unityNumeratorWord, 0, 0, 0, 0};
    const auto kind = static_cast<std::uint32_t>(below(random, 2));
    anyGenerator(random).computeCrossover(static_cast<std::int32_t>(frequencyHz << 16U | kind << 8U), 0,
                                          words);
    return words;
}

BiquadWords tunedBand(Random& random) {
    BiquadWords words{unityNumeratorWord, 0, 0, 0, 0};
    const auto frequencyHz = static_cast<std::uint32_t>(20 + below(random, 19981));
    const auto type = static_cast<std::uint32_t>(below(random, 3));
    const float gainDb = static_cast<float>(below(random, 361)) / 10.0F - 18.0F;
    const float q = static_cast<float>(1 + below(random, 200)) / 10.0F;
    anyGenerator(random).computeBand(static_cast<std::int32_t>(frequencyHz << 16U | type), gainDb, q, 0,
                                     words);
    return words;
}

Cascade tuned(Random& random) {
    Cascade cascade = sections(random, tunedBand);
    cascade[0] = crossoverAt(random, static_cast<std::uint32_t>(20 + below(random, 19981)));
    return cascade;
}

Cascade randomWords(Random& random) {
    return sections(random, anySection);
}

Cascade extremeWords(Random& random) {
    return sections(random, [](Random& source) {
        const auto pick = [&source] {
            constexpr std::array<std::int32_t, 12> words{lowest,  lowest + 1, highest, 0,
                                                         1,       -1,         1 << 28, -(1 << 28),
                                                         1 << 30, -(1 << 30), 1 << 29, -(1 << 29)};
            return words[below(source, words.size())];
        };
        return BiquadWords{pick(), pick(), pick(), pick(), pick()};
    });
}

Cascade zeroWordsAmongOthers(Random& random) {
    return sections(random, [](Random& source) {
        switch (below(source, 16)) {
            case 0:
                return BiquadWords{};
            case 1:
                return BiquadWords{0, 0, 0, anyWord(source), anyWord(source)};
            default:
                return tunedBand(source);
        }
    });
}

Cascade notchesOnTheGrid(Random& random) {
    return sections(random, [](Random& source) {
        const double c = -2 * std::cos(gridAngle(gridPoint(source)));
        const double r = std::ldexp(static_cast<double>(below(source, 1000)), -10);
        return BiquadWords{1 << 28, wordOf(c, 28), 1 << 28, wordOf(c * r, 30), wordOf(r * r, 30)};
    });
}

Cascade polesOnTheCircle(Random& random) {
    return sections(random, [](Random& source) {
        const double c = -2 * std::cos(gridAngle(gridPoint(source)));
        const auto nudge = static_cast<std::int32_t>(below(source, 3)) - 1;
        return BiquadWords{anyWord(source), anyWord(source), anyWord(source), wordOf(c, 30),
                           (1 << 30) + nudge};
    });
}

Cascade deepStopBands(Random& random) {
    const auto frequencyHz = static_cast<std::uint32_t>(below(random, 2) == 0 ? 20 : 20000);
    Cascade cascade(13);
    for (BiquadWords& words : cascade) {
        words = crossoverAt(random, frequencyHz);
    }
    return cascade;
}

Cascade crossoversAtBothEnds(Random& random) {
    Cascade cascade = sections(random, tunedBand);
    cascade.push_back(crossoverAt(random, static_cast<std::uint32_t>(20 + below(random, 3))));
    cascade.push_back(crossoverAt(random, static_cast<std::uint32_t>(20000 - below(random, 3))));
    return cascade;
}

Cascade flat(Random& random) {
    return sections(random, [](Random& source) {
        const std::int32_t a1 = anyWord(source) / 4;
        const std::int32_t a2 = anyWord(source) / 8;
        return BiquadWords{1 << 28, a1, a2, a1 * 4, a2 * 4};
    });
}

Cascade levelsAtTheEdgeOfAWholeDecibel(Random& random) {
    Cascade cascade;
    for (std::size_t i = 0; i < 1 + below(random, 3); ++i) {
        const auto level = static_cast<double>(below(random, 78)) - 60.0;
        const auto nudge = static_cast<std::int32_t>(below(random, 5)) - 2;
        const std::int32_t word = wordOf(std::pow(10.0, level / 20), 28) + nudge;
        cascade.push_back({below(random, 2) == 0 ? word : -word, 0, 0, 0, 0});
    }
    return cascade;
}

/// A tuned cascade that meets a whole dB at one point as closely as two more words can bring it.
Cascade wholeDecibelsAtOnePoint(Random& random) {
    Cascade cascade = tuned(random);
    const std::size_t point = below(random, 1000);
    const double sum = plainMagnitudeDb(cascade, point);
    if (!std::isfinite(sum) || std::abs(sum) > 100.0) {
        return cascade;
    }
    const double target = std::trunc(sum) + (sum < 0 ? -1.0 : 1.0) - sum;
    const std::int32_t coarse = wordOf(std::pow(10.0, target / 20), 28);
    const auto level = [](std::int32_t word) {
        return 20.0L * std::log10(std::ldexp(static_cast<long double>(word), -28));
    };
    const long double step = level(coarse + 1) - level(coarse);
    std::array<std::int32_t, 2> best{coarse, 1 << 28};
    long double smallest = 1;
    for (std::int32_t down = 0; down < 1000; ++down) {
        const long double missing = target - level(coarse) - level((1 << 28) - down);
        const std::int32_t first =
            coarse + truncateTo<std::int32_t>(static_cast<double>(std::round(missing / step)));
        const long double rest = std::abs(target - level(first) - level((1 << 28) - down));
        if (rest < smallest) {
            smallest = rest;
            best = {first, (1 << 28) - down};
        }
    }
    cascade.push_back({best[0], 0, 0, 0, 0});
    cascade.push_back({best[1], 0, 0, 0, 0});
    return cascade;
}

Cascade boostsAgainstTheirCuts(Random& random) {
    Cascade cascade;
    IcoefficientGenerator& generator = anyGenerator(random);
    for (int i = 0; i < 5; ++i) {
        const auto kindWord =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(20 + below(random, 19981)) << 16U | 2U);
        const float gainDb = static_cast<float>(below(random, 181)) / 10.0F;
        const float q = static_cast<float>(1 + below(random, 200)) / 10.0F;
        for (const float signedGainDb : {gainDb, -gainDb}) {
            BiquadWords words{unityNumeratorWord, 0, 0, 0, 0};
            generator.computeBand(kindWord, signedGainDb, q, 0, words);
            cascade.push_back(words);
        }
    }
    return cascade;
}

}  // namespace

const std::vector<CascadeFamily>& cascadeFamilies() {
    static const std::vector<CascadeFamily> families{
        {"tunedFilters", tuned},
        {"randomWords", randomWords},
        {"extremeWords", extremeWords},
        {"zeroWordsAmongOthers", zeroWordsAmongOthers},
        {"notchesOnTheGrid", notchesOnTheGrid},
        {"polesOnTheCircle", polesOnTheCircle},
        {"deepStopBands", deepStopBands},
        {"crossoversAtBothEnds", crossoversAtBothEnds},
        {"flat", flat},
        {"levelsAtTheEdgeOfAWholeDecibel", levelsAtTheEdgeOfAWholeDecibel},
        {"wholeDecibelsAtOnePoint", wholeDecibelsAtOnePoint},
        {"boostsAgainstTheirCuts", boostsAgainstTheirCuts},
    };
    return families;
}

}  // namespace tessavo::test
