#pragma once

#include <QApplication>
#include <QEnterEvent>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QWidget>

namespace tessavo {

/// The mouse comes over a control.
inline void sendHover(QWidget& control) {
    const QPointF middle = QRectF(control.rect()).center();
    QEnterEvent event(middle, middle, middle);
    QApplication::sendEvent(&control, &event);
}

inline void sendFocus(QWidget& control, Qt::FocusReason reason = Qt::TabFocusReason) {
    QFocusEvent event(QEvent::FocusIn, reason);
    QApplication::sendEvent(&control, &event);
}

inline void sendPress(QWidget& control, const QPointF& place) {
    QMouseEvent event(QEvent::MouseButtonPress, place, control.mapToGlobal(place), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&control, &event);
}

/// Runs the event loop until a timer has fired that is set far behind every timer of a test.
[[nodiscard]] inline bool letLoopRun() {
    bool fired = false;
    QTimer::singleShot(20, [&fired] { fired = true; });
    return QTest::qWaitFor([&fired] { return fired; }, 5000);
}

}  // namespace tessavo
