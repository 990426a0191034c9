#pragma once

#include <QLabel>

#include "controls/spin_edit.h"
#include "controls/state_lamp.h"
#include "pages/input/audio_router.h"
#include "support/page_fixture.h"

namespace tessavo::test {

/// Starting delay of a mode and room.
inline int startingDelay(int mode, int room) {
    return 8 * (mode + room);
}

/// The page of the channel configuration over a fresh store.
class AudioRouter : public PageTest {
 protected:
    AudioRouter() { open(); }

    void open() {
        delete page;
        showPage(std::make_unique<CAudioRouter>(actual.state));
        actual.settle();
        store = actual.store();
        image = actual.image();
    }
    SpinEdit& mode() { return control<SpinEdit>(5034); }
    SpinEdit& room() { return control<SpinEdit>(5035); }
    CxSkinButton& surround() { return control<CxSkinButton>(5031); }
    void expectSurround(bool on) {
        EXPECT_EQ(surround().text(),
                  on ? QStringLiteral("Disable Surround") : QStringLiteral("Enable Surround"));
        EXPECT_EQ(control<QLabel>(5033).text(),
                  on ? QStringLiteral("Surround is ON") : QStringLiteral("Surround is OFF"));
        EXPECT_EQ(control<StateLamp>(5032).isLit(), on);
    }
    /// Nothing but what the test wrote into `store` and `image` has changed.
    void expectBytes() {
        EXPECT_SAME_BYTES(actual.store(), store);
        EXPECT_SAME_BYTES(actual.image(), image);
    }
    void expectDelay1(int delayMs) {
        EXPECT_EQ(textOf(5036), std::to_string(delayMs));
        for (std::size_t offset = 1848; offset <= 1856; offset += 2) {
            writeAt(store, offset, static_cast<std::uint16_t>(delayMs));
        }
        writeAt(image, 2970, static_cast<std::uint16_t>(delayMs));
        expectBytes();
    }
    void expectMode(int value, int delayMs) {
        EXPECT_EQ(mode().value(), value);
        store[1578] = static_cast<std::uint8_t>(value);
        image[2952] = static_cast<std::uint8_t>(value);
        expectDelay1(delayMs);
    }
    void expectRoom(int value, int delayMs) {
        EXPECT_EQ(room().value(), value);
        store[1577] = static_cast<std::uint8_t>(value);
        image[2948] = static_cast<std::uint8_t>(value);
        expectDelay1(delayMs);
    }

    Bytes store;
    Bytes image;
};

}  // namespace tessavo::test
