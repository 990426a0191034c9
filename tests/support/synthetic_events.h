#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QEnterEvent>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace tessavo::test {

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

inline void sendPress(QWidget& control, const QPointF& point) {
    QMouseEvent event(QEvent::MouseButtonPress, point, control.mapToGlobal(point), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&control, &event);
}

/// Runs the event loop until a timer has fired that is set far behind every timer of a test.
[[nodiscard]] inline bool letLoopRun() {
    bool fired = false;
    QTimer::singleShot(20, [&fired] { fired = true; });
    return QTest::qWaitFor([&fired] { return fired; }, 5000);
}

/// The control of this number.
template <typename Control>
Control& controlOf(const QWidget& parent, int identifier) {
    auto* found = parent.findChild<Control*>(QStringLiteral("id%1").arg(identifier));
    if (found == nullptr) {
        throw std::logic_error("no control " + std::to_string(identifier));
    }
    return *found;
}

/// Opens a list with the mouse and clicks an entry.
inline void clickEntry(QComboBox& list, int index) {
    // The list takes a second click that comes too soon for a part of the first.
    const int interval = QApplication::doubleClickInterval();
    QApplication::setDoubleClickInterval(0);
    QTest::mouseClick(&list, Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return list.view()->isVisible(); }));
    ASSERT_TRUE(letLoopRun());
    const QModelIndex entry = list.model()->index(index, 0);
    QTest::mouseClick(list.view()->viewport(), Qt::LeftButton, {}, list.view()->visualRect(entry).center());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !list.view()->isVisible(); }));
    QApplication::setDoubleClickInterval(interval);
}

}  // namespace tessavo::test
