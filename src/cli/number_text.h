#pragma once

#include <string>

namespace tessavo::cli {

/// The shortest text that reads back as the same number, whatever the locale: "-6", "0.1", "1e+30", "nan",
/// "inf".
[[nodiscard]] std::string numberText(double value);
[[nodiscard]] std::string numberText(float value);

}  // namespace tessavo::cli
