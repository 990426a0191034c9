#pragma once

namespace tessavo {

/// Locks of the keyboard as they are now.
struct KeyStates {
    bool capsLock = false;
    bool numLock = false;
    bool scrollLock = false;

    friend bool operator==(const KeyStates&, const KeyStates&) = default;
};

/// All off where the system does not tell.
[[nodiscard]] KeyStates readKeyStates();

}  // namespace tessavo
