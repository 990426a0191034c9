#pragma once

#include <array>
#include <memory>

#include "pages/form/input_base.h"
#include "pages/form/parameter_page.h"
#include "pages/output/linked_sliders.h"
#include "pages/rows/output_group_rows.h"

namespace tessavo {

class SkinComboBox;

/// Page "Output Group": a gain and a delay for each of the eight channels, which add to the channel's own
/// volume and delay. Channels whose "Group" lists show the same letter move together.
///
/// Every slider belongs to one channel: the channels chosen on the page of the output equalizer play no part.
class COutputGroup : public ParameterPage {
    Q_OBJECT

 public:
    /// \param tuning outlives the page.
    explicit COutputGroup(TuningState& tuning, QWidget* parent = nullptr);
    ~COutputGroup() override;

    /// The next move of a slider starts from what is shown now.
    void refresh() override;

 protected:
    [[nodiscard]] FieldIndex elementOf(BoundField bound) const override;
    void updateLook() override;
    void updateMarks() override;
    bool event(QEvent* event) override;

 private:
    /// Eight sliders with their boxes and lists, by slider position.
    struct Row {
        const GroupRow& table;
        LinkedSliders linked;
        std::array<std::unique_ptr<CInputBase>, channelCount> inputs{};
        std::array<SkinComboBox*, channelCount> groups{};
        std::array<QString, channelCount> names{};  ///< as the tooltips tell them
    };

    void tieSlider(Row& row, std::size_t column);
    /// Lets an edit box apply its text by a function and step the slider by the keyboard.
    template <typename Apply>
    void connectEdit(Row& row, std::size_t column, NumberEdit& edit, Apply apply);

    /// Takes over where a slider stands now: moves those that are linked to it and stores all of them, or
    /// puts the slider back.
    void takeMove(Row& row, std::size_t column);
    void store(const Row& row, std::size_t column);
    void showNames();

    std::array<Row, 2> rows_;  ///< gain, delay
};

}  // namespace tessavo
