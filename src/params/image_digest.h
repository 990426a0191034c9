#pragma once

#include "base/md5.h"
#include "params/parameter_image.h"

namespace tessavo {

/// MD5 digest of the image's 3384 bytes. It goes with every image that is exchanged, so that the receiver
/// finds bytes that the line damaged. Any thread.
[[nodiscard]] Md5Digest md5Image(const ParameterImage& image);

}  // namespace tessavo
