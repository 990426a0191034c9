#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "app/undo_fixture.h"
#include "history/recovery_file.h"
#include "support/temporary_folder.h"

class QAbstractButton;

namespace tessavo::test {

/// One run of the program, from its start to its end, with a data folder that outlives it.
class SessionRun : public UndoTest {
 public:
    explicit SessionRun(const std::filesystem::path& dataFolder) : data_(dataFolder) {
        makeWindow(dataFolder);
    }
    void TestBody() override {}

    using FrameTest::answers;
    using FrameTest::choose;
    using FrameTest::dialogs;
    using FrameTest::filterModes;
    using FrameTest::flag;
    using FrameTest::frame;
    using FrameTest::history;
    using FrameTest::itemsOf;
    using FrameTest::menu;
    using FrameTest::profile;
    using FrameTest::recentItems;
    using FrameTest::setName;
    using FrameTest::setSelector;
    using FrameTest::settingsFileNamed;
    using FrameTest::shown;
    using FrameTest::tabs;
    using FrameTest::tuning;
    using FrameTest::view;
    using UndoTest::click;
    using UndoTest::commands;
    using UndoTest::drag;
    using UndoTest::hold;
    using UndoTest::letGo;
    using UndoTest::line;
    using UndoTest::on;
    using UndoTest::pagesShowTheSet;
    using UndoTest::press;
    using UndoTest::redoKey;
    using UndoTest::same;
    using UndoTest::settleEvents;
    using UndoTest::state;
    using UndoTest::steps;
    using UndoTest::target;
    using UndoTest::typeInto;
    using UndoTest::undoKey;

    [[nodiscard]] std::filesystem::path recoveryFile() const { return data_ / "recovery.tsr"; }
    /// What the recovery file holds; nothing where there is none. One that is damaged fails the test.
    [[nodiscard]] std::optional<RecoveryState> recovered() const;
    /// Whether it holds exactly what stands in this run, to the steps.
    [[nodiscard]] ::testing::AssertionResult isKept() const;
    /// Waits until it does.
    [[nodiscard]] ::testing::AssertionResult becomesKept() const;
    /// Waits until there is no recovery file.
    [[nodiscard]] bool becomesEmpty() const;

    StatusLine& status() { return frame->statusLine(); }
    /// Text of the notice that stands; "" without one.
    QString notice();
    /// Labels of its buttons.
    QStringList noticeButtons();
    void answerNotice(const QString& label);
    /// The notices in the list of the history, oldest first.
    [[nodiscard]] QStringList toldNotices() const;
    /// Closes the window with these answers to its boxes; the dialog answers with what `dialogs` says.
    void close(std::deque<BoxAnswer> boxAnswers);
    /// The state at every number of steps that are done, from 0 on. The run stands where it stood.
    std::vector<std::unique_ptr<TuningSnapshot>> everyState();

 private:
    QAbstractButton* noticeButton(const QString& label);

    std::filesystem::path data_;
};

/// A data folder and the runs that use it one after another.
class Sessions : public ::testing::Test {
 protected:
    [[nodiscard]] std::filesystem::path data() const { return data_; }
    SessionRun& start() {
        run.reset();
        run = std::make_unique<SessionRun>(data_);
        return *run;
    }
    /// Ends the run as a power cut would: what stands in the folder now is what the next run finds.
    void cutPower() {
        const std::filesystem::path next = folder.path() / ("data-" + std::to_string(++cuts_));
        std::filesystem::create_directory(next);
        if (std::filesystem::exists(data_)) {
            std::filesystem::copy(data_, next, std::filesystem::copy_options::recursive);
        }
        data_ = next;
        run.reset();
    }
    /// Names of the recovery files that wait for an answer.
    [[nodiscard]] std::size_t filesNamed(const std::string& prefix) const;

    TemporaryFolder folder;
    std::unique_ptr<SessionRun> run;

 private:
    std::filesystem::path data_ = folder / "data-0";
    int cuts_ = 0;
};

}  // namespace tessavo::test
