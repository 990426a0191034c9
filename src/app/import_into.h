#pragma once

#include <array>
#include <string>
#include <vector>

#include "controls/skin_group_box.h"
#include "filtertext/filter_import.h"
#include "params/tuning_state.h"

namespace tessavo {

class CColorControl;
class SkinCheckBox;
class SkinComboBox;

/// The box "Into" of an import: which channel, which of its bands, what becomes of the others, and of a text that has them,
/// its preamp and which of its channels is read.
class ImportInto : public SkinGroupBox {
    Q_OBJECT

 public:
    /// \param tuning names the channels; the list begins with the one that a page shows
    explicit ImportInto(const TuningState& tuning, QWidget* parent = nullptr);

    /// Shows what another text has, and chooses as many bands as it has filters for them.
    /// \param filters that want a band
    void showText(const FilterText& text, std::size_t filters);

    [[nodiscard]] RecordChannel channel() const;
    /// Of the shown text; empty where it speaks of none or of one.
    [[nodiscard]] std::string textChannel() const;
    [[nodiscard]] ImportChoice choice() const;
    /// In the order in which the keyboard goes through them.
    [[nodiscard]] std::vector<QWidget*> controls() const;

 Q_SIGNALS:
    /// Something else is chosen; the text's own channel is not.
    void changed();
    void textChannelChanged();

 protected:
    void resizeEvent(QResizeEvent* event) override;

 private:
    void makeChannels(const TuningState& tuning);
    void makeBands();
    void showCount();

    SkinCheckBox* preamp_;
    SkinComboBox* channels_;
    SkinComboBox* textChannels_;
    std::array<SkinCheckBox*, bandCount> bands_{};
    std::array<CColorControl*, bandCount> numbers_{};
    CColorControl* count_;
    SkinComboBox* others_;
    std::array<CColorControl*, 3> labels_{};
    std::size_t filters_ = 0;
};

/// "-6.3 dB", "+2 dB" without a sign for nothing.
[[nodiscard]] QString signedDecibels(double decibels);

}  // namespace tessavo
