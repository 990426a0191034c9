#include "dsp/fixed_point.h"

#include "base/saturate.h"

namespace tessavo {

bool coefficientsToFixed(const std::array<double, 5>& scaled, BiquadWords& out) {
    const std::array<std::int32_t*, 5> words{&out.b0, &out.b1, &out.b2, &out.a1, &out.a2};
    for (std::size_t i = 0; i < words.size(); ++i) {
        const double x = scaled[i];
        *words[i] = 0;
        if (x < -1.0 || x >= 1.0) {
            return false;
        }
        // Scaling by a power of two is exact, so the truncation sees every bit of x.
        *words[i] = truncateTo<std::int32_t>(x * 2147483648.0);
    }
    return true;
}

}  // namespace tessavo
