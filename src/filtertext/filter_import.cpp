#include "filtertext/filter_import.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/number_text.h"
#include "dsp/filter_kind.h"
#include "params/field_table.h"
#include "params/section_words.h"

namespace tessavo {

namespace {

constexpr int fourthOrder = 4;

const FilterLine& lineOf(const FilterText& text, const ImportedLine& imported) {
    return text.lines[imported.index];
}

bool isOff(const FilterLine& line) {
    return line.kind == FilterLineKind::off;
}

/// Positions in ImportPlan::lines of the bands or of the crossovers, in the order of the text.
std::vector<std::size_t> placesOf(const FilterText& text, const ImportPlan& plan, bool bands) {
    std::vector<std::size_t> places;
    for (std::size_t k = 0; k < plan.lines.size(); ++k) {
        if (isBand(lineOf(text, plan.lines[k]).device->shape) == bands) {
            places.push_back(k);
        }
    }
    return places;
}

/// How much each line that is on does; a line that is off does nothing, whatever it would do.
double weightOf(const FilterLine& line, double samplingRateHz) {
    return isOff(line) ? -1.0 : filterWeight(*line.meaning, samplingRateHz);
}

/// Keeps the filters that do most, in the order of the text, and says of the others why they stay out.
std::vector<std::size_t> strongest(const FilterText& text, ImportPlan& plan, std::vector<std::size_t> places,
                                   std::size_t room) {
    if (places.size() <= room) {
        return places;
    }
    std::vector<double> weights(plan.lines.size());
    for (const std::size_t place : places) {
        weights[place] = weightOf(lineOf(text, plan.lines[place]), text.samplingRateHz);
    }
    std::stable_sort(places.begin(), places.end(),
                     [&](std::size_t one, std::size_t other) { return weights[one] > weights[other]; });
    for (auto place = places.begin() + static_cast<std::ptrdiff_t>(room); place != places.end(); ++place) {
        plan.lines[*place].reason = isOff(lineOf(text, plan.lines[*place]))
                                        ? "It is off, and no band is left for it."
                                        : "More filters than bands; it does least.";
    }
    places.resize(room);
    std::sort(places.begin(), places.end());
    return places;
}

void placeBands(const FilterText& text, const ImportChoice& choice, ImportPlan& plan) {
    std::vector<std::size_t> bands;
    for (std::size_t band = 0; band < bandCount; ++band) {
        if (choice.bands[band]) {
            bands.push_back(band);
        }
    }
    const std::vector<std::size_t> kept = strongest(text, plan, placesOf(text, plan, true), bands.size());
    if (!choice.keepOthers) {
        for (EqBandParams& band : plan.after.bands) {
            band.off = 1;
        }
    }
    for (std::size_t k = 0; k < kept.size(); ++k) {
        ImportedLine& imported = plan.lines[kept[k]];
        const FilterLine& line = lineOf(text, imported);
        imported.band = bands[k];
        EqBandParams& band = plan.after.bands[bands[k]];
        EqBandParams filled = bandOf(*line.device, isOff(line));
        filled.spare1 = band.spare1;
        filled.spare13 = band.spare13;
        band = filled;
    }
}

/// A crossover that a text asks for, and the lines that say so.
struct WantedCrossover {
    DeviceFilter filter{};
    bool off = false;
    std::vector<std::size_t> places{};  ///< in ImportPlan::lines
};

/// Two filters of 2nd order that are the same, one after another, are one of 4th order of the target.
std::vector<WantedCrossover> wantedCrossovers(const FilterText& text, const ImportPlan& plan) {
    std::vector<WantedCrossover> wanted;
    for (const std::size_t place : placesOf(text, plan, false)) {
        const FilterLine& line = lineOf(text, plan.lines[place]);
        const auto half = std::find_if(wanted.begin(), wanted.end(), [&](const WantedCrossover& one) {
            return !one.off && !isOff(line) && one.filter.order != fourthOrder &&
                   line.device->order != fourthOrder && one.filter.shape == line.device->shape &&
                   one.filter.frequencyHz == line.device->frequencyHz;
        });
        if (half != wanted.end()) {
            half->filter.order = fourthOrder;
            half->places.push_back(place);
        } else {
            wanted.push_back({*line.device, isOff(line), {place}});
        }
    }
    // What plays has the first choice of places.
    std::stable_partition(wanted.begin(), wanted.end(), [](const WantedCrossover& one) { return !one.off; });
    return wanted;
}

/// Where both crossovers of a channel play one kind and two lines ask for one of that kind together, each line takes one:
/// otherwise the second would go on playing beside both lines.
void takeBothPlaces(const OutputChannelParams& channel, std::vector<WantedCrossover>& wanted) {
    const FilterShape kind = filterOf(channel.crossovers.front()).shape;
    const bool bothPlay = std::ranges::all_of(channel.crossovers, [&](const CrossoverParams& there) {
        return there.enabled != 0 && filterOf(there).shape == kind;
    });
    const auto isOfKind = [&](const WantedCrossover& one) { return !one.off && one.filter.shape == kind; };
    const auto only = std::ranges::find_if(wanted, isOfKind);
    if (!bothPlay || only == wanted.end() || only->places.size() != crossoverCount ||
        std::ranges::count_if(wanted, isOfKind) != 1) {
        return;
    }
    only->filter.order = 2;
    WantedCrossover second = *only;
    second.places.erase(second.places.begin());
    only->places.pop_back();
    wanted.push_back(std::move(second));
}

/// The place for a crossover: that of an enabled one of its kind, else one that is not enabled, of its kind if there is one.
std::optional<std::size_t> roomFor(const WantedCrossover& wanted, const OutputChannelParams& channel,
                                   const std::array<bool, crossoverCount>& taken) {
    std::optional<std::size_t> best;
    int bestRank = 0;
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        const CrossoverParams& there = channel.crossovers[k];
        const bool sameKind = filterOf(there).shape == wanted.filter.shape;
        const bool free = there.enabled == 0;
        const int rank = sameKind && !free && !wanted.off ? 3 : sameKind && free ? 2 : free ? 1 : 0;
        if (!taken[k] && rank > bestRank) {
            best = k;
            bestRank = rank;
        }
    }
    return best;
}

void placeCrossovers(const FilterText& text, ImportPlan& plan) {
    std::array<bool, crossoverCount> taken{};
    std::vector<WantedCrossover> all = wantedCrossovers(text, plan);
    takeBothPlaces(plan.after, all);
    for (const WantedCrossover& wanted : all) {
        const std::optional<std::size_t> room = roomFor(wanted, plan.after, taken);
        if (room) {
            const CrossoverParams before = plan.after.crossovers[*room];
            CrossoverParams after = crossoverOf(wanted.filter, !wanted.off);
            after.spare5 = before.spare5;
            plan.after.crossovers[*room] = after;
            taken[*room] = true;
        }
        for (const std::size_t place : wanted.places) {
            plan.lines[place].crossover = room;
            if (!room) {
                plan.lines[place].reason = "No crossover of the channel is free for it.";
            }
        }
    }
}

/// Without the noise that binary fractions leave behind the ninth decimal.
double clean(double value) {
    return std::round(value * 1e9) / 1e9 + 0.0;
}

void addPreamp(const FilterText& text, const ImportChoice& choice, ImportPlan& plan) {
    plan.preampLeftDb = clean(text.preampDb);
    if (!choice.withPreamp || text.preampDb == 0.0 || !std::isfinite(plan.after.volumeDb)) {
        return;
    }
    const Field& field = fieldOf(FieldId::volume);
    const double steps = std::pow(10.0, field.decimals);
    // As people read it: the float nearest to 0.1 is 0.1.
    const double before = finiteNumber(shortestText(plan.after.volumeDb)).value_or(0.0);
    const double wanted = std::round((before + text.preampDb) * steps) / steps;
    // A volume beyond its range is not brought back by a preamp that points the other way.
    const double after = text.preampDb < 0.0 ? std::max(wanted, std::min(before, field.minimum))
                                             : std::min(wanted, std::max(before, field.maximum));
    plan.after.volumeDb = static_cast<float>(after);
    plan.preampAddedDb = clean(after - before);
    plan.preampLeftDb = clean(text.preampDb - plan.preampAddedDb);
}

/// Lines whose filters play, with the sections as the text means them and as the method designs them.
struct Responses {
    std::vector<Section> meant{};
    std::vector<Section> played{};
};

Responses responsesOf(const FilterText& text, const ImportPlan& plan, const IcoefficientGenerator& method) {
    Responses responses;
    std::array<bool, crossoverCount> seen{};
    for (const ImportedLine& imported : plan.lines) {
        const FilterLine& line = lineOf(text, imported);
        if (isOff(line) || (!imported.band && !imported.crossover)) {
            continue;
        }
        responses.meant.insert(responses.meant.end(), line.meaning->order == fourthOrder ? 2 : 1,
                               cookbookSection(*line.meaning, text.samplingRateHz));
        if (imported.band) {
            responses.played.push_back(designedBand(method, plan.after.bands[*imported.band]));
        } else if (!seen[*imported.crossover]) {
            seen[*imported.crossover] = true;
            const CrossoverParams& crossover = plan.after.crossovers[*imported.crossover];
            responses.played.insert(responses.played.end(), crossover.order == fourthOrder ? 2 : 1,
                                    designedCrossover(method, crossover));
        }
    }
    return responses;
}

double levelDb(const std::vector<Section>& sections, double hz, double samplingRateHz) {
    return std::accumulate(sections.begin(), sections.end(), 0.0, [&](double sum, const Section& section) {
        return sum + sectionLevelDb(section, hz, samplingRateHz);
    });
}

}  // namespace

