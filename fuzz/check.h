#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/message_box.h"

namespace tessavo::fuzz {

/// Ends the program where a property does not hold, so that the fuzzer keeps the input.
inline void check(bool holds, const char* property) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", property);
        std::abort();
    }
}

/// Whether two records hold the same bytes, whatever their floating-point fields mean.
template <typename Record>
bool sameBytes(const Record& left, const Record& right) {
    return std::memcmp(&left, &right, sizeof(Record)) == 0;
}

/// Answers every box at once.
class SilentBoxes final : public IMessageBox {
 public:
    BoxAnswer show(std::string_view /*text*/, BoxIcon /*icon*/, BoxButtons /*buttons*/) override {
        return BoxAnswer::ok;
    }
};

}  // namespace tessavo::fuzz
