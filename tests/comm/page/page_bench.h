#pragma once

#include <QWidget>
#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/ui_message_box.h"
#include "comm/live_worker.h"
#include "comm/page/communication.h"
#include "comm/page/log_lines.h"
#include "comm/page/log_view.h"
#include "controls/read_only_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/transfer_line.h"
#include "support/device_line.h"
#include "support/settings_fakes.h"
#include "support/synthetic_events.h"
#include "support/temporary_folder.h"

namespace tessavo::test {

/// Lets events pass until the condition holds, at most a minute.
bool passEventsUntil(const std::function<bool()>& condition);

/// The page on a line to a simulated target, all in virtual time. The exchanges run on threads of their own
/// all the same.
class PageBench : public ::testing::Test, private ICommLog {
 protected:
    PageBench();
    ~PageBench() override;

    /// A new target with these faults takes the old one's place, with its memory, and the page is made anew.
    void plugIn(const std::vector<std::string>& faults);
    /// As plugIn(), but the page stays. Between two exchanges.
    void exchangeTarget(const std::vector<std::string>& faults);
    /// Makes the page once more.
    void makePage();

    template <typename Control>
    Control& control(int id) {
        return controlOf<Control>(*page, id);
    }
    CxSkinButton& button(int id) { return control<CxSkinButton>(id); }
    CxSkinButton& saveButton(int set) { return button(comm_id::firstSave + set); }
    CxSkinButton& loadButton(int set) { return button(comm_id::firstLoad + set); }
    SkinCheckBox& filter(int id) { return control<SkinCheckBox>(id); }
    CReadOnlyEdit& field(int id) { return control<CReadOnlyEdit>(id); }
    SkinComboBox& ports() { return control<SkinComboBox>(comm_id::portList); }
    TransferLine& line() { return control<TransferLine>(comm_id::transferLine); }
    LogView& log() { return control<LogView>(comm_id::log); }

    void click(QWidget& target);
    void choosePort(int index);
    /// Switches Live Mode and sends the image as the worker does.
    void goLive();
    [[nodiscard]] LogLines logLines();

    [[nodiscard]] ImageBytes imageBytes() const;
    [[nodiscard]] const TargetMemory& memory() const { return device->memory(); }
    /// A file of this size with bytes that depend on their place.
    std::filesystem::path imageFile(const std::string& name, std::size_t size);

    TemporaryFolder folder;
    std::vector<std::string> shown;  ///< texts of the boxes
    UiMessageBox boxes;
    Tuning tuning;
    FakeDialogs dialogs;
    std::unique_ptr<TargetDevice> device;
    VirtualClock clock;
    bool portOpens = true;
    CSemaphore lock;
    std::unique_ptr<TransferEngine> engine;
    std::unique_ptr<ForegroundTransfers> transfers;
    std::vector<std::string> portsThere{"COM3", "COM5", "COM12"};
    std::string lastPort;
    std::map<std::string, std::string> descriptions;  ///< of ports, by name
    std::vector<std::string> used;                    ///< port names that the page gave out
    std::vector<std::string> remembered;              ///< those that a person chose
    int refreshes = 0;
    QWidget window;
    CCommunication* page = nullptr;

 private:
    void log(LogKind kind, std::string_view text) override;
};

}  // namespace tessavo::test
