#include "target/fault_plan.h"

#include <algorithm>
#include <array>

#include "base/number_text.h"

namespace tessavo {

namespace {

enum class Argument : std::uint8_t { none, optional, needed };

struct Fault {
    std::string_view name;
    Argument argument;
    std::uint32_t smallest;
    std::uint32_t largest;
    std::uint32_t whenLeftOut;
    std::string_view effect;
    void (*apply)(FaultPlan&, std::uint32_t);
};

constexpr std::uint32_t anyBlock = 1000000;

constexpr auto faults = std::to_array<Fault>({
    {"no-request", Argument::none, 0, 0, 0, "no request byte after the port is opened",
     [](FaultPlan& plan, std::uint32_t) { plan.noRequest = true; }},
    {"wrong-request", Argument::optional, 1, 100, 1, "N wrong bytes in place of the request byte (1)",
     [](FaultPlan& plan, std::uint32_t value) { plan.wrongRequests = value; }},
    {"negative", Argument::needed, 1, anyBlock, 0, "negative answer to block N of a connection",
     [](FaultPlan& plan, std::uint32_t value) { plan.negativeBlocks.insert(value); }},
    {"silence", Argument::needed, 1, anyBlock, 0, "no answer to block N of a connection",
     [](FaultPlan& plan, std::uint32_t value) { plan.silentBlocks.insert(value); }},
    {"junk", Argument::optional, 1, 1000, 1, "N junk bytes before each answer (1)",
     [](FaultPlan& plan, std::uint32_t value) { plan.junkBytes = value; }},
    {"damaged-reply", Argument::none, 0, 0, 0, "replies with a damaged byte",
     [](FaultPlan& plan, std::uint32_t) { plan.damagedReply = true; }},
    {"truncated-reply", Argument::optional, 0, 4100, 2000, "replies that end after N of 4101 bytes (2000)",
     [](FaultPlan& plan, std::uint32_t value) { plan.truncatedReply = value; }},
    {"wrong-complement", Argument::none, 0, 0, 0, "replies with a wrong complement of the block number",
     [](FaultPlan& plan, std::uint32_t) { plan.wrongComplement = true; }},
    {"late", Argument::optional, 1, 3600000, 1000, "replies that come N ms late (1000)",
     [](FaultPlan& plan, std::uint32_t value) { plan.late = std::chrono::milliseconds(value); }},
    {"wrong-confirmation", Argument::none, 0, 0, 0, "a live image is never confirmed",
     [](FaultPlan& plan, std::uint32_t) { plan.wrongConfirmation = true; }},
    {"wrong-digest", Argument::none, 0, 0, 0, "sets are read back with a wrong digest",
     [](FaultPlan& plan, std::uint32_t) { plan.wrongDigest = true; }},
    {"no-disconnect", Argument::none, 0, 0, 0, "no answer to the disconnect command",
     [](FaultPlan& plan, std::uint32_t) { plan.noDisconnect = true; }},
    {"cable", Argument::needed, 1, 1000000000, 0,
     "the cable is pulled when N bytes have passed, counted in both directions",
     [](FaultPlan& plan, std::uint32_t value) { plan.cable = value; }},
});

std::string form(const Fault& fault) {
    std::string text(fault.name);
    if (fault.argument == Argument::optional) {
        text += "[=N]";
    } else if (fault.argument == Argument::needed) {
        text += "=N";
    }
    return text;
}

std::string knownNames() {
    std::string names;
    for (const Fault& fault : faults) {
        names += (names.empty() ? "" : ", ") + std::string(fault.name);
    }
    return names;
}

}  // namespace

std::string addFault(FaultPlan& plan, std::string_view text) {
    const std::size_t equals = text.find('=');
    const std::string_view name = text.substr(0, equals);
    const auto* const fault =
        std::find_if(faults.begin(), faults.end(), [name](const Fault& each) { return each.name == name; });
    if (fault == faults.end()) {
        return "unknown fault \"" + std::string(name) + "\"; known are " + knownNames();
    }
    if (equals == std::string_view::npos) {
        if (fault->argument == Argument::needed) {
            return "fault " + std::string(name) + " needs a number: " + form(*fault);
        }
        fault->apply(plan, fault->whenLeftOut);
        return {};
    }
    if (fault->argument == Argument::none) {
        return "fault " + std::string(name) + " takes no number";
    }
    const auto value = wholeNumber<std::uint32_t>(text.substr(equals + 1));
    if (!value || *value < fault->smallest || *value > fault->largest) {
        return "fault " + std::string(name) + " takes a whole number from " +
               std::to_string(fault->smallest) + " to " + std::to_string(fault->largest) + ", not \"" +
               std::string(text.substr(equals + 1)) + "\"";
    }
    fault->apply(plan, *value);
    return {};
}

std::string faultHelp() {
    // Two blanks at least: what makes manual pages of this knows names by them.
    constexpr std::size_t column = 23;
    std::string help;
    for (const Fault& fault : faults) {
        std::string line = "  " + form(fault);
        line.resize(std::max(line.size() + 2, column), ' ');
        help += line + std::string(fault.effect) + "\n";
    }
    return help;
}

}  // namespace tessavo
