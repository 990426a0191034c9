#include <algorithm>
#include <cstdint>
#include <memory>

#include "check.h"
#include "params/image_conversion.h"
#include "params/image_digest.h"
#include "params/tuning_state.h"

// Any bytes as the image of a set that the target sent: the first byte chooses the set and the filter mode.

namespace {

using namespace tessavo;

/// What a received image never changes.
void checkKept(const ParameterSet& before, const ParameterSet& after) {
    fuzz::check(before.recordSize == after.recordSize, "the record size stays");
    fuzz::check(before.setName == after.setName && before.setVersion == after.setVersion,
                "name and version stay");
    fuzz::check(before.spare5 == after.spare5 && before.spare2117 == after.spare2117, "spare bytes stay");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::size_t setIndex = data[0] % setCount;
    ParameterImage image;
    std::memcpy(&image, data + 1, std::min(size - 1, sizeof(image)));

    fuzz::SilentBoxes boxes;
    TuningState tuning(boxes);
    tuning.start();
    tuning.setFilterMode(data[0] / 8U % 3U);
    tuning.selectSet(static_cast<std::uint32_t>(setIndex));
    const auto before = std::make_unique<ParameterStore>(tuning.store());

    const auto converted = std::make_unique<ParameterStore>(*before);
    readImageFields(*converted, setIndex, image);

    tuning.replaceImage(image);
    image.imageSize = parameterImageSize;
    fuzz::check(fuzz::sameBytes(tuning.imageCopy(), image), "a received image is kept byte by byte");
    fuzz::check(fuzz::sameBytes(tuning.store(), *before), "a received image alone changes no set");
    tuning.imageToSet();
    fuzz::check(fuzz::sameBytes(tuning.store(), *converted), "one conversion, however it is called");
    fuzz::check(fuzz::sameBytes(tuning.imageCopy(), image), "a conversion leaves the image as it arrived");
    tuning.selectSet(static_cast<std::uint32_t>((setIndex + 1) % setCount));
    tuning.selectSet(static_cast<std::uint32_t>(setIndex));
    fuzz::check(fuzz::sameBytes(tuning.imageCopy(), image), "another set and back brings the image back");
    for (std::size_t set = 0; set < setCount; ++set) {
        checkKept(before->sets.at(set), converted->sets.at(set));
        fuzz::check(converted->sets.at(set).routerSource == converted->sets.at(setIndex).routerSource,
                    "router sources go into every set");
    }

    // What the set gives is what the image says, however strange its numbers are.
    ParameterImage written = image;
    writeImageFields(written, converted->sets.at(setIndex));
    static_cast<void>(md5Image(written));
    return 0;
}
