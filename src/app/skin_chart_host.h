#pragma once

#include "app/ui_file_dialogs.h"
#include "base/file_dialogs.h"
#include "base/message_box.h"
#include "plot/chart/chart_host.h"

namespace tessavo {

/// Tells what the chart has to say in the program's own message boxes, and asks for files in its file
/// dialogs.
class SkinChartHost : public DialogChartHost {
 public:
    SkinChartHost(IMessageBox& boxes, IFileDialogs& dialogs) : boxes_(boxes), dialogs_(dialogs) {}

    void showMessage(QWidget*, const QString& text) override { boxes_.showError(text.toStdString()); }
    std::optional<QString> askSavePath(QWidget*, const QString& filter, const QString& suffix) override {
        const std::string extension = suffix.toStdString();
        const std::string entry = filter.toStdString() + "|*." + extension + "||";
        const auto path = dialogs_.askSavePath({entry, extension});
        dialogs_.resetLocale();
        return path && !path->empty() ? std::optional(textOf(*path)) : std::nullopt;
    }

 private:
    IMessageBox& boxes_;
    IFileDialogs& dialogs_;
};

}  // namespace tessavo
