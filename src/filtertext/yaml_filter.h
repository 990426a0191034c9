#pragma once

#include <optional>

#include "filtertext/filter_text.h"
#include "filtertext/yaml_tree.h"

namespace tessavo {

/// A filter of a CamillaDSP configuration, wherever it is used.
struct YamlFilter {
    /// As band, crossover, unsupported or error; a gain that can be a preamp is of kind none.
    FilterLine line;
    std::optional<double> preampDb{};  ///< of a gain that can be a preamp
};

/// Reads one filter: a map with its type and its parameters.
/// \param name the key under which it stands
/// \param samplingRateHz the rate at which it runs
[[nodiscard]] YamlFilter readYamlFilter(const YamlTree& tree, const YamlNode& name, const YamlNode& body,
                                        double samplingRateHz);

}  // namespace tessavo
