#include "app/undo_fixture.h"

#include <QLabel>
#include <QTabBar>
#include <QTest>
#include <QWheelEvent>
#include <cstring>

#include "app/page_factory.h"
#include "controls/control_id.h"

namespace tessavo::test {

UndoTest::UndoTest() {
    line.setPortName(target.portName());
    makeWindow();
}

void UndoTest::makeWindow(const std::filesystem::path& dataFolder) {
    frame.reset();
    auto factory = pageFactory({.tuning = tuning,
                                .boxes = boxes,
                                .dialogs = dialogs,
                                .profile = *profile,
                                .link = line,
                                .listPorts = [this] { return std::vector<std::string>{target.portName()}; },
                                .firstPort = target.portName(),
                                .refreshPages = [this] { frame->view().refreshPages(); }});
    frame = std::make_unique<CMainFrame>(CMainFrame::Dependencies{tuning, *history, boxes, dialogs, *profile,
                                                                  line, chartHost, std::move(factory),
                                                                  portSystem, dataFolder});
    frame->show();
    frame->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    EXPECT_TRUE(letLoopRun());
    QObject::connect(&commands(), &UndoCommands::moved, frame.get(),
                     [this](const QString& text, const std::optional<FieldPlace>& place) {
                         moves.emplace_back(text, place);
                     });
}

UndoTest::~UndoTest() {
    boxes.stopAnswering();
    line.shutDown();
    frame.reset();
}

QWidget& UndoTest::page(Page which) {
    return *view().pages()[static_cast<std::size_t>(which)];
}

void UndoTest::settleEvents() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

void UndoTest::mouse(QEvent::Type type, CBitmapSlider& slider) {
    const bool isRelease = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, place_, slider.mapToGlobal(place_),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      isRelease ? Qt::NoButton : Qt::LeftButton, {});
    QSpontaneKeyEvent::setSpontaneous(&event);
    QApplication::sendEvent(&slider, &event);
    settleEvents();
}

void UndoTest::hold(CBitmapSlider& slider, int pixels) {
    const double thumb = slider.track().pixelOf(slider.position(), slider.minimum(), slider.maximum());
    place_ =
        slider.isVertical() ? QPointF(slider.width() / 2.0, thumb) : QPointF(thumb, slider.height() / 2.0);
    mouse(QEvent::MouseButtonPress, slider);
    moveOn(slider, pixels);
}

void UndoTest::moveOn(CBitmapSlider& slider, int pixels) {
    place_ += slider.isVertical() ? QPointF(0, pixels) : QPointF(pixels, 0);
    mouse(QEvent::MouseMove, slider);
}

void UndoTest::letGo(CBitmapSlider& slider) {
    mouse(QEvent::MouseButtonRelease, slider);
}

void UndoTest::drag(CBitmapSlider& slider, int pixels) {
    hold(slider, pixels);
    letGo(slider);
}

void UndoTest::click(QWidget& control) {
    ASSERT_TRUE(control.isVisible()) << control.objectName().toStdString();
    QTest::mouseClick(&control, Qt::LeftButton);
    settleEvents();
}

void UndoTest::key(QWidget& control, Qt::Key code, Qt::KeyboardModifiers modifiers) {
    if (!control.hasFocus()) {
        control.setFocus(Qt::TabFocusReason);
    }
    QTest::keyClick(&control, code, modifiers);
    settleEvents();
}

void UndoTest::turnWheel(QWidget& control, int notches) {
    if (!control.hasFocus()) {
        control.setFocus(Qt::TabFocusReason);
    }
    const QPointF middle = QRectF(control.rect()).center();
    QWheelEvent wheel(middle, control.mapToGlobal(middle), {}, QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    QApplication::sendEvent(&control, &wheel);
    settleEvents();
}

void UndoTest::typeInto(QLineEdit& box, const QString& text) {
    box.setFocus(Qt::TabFocusReason);
    box.selectAll();
    QTest::keyClicks(&box, text);
    settleEvents();
}

void UndoTest::press(Qt::Key code, Qt::KeyboardModifiers modifiers) {
    QWidget* const focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : frame.get(), code, modifiers);
    settleEvents();
}

std::unique_ptr<TuningSnapshot> UndoTest::state() const {
    auto snapshot = std::make_unique<TuningSnapshot>();
    tuning.takeSnapshot(*snapshot);
    return snapshot;
}

bool UndoTest::same(const TuningSnapshot& one, const TuningSnapshot& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

QStringList UndoTest::shownValues() {
    QStringList values;
    for (QWidget* each : view().findChildren<QWidget*>()) {
        QString value;
        if (const auto* slider = qobject_cast<CBitmapSlider*>(each)) {
            value = QString::number(slider->position());
        } else if (const auto* spin = qobject_cast<QSpinBox*>(each)) {
            value = QString::number(spin->value());
        } else if (const auto* box = qobject_cast<QLineEdit*>(each)) {
            value = box->text();
        } else if (const auto* list = qobject_cast<QComboBox*>(each)) {
            value = QString::number(list->currentIndex()) + list->currentText();
        } else if (const auto* button = qobject_cast<QAbstractButton*>(each)) {
            value = button->text() + QString::number(static_cast<int>(button->isChecked()));
        } else if (const auto* label = qobject_cast<QLabel*>(each)) {
            value = label->text();
        } else {
            continue;
        }
        values << each->objectName() + QLatin1Char(' ') + value + QLatin1Char(' ') + each->toolTip();
    }
    return values;
}

::testing::AssertionResult UndoTest::pagesShowTheSet() {
    const QStringList before = shownValues();
    view().refreshPages();
    const QStringList after = shownValues();
    for (qsizetype i = 0; i < before.size(); ++i) {
        if (before[i] != after.value(i)) {
            return ::testing::AssertionFailure() << before[i].toStdString() << " stands there, the set says "
                                                 << after.value(i).toStdString();
        }
    }
    return ::testing::AssertionSuccess();
}

void UndoTest::visit(std::size_t position, Visited& visited) {
    ASSERT_TRUE(history->position() == position || commands().goTo(position));
    ASSERT_EQ(history->position(), position);
    ASSERT_TRUE(pagesShowTheSet()) << position;
    if (visited.state == nullptr) {
        visited = {state(), shownValues()};
        return;
    }
    ASSERT_TRUE(same(*state(), *visited.state)) << position << history->undoText();
    ASSERT_EQ(shownValues(), visited.values) << position << history->undoText();
}

void UndoTest::expectRoundTrip() {
    commands().settle();
    const std::size_t count = steps();
    // Another set may have been chosen between two steps: on the way back it is the current one.
    std::vector<Visited> back(count + 1);
    std::vector<Visited> forth(count + 1);
    for (int round = 0; round < 2; ++round) {
        for (std::size_t position = 0; position <= count; ++position) {
            visit(position, forth[position]);
            if (HasFatalFailure()) {
                return;
            }
        }
        for (std::size_t position = count; position-- > 0;) {
            visit(position, back[position]);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
    for (std::size_t position = 0; position < count; ++position) {
        const TuningSnapshot& one = *back[position].state;
        const TuningSnapshot& other = *forth[position].state;
        EXPECT_EQ(std::memcmp(&one.store, &other.store, sizeof one.store), 0) << position;
        EXPECT_EQ(std::memcmp(&one.received, &other.received, sizeof one.received), 0) << position;
        if (history->steps()[position]->lead.empty()) {
            EXPECT_TRUE(same(one, other)) << position;
        }
    }
}

}  // namespace tessavo::test
