#pragma once

#include <QAction>
#include <QLineEdit>
#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "app/comm_link.h"
#include "app/main_frame.h"
#include "app/profile.h"
#include "app/skin_chart_host.h"
#include "app/tessavo_view.h"
#include "app/ui_message_box.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "history/history.h"
#include "support/settings_fakes.h"
#include "support/synthetic_events.h"
#include "support/temporary_folder.h"

class QMenu;
class QMenuBar;

namespace tessavo::test {

/// A page that writes down what it was told.
class RecordingPage : public CTabDialog {
 public:
    RecordingPage(Page page, std::vector<std::string>& calls) : page_(page), calls_(calls) {}
    void refresh() override;
    void changeSet(std::uint32_t setIndex) override;

 private:
    Page page_;
    std::vector<std::string>& calls_;
};

/// The whole frame with its view, shown. Boxes and file dialogs answer with what the test chose; the line to
/// the target has no worker.
class FrameTest : public ::testing::Test {
 protected:
    FrameTest();
    ~FrameTest() override;

    /// Makes the frame once more, as the next start of the program does.
    void makeFrame(PageFactory makePage = {});
    /// Pages that write to `pageCalls`.
    PageFactory recordingPages();
    /// The program's own pages.
    PageFactory realPages();

    CTessavoView& view() { return frame->view(); }
    template <typename Control>
    Control& control(int id) {
        return controlOf<Control>(*frame, id);
    }
    SkinComboBox& setSelector() { return control<SkinComboBox>(view_id::setSelector); }
    QLineEdit& setName() { return control<QLineEdit>(view_id::setName); }
    CxSkinButton& eqMode() { return control<CxSkinButton>(view_id::eqMode); }
    SkinComboBox& filterModes() { return control<SkinComboBox>(view_id::filterMode); }
    CxSkinButton& showPlot() { return control<CxSkinButton>(view_id::showPlot); }
    SkinCheckBox& flag(int number) { return control<SkinCheckBox>(view_id::firstChannelFlag + number - 1); }
    QTabBar& tabs() { return control<QTabBar>(view_id::tabs); }

    /// Opens a list with the mouse and clicks an entry.
    void choose(SkinComboBox& list, int index);
    /// Empties a field and types a text with the keyboard.
    static void type(QLineEdit& field, const QString& text);
    void clickTab(int index, Qt::MouseButton button = Qt::LeftButton);
    /// Opens a menu of the bar with the mouse and clicks an item.
    void clickMenu(const QString& menu, const QString& item);
    QMenu* menu(const QString& title);
    /// Texts of a menu's visible items without marks of the keyboard; "-" is a separator.
    QStringList itemsOf(const QString& title);
    /// The recent files as the menu shows them.
    QStringList recentItems();

    /// A settings file whose sets have these names.
    QString settingsFileNamed(const std::string& name, std::u16string_view setName = u"From file");
    [[nodiscard]] QString pathIn(const std::string& name) const;
    /// Lowers `updatePending`.
    void settle();
    /// Points that the plot shows now.
    std::size_t curvePoints();

    TemporaryFolder folder;
    std::unique_ptr<Profile> profile;
    std::deque<BoxAnswer> answers;  ///< for the boxes to come; a box without one is closed
    std::vector<ShownBox> shown;
    UiMessageBox boxes;
    TuningState tuning;
    std::unique_ptr<History> history;
    CommLink link;
    SkinChartHost chartHost;
    FakeDialogs dialogs;
    std::vector<std::string> pageCalls;
    /// What the frames to come know of the ports of the machine. Nothing: no port ever goes.
    PortWatch::System portSystem{[](const std::string&) { return false; },
                                 [](const std::string&) { return std::string(); }};
    std::unique_ptr<CMainFrame> frame;
};

}  // namespace tessavo::test
