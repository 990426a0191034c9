#include "controls/screen_room.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace tessavo {

QSize roomOnScreen(const QWidget* parent) {
    constexpr QSize windowFrame(8, 32);
    const QScreen* const screen = parent != nullptr ? parent->screen() : QGuiApplication::primaryScreen();
    return screen->availableSize() - windowFrame;
}

}  // namespace tessavo
