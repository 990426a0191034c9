#pragma once

#include <QEvent>

namespace tessavo {

/// Event that a slider posts to its parent when a person moves it.
class SliderEvent : public QEvent {
 public:
    /// The position is changing: posted at every step of a drag, a key or the wheel.
    static constexpr auto moved = static_cast<QEvent::Type>(10449);
    /// The position is final: posted once at the end of a drag, of a key held down, or of the wheel's
    /// turning.
    static constexpr auto released = static_cast<QEvent::Type>(10450);

    /// \param type `moved` or `released`
    /// \param controlId number of the slider
    /// \param position where it stands
    SliderEvent(QEvent::Type type, int controlId, int position)
        : QEvent(type), controlId_(controlId), position_(position) {}

    [[nodiscard]] static bool isSliderEvent(const QEvent& event) {
        return event.type() == moved || event.type() == released;
    }

    [[nodiscard]] int controlId() const { return controlId_; }
    [[nodiscard]] int position() const { return position_; }
    [[nodiscard]] bool isFinal() const { return type() == released; }

 private:
    int controlId_;
    int position_;
};

}  // namespace tessavo
