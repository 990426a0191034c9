#pragma once

namespace tessavo::test {

/// Processor time that this program has used so far, in seconds. Other programs do not lengthen it.
[[nodiscard]] double processorSeconds();

}  // namespace tessavo::test
