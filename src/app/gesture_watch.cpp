#include "app/gesture_watch.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSet>

#include "app/text_box.h"
#include "app/text_undo.h"
#include "controls/bitmap_slider.h"
#include "controls/spin_edit.h"

namespace tessavo {

namespace {

/// The end of a gesture, behind all that it has posted.
class GestureEnd : public QEvent {
 public:
    explicit GestureEnd(int gesture) : QEvent(type()), serial(gesture) {}
    static QEvent::Type type() {
        static const int registered = QEvent::registerEventType();
        return static_cast<QEvent::Type>(registered);
    }
    int serial;
};

template <typename Control>
QList<Control*> everywhere() {
    QList<Control*> found;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        found += window->findChildren<Control*>();
    }
    return found;
}

// In the order in which they were posted: what a slider posts goes to the widgets around it.
void deliverPostedMoves() {
    QSet<QWidget*> seen;
    QList<QPointer<QWidget>> receivers;
    for (const CBitmapSlider* slider : everywhere<CBitmapSlider>()) {
        for (QWidget* around = slider->parentWidget(); around != nullptr && !seen.contains(around);
             around = around->parentWidget()) {
            seen.insert(around);
            receivers.append(around);
        }
    }
    for (const QPointer<QWidget>& receiver : receivers) {
        if (receiver) {
            QCoreApplication::sendPostedEvents(receiver);
        }
    }
}

bool isModifier(int key) {
    switch (key) {
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Meta:
        case Qt::Key_Alt:
        case Qt::Key_AltGr:
        case Qt::Key_CapsLock:
        case Qt::Key_NumLock:
        case Qt::Key_ScrollLock:
            return true;
        default:
            return false;
    }
}

/// The focus that they move ends a run, after the box that is left has taken its text.
bool movesFocus(int key) {
    return key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

/// Keys that step a value; in a text box some of them move the caret.
bool stepsValue(int key, bool inText) {
    switch (key) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return true;
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Home:
        case Qt::Key_End:
            return !inText;
        default:
            return false;
    }
}

bool appliesText(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
}

}  // namespace

GestureWatch::GestureWatch(History& history) : history_(history) {
    qApp->installEventFilter(this);
}

GestureWatch::~GestureWatch() {
    history_.endGesture();
}

void GestureWatch::finish() {
    for (CBitmapSlider* slider : everywhere<CBitmapSlider>()) {
        slider->finish();
    }
    for (SpinEdit* spin : everywhere<SpinEdit>()) {
        spin->finish();
    }
    deliverPostedMoves();
    isPressed_ = false;
    end();
}

void GestureWatch::begin(Gesture gesture) {
    deliverPostedMoves();
    ++serial_;
    endIsPosted_ = false;
    kind_ = Kind::none;
    history_.beginGesture(gesture);
}

void GestureWatch::endSoon() {
    if (!endIsPosted_) {
        endIsPosted_ = true;
        QCoreApplication::postEvent(this, new GestureEnd(serial_), Qt::LowEventPriority);
    }
}

void GestureWatch::end() {
    ++serial_;
    endIsPosted_ = false;
    kind_ = Kind::none;
    history_.endGesture();
}

bool GestureWatch::event(QEvent* event) {
    if (event->type() == GestureEnd::type()) {
        if (static_cast<GestureEnd*>(event)->serial == serial_) {
            end();
        }
        return true;
    }
    return QObject::event(event);
}

bool GestureWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Shortcut && !isPressed_) {
        begin(Gesture::none);
    }
    // The button comes up where nobody is told: a box stands over the window.
    if (event->type() == QEvent::WindowBlocked && isPressed_) {
        isPressed_ = false;
        endSoon();
    }
    if (!watched->isWidgetType()) {
        return false;
    }
    auto& widget = static_cast<QWidget&>(*watched);
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            pressed(*static_cast<QMouseEvent*>(event));
            break;
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove:
            released(*static_cast<QMouseEvent*>(event));
            break;
        case QEvent::KeyPress:
            keyPressed(widget, *static_cast<QKeyEvent*>(event));
            break;
        case QEvent::InputMethod:
            if (isTextBox(widget) && !isPressed_) {
                run(Kind::text, widget, 0);
            }
            break;
        case QEvent::Wheel:
            // Only the control with the focus takes it; elsewhere it scrolls.
            if (&widget == QApplication::focusWidget() && !isPressed_) {
                run(Kind::wheel, widget, 0);
            }
            break;
        case QEvent::FocusIn:
            focusCame(*static_cast<QFocusEvent*>(event));
            break;
        case QEvent::FocusOut:
            if (kind_ != Kind::none && static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
                endSoon();
            }
            break;
        default:
            break;
    }
    return false;
}

// A press that its control does not take comes again for the one around it, and begins the same gesture anew.
void GestureWatch::pressed(const QMouseEvent& event) {
    if (isPressed_ && (event.buttons() & ~event.button()) != Qt::NoButton) {
        return;
    }
    begin(Gesture::press);
    isPressed_ = true;
}

// A release may get lost, as while a drag of a file ends in another program: the next move tells.
void GestureWatch::released(const QMouseEvent& event) {
    if (isPressed_ && event.buttons() == Qt::NoButton) {
        isPressed_ = false;
        endSoon();
    }
}

void GestureWatch::keyPressed(QWidget& widget, const QKeyEvent& event) {
    const QWidget* const focus = QApplication::focusWidget();
    // A key that its control does not take comes again for the one around it.
    const bool comesAgain = focus != nullptr && focus != &widget && widget.isAncestorOf(focus);
    UndoDirection direction{};
    if (isPressed_ || comesAgain || isModifier(event.key()) || movesFocus(event.key()) ||
        isUndoKey(event, direction)) {
        return;
    }
    const bool inText = isTextBox(widget);
    if (stepsValue(event.key(), inText)) {
        run(Kind::key, widget, event.key());
    } else if (!inText) {
        begin(Gesture::none);
    } else if (!appliesText(event.key())) {
        run(Kind::text, widget, 0);
    } else if (kind_ == Kind::text && control_ == &widget) {
        endSoon();
    } else {
        begin(Gesture::none);
    }
}

// The box that a press has left has taken its text by now, which is a step of its own.
void GestureWatch::focusCame(const QFocusEvent& event) {
    if (isPressed_ && event.reason() != Qt::PopupFocusReason) {
        begin(Gesture::press);
    }
}

void GestureWatch::run(Kind kind, QWidget& control, int key) {
    const bool goesOn = kind_ == kind && control_ == &control && key_ == key && !endIsPosted_ &&
                        history_.gesture() == Gesture::run;
    if (goesOn) {
        return;
    }
    begin(Gesture::run);
    kind_ = kind;
    control_ = &control;
    key_ = key;
}

}  // namespace tessavo
