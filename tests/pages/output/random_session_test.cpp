#include <QTest>
#include <cmath>

#include "pages/output/output_eq_fixture.h"
#include "pages/output/output_group.h"

// A person who does anything in any order, on both pages, against the same edits made without a page.

namespace tessavo::test {
namespace {

struct RowOfSliders {
    std::array<int, 8> sliders;
    std::array<int, 8> edits;
    std::array<int, 8> groups;
    int lowest, highest;  ///< tenths
};

constexpr RowOfSliders gainRow{{1364, 1365, 1366, 1367, 1368, 1369, 1370, 1371},
                               {1398, 1399, 1397, 1396, 1400, 1395, 1401, 1404},
                               {1157, 1158, 1159, 1160, 1161, 1162, 1163, 1164},
                               -60,
                               180};
constexpr RowOfSliders delayRow{{1372, 1373, 1374, 1375, 1376, 1377, 1378, 1379},
                                {1405, 1406, 1407, 1408, 1409, 1410, 1411, 1412},
                                {1165, 1166, 1167, 1168, 1169, 1170, 1171, 1172},
                                0,
                                20};
constexpr std::array<std::uint8_t, 8> sliderChannels{2, 4, 6, 0, 3, 5, 7, 1};

/// A slider with its box, and what its value becomes on the other state.
struct Scale {
    SliderWithEdit ids;
    int minimum, maximum;  ///< positions
    bool negated;
    bool tenths;
    std::function<void(int position, bool final)> write;
};

class RandomSession : public OutputEqTest {
 protected:
    explicit RandomSession(std::uint64_t seed = 0) : random_(seed) {
        auto made = std::make_unique<COutputGroup>(actual.state);
        groupPage_ = made.get();
        eqPage_ = page;
        made.release()->setParent(&window);
        groupPage_->setGeometry(window.rect());
        groupPage_->hide();
    }

    void begin(std::uint64_t seed) {
        random_.seed(seed);
        Bytes store = randomStore(random_);
        for (std::size_t set = 0; set < 5; ++set) {
            for (std::size_t channel = 0; channel < 8; ++channel) {
                for (const std::size_t order : {132U, 138U}) {
                    store[set * setSize + recordChannelOffset(channel) + order] = random_() % 2 == 0 ? 2 : 4;
                }
            }
        }
        actual.load(store);
        twin.load(store);
        refreshBoth();
    }

    int below(int bound) { return static_cast<int>(random_() % static_cast<std::uint64_t>(bound)); }
    bool coin() { return below(2) == 0; }

    void refreshBoth() {
        eqPage_->refresh();
        groupPage_->refresh();
        for (std::size_t sliderColumn = 0; sliderColumn < 8; ++sliderColumn) {
            const OutputChannelParams& channel =
                twin.state.currentParameterSet().channels[sliderChannels[sliderColumn]];
            last_[0][sliderColumn] =
                std::clamp(static_cast<int>(std::lround(channel.groupGainDb * 10.0F)), -60, 180);
            last_[1][sliderColumn] =
                std::clamp(static_cast<int>(std::lround(channel.groupDelayMs * 10.0F)), 0, 20);
        }
    }

    void turnTo(CTabDialog* other) {
        if (page != other) {
            page->hide();
            page = other;
            page->show();
        }
    }

    // ---- the equalizer's page

    Scale bandScale() {
        const auto band = static_cast<std::size_t>(below(8));
        const Column column = columns.at(static_cast<std::size_t>(below(3)));
        const auto write = [this, band, column](int position, bool final) {
            twinBand(band, column, position, final);
        };
        const SliderWithEdit ids = controlsOf(band, column);
        return column == Column::frequency ? Scale{ids, -20000, -20, true, false, write}
               : column == Column::gain    ? Scale{ids, -180, 180, true, true, write}
                                           : Scale{ids, -200, -1, true, true, write};
    }
    Scale otherScale() {
        const int which = below(6);
        if (which < 2) {
            const auto k = static_cast<std::size_t>(which);
            return {
                crossoverControls[k].frequency, 20, 20000, false, false, [this, k](int position, bool final) {
                    twin.state.setCrossoverFrequency(k, static_cast<std::uint16_t>(position), final);
                }};
        }
        if (which == 2) {
            return {volumeControls, -60, 180, false, true, [this](int position, bool final) {
                        twin.state.setVolume(static_cast<float>(position) / 10.0F, final);
                    }};
        }
        const auto field = static_cast<LimiterField>(which - 3);
        constexpr std::array<SliderWithEdit, 3> ids{{{1346, 1347}, {1355, 1356}, {1353, 1354}}};
        return {ids.at(static_cast<std::size_t>(which - 3)),
                0,
                which == 3 ? 200 : 400,
                true,
                true,
                [this, field](int position, bool final) { twin.state.setLimiter(field, -position, final); }};
    }

