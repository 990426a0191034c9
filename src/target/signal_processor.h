#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "comm/target_commands.h"
#include "target/clip_source.h"
#include "target/fault_plan.h"
#include "target/target_log.h"
#include "target/target_memory.h"

namespace tessavo {

class MemoryFiles;

/// What the simulated target does with the messages that reach it; TargetDevice brings them.
///
/// Each `take` function returns whether the message is answered positively.
class SignalProcessor {
 public:
    struct Options {
        TargetVersions versions{.hardware = 0x00000102, .software = 0x00010006};
        FaultPlan faults{};
        const MemoryFiles* files = nullptr;  ///< keeps sets and software between runs; outlives this object
    };

    SignalProcessor(TargetMemory memory, Options options, TargetLog log);

    /// Takes a 4096-byte block: an image and its digest. With a wrong digest the live image stays and is no
    /// longer confirmed; the block's answer is positive all the same.
    bool takeLiveImage(std::span<const std::uint8_t> payload);
    /// Takes a 128-byte block: saves the live image when set number and digest are right.
    bool takeCommand(std::span<const std::uint8_t> payload);
    /// Collects a software image, at most as large as one can be.
    bool takeSoftwareBlock(std::span<const std::uint8_t> payload);
    /// Ends the software image under way, if there is one.
    void finishSoftware();
    /// Forgets the software image under way.
    /// \return whether there was one
    bool dropSoftware();

    /// \return the 4096-byte payload of the reply, or nothing for an unknown request
    std::optional<std::vector<std::uint8_t>> replyTo(std::span<const std::uint8_t> request);

    [[nodiscard]] const TargetMemory& memory() const { return memory_; }
    [[nodiscard]] ClipSource& clip() { return clip_; }
    [[nodiscard]] const ClipSource& clip() const { return clip_; }

 private:
    bool saveLiveImage(std::size_t set, std::span<const std::uint8_t> digest);
    // Answers to requests: each fills the payload of its reply, or refuses.
    bool putSet(std::span<const std::uint8_t> request, std::span<std::uint8_t> payload);
    bool putVersions(std::span<const std::uint8_t> request, std::span<std::uint8_t> payload);
    bool putClipState(std::span<const std::uint8_t> request, std::span<std::uint8_t> payload);
    bool putConfirmation(std::span<const std::uint8_t> request, std::span<std::uint8_t> payload);

    /// How the requests with one code are answered.
    struct Answer {
        std::uint8_t code;
        bool (SignalProcessor::*put)(std::span<const std::uint8_t>, std::span<std::uint8_t>);
    };
    static std::span<const Answer> answers();

    TargetMemory memory_;
    Options options_;
    TargetLog log_;
    ClipSource clip_;
    bool liveConfirmed_ = false;
    std::vector<std::uint8_t> software_;  ///< blocks of the software image under way
};

}  // namespace tessavo
