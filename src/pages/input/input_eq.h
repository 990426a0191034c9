#pragma once

#include <array>

#include "base/message_box.h"
#include "pages/input/parameter_page.h"

namespace tessavo {

class NoteMark;

/// Numbers of the controls of the input equalizer page.
namespace input_eq_id {
inline constexpr int firstBandSlider =
    4001;                                   ///< 4001 to 4010 graphic bands, 4011 to 4013 bass, middle, treble
inline constexpr int firstBandEdit = 4021;  ///< in the same order
inline constexpr int eqOn = 4041;
inline constexpr int reset = 4042;
inline constexpr int eqNote = 4043;
inline constexpr int firstLevelSlider =
    4051;  ///< gain, preamp, poweramp, line-in, suppression, gain detection
inline constexpr int firstLevelEdit = 4061;
/// Crossover, PONE, compressor lower limit, gain, expander upper limit, expander factor.
inline constexpr int firstCompressorSlider = 4071;
inline constexpr int firstCompressorEdit = 4081;
inline constexpr int compressorDisabled = 4091;
inline constexpr int attackTime = 4092;
inline constexpr int releaseTime = 4093;
}  // namespace input_eq_id

/// Page "Equalizing Input": graphic equalizer, tone, levels, compressor and expander of the current set.
class CInputEQ : public ParameterPage {
    Q_OBJECT

 public:
    /// \param tuning, boxes outlive the page.
    CInputEQ(TuningState& tuning, IMessageBox& boxes, QWidget* parent = nullptr);

    /// Writes the gains of all graphic and tone sliders as they stand, as one final edit.
    void applyAll();

 protected:
    void write(BoundField bound, double value, bool final) override;
    void updateLook() override;

 private:
    void makeEqualizer();
    void makeTone();
    SliderBinding& addBand(std::size_t inputBand, int left, int width, const QString& head,
                           const QString& name, SkinGroupBox* group);
    void addRuler(int left, int right, SkinGroupBox* group);
    void makeLevels();
    void makeCompressor();
    void toggleEqualizer();
    /// Marks the button while a saved file would say something else than what plays.
    void showFileState(bool on);
    void reset();
    /// The equalizer is in circuit unless the image's bypass byte is 1.
    [[nodiscard]] bool isEqualizerOn() const;

    IMessageBox& boxes_;
    SkinGroupBox* equalizer_ = nullptr;
    SkinGroupBox* tone_ = nullptr;
    SkinGroupBox* compressor_ = nullptr;
    CxSkinButton* eqOn_ = nullptr;
    NoteMark* eqNote_ = nullptr;
    CheckBinding* disabled_ = nullptr;
    std::array<SliderBinding*, inputSectionCount> bands_{};
    std::vector<SliderBinding*> levels_;
    std::vector<Binding*> compressorControls_;
    std::vector<SliderBinding*> compressorSliders_;
};

}  // namespace tessavo
