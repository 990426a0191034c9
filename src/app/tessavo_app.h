#pragma once

#include <QApplication>
#include <QString>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "app/comm_link.h"
#include "app/demo_target.h"
#include "app/main_frame.h"
#include "app/profile.h"
#include "app/skin_chart_host.h"
#include "app/ui_file_dialogs.h"
#include "app/ui_message_box.h"
#include "history/history.h"
#include "params/tuning_state.h"

namespace tessavo {

/// What the command line asked for.
struct StartOptions {
    QString file;         ///< settings file to load; may be empty
    bool demo = false;    ///< run a simulated target inside the program
    QString screenshots;  ///< folder for pictures of every page, drawn with nobody there; empty for none
    /// Where recovery file and earlier versions are kept; nothing is when empty.
    std::filesystem::path dataFolder = {};
};

/// Whether somebody is there to answer a box.
enum class Attendance : std::uint8_t { person, nobody };

/// Owns the toolkit's application object and everything that is tuned; lives for the whole run.
class CTessavoApp {
 public:
    /// \param argc, argv as main() got them; they outlive this object.
    /// \param profile the user's own when empty.
    /// \param attendance with nobody there, a box's text goes to standard error instead
    /// \param startWorker false when the worker's thread could not be created
    CTessavoApp(int& argc, char** argv, std::unique_ptr<Profile> profile = nullptr,
                Attendance attendance = Attendance::person,
                const std::function<bool(CommLink&)>& startWorker = &CommLink::startWorker);
    ~CTessavoApp();
    CTessavoApp(const CTessavoApp&) = delete;
    CTessavoApp& operator=(const CTessavoApp&) = delete;

    /// Why nothing could be read on this display, or empty.
    [[nodiscard]] static QString unusableDisplay();

    /// Makes the frame, loads the file of the command line, and shows the frame.
    /// \return false when the program must end: the file cannot be loaded, which a box has told
    bool InitInstance(const StartOptions& options);

    /// Runs until the frame is closed. Remembers the port when none is remembered yet.
    int run();

    [[nodiscard]] TuningState& tuning() { return tuning_; }
    /// From InitInstance() on.
    [[nodiscard]] History& history() { return *history_; }
    [[nodiscard]] CommLink& link() { return link_; }
    [[nodiscard]] CMainFrame& frame() { return *frame_; }
    [[nodiscard]] UiMessageBox& boxes() { return boxes_; }

    /// One byte of an application flag and the 10600 bytes of the store.
    /// \return whether all of it went through; nothing changes otherwise
    bool serialize(std::ostream& archive) const;
    bool serialize(std::istream& archive);

 private:
    BoxAnswer present(const QString& text, BoxIcon icon, BoxButtons buttons);
    void startDemo();
    [[nodiscard]] std::vector<std::string> portList() const;

    QApplication application_;
    std::unique_ptr<Profile> profile_;
    UiMessageBox boxes_;
    TuningState tuning_;
    std::unique_ptr<History> history_;  ///< from the first state on
    bool applicationFlag_ = false;
    Attendance attendance_;
    std::unique_ptr<IDemoTarget> demo_ = makeDemoTarget();
    CommLink link_;
    UiFileDialogs dialogs_;
    SkinChartHost chartHost_;
    std::unique_ptr<CMainFrame> frame_;
};

}  // namespace tessavo
