#pragma once

#include "plot/response_curve.h"

namespace tessavo {

/// Shows the equalizer's curve. The plot window implements it, tests with a list. Used on the user-interface
/// thread.
class ICurveDisplay {
 public:
    virtual ~ICurveDisplay() = default;
    /// Shows a curve in place of the one before.
    virtual void setCurve(const ResponseCurve& curve) = 0;
};

}  // namespace tessavo
