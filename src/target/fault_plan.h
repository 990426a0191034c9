#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tessavo {

/// Trouble that the simulated target makes on purpose, in every connection. Blocks are counted from 1 within
/// a connection, requests included.
struct FaultPlan {
    bool noRequest = false;
    std::size_t wrongRequests = 0;  ///< wrong bytes sent in the request byte's place; 0 = the right one
    std::set<std::uint32_t> negativeBlocks;  ///< answered negatively and not taken
    std::set<std::uint32_t> silentBlocks;    ///< not answered and not taken
    std::size_t junkBytes = 0;               ///< sent before each answer byte
    bool damagedReply = false;
    std::optional<std::size_t> truncatedReply;  ///< reply bytes sent
    bool wrongComplement = false;
    std::chrono::milliseconds late{0};  ///< pause before each reply
    bool wrongConfirmation = false;
    bool wrongDigest = false;
    bool noDisconnect = false;
    std::optional<std::uint64_t> cable;  ///< bytes in both directions together until the cable is pulled

    friend bool operator==(const FaultPlan&, const FaultPlan&) = default;
};

/// Adds one fault given as NAME or NAME=N.
/// \return empty, or what is wrong with the text; the plan is then as before
[[nodiscard]] std::string addFault(FaultPlan& plan, std::string_view text);

/// One line for each fault: its form and what it does.
[[nodiscard]] std::string faultHelp();

}  // namespace tessavo
