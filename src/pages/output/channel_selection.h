#pragma once

#include <array>
#include <cstdint>

#include "controls/skin_group_box.h"
#include "params/channels.h"

class QLabel;

namespace tessavo {

class SkinCheckBox;
class SkinRadioButton;

/// The channels that take part in an edit: one of eight radio buttons, or any of eight check buttons while
/// several channels are edited at once.
class ChannelSelection : public SkinGroupBox {
    Q_OBJECT

 public:
    explicit ChannelSelection(QWidget* parent = nullptr);

    /// Which page positions are chosen, as bits of `selectionMask`.
    [[nodiscard]] std::uint8_t mask() const;
    /// The chosen radio button's page position; also while several channels are edited.
    [[nodiscard]] PagePosition position() const;
    /// Whether "Assign to multiple Ch." is checked.
    [[nodiscard]] bool multiChannelMode() const { return multiChannelMode_; }

    /// Puts check buttons, none of them ticked, in the places of the radio buttons, or takes them away again.
    void setMultiChannelMode(bool on);
    /// Check box "Assign to multiple Ch."; unchecking it by program tells nobody.
    [[nodiscard]] SkinCheckBox& assignBox() { return *assign_; }

    [[nodiscard]] static QString nameOf(PagePosition position);
    /// What feeds a channel, beside its name.
    void setSource(PagePosition position, std::uint8_t source);

 Q_SIGNALS:
    /// A person has chosen other channels.
    void chosen();
    /// A person has clicked "Assign to multiple Ch.".
    void assignClicked(bool checked);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void makeRow(int row);
    void showChoice();

    std::array<SkinRadioButton*, channelCount> radios_{};  ///< by page position
    std::array<SkinCheckBox*, channelCount> checks_{};     ///< by page position
    std::array<QLabel*, channelCount> heads_{};            ///< "Ch 1" …, by page position
    std::array<QLabel*, channelCount> sources_{};          ///< by page position
    SkinCheckBox* assign_ = nullptr;
    QLabel* nowhere_ = nullptr;  ///< says that edits go nowhere
    bool multiChannelMode_ = false;
};

}  // namespace tessavo
