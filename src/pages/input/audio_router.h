#pragma once

#include "pages/form/parameter_page.h"
#include "pages/rows/audio_router_rows.h"
#include "params/surround_delays.h"

namespace tessavo {

/// Page "Channel Config": source of each output channel, turn-off delay and surround processing of the
/// current set.
///
/// A text in an edit box of this page is taken while it is typed; it becomes final when Enter is pressed or
/// the box is left.
class CAudioRouter : public ParameterPage {
    Q_OBJECT

 public:
    /// Shows surround as off until it is switched or refreshed, whatever the current set holds.
    ///
    /// \param tuning outlives the page.
    explicit CAudioRouter(TuningState& tuning, QWidget* parent = nullptr);

    void refresh() override;

 protected:
    [[nodiscard]] FieldIndex elementOf(BoundField bound) const override;
    void write(BoundField bound, double value, bool final) override;
    void updateLook() override;
    void updateMarks() override;

 private:
    void toggleSurround();
    void showSurround(bool on);
    /// Hides the page and shows it again, so that all of it is drawn anew.
    void redrawWhole();
    /// Entry of the table for the mode and room size in force.
    [[nodiscard]] std::uint16_t& delaySize1();
    void keepDelaySize1(double delayMs);
    void writeDelaySize1(double delayMs, bool final);

    /// Delay size 1 by mode and room: what it starts with and what a person has set since. The entry in force
    /// is that of the current set, or the nearest that can be set.
    SurroundDelays delays_ = startingSurroundDelays;
    bool surroundIsShownOn_ = false;
};

}  // namespace tessavo
