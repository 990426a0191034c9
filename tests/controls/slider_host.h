#pragma once

#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>
#include <vector>

#include "controls/bitmap_slider.h"
#include "controls/slider_event.h"

namespace tessavo::test {

struct Received {
    int type, controlId, position;

    friend bool operator==(const Received&, const Received&) = default;
};

inline void PrintTo(const Received& event, std::ostream* stream) {
    *stream << event.type << " from " << event.controlId << " at " << event.position;
}

/// A page that writes down the slider events it gets.
class SliderHost : public QWidget {
 public:
    SliderHost() { resize(400, 300); }

    void showActive() {
        show();
        activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(this));
    }

    /// The events since the last call, after all that are still on their way.
    std::vector<Received> take() {
        QCoreApplication::sendPostedEvents(this);
        return std::exchange(received_, {});
    }

 protected:
    bool event(QEvent* event) override {
        if (SliderEvent::isSliderEvent(*event)) {
            const auto& slider = static_cast<const SliderEvent&>(*event);
            received_.push_back({static_cast<int>(event->type()), slider.controlId(), slider.position()});
            return true;
        }
        return QWidget::event(event);
    }

 private:
    std::vector<Received> received_;
};

}  // namespace tessavo::test
