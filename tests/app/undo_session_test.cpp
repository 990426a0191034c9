#include <QTest>
#include <cstring>
#include <random>

#include "app/undo_fixture.h"
#include "pages/rows/communication_rows.h"

// A person who does anything in any order, on every page, and then goes all the way back and forth.

namespace tessavo::test {
namespace {

class RandomUndo : public UndoTest {
 protected:
    int below(int bound) { return static_cast<int>(random_() % static_cast<std::uint64_t>(bound)); }

    template <typename Control>
    Control* any() {
        std::vector<Control*> seen;
        for (auto* each : view().findChildren<Control*>()) {
            if (each->isVisible() && each->isEnabled()) {
                seen.push_back(each);
            }
        }
        return seen.empty() ? nullptr : seen[static_cast<std::size_t>(below(static_cast<int>(seen.size())))];
    }

    void useSlider() {
        auto* slider = any<CBitmapSlider>();
        if (slider == nullptr) {
            return;
        }
        constexpr std::array keys{Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_Home};
        switch (below(3)) {
            case 0:
                drag(*slider, below(121) - 60);
                break;
            case 1:
                key(*slider, keys.at(static_cast<std::size_t>(below(4))));
                break;
            default:
                turnWheel(*slider, below(5) - 2);
        }
    }

    void useBox() {
        auto* box = any<NumberEdit>();
        if (box == nullptr) {
            return;
        }
        typeInto(*box, QString::number((below(4001) - 1000) / 10.0));
        constexpr std::array keys{Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape, Qt::Key_Up};
        key(*box, keys.at(static_cast<std::size_t>(below(4))));
    }

    void useButton() {
        auto* button = any<QAbstractButton>();
        const QString words = button == nullptr ? QString() : button->text();
        // What opens dialogs or other windows, or asks a target for software.
        for (const char* apart : {"Plot", "File", "EQ Mode", "Update", "Refresh"}) {
            if (words.contains(QLatin1String(apart))) {
                return;
            }
        }
        if (button != nullptr) {
            answers = {BoxAnswer::ok};
            click(*button);
            answers.clear();
        }
    }

    void useList() {
        auto* list = any<SkinComboBox>();
        if (list != nullptr && list->count() > 1 &&
            list->objectName() != QStringLiteral("id%1").arg(comm_id::portList)) {
            key(*list, below(2) == 0 ? Qt::Key_Down : Qt::Key_Up);
        }
    }

    void act() {
        switch (below(16)) {
            case 0:
                clickTab(below(4));
                break;
            case 1:
                choose(setSelector(), below(5));
                break;
            case 2:
                typeInto(setName(), QStringLiteral("N%1").arg(below(1000)));
                break;
            case 3:
                click(flag(1 + below(8)));
                break;
            case 4:
                commands().undo();
                break;
            case 5:
                commands().redo();
                break;
            case 6:
                if (auto* spin = any<SpinEdit>()) {
                    QTest::mouseClick(spin, Qt::LeftButton, {}, spin->buttonRect(below(2) == 0).center());
                }
                break;
            case 7:
                if (below(8) == 0) {
                    frame->openFile(settingsFileNamed("a.eqs", u"Opened"));
                } else if (below(8) == 0) {
                    click(on<CxSkinButton>(Page::communication, comm_id::firstLoad + below(6)));
                }
                break;
            case 8:
            case 9:
                useButton();
                break;
            case 10:
                useList();
                break;
            case 11:
            case 12:
                useBox();
                break;
            default:
                useSlider();
        }
        settleEvents();
    }

    std::mt19937_64 random_;
};

TEST_F(RandomUndo, GoesToTheStartAndToTheEndOverTheSameStates) {
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
        random_.seed(seed);
        for (int i = 0; i < 120; ++i) {
            act();
        }
        commands().settle();
        const auto settled = state();
        const bool isAtTheEnd = history->position() == steps();
        expectRoundTrip();
        commands().goTo(steps());
        // Choosing a set is no step.
        EXPECT_TRUE(!isAtTheEnd || std::memcmp(&settled->store, &state()->store, sizeof settled->store) == 0);
        if (HasFatalFailure()) {
            FAIL() << "seed " << seed;
        }
    }
    EXPECT_GT(steps(), 50U);
}

}  // namespace
}  // namespace tessavo::test
