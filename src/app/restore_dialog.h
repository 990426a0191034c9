#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "app/restore_sources.h"
#include "base/message_box.h"
#include "controls/dialog_sk.h"
#include "copies/target_sets.h"

class QProgressBar;
class QTreeWidget;
class QVBoxLayout;

namespace tessavo {

class CColorControl;
class CxSkinButton;
class SkinCheckBox;

/// Asked when the default set is to be restored too.
inline constexpr std::string_view restoreDefaultText =
    "The Default Set of the target will be written over too.\r\nDo you want to restore it?";

/// "Restore Target": chooses a copy and sets of it, and follows their way back into the target. Modal. At the
/// end it stays open and says in red what the target plays now.
class RestoreDialog : public CDialogSK {
    Q_OBJECT

 public:
    struct Dependencies {
        IMessageBox& boxes;
        /// Restores these sets; returns when that has ended, while the dialog takes input.
        std::function<RestoreReport(std::span<const SetToWrite>, const CopyWatch&)> restore;
        /// Asks for a folder and reads the backup in it; nothing when there is none, which was told.
        std::function<std::optional<RestoreSource>()> askFolder;
        /// Has the target play the current set again.
        std::function<void()> sendCurrentSet;
    };

    /// \param dependencies outlive the dialog
    explicit RestoreDialog(Dependencies dependencies, QWidget* parent = nullptr);

    /// Lists the copies that are known, behind which every other folder can be chosen.
    void setSources(std::vector<RestoreSource> sources);

    /// From the next gap between two exchanges on nothing more is done; nothing while none run.
    void cancel();
    [[nodiscard]] bool running() const { return running_; }

    /// While it restores, Escape and the cross cancel; otherwise they close it.
    void reject() override;

 Q_SIGNALS:
    /// A pause between two exchanges has to end.
    void cancelAsked();

 protected:
    void keyPressEvent(QKeyEvent* event) override;

 private:
    /// A set of the target: whether it is wanted, and what became of it.
    struct SetRow {
        SkinCheckBox* check = nullptr;
        CColorControl* state = nullptr;
    };

    void makeList(QVBoxLayout& body);
    void makeSets(QVBoxLayout& body);
    void makeFoot(QVBoxLayout& body);
    void addSource(RestoreSource source, int row);
    void chooseFolder();
    void showSource();
    void showButtons();
    void showHint();
    void start();
    [[nodiscard]] std::vector<SetToWrite> wantedSets();
    void setRunning(bool running);
    void showStep(const CopyProgress& progress);
    void showAccent();
    void showReport(const RestoreReport& report);
    void sendCurrentSet();
    [[nodiscard]] const RestoreSource* chosen() const;
    [[nodiscard]] SetRow& rowOf(std::uint8_t targetSet);

    Dependencies dependencies_;
    std::vector<RestoreSource> sources_;  ///< in the list's order
    QTreeWidget* list_ = nullptr;
    CxSkinButton* otherFolder_ = nullptr;
    std::array<SetRow, targetSetNumbers.size()> sets_;
    SkinCheckBox* amplifiers_ = nullptr;
    CColorControl* progress_ = nullptr;
    QProgressBar* bar_ = nullptr;
    CColorControl* message_ = nullptr;
    CxSkinButton* send_ = nullptr;
    CxSkinButton* restore_ = nullptr;
    CxSkinButton* close_ = nullptr;
    bool looked_ = false;  ///< the known copies are listed
    bool running_ = false;
    bool cancelled_ = false;
};

}  // namespace tessavo
