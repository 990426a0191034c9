#pragma once

namespace tessavo {

/// Whether a window could be shown. Asked before the toolkit starts, because without a display the toolkit
/// would end the program with a message of its own.
[[nodiscard]] bool hasDisplay();

/// Registers settings files (*.eqs) with the shell for this user, so that they open with this program.
///
/// Nothing happens when they are registered already, when the user has chosen another program for them, and
/// on systems where the package registers the type. A registration that fails is no error.
void registerFileType();

/// Locks of the keyboard as they are now.
struct KeyStates {
    bool capsLock = false;
    bool numLock = false;
    bool scrollLock = false;

    friend bool operator==(const KeyStates&, const KeyStates&) = default;
};

/// Reads the locks of the keyboard. All are off where the system does not tell.
[[nodiscard]] KeyStates readKeyStates();

}  // namespace tessavo
