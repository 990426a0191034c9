#pragma once

#include "base/message_box.h"
#include "pages/form/parameter_page.h"

namespace tessavo {

class ChannelSelection;

/// Page "Equalizing Output": eight bands, two crossovers, volume, phase and limiter of the chosen channels.
///
/// The channels that are chosen here (`selectionMask`) take part in every edit of this page. With one channel
/// the page shows that channel; with several it keeps what it showed, and each edit goes into all of them.
class COutputEQ : public ParameterPage {
    Q_OBJECT

 public:
    /// \param tuning, boxes outlive the page.
    COutputEQ(TuningState& tuning, IMessageBox& boxes, QWidget* parent = nullptr);

    /// With several channels chosen the last of them in page order is shown; with none the one shown before.
    void refresh() override;

    /// Chooses a channel unless it takes part in edits already. Unlike a click it writes nothing: the type of
    /// band 8 stays.
    void showChannel(RecordChannel channel);

 protected:
    [[nodiscard]] FieldIndex elementOf(BoundField bound) const override;
    /// That of the last channel that is chosen: edits go there.
    [[nodiscard]] FieldIndex markedElement(BoundField bound) const override;
    [[nodiscard]] std::vector<Holder> markedHolders() const override;
    void write(BoundField bound, double value, bool final) override;
    void updateLook() override;
    void showEvent(QShowEvent* event) override;

 private:
    void showSources();
    /// Marks "Disable All Filters" or "Enable All Filters" while the filters are not as its caption takes
    /// them.
    void markAllFilters();
    void selectChannels();
    void assignToMultiple(bool checked);
    /// Writes a crossover as its controls stand.
    void writeCrossover(std::size_t crossover);
    void toggleAllFilters();
    void resetChannel();
    /// Whether a person gives up the settings of the chosen channels.
    [[nodiscard]] bool mayLoseSettings();

    IMessageBox& boxes_;
    ChannelSelection* selection_ = nullptr;
    bool allFiltersOff_ = false;
    RecordChannel shownChannel_ = recordChannelAt({});
};

}  // namespace tessavo
