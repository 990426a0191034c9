#pragma once

#include "base/message_box.h"
#include "pages/form/parameter_page.h"
#include "pages/rows/input_eq_rows.h"

namespace tessavo {

/// Page "Equalizing Input": graphic equalizer, tone, levels, compressor and expander of the current set.
class CInputEQ : public ParameterPage {
    Q_OBJECT

 public:
    /// \param tuning, boxes outlive the page.
    CInputEQ(TuningState& tuning, IMessageBox& boxes, QWidget* parent = nullptr);

    /// Writes the gains of all graphic and tone sliders as they stand, as one final edit.
    void applyAll();

 protected:
    void updateLook() override;

 private:
    void toggleEqualizer();
    /// Marks the button while a saved file would say something else than what plays.
    void showFileState(bool on);
    void reset();
    /// The equalizer is in circuit unless the image's bypass byte is 1.
    [[nodiscard]] bool isEqualizerOn() const;

    IMessageBox& boxes_;
};

}  // namespace tessavo
