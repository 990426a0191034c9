#pragma once

#include <QPixmap>
#include <functional>
#include <string>
#include <vector>

#include "base/file_dialogs.h"
#include "comm/clock.h"
#include "comm/comm_log.h"
#include "comm/page/foreground_transfers.h"
#include "comm/target_commands.h"
#include "controls/tab_dialog.h"
#include "controls/ui_calls.h"
#include "pages/form/form.h"
#include "pages/rows/communication_rows.h"

namespace tessavo {

class LogView;
class SkinComboBox;
class TransferLine;

/// The "Communication" page: commands to the target, choice of the port, versions, software update, log.
///
/// User-interface thread, except for Log() and blockSent().
class CCommunication : public CTabDialog {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        ForegroundTransfers& transfers;
        IMessageBox& boxes;
        IFileDialogs& dialogs;
        /// Names of the ports that are there now, in the list's order.
        std::function<std::vector<std::string>()> listPorts;
        /// The port name is now this one; empty when there is no port.
        std::function<void(const std::string&)> usePort;
        /// A person has chosen this port in the list. May be empty.
        std::function<void(const std::string&)> rememberPort;
        /// Every page and the view read the current set again.
        std::function<void()> refreshPages;
        std::string lastPort;  ///< chosen at the start when it is there
        /// What stands behind a port, for a person; empty when nothing is known. May be empty.
        std::function<std::string(const std::string&)> describePort = {};
        /// Sees to it that what the target holds is the image, before it is told to save that. False: nothing is
        /// saved, and a person has been told why. May be empty.
        std::function<bool()> prepareSave = {};
    };

    /// Everything in `parts` outlives the page.
    explicit CCommunication(Dependencies dependencies, QWidget* parent = nullptr);
    ~CCommunication() override;

    /// Adds a line to the log; an empty one when the kind's filter is off. Any thread.
    void Log(LogKind kind, const QString& text);
    /// A block of a transfer has arrived, at this time of the clock. Any thread.
    void blockSent(std::size_t done, std::size_t all, Milliseconds at);

    /// Lists the ports again and chooses the first.
    void FillPortList();

    [[nodiscard]] const std::string& portName() const { return portName_; }
    /// Whether the versions shown are the target's.
    [[nodiscard]] bool versionsKnown() const { return versionsKnown_; }
    /// While set, the program closes without asking whether to save. Nothing on this page sets it.
    [[nodiscard]] bool nothingToLose() const { return nothingToLose_; }
    void setNothingToLose(bool nothing) { nothingToLose_ = nothing; }

    /// Shows or hides the button that asks for a backup of the target. Hidden at first.
    void offerBackUp(bool offered);

 Q_SIGNALS:
    /// The button for a backup of the target was pressed.
    void backUpAsked();
    /// The target behind the chosen port has told its versions.
    void versionsRead(const tessavo::TargetVersions& versions);
    /// What a command came to whose exchange was tried; before any box about it.
    void commandReported(const tessavo::CommandReport& report);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    /// Makes the controls, with all filters on and the versions unknown, and lists the ports.
    void OnInitDialog();
    [[nodiscard]] SkinComboBox& ports() const;
    [[nodiscard]] LogView& log() const;
    [[nodiscard]] TransferLine& line() const;

    void saveSet(std::uint8_t targetSet);
    void ReadVersions();
    void SelectImageFile();
    void FlashFile();
    void saveLog();
    void selectPort(int index);
    void exchangeStarted(std::size_t blocks);
    void exchangeEnded(bool success);

    UiCalls calls_;
    Dependencies dependencies_;
    Form form_;
    TargetCommands commands_;
    std::string portName_;
    bool versionsKnown_ = false;
    bool nothingToLose_ = false;
    std::size_t blocksToSend_ = 0;
    Milliseconds firstBlockAt_{0};
    QPixmap art_;
};

}  // namespace tessavo
