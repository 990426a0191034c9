#include <windows.h>

#include "app/key_states.h"

namespace tessavo {

namespace {

bool isToggled(int key) {
    return (static_cast<unsigned short>(GetKeyState(key)) & 1U) != 0;
}

}  // namespace

KeyStates readKeyStates() {
    return {isToggled(VK_CAPITAL), isToggled(VK_NUMLOCK), isToggled(VK_SCROLL)};
}

}  // namespace tessavo
