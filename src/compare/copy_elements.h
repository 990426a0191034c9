#pragma once

#include <span>

#include "compare/set_element.h"
#include "params/records.h"

namespace tessavo {

/// The target with the chosen elements of the source; everything else of it stays, spare bytes and the word of the
/// record's size always. What is always written together goes together: the copies of delay size 1 with it. Give the
/// result to TuningState::replaceSet().
[[nodiscard]] ParameterSet copyElements(const ParameterSet& target, const ParameterSet& source,
                                        std::span<const SetElement> elements);

/// The target as it is when the source is copied over it: everything of the source, version and spare bytes included.
/// \param withName false where the target keeps its own name
[[nodiscard]] ParameterSet copyWholeSet(const ParameterSet& target, const ParameterSet& source,
                                        bool withName);

}  // namespace tessavo