ImportPlan planImport(const FilterText& text, const OutputChannelParams& before, const ImportChoice& choice) {
    ImportPlan plan{before, {}, 0.0, 0.0};
    for (std::size_t index = 0; index < text.lines.size(); ++index) {
        const FilterLine& line = text.lines[index];
        const bool filter = line.kind == FilterLineKind::band || line.kind == FilterLineKind::crossover ||
                            line.kind == FilterLineKind::off;
        if (filter && line.device && line.meaning) {
            plan.lines.push_back({index, std::nullopt, std::nullopt, {}});
        }
    }
    placeBands(text, choice, plan);
    placeCrossovers(text, plan);
    addPreamp(text, choice, plan);
    return plan;
}

std::optional<ImportDeviation> importDeviation(const FilterText& text, const ImportPlan& plan,
                                               const IcoefficientGenerator& method) {
    constexpr int points = 1000;
    // Below this neither of the two is heard, and where nothing passes there is no level to compare.
    constexpr double deepestDb = -120.0;
    const Responses responses = responsesOf(text, plan, method);
    if (responses.meant.empty()) {
        return std::nullopt;
    }
    const double highest = std::min(highestHeardHz, text.samplingRateHz / 2.0);
    ImportDeviation worst{0.0, lowestHeardHz};
    for (int point = 0; point < points; ++point) {
        const double hz = lowestHeardHz * std::pow(highest / lowestHeardHz, point / (points - 1.0));
        const double meant = levelDb(responses.meant, hz, text.samplingRateHz);
        const double played = levelDb(responses.played, hz, responseSamplingRateHz);
        const double difference = std::max(played, deepestDb) - std::max(meant, deepestDb);
        if (std::abs(difference) > std::abs(worst.db)) {
            worst = {difference, hz};
        }
    }
    return worst;
}

}  // namespace tessavo
