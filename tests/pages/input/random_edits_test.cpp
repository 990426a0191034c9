#include <QTest>
#include <algorithm>
#include <map>
#include <random>

#include "controls/spin_edit.h"
#include "pages/input/audio_router.h"
#include "pages/input/input_eq.h"
#include "pages/input/slider_rows.h"
#include "support/page_fixture.h"

namespace tessavo::test {
namespace {

/// A number field without a slider.
struct Box {
    int edit;
    int high;
    FieldId field;
    bool followed;
};

constexpr std::array<Box, 4> boxesAlone{{{4092, 1000, FieldId::compressorAttack, false},
                                         {4093, 1000, FieldId::compressorRelease, false},
                                         {5036, 100, FieldId::delaySize1, true},
                                         {5037, 100, FieldId::delaySize2, true}}};

struct Switch {
    int id;
    FieldId field;
};

constexpr std::array<Switch, 3> switches{
    {{4091, FieldId::compressorDisabled}, {5011, FieldId::lineOutUse}, {5038, FieldId::rearForSurround}}};

/// Both pages at once on one state; what a person does with them is done to the twin without a page.
class RandomEdits : public PageTest {
 protected:
    RandomEdits() {
        window.resize(984, 2 * 596);
        auto both = std::make_unique<CTabDialog>();
        input_ = new CInputEQ(actual.state, boxes, both.get());
        router_ = new CAudioRouter(actual.state, both.get());
        input_->setGeometry(0, 0, 984, 596);
        router_->setGeometry(0, 596, 984, 596);
        showPage(std::move(both));
        for (int mode = 0; mode < 3; ++mode) {
            for (int room = 0; room < 5; ++room) {
                delays_[{mode, room}] = 8 * (mode + room);
            }
        }
        actual.settle();
        twin.settle();
    }

    int below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

    void act() {
        switch (below(10)) {
            case 0:
            case 1:
                return moveSlider(anyRow());
            case 2:
            case 3:
                return typeIntoSliderBox(anyRow());
            case 4:
                return typeIntoBox(boxesAlone[static_cast<std::size_t>(below(4))]);
            case 5:
                return flip(switches[static_cast<std::size_t>(below(3))]);
            case 6:
                return chooseFromList();
            case 7:
                return turnSpin();
            case 8:
                return pressButton();
            default:
                return below(4) == 0 ? changeWhole() : moveSlider(anyRow());
        }
    }

    const InputRow& anyRow() {
        const auto& rows = below(3) != 0 ? equalizerRows() : routerRows();
        return rows[static_cast<std::size_t>(below(static_cast<int>(rows.size())))];
    }

    void moveSlider(const InputRow& row) {
        what_ = "move " + row.name;
        CBitmapSlider& moved = slider(row.slider);
        if (below(2) == 0) {
            drag(row.slider, below(121) - 60);
            drag(row.slider, below(21) - 10);
            release(row.slider);
            return row.edited(twin.state, row.steps(moved.position()), true);
        }
        constexpr std::array<Qt::Key, 8> keys{Qt::Key_Up,   Qt::Key_Down, Qt::Key_Left,   Qt::Key_Right,
                                              Qt::Key_Home, Qt::Key_End,  Qt::Key_PageUp, Qt::Key_PageDown};
        const int before = moved.position();
        key(moved, keys[static_cast<std::size_t>(below(8))]);
        if (moved.position() != before) {
            row.edited(twin.state, row.steps(moved.position()), true);
        }
    }

    /// A text and the tenths it stands for.
    std::pair<QString, int> anyNumber(int low, int high) {
        const int span = high - low;
        const int tenths = low - span / 4 + below(span + span / 2 + 1);
        switch (below(8)) {
            case 0:
                return {QStringLiteral("abc"), 0};
            case 1:
                return {QString(), 0};
            case 2:
                return {QStringLiteral("%1").arg(tenths / 10), tenths / 10 * 10};
            default: {
                const QString sign = tenths < 0 ? QStringLiteral("-") : QString();
                const QString point = below(3) == 0 ? QStringLiteral(",") : QStringLiteral(".");
                return {sign + QString::number(std::abs(tenths) / 10) + point +
                            QString::number(std::abs(tenths) % 10),
                        tenths};
            }
        }
    }

