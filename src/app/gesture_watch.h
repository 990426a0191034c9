#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "history/history.h"

class QFocusEvent;
class QKeyEvent;
class QMouseEvent;

namespace tessavo {

/// Watches the input of the whole program and tells a history what a hand does, so that it knows what belongs
/// together as one step:
///
/// - a button of the mouse from its press to its release, with what the controls post meanwhile;
/// - the same arrow or page key, or Home or End, on the same control, or the wheel over it, or typing into one
///   box, until another key, control or focus, or the window is left; never by time;
/// - every other key, and every change that comes without a hand, as from a screen reader, on its own.
///
/// User-interface thread.
class GestureWatch : public QObject {
    Q_OBJECT

 public:
    /// \param history outlives this object
    explicit GestureWatch(History& history);
    ~GestureWatch() override;

    /// Ends what a hand is doing, as if buttons and keys had come up and the wheel rested: sliders that are
    /// held let go, what they have posted is delivered, and the step in the making ends.
    void finish();
    /// Makes a step of what has changed without a hand, once the event in hand is done.
    void commitSoon() { endSoon(); }

 protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    enum class Kind { none, key, wheel, text };

    void pressed(const QMouseEvent& event);
    void released(const QMouseEvent& event);
    void keyPressed(QWidget& widget, const QKeyEvent& event);
    void focusCame(const QFocusEvent& event);
    /// Goes on with a run, or begins one.
    void run(Kind kind, QWidget& control, int key);
    /// Begins a gesture after whatever the one before has posted.
    void begin(Gesture gesture);
    /// Ends the gesture after the event in hand and what it posts.
    void endSoon();
    void end();

    History& history_;
    Kind kind_ = Kind::none;  ///< of the run under way
    QPointer<QWidget> control_;
    int key_ = 0;
    bool isPressed_ = false;    ///< a button of the mouse is down
    bool endIsPosted_ = false;  ///< for the gesture under way
    int serial_ = 0;  ///< of the gesture under way; an end that was posted for another one does nothing
};

}  // namespace tessavo