    void useSlider(const Scale& scale) {
        CBitmapSlider& target = slider(scale.ids.slider);
        switch (below(4)) {
            case 0:
                for (int moves = 1 + below(3); moves > 0; --moves) {
                    drag(scale.ids.slider, below(121) - 60);
                    scale.write(draggedTo, false);
                }
                release(scale.ids.slider);
                scale.write(target.position(), true);
                break;
            case 1: {
                constexpr std::array keys{Qt::Key_Up,       Qt::Key_Down, Qt::Key_PageUp,
                                          Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
                const int before = target.position();
                key(target, keys.at(static_cast<std::size_t>(below(6))));
                if (target.position() != before) {
                    scale.write(target.position(), false);
                    scale.write(target.position(), true);
                }
                break;
            }
            case 2:
                stepBox(scale);
                break;
            default:
                typeInto(scale);
        }
    }

    void stepBox(const Scale& scale) {
        const bool up = coin();
        const bool coarse = coin();
        int position = slider(scale.ids.slider).position();
        if (coarse && !scale.tenths) {
            const double hertz = std::abs(position) * std::exp2((up ? 1.0 : -1.0) / 3.0);
            position = static_cast<int>(std::lround(hertz)) * (scale.negated ? -1 : 1);
        } else {
            position += (coarse ? 10 : 1) * (up != scale.negated ? 1 : -1);
        }
        key(edit(scale.ids.edit), up ? Qt::Key_Up : Qt::Key_Down,
            coarse ? Qt::ShiftModifier : Qt::NoModifier);
        scale.write(std::clamp(position, scale.minimum, scale.maximum), true);
    }

    /// A text and the number of tenths that it stands for, truncated.
    std::pair<QString, int> randomText(int reach) {
        constexpr std::array nonsense{"", "-", "x7", ".", "Hz", "--3", "-x"};
        if (below(8) == 0) {
            return {QString::fromLatin1(nonsense.at(static_cast<std::size_t>(below(7)))), 0};
        }
        const int hundredths = below(2 * reach + 1) - reach;
        const QString text = QStringLiteral("%1%2.%3%4%5")
                                 .arg(hundredths < 0 ? QStringLiteral("-") : QString())
                                 .arg(std::abs(hundredths) / 100)
                                 .arg(std::abs(hundredths) / 10 % 10)
                                 .arg(std::abs(hundredths) % 10)
                                 .arg(coin() ? QStringLiteral(" u") : QString());
        return {text, hundredths / 10};
    }

    /// Types a text and takes it in one of two ways; false where the box has nothing to say.
    bool typeSomehow(int editId, const QString& text) {
        const bool changes = !(edit(editId).text().isEmpty() && text.isEmpty());
        if (coin()) {
            typeAndEnter(editId, text);
            return true;
        }
        typeAndLeave(editId, text);
        return changes;
    }

    void typeInto(const Scale& scale) {
        const auto [text, tenths] = randomText(scale.tenths ? 5000 : 2500000);
        if (typeSomehow(scale.ids.edit, text)) {
            const int steps = scale.tenths ? tenths : tenths / 10;
            scale.write(std::clamp(scale.negated ? -steps : steps, scale.minimum, scale.maximum), true);
        }
    }

    void useCrossover() {
        const auto k = static_cast<std::size_t>(below(2));
        const CrossoverControls& controls = crossoverControls[k];
        const int frequency = slider(controls.frequency.slider).position();
        const int what = below(3);
        const int chosen = below(2);
        const int listId = what == 1 ? controls.kind : controls.order;
        if (what == 0) {
            click(check(controls.enabled));
        } else if (list(listId).currentIndex() == chosen) {
            return;
        } else {
            chooseByKeys(listId, chosen);
        }
        twin.state.setCrossover(k, static_cast<std::uint8_t>(list(controls.kind).currentIndex()),
                                static_cast<std::uint8_t>(2 * list(controls.order).currentIndex() + 2),
                                check(controls.enabled).isChecked() ? 1 : 0);
        if (what == 2) {
            twin.state.setCrossoverFrequency(k, static_cast<std::uint16_t>(frequency), false);
        }
    }

    void useBandSwitch() {
        const auto band = static_cast<std::size_t>(below(8));
        if (coin()) {
            click(check(bandControls[band].enabled));
            twin.state.setBandOff(band, check(bandControls[band].enabled).isChecked() ? 0 : 1);
            return;
        }
        constexpr std::array<std::uint8_t, 3> codes{1, 2, 0};
        const int target = below(3);
        while (list(bandControls[band].type).currentIndex() != target) {
            const int now = list(bandControls[band].type).currentIndex();
            key(list(bandControls[band].type), now < target ? Qt::Key_Down : Qt::Key_Up);
            twin.state.setBandType(band, codes.at(static_cast<std::size_t>(now + (now < target ? 1 : -1))));
        }
    }

    void useChannelSwitch() {
        switch (below(4)) {
            case 0:
                click(check(invertPhaseBox));
                twin.state.setInvertPhase(true, check(invertPhaseBox).isChecked() ? 1 : 0);
                break;
            case 1:
                click(check(limiterDisabledBox));
                twin.state.setLimiter(
                    check(limiterDisabledBox).isChecked() ? LimiterField::disable : LimiterField::enable, 0,
                    true);
                break;
            default: {
                const bool attack = coin();
                const auto [text, tenths] = randomText(30000);
                if (typeSomehow(attack ? 1358 : 1359, text)) {
                    twin.state.setLimiter(attack ? LimiterField::attack : LimiterField::release,
                                          std::clamp(tenths / 10, 0, 200), true);
                }
            }
        }
    }

    void useAllFilters() {
        click(control<CxSkinButton>(allFiltersButton));
        allOff_ = !allOff_;
        for (std::size_t band = 0; band < 8; ++band) {
            twin.state.setBandOff(band, allOff_ ? 1 : 0);
        }
    }

    void useSelection() {
        const auto position = static_cast<std::size_t>(below(8));
        if (below(4) == 0) {
            const bool agrees = coin();
            boxes.answers = {agrees ? BoxAnswer::ok : BoxAnswer::cancel};
            click(check(assignBox));
            if (several_ || agrees) {
                several_ = !several_;
                severalMask_ = 0;
                takeSelection(several_ ? 0 : 0x80U >> single_);
            }
        } else if (several_) {
            click(check(channelChecks[position]));
            severalMask_ ^= 0x80U >> position;
            takeSelection(severalMask_);
        } else {
            click(control<SkinRadioButton>(channelRadios[position]));
            single_ = position;
            takeSelection(0x80U >> position);
        }
    }
    void takeSelection(unsigned mask) {
        twin.state.setSelectionMask(static_cast<std::uint8_t>(mask));
        constexpr std::array<std::uint8_t, 3> codes{1, 2, 0};
        twin.state.setBandType(7,
                               codes.at(static_cast<std::size_t>(list(bandControls[7].type).currentIndex())));
    }

    void useReset() {
        const bool live = below(4) == 0;
        const bool agrees = coin();
        boxes.answers = {agrees ? BoxAnswer::ok : BoxAnswer::cancel};
        actual.state.setLiveMode(live);
        click(control<CxSkinButton>(resetButton));
        actual.state.setLiveMode(false);
        if (live || !agrees) {
            return;
        }
        constexpr std::array<std::uint16_t, 8> frequencies{60, 170, 500, 1000, 2500, 6000, 12000, 16000};
        for (std::size_t band = 0; band < 8; ++band) {
            twin.state.setBandOff(band, 1);
            twin.state.setBandType(band, 2);
            twin.state.setBandFrequency(band, frequencies[band], true);
            twin.state.setBandGainOrQ(band, BandValue::gain, 0, true);
            twin.state.setBandGainOrQ(band, BandValue::q, 1, true);
        }
        for (std::uint8_t k = 0; k < 2; ++k) {
            twin.state.setCrossoverFrequency(k, k == 0 ? 20 : 20000, true);
            twin.state.setCrossover(k, k, 2, 0);
        }
        twin.state.setInvertPhase(true, 0);
        constexpr std::array values{-60, -70, -210, 50, 120, 0};
        for (std::uint8_t field = 0; field < 6; ++field) {
            twin.state.setLimiter(static_cast<LimiterField>(field), values[field], true);
        }
    }

    // ---- the groups' page

    void moveGroup(bool delays, std::size_t sliderColumn, int tenths) {
        const RowOfSliders& row = delays ? delayRow : gainRow;
        std::array<int, 8>& last = last_[delays ? 1 : 0];
        const auto groupOf = [&](std::size_t at) {
            const OutputChannelParams& channel =
                twin.state.currentParameterSet().channels[sliderChannels[at]];
            return delays ? channel.delayGroup : channel.gainGroup;
        };
        tenths = std::clamp(tenths, row.lowest, row.highest);
        const int change = tenths - last[sliderColumn];
        std::array<int, 8> target = last;
        bool refused = false;
        for (std::size_t other = 0; other < 8; ++other) {
            if (other != sliderColumn && groupOf(other) == groupOf(sliderColumn)) {
                target[other] += change;
                refused = refused || target[other] < row.lowest || target[other] > row.highest;
            }
        }
        refusals_ += refused ? 1 : 0;
        target[sliderColumn] = tenths;
        for (std::size_t other = 0; other < 8; ++other) {
            if ((!refused && target[other] != last[other]) || other == sliderColumn) {
                last[other] = refused ? last[other] : target[other];
                const float value = static_cast<float>(last[other]) / 10.0F;
                delays ? twin.state.setGroupDelay({sliderChannels[other]}, value)
                       : twin.state.setGroupGain({sliderChannels[other]}, value);
            }
        }
    }

    void useGroup() {
        const bool delays = coin();
        const auto sliderColumn = static_cast<std::size_t>(below(8));
        const RowOfSliders& row = delays ? delayRow : gainRow;
        const int now = last_[delays ? 1 : 0][sliderColumn];
        switch (below(5)) {
            case 0:
                for (int moves = 1 + below(3); moves > 0; --moves) {
                    drag(row.sliders[sliderColumn], below(61) - 30);
                    moveGroup(delays, sliderColumn, -draggedTo);
                }
                release(row.sliders[sliderColumn]);
                moveGroup(delays, sliderColumn, last_[delays ? 1 : 0][sliderColumn]);
                break;
            case 1: {
                const int step = coin() ? 1 : -1;
                key(edit(row.edits[sliderColumn]), step > 0 ? Qt::Key_Up : Qt::Key_Down);
                moveGroup(delays, sliderColumn, now + step);
                break;
            }
            case 2: {
                const auto [text, tenths] = randomText(delays ? 300 : 2500);
                if (typeSomehow(row.edits[sliderColumn], text)) {
                    moveGroup(delays, sliderColumn, tenths);
                }
                break;
            }
            case 3: {
                const auto [text, tenths] = randomText(9000);
                if (typeSomehow(1413 + static_cast<int>(sliderColumn), text)) {
                    moveGroup(true, sliderColumn, tenths * 10 / 340);
                }
                break;
            }
            default: {
                const int target = below(3);
                if (list(row.groups[sliderColumn]).currentIndex() == target) {
                    break;
                }
                chooseByKeys(row.groups[sliderColumn], target);
                const auto group = static_cast<std::uint32_t>(target);
                delays ? twin.state.setDelayGroup({sliderChannels[sliderColumn]}, group)
                       : twin.state.setGainGroup({sliderChannels[sliderColumn]}, group);
            }
        }
    }

    // ---- anything

    std::string act() {
        if (below(3) == 0) {
            turnTo(groupPage_);
            useGroup();
            return "group";
        }
        turnTo(eqPage_);
        switch (below(14)) {
            case 0:
            case 1:
            case 2:
            case 3:
                return useSlider(bandScale()), "band slider";
            case 4:
            case 5:
                return useSlider(otherScale()), "channel slider";
            case 6:
                return useCrossover(), "crossover";
            case 7:
                return useBandSwitch(), "band switch";
            case 8:
                return useChannelSwitch(), "channel switch";
            case 9:
            case 10:
                return useSelection(), "selection";
            case 11:
                return useAllFilters(), "all filters";
            case 12:
                return useReset(), "reset";
            default:
                if (coin()) {
                    const auto set = static_cast<std::uint32_t>(below(5));
                    actual.state.selectSet(set);
                    twin.state.selectSet(set);
                }
                return refreshBoth(), "refresh";
        }
    }

    std::mt19937_64 random_;
    CTabDialog* eqPage_ = nullptr;
    CTabDialog* groupPage_ = nullptr;
    std::array<std::array<int, 8>, 2> last_{};
    bool several_ = false;
    bool allOff_ = false;
    std::size_t single_ = 0;
    int refusals_ = 0;
};

class RandomSessions : public RandomSession, public ::testing::WithParamInterface<std::uint64_t> {};

TEST_P(RandomSessions, AThousandActionsLeaveRecordAndImageAsTheSameEditsDo) {
    begin(GetParam());
    const Bytes before = actual.store();
    std::map<std::string, int> actions;
    for (int turn = 0; turn < 1000; ++turn) {
        const std::string what = act();
        ASSERT_FALSE(HasFatalFailure()) << "turn " << turn << ", " << what;
        ASSERT_TRUE(inStep()) << "turn " << turn << ", " << what;
        ++actions[what];
    }
    EXPECT_NE(difference(actual.store(), before), "");
    EXPECT_EQ(actions.size(), 10U);
    EXPECT_GT(refusals_, 5);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSessions, ::testing::Values(1U, 20U, 300U));

}  // namespace
}  // namespace tessavo::test
