#pragma once

#include "controls/dialog_sk.h"

namespace tessavo {

/// "About": name, version, date and owner on the skin's background.
class AboutDialog : public CDialogSK {
    Q_OBJECT

 public:
    explicit AboutDialog(QWidget* parent = nullptr);
};

}  // namespace tessavo
