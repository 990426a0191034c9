#include "target/signal_processor.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "base/md5.h"
#include "comm/framing.h"
#include "target/memory_files.h"
#include "target/software_image.h"

namespace tessavo {

namespace {

std::string setName(std::size_t set) {
    return set == 0 ? "the default set" : "set " + std::to_string(set);
}

void putLittleEndian(std::span<std::uint8_t> payload, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < sizeof value; ++i) {
        payload[offset + i] = static_cast<std::uint8_t>((value >> (8 * i)) & 0xFF);
    }
}

}  // namespace

SignalProcessor::SignalProcessor(TargetMemory memory, Options options, TargetLog log)
    : memory_(std::move(memory)), options_(std::move(options)), log_(std::move(log)) {}

bool SignalProcessor::takeLiveImage(std::span<const std::uint8_t> payload) {
    const auto image = payload.first(parameterImageSize);
    const auto digest = md5(image);
    liveConfirmed_ = std::equal(digest.begin(), digest.end(), payload.subspan(parameterImageSize).begin());
    if (liveConfirmed_) {
        std::copy(image.begin(), image.end(), memory_.live.begin());
        note(log_, "took a live image");
    } else {
        note(log_, "live image with a wrong digest; kept the one before");
    }
    return true;
}

bool SignalProcessor::takeCommand(std::span<const std::uint8_t> payload) {
    if (payload[0] != command_code::saveSet) {
        note(log_, "refused unknown command " + std::to_string(payload[0]));
        return false;
    }
    return saveLiveImage(payload[1], payload.subspan(2, std::tuple_size_v<Md5Digest>));
}

bool SignalProcessor::saveLiveImage(std::size_t set, std::span<const std::uint8_t> digest) {
    if (set >= targetSetCount) {
        note(log_, "refused to save into set " + std::to_string(set) + ": there is none");
        return false;
    }
    const auto liveDigest = md5(memory_.live);
    if (!std::equal(liveDigest.begin(), liveDigest.end(), digest.begin())) {
        note(log_, "refused to save into " + setName(set) + ": the digest is not that of the live image");
        return false;
    }
    if (options_.files != nullptr) {
        const std::string problem = options_.files->saveSet(set, memory_.live);
        if (!problem.empty()) {
            warn(log_, problem + "; refused to save into " + setName(set));
            return false;
        }
    }
    memory_.sets[set] = memory_.live;
    note(log_, "saved the live image as " + setName(set));
    return true;
}

bool SignalProcessor::takeSoftwareBlock(std::span<const std::uint8_t> payload) {
    if (software_.size() + payload.size() > softwareImageLimit) {
        note(log_,
             "refused a block: the software image is larger than " + countOf(softwareImageLimit, "byte"));
        return false;
    }
    software_.insert(software_.end(), payload.begin(), payload.end());
    return true;
}

bool SignalProcessor::dropSoftware() {
    const bool dropped = !software_.empty();
    software_.clear();
    return dropped;
}

void SignalProcessor::finishSoftware() {
    if (software_.empty()) {
        return;
    }
    const SoftwareCheck check = checkSoftwareImage(software_);
    software_.resize(check.size);
    std::string text = "took a software image of " + countOf(check.size, "byte");
    switch (check.verdict) {
        case SoftwareVerdict::right:
            text += ", its CRC is right";
            break;
        case SoftwareVerdict::halfCrc:
            text += "; the last of them may be half of its CRC";
            break;
        case SoftwareVerdict::noCrc:
            text += " without a CRC that matches: right only for an image that fills its blocks";
            break;
    }
    memory_.software = std::exchange(software_, {});
    note(log_, text);
    if (options_.files != nullptr) {
        const std::string problem = options_.files->saveSoftware(memory_.software);
        if (!problem.empty()) {
            warn(log_, problem + "; it is lost at the end of this run");
        }
    }
}

std::span<const SignalProcessor::Answer> SignalProcessor::answers() {
    static constexpr auto rows = std::to_array<Answer>({
        {command_code::readSet, &SignalProcessor::putSet},
        {command_code::readVersions, &SignalProcessor::putVersions},
        {command_code::readClipState, &SignalProcessor::putClipState},
        {command_code::confirmLiveSet, &SignalProcessor::putConfirmation},
    });
    return rows;
}

std::optional<std::vector<std::uint8_t>> SignalProcessor::replyTo(std::span<const std::uint8_t> request) {
    const auto known = answers();
    const auto answer = std::ranges::find(known, request[0], &Answer::code);
    if (answer == known.end()) {
        note(log_, "refused unknown request " + std::to_string(request[0]));
        return std::nullopt;
    }
    std::vector<std::uint8_t> payload(payloadSize(frame_type::block4k), 0);
    if (!(this->*answer->put)(request, payload)) {
        return std::nullopt;
    }
    return payload;
}

bool SignalProcessor::putSet(std::span<const std::uint8_t> request, std::span<std::uint8_t> payload) {
    const std::size_t set = request[1];
    if (set >= targetSetCount) {
        note(log_, "refused to read set " + std::to_string(set) + ": there is none");
        return false;
    }
    const ImageBytes& image = memory_.sets[set];
    auto digest = md5(image);
    if (options_.faults.wrongDigest) {
        digest.back() ^= 0x01;
        note(log_, "fault: wrong digest");
    }
    std::copy(image.begin(), image.end(), payload.begin());
    std::copy(digest.begin(), digest.end(), payload.subspan(reply_layout::imageDigest).begin());
    note(log_, "sent " + setName(set));
    return true;
}

bool SignalProcessor::putVersions(std::span<const std::uint8_t> /*request*/,
                                  std::span<std::uint8_t> payload) {
    putLittleEndian(payload, reply_layout::hardwareVersion, options_.versions.hardware);
    putLittleEndian(payload, reply_layout::softwareVersion, options_.versions.software);
    note(log_, "sent the versions");
    return true;
}

bool SignalProcessor::putClipState(std::span<const std::uint8_t> /*request*/,
                                   std::span<std::uint8_t> payload) {
    const ClipBytes state = clip_.next();
    std::copy(state.begin(), state.end(), payload.begin());
    note(log_, "sent the clip state");
    return true;
}

bool SignalProcessor::putConfirmation(std::span<const std::uint8_t> /*request*/,
                                      std::span<std::uint8_t> payload) {
    std::fill_n(payload.begin(), liveConfirmed_ ? reply_layout::confirmationBytes : 0,
                reply_layout::confirmation);
    if (options_.faults.wrongConfirmation) {
        // One byte of ten: the refusal that a careless host overlooks.
        payload[reply_layout::confirmationBytes - 1] = 0;
        note(log_, "fault: wrong confirmation");
    } else {
        note(log_, liveConfirmed_ ? "confirmed the live image" : "did not confirm the live image");
    }
    return true;
}

}  // namespace tessavo
