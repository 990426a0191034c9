#pragma once

#include "base/md5.h"
#include "params/parameter_image.h"

namespace tessavo {

/// MD5 digest of the image's 3384 bytes, which goes with every image that is exchanged. Any thread.
[[nodiscard]] Md5Digest md5Image(const ParameterImage& image);

}  // namespace tessavo
