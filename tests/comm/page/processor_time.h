#pragma once

namespace tessavo::testing {

/// Processor time that this program has used so far, in seconds. Other programs do not lengthen it.
[[nodiscard]] double processorSeconds();

}  // namespace tessavo::testing
