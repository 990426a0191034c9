#include <cstdint>

#include "filter_rows.h"

// Any bytes as a filter text of whatever form.

using namespace tessavo;

namespace {

bool isWithin(double value, double least, double most) {
    return value >= least && value <= most;
}

/// Whether a value is a whole number of tenths, as near as its binary form can be.
bool isTenths(double value) {
    return std::abs(value * 10.0 - std::round(value * 10.0)) < 1e-6;
}

void checkDevice(const FilterLine& row) {
    const DeviceFilter& device = row.device.value();
    fuzz::check(row.meaning.has_value() && row.meaning->shape == device.shape,
                "the target's filter has the shape of what is meant");
    fuzz::check(
        isWithin(device.frequencyHz, 20.0, 20000.0) && device.frequencyHz == std::round(device.frequencyHz),
        "the frequency is in range and on its step");
    if (isBand(device.shape)) {
        fuzz::check(isWithin(device.gainDb, -18.0, 18.0) && isTenths(device.gainDb),
                    "the gain is in range and on its step");
        fuzz::check(device.q > 0.0 && isTenths(device.q), "the Q is above 0 and on its step");
    } else {
        fuzz::check(device.gainDb == 0.0 && device.q == 0.0, "a crossover has neither gain nor Q");
    }
    fuzz::check(device.order == row.meaning->order, "the order is that of what is meant");
    const SteppedFilter again = onDeviceSteps(device);
    fuzz::check(again.clamped.empty() && again.filter.frequencyHz == device.frequencyHz &&
                    again.filter.gainDb == device.gainDb && again.filter.q == device.q,
                "what is on its steps and in range stays as it is");
}

void checkSteps(const FilterLine& row) {
    const bool plays = row.kind == FilterLineKind::band || row.kind == FilterLineKind::crossover;
    fuzz::check(!plays || row.device.has_value(), "what plays is on the target's steps");
    fuzz::check(row.device.has_value() || row.clamped.empty(), "only what is on the steps is clamped");
    fuzz::check(
        std::ranges::is_sorted(row.clamped) && std::ranges::adjacent_find(row.clamped) == row.clamped.end(),
        "each clamped value is told once, in order");
    if (row.device) {
        checkDevice(row);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const FilterText first = readFilterText(bytes);
    fuzz::checkRows(first);
    for (const FilterLine& row : first.lines) {
        checkSteps(row);
    }
    if (first.trouble.empty() && !first.channels.empty()) {
        const FilterText last = readFilterText(bytes, first.channels.back());
        fuzz::checkRows(last);
        fuzz::check(last.trouble.empty() && last.channels == first.channels, "every channel can be read");
    }
    return 0;
}
