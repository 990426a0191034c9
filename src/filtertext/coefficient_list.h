#pragma once

#include <cstddef>

#include "text/line_text.h"

namespace tessavo {

/// Finds the biquads in lists of coefficients: "biquad1," with lines such as "b0=0.997," below it, or lines of five or six
/// coefficients.
class CoefficientList {
 public:
    /// Reads the next line of a text.
    /// \return whether a biquad begins there
    [[nodiscard]] bool read(const LineText& line);

 private:
    bool isOpen_ = false;  ///< a biquad has begun whose b0 has not come
};

}  // namespace tessavo
