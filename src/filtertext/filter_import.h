#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "dsp/icoefficient_generator.h"
#include "filtertext/filter_text.h"
#include "params/channels.h"
#include "params/records.h"

namespace tessavo {

/// How the filters of a text come into a channel.
struct ImportChoice {
    std::array<bool, bandCount> bands{true, true, true, true,
                                      true, true, true, true};  ///< the bands that may be written
    bool keepOthers =
        false;  ///< bands and crossovers that no filter takes stay as they are; otherwise such bands are bypassed
    bool withPreamp = true;  ///< the preamp is added to the volume
};

/// What became of a line at the import.
struct ImportedLine {
    std::size_t index = 0;                 ///< into FilterText::lines
    std::optional<std::size_t> band;       ///< 0 to 7: the band that holds it
    std::optional<std::size_t> crossover;  ///< 0 or 1: the crossover that holds it
    std::string reason;  ///< why neither does, as a sentence for a person; empty where one does
};

/// A channel with the filters of a text.
struct ImportPlan {
    OutputChannelParams after{};
    std::vector<ImportedLine>
        lines{};  ///< one for each band, crossover, and filter that is off, in the order of the text
    double preampAddedDb = 0;  ///< what the volume was changed by
    double preampLeftDb =
        0;  ///< what of the preamp did not go into the volume: out of its range, off its steps, or not asked for
};

/// Plans the import of a text into a channel. Nothing else of the channel changes.
///
/// Filters take the chosen bands in the order of the text. Where there are more filters than chosen bands, those stay out that
/// do least (see filterWeight(), and of equal ones the later), filters that are off before all others. A low-pass or high-pass
/// takes the place of an enabled crossover of its kind, else one that is not enabled; two equal ones of 2nd order become one of
/// 4th order, unless both crossovers play that kind and no other of it comes: then each takes one. Crossovers that no filter takes stay as they are.
[[nodiscard]] ImportPlan planImport(const FilterText& text, const OutputChannelParams& before,
                                    const ImportChoice& choice = {});

/// The largest difference between what a text means and what a channel will do.
struct ImportDeviation {
    double db = 0;  ///< signed, in dB: the channel's level less that of the text
    double hz = 0;  ///< where
};

/// Compares the responses, from 20 Hz to 20 kHz, of the imported filters as the text means them and as a method of the target
/// will play them: bands that are on and crossovers.
/// \return nothing where no filter was imported
[[nodiscard]] std::optional<ImportDeviation> importDeviation(const FilterText& text, const ImportPlan& plan,
                                                             const IcoefficientGenerator& method);

}  // namespace tessavo
