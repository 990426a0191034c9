#pragma once

#include <array>

#include "pages/input/parameter_page.h"
#include "params/surround_delays.h"

namespace tessavo {

class NoteMark;
class StateLamp;

/// Numbers of the controls of the channel configuration page.
namespace audio_router_id {
inline constexpr int firstSource = 5001;  ///< 5001 to 5008 by page position
inline constexpr int lineOutUse = 5011;
inline constexpr int turnOffDelayOn = 5021;
inline constexpr int turnOffDelaySlider = 5022;
inline constexpr int turnOffDelayEdit = 5023;
inline constexpr int surround = 5031;
inline constexpr int surroundLamp = 5032;
inline constexpr int surroundState = 5033;
inline constexpr int surroundMode = 5034;
inline constexpr int roomSize = 5035;
inline constexpr int delaySize1 = 5036;
inline constexpr int delaySize2 = 5037;
inline constexpr int rearForSurround = 5038;
inline constexpr int surroundNote = 5039;
inline constexpr int firstDecoderGainSlider = 5041;  ///< center, panorama, hall effect, rear to front mix
inline constexpr int firstDecoderGainEdit = 5051;
}  // namespace audio_router_id

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
    void makeOutput();
    void makeTurnOffDelay();
    void makeSurround();
    void makeDelaySizes(SkinGroupBox* group);
    void makeDecoderGains();

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
    std::array<ComboBinding*, channelCount> sources_{};
    SkinGroupBox* surround_ = nullptr;
    CxSkinButton* surroundButton_ = nullptr;
    StateLamp* surroundLamp_ = nullptr;
    QLabel* surroundState_ = nullptr;
    NoteMark* surroundNote_ = nullptr;
    bool surroundIsShownOn_ = false;
    SpinBinding* mode_ = nullptr;
    SpinBinding* room_ = nullptr;
    NumberBinding* delay1_ = nullptr;
    std::array<QLabel*, surroundModeCount> modeNames_{};
    std::vector<Binding*> surroundControls_;  ///< lose their colour while surround is off
};

}  // namespace tessavo
