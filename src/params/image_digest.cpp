#include "params/image_digest.h"

#include <array>
#include <cstring>

namespace tessavo {

Md5Digest md5Image(const ParameterImage& image) {
    std::array<std::uint8_t, parameterImageSize> copy{};
    std::memcpy(copy.data(), &image, copy.size());
    return md5(copy);
}

}  // namespace tessavo