    /// Types, and leaves or presses Enter.
    void typed(int id, const QString& text) {
        below(2) == 0 ? typeAndLeave(id, text) : typeAndEnter(id, text);
    }

    void typeIntoSliderBox(const InputRow& row) {
        if (below(4) == 0) {
            what_ = "step in the box of " + row.name;
            const int before = row.steps(slider(row.slider).position());
            const int direction = below(2) == 0 ? 1 : -1;
            const bool coarse = below(2) == 0 && row.slider != 4071;
            key(edit(row.edit), direction > 0 ? Qt::Key_Up : Qt::Key_Down,
                coarse ? Qt::ShiftModifier : Qt::NoModifier);
            const int steps = std::clamp(before + direction * (coarse ? 10 : 1), row.low, row.high);
            return row.edited(twin.state, steps, true);
        }
        const bool tenths = row.perUnit == 10;
        auto [text, asked] = row.isDecoderGain() ? anyNumber(-300, 0)
                                                 : anyNumber(tenths ? row.low : 10 * row.low,
                                                             tenths ? row.high : 10 * row.high);
        int steps = row.typed(asked);
        if (row.isDecoderGain() && below(3) == 0) {
            text = below(2) == 0 ? QStringLiteral("-inf.") : QStringLiteral("-Inf.");
            steps = 0;
        }
        what_ = "type \"" + text.toStdString() + "\" for " + row.name;
        typed(row.edit, text);
        const bool stays = row.isDecoderGain() && (text.isEmpty() || text == QStringLiteral("abc"));
        if (!stays) {
            row.edited(twin.state, steps, true);
        }
    }

    void typeIntoBox(const Box& box) {
        const auto [text, asked] = anyNumber(0, 10 * box.high);
        what_ = "type \"" + text.toStdString() + "\" in box " + std::to_string(box.edit);
        typed(box.edit, text);
        const int value = std::clamp(asked / 10, 0, box.high);
        if (box.field == FieldId::delaySize1) {
            delayInForce() = value;
            return writeDelay();
        }
        twin.state.edit(box.field, {}, value, true);
    }

    void flip(const Switch& which) {
        what_ = "flip " + std::to_string(which.id);
        const bool on = check(which.id).isChecked();
        click(check(which.id));
        twin.state.edit(which.field, {}, on ? 0 : 1, true);
    }

    void chooseFromList() {
        if (below(5) == 0) {
            what_ = "turn-off delay";
            const int index = below(2);
            if (list(5021).currentIndex() != index) {
                chooseByKeys(5021, index);
                twin.state.edit(FieldId::turnOffDelayOn, {}, index, true);
            }
            return;
        }
        const int position = below(8);
        const int source = below(14);
        what_ = "source of position " + std::to_string(position);
        if (list(5001 + position).currentIndex() != source) {
            chooseByKeys(5001 + position, source);
            twin.state.setRouterSource(
                {static_cast<std::uint8_t>(pageChannels[static_cast<std::size_t>(position)])},
                static_cast<std::uint8_t>(source));
        }
    }

    void turnSpin() {
        const bool isMode = below(2) == 0;
        auto& spin = control<SpinEdit>(isMode ? 5034 : 5035);
        what_ = isMode ? "mode" : "room";
        const int before = spin.value();
        const bool types = below(2) == 0;
        if (!types) {
            key(spin, below(2) == 0 ? Qt::Key_Up : Qt::Key_Down);
        } else {
            spin.setFocus(Qt::TabFocusReason);
            spin.selectAll();
            QTest::keyClicks(&spin, QString::number(below(6)));
            key(spin, Qt::Key_Tab);
        }
        ASSERT_GE(spin.value(), 0);
        ASSERT_LE(spin.value(), isMode ? 2 : 4);
        if (types || spin.value() != before) {
            twin.state.edit(isMode ? FieldId::surroundMode : FieldId::roomSize, {}, spin.value(), true);
            writeDelay();
        }
    }

