#pragma once

#include <QDialog>
#include <QPushButton>
#include <atomic>
#include <deque>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "app/comm_link.h"
#include "app/main_frame.h"
#include "app/profile.h"
#include "app/skin_chart_host.h"
#include "app/tessavo_view.h"
#include "app/ui_message_box.h"
#include "comm/page/communication.h"
#include "copies/target_sets.h"
#include "history/history.h"
#include "support/settings_fakes.h"
#include "support/temporary_folder.h"
#include "target/in_process_line.h"

namespace tessavo::test {

/// The whole program on a line to a target inside it, with a data folder, in real time. The target's six sets
/// differ from each other and from the program's image.
class CopiesTest : public ::testing::Test {
 protected:
    CopiesTest();
    ~CopiesTest() override;

    /// Makes the frame once more, as the next start of the program does.
    void makeFrame();
    /// Faults of one exchange, counted from 1; the others have none.
    void breakExchange(int number, const std::string& fault) { faults_[number] = fault; }
    /// From the next exchange on the port does not open.
    void unplug() { plugged_ = false; }
    void plugIn() { plugged_ = true; }
    [[nodiscard]] int exchanges() const { return exchanges_; }
    /// What the target remembers now. Between exchanges.
    [[nodiscard]] TargetMemory memory();

    /// The image that a set of the target holds at first; 0 is the default set.
    [[nodiscard]] static ImageBytes firstImage(std::size_t set);
    [[nodiscard]] static ParameterImage imageOf(const ImageBytes& bytes);
    /// Sets, image and what was received, to the byte.
    [[nodiscard]] std::unique_ptr<TuningSnapshot> state();

    void clickTool(const QString& item);
    CxSkinButton& pageButton(int id);
    void showCommunication() { frame->view().showPage(Page::communication); }
    void toggleLiveMode();
    /// Has Live Mode send the image, and waits for its confirmation.
    void goLive();

    /// Runs once the dialog of this name is open, from the event loop, again and again until it answers true.
    void whenOpen(const QString& name, const std::function<bool(QDialog&)>& act);
    [[nodiscard]] QDialog* dialog(const QString& name) const;
    [[nodiscard]] static QPushButton& buttonOf(QDialog& dialog, const QString& text);
    static void click(QDialog& dialog, const QString& text);
    /// All texts of its labels, one a line.
    [[nodiscard]] static QString textsOf(const QDialog& dialog);

    [[nodiscard]] QString notice();
    [[nodiscard]] std::string words() const { return frame->statusLine().target().state.toStdString(); }
    [[nodiscard]] TargetStatus::Light light() const { return frame->statusLine().target().light; }
    [[nodiscard]] std::vector<std::string> shownTexts() const;
    /// Lets events pass until the condition holds, at most half a minute.
    static bool becomes(const std::function<bool()>& condition);

    TemporaryFolder folder;
    std::filesystem::path data = folder / "data";
    std::unique_ptr<Profile> profile;
    std::deque<BoxAnswer> answers;  ///< for the boxes to come; a box without one is closed
    std::vector<ShownBox> shown;
    UiMessageBox boxes;
    TuningState tuning;
    std::unique_ptr<History> history;
    CommLink link;
    SkinChartHost chartHost;
    FakeDialogs dialogs;
    std::unique_ptr<CMainFrame> frame;
    std::uint32_t hardware = 0x102;  ///< version that the target tells

 private:
    [[nodiscard]] std::unique_ptr<ILine> makeLine();

    std::mutex mutex_;
    std::unique_ptr<InProcessTarget> target_;
    std::map<int, std::string> faults_;
    std::string fault_;           ///< of the target as it is
    std::uint32_t told_ = 0x102;  ///< its hardware version
    std::atomic<int> exchanges_ = 0;
    std::atomic<bool> plugged_ = true;
};

}  // namespace tessavo::test
