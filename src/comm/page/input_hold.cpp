#include "comm/page/input_hold.h"

#include <QApplication>
#include <QEvent>

namespace tessavo {

namespace {

bool isInput(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::ContextMenu:
        case QEvent::InputMethod:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return true;
        default:
            return false;
    }
}

}  // namespace

InputHold::InputHold() {
    QApplication::setOverrideCursor(Qt::BusyCursor);
    qApp->installEventFilter(this);
}

InputHold::~InputHold() {
    qApp->removeEventFilter(this);
    QApplication::restoreOverrideCursor();
}

bool InputHold::eventFilter(QObject* watched, QEvent* event) {
    // A box that opened meanwhile wants its answer, and the toolkit keeps input from everything behind it.
    if (!isInput(event->type()) || QApplication::activeModalWidget() != nullptr) {
        return QObject::eventFilter(watched, event);
    }
    event->ignore();
    return true;
}

}  // namespace tessavo
