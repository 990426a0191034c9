#pragma once

#include <QEvent>

namespace tessavo {

/// What a slider posts to its parent when a person moves it.
class SliderEvent : public QEvent {
 public:
    /// Position changing: posted at every step of a drag, a key or the wheel.
    static constexpr auto moved = static_cast<QEvent::Type>(10449);
    /// Position final: posted once at the end of it.
    static constexpr auto released = static_cast<QEvent::Type>(10450);

    /// `type` is one of the two above.
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
