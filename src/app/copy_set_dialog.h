#pragma once

#include <vector>

#include "controls/dialog_sk.h"
#include "params/records.h"

namespace tessavo {

class SkinCheckBox;

/// "Copy Set To": asks into which of the other sets one is copied, and whether its name goes with it.
class CopySetDialog : public CDialogSK {
    Q_OBJECT

 public:
    /// \param store all five sets
    /// \param from the one that is copied, 0 to 4
    CopySetDialog(const ParameterStore& store, std::uint32_t from, QWidget* parent);

    /// The chosen sets, rising.
    [[nodiscard]] std::vector<std::uint32_t> targets() const;
    [[nodiscard]] bool withName() const;

 private:
    struct Target {
        std::uint32_t set;
        SkinCheckBox* box;
    };
    std::vector<Target> targets_;
    SkinCheckBox* withName_;
};

}  // namespace tessavo
