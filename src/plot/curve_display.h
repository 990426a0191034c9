#pragma once

#include "plot/response_curve.h"

namespace tessavo {

/// Shows the equalizer curve; each new curve replaces the one before. Used on the user-interface thread.
class ICurveDisplay {
 public:
    virtual ~ICurveDisplay() = default;
    virtual void setCurve(const ResponseCurve& curve) = 0;
};

}  // namespace tessavo
