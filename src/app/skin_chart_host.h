#pragma once

#include "params/message_box.h"
#include "plot/chart/chart_host.h"

namespace tessavo {

/// Tells what the chart has to say in the program's own message boxes.
class SkinChartHost : public DialogChartHost {
 public:
    explicit SkinChartHost(IMessageBox& boxes) : boxes_(boxes) {}

    void showMessage(QWidget*, const QString& text) override { boxes_.showError(text.toStdString()); }

 private:
    IMessageBox& boxes_;
};

}  // namespace tessavo
