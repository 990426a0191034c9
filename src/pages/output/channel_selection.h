#pragma once

#include <cstdint>

#include "controls/skin_group_box.h"
#include "pages/form/form.h"
#include "params/channels.h"

namespace tessavo {

/// The channels that take part in an edit: one of eight radio buttons, or any of eight check buttons while
/// several channels are edited at once. Its other controls tell nobody but who asks its form.
class ChannelSelection : public SkinGroupBox {
    Q_OBJECT

 public:
    explicit ChannelSelection(QWidget* parent = nullptr);

    [[nodiscard]] const Form& form() const { return form_; }

    /// Which page positions are chosen, as bits of `selectionMask`.
    [[nodiscard]] std::uint8_t mask() const;
    /// Whether several channels may be chosen.
    [[nodiscard]] bool multiChannelMode() const { return multiChannelMode_; }

    /// Puts check buttons, none of them ticked, in the places of the radio buttons, or takes them away again.
    void setMultiChannelMode(bool on);

    /// Chooses one channel alone, as its radio button does, and tells nobody.
    void chooseOnly(PagePosition position);

    /// What feeds a channel, beside its number; and in the tooltip together with the name that a person gave it.
    /// \param name empty where it has none
    void setSource(PagePosition position, std::uint8_t source, const QString& name = {});

 Q_SIGNALS:
    /// A person has chosen other channels.
    void chosen();

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void choose();
    void showChoice();

    Form form_;
    bool multiChannelMode_ = false;
};

}  // namespace tessavo
