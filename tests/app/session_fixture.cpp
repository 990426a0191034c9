#include "app/session_fixture.h"

#include <QAbstractButton>
#include <QTest>
#include <algorithm>
#include <cstring>

#include "app/file_news_display.h"
#include "app/ui_file_dialogs.h"

namespace tessavo::test {

namespace {

// Slow machines and sanitizers; how long it may take is tried where time is measured.
constexpr int patienceMs = 30000;

}  // namespace

std::optional<RecoveryState> SessionRun::recovered() const {
    if (!std::filesystem::exists(recoveryFile())) {
        return std::nullopt;
    }
    auto read = readRecovery(recoveryFile());
    if (auto* whole = std::get_if<RecoveryState>(&read)) {
        return std::move(*whole);
    }
    EXPECT_NE(std::get<RecoveryTrouble>(read), RecoveryTrouble::damaged);
    return std::nullopt;
}

::testing::AssertionResult SessionRun::isKept() const {
    const auto failure = [](const std::string& what) { return ::testing::AssertionFailure() << what; };
    const auto kept = recovered();
    if (!kept) {
        return failure("there is no recovery file");
    }
    if (!same(kept->trail->state, *state())) {
        return failure("another state");
    }
    if (kept->filterMode != tuning.filterMode()) {
        return failure("another filter method");
    }
    if (kept->documentPath != frame->fileNews().files().document().path()) {
        return failure("another document");
    }
    const DocumentMemory& memory = frame->fileNews().files().document().memory();
    const bool isSameMemory = kept->documentMemory && kept->documentMemory->stamp == memory.stamp &&
                              kept->documentMemory->bytesInFile == memory.bytesInFile;
    if (!isSameMemory && !kept->documentPath.empty()) {
        return failure("other knowledge of the document");
    }
    const auto expected = history->trail(recoveryStepLimit);
    const auto sameSteps = [](const auto& one, const auto& other) {
        return std::ranges::equal(one, other, [](const auto& left, const auto& right) {
            return left->text == right->text && left->set == right->set;
        });
    };
    if (!sameSteps(kept->trail->done, expected->done) || !sameSteps(kept->trail->undone, expected->undone)) {
        return failure("other steps");
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult SessionRun::becomesKept() const {
    static_cast<void>(QTest::qWaitFor([this] { return static_cast<bool>(isKept()); }, patienceMs));
    return isKept();
}

bool SessionRun::becomesEmpty() const {
    return QTest::qWaitFor([this] { return !std::filesystem::exists(recoveryFile()); }, patienceMs);
}

QString SessionRun::notice() {
    const Notice* standing = status().noticeLine().standing();
    return standing != nullptr ? standing->text : QString();
}

QStringList SessionRun::noticeButtons() {
    QStringList labels;
    if (const Notice* standing = status().noticeLine().standing()) {
        for (const NoticeButton& button : standing->buttons) {
            labels << button.label;
        }
    }
    return labels;
}

QAbstractButton* SessionRun::noticeButton(const QString& label) {
    for (auto* button : status().noticeLine().findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->text() == label) {
            return button;
        }
    }
    return nullptr;
}

void SessionRun::answerNotice(const QString& label) {
    QAbstractButton* const button = noticeButton(label);
    ASSERT_NE(button, nullptr) << label.toStdString() << " at " << notice().toStdString();
    QTest::mouseClick(button, Qt::LeftButton);
    settleEvents();
}

QStringList SessionRun::toldNotices() const {
    QStringList told;
    for (const HistoryMark& mark : history->marks()) {
        if (mark.kind == MarkKind::notice) {
            told << QString::fromStdString(mark.text);
        }
    }
    return told;
}

void SessionRun::close(std::deque<BoxAnswer> boxAnswers) {
    answers = std::move(boxAnswers);
    frame->close();
    settleEvents();
    EXPECT_FALSE(frame->isVisible());
}

std::vector<std::unique_ptr<TuningSnapshot>> SessionRun::everyState() {
    commands().settle();
    const std::size_t position = history->position();
    std::vector<std::unique_ptr<TuningSnapshot>> states(steps() + 1);
    for (std::size_t i = 0; i < states.size(); ++i) {
        // Downwards: a state that is come back to has the current set of the step after it.
        const std::size_t at = states.size() - 1 - i;
        EXPECT_TRUE(history->position() == at || commands().goTo(at));
        states[at] = state();
    }
    EXPECT_TRUE(history->position() == position || commands().goTo(position));
    return states;
}

std::size_t Sessions::filesNamed(const std::string& prefix) const {
    const auto all = std::filesystem::directory_iterator(data_);
    return static_cast<std::size_t>(std::count_if(begin(all), end(all), [&](const auto& entry) {
        return entry.path().filename().string().starts_with(prefix);
    }));
}

}  // namespace tessavo::test