    void pressButton() {
        switch (below(4)) {
            case 0:
                what_ = "EQ On";
                click(control<CxSkinButton>(4041));
                return twin.state.setInputEqOn(twin.image()[6] == 1);
            case 1:
                what_ = "surround";
                click(control<CxSkinButton>(5031));
                twin.state.edit(FieldId::surroundOff, {}, byteOfTwin(1576) == 1 ? 0 : 1, true);
                return;
            case 2:
                what_ = "apply all";
                input_->applyAll();
                for (std::size_t band = 0; band < 13; ++band) {
                    const InputRow& row = equalizerRows()[band];
                    row.edited(twin.state, row.steps(slider(row.slider).position()), true);
                }
                return;
            default:
                return pressReset();
        }
    }

    void pressReset() {
        const int how = below(3);
        what_ = "reset " + std::to_string(how);
        boxes.answers.clear();
        if (how == 0) {
            actual.state.setLiveMode(true);
        } else if (how == 1) {
            boxes.answers = {BoxAnswer::ok};
        }
        click(control<CxSkinButton>(4042));
        if (how == 0) {
            actual.settle();
        } else if (how == 1) {
            for (const InputRow& row : equalizerRows()) {
                row.edited(twin.state, std::clamp(0, row.low, row.high), true);
            }
        }
    }

    /// Another set, another file, or another method.
    void changeWhole() {
        if (const int mode = below(5); mode < 3) {
            what_ = "method";
            actual.state.setFilterMode(static_cast<std::uint32_t>(mode));
            twin.state.setFilterMode(static_cast<std::uint32_t>(mode));
        } else if (mode == 3) {
            what_ = "set";
            const auto set = static_cast<std::uint32_t>(below(5));
            actual.state.selectSet(set, [&] {
                input_->changeSet(set);
                router_->changeSet(set);
            });
            twin.state.selectSet(set);
            adoptDelay();
        } else {
            what_ = "file";
            const Bytes loaded = randomStore(random_);
            actual.state.replaceStore(recordOf<ParameterStore>(loaded));
            twin.state.replaceStore(recordOf<ParameterStore>(loaded));
            input_->refresh();
            router_->refresh();
            adoptDelay();
        }
    }

    std::uint8_t byteOfTwin(std::size_t offset) {
        return twin.store()[setSize * twin.state.currentSet() + offset];
    }
    int& delayInForce() {
        return delays_[{std::min<int>(byteOfTwin(1578), 2), std::min<int>(byteOfTwin(1577), 4)}];
    }
    void adoptDelay() {
        // Only what can be typed is kept for the way back.
        delayInForce() =
            std::min<int>(readAt<std::uint16_t>(twin.store(), setSize * twin.state.currentSet() + 1848), 100);
    }
    void writeDelay() {
        const int delayMs = delayInForce();
        twin.state.edit(FieldId::delaySize1, {}, delayMs, true);
        for (std::size_t copy = 0; copy < 3; ++copy) {
            twin.state.edit(FieldId::delaySize1Copies, {copy, 0}, delayMs, true);
        }
        twin.state.edit(FieldId::delaySize1Last, {}, delayMs, true);
    }
    bool takeTwinPending() {
        const bool pending = twin.state.updatePending();
        twin.settle();
        return pending;
    }

    std::string what_;

 private:
    std::mt19937_64 random_{20250};
    CInputEQ* input_ = nullptr;
    CAudioRouter* router_ = nullptr;
    std::map<std::pair<int, int>, int> delays_;
};

TEST_F(RandomEdits, AThousandActionsLeaveWhatTheSameEditsWithoutAPageLeave) {
    for (int action = 0; action < 1000; ++action) {
        act();
        ASSERT_FALSE(HasFatalFailure()) << what_;
        ASSERT_TRUE(inStep()) << "action " << action << ": " << what_;
        ASSERT_EQ(takePending(), takeTwinPending()) << "action " << action << ": " << what_;
        for (std::size_t band = 0; band < 13; ++band) {
            ASSERT_SAME_BYTES(bytesOf(actual.state.inputWords(band)), bytesOf(twin.state.inputWords(band)));
        }
    }
}

}  // namespace
}  // namespace tessavo::test
