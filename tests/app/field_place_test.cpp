#include "app/field_place.h"

#include <QTest>

#include "app/undo_fixture.h"
#include "pages/rows/audio_router_rows.h"
#include "pages/rows/header_rows.h"
#include "pages/rows/input_eq_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "pages/rows/output_group_rows.h"

// From a changed value to the control that shows it.

namespace tessavo::test {
namespace {

class Places : public UndoTest {
 protected:
    /// Where the last move was told to be seen.
    FieldPlace lastPlace() { return moves.back().second.value_or(FieldPlace{}); }
    /// Whether a control with this number on that page has the focus and is seen.
    bool isShown(Page which, int id) {
        const QWidget* focus = QApplication::focusWidget();
        return tabs().currentIndex() == static_cast<int>(which) && focus != nullptr && focus->isVisible() &&
               focus->objectName() == QStringLiteral("id%1").arg(id) && page(which).isAncestorOf(focus);
    }
};

TEST_F(Places, EveryBoundControlOfEveryPageIsFoundByItsField) {
    const std::pair<Page, const ControlRows&> pages[]{{Page::inputEqualizer, inputEqRows()},
                                                      {Page::channelConfig, audioRouterRows()},
                                                      {Page::outputEqualizer, outputEqRows()},
                                                      {Page::outputGroup, outputGroupRows()}};
    int found = 0;
    for (const auto& [which, rows] : pages) {
        for (const ControlRow& row : rows) {
            if (!row.field || row.isHidden) {
                continue;
            }
            for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
                FieldIndex index{row.element, 0};
                if (which == Page::outputEqualizer) {
                    index = {channel, row.element};
                } else if (which == Page::outputGroup) {
                    index = {groupSliderMap[row.element], 0};
                } else if (row.field == FieldId::routerSource) {
                    index = {channelMap[row.element], 0};
                }
                const auto place = findPlace({{2, row.field, index}});
                ASSERT_TRUE(place) << fieldOf(*row.field).path;
                EXPECT_EQ(place->set, 2U);
                ASSERT_EQ(place->page, which) << fieldOf(*row.field).path;
                EXPECT_EQ(place->control, row.identifier);
                EXPECT_EQ(place->channel.has_value(), which == Page::outputEqualizer);
                ++found;
            }
        }
    }
    EXPECT_GT(found, 500);
}

TEST_F(Places, NameAndFlagsStandAboveThePages) {
    EXPECT_EQ(findPlace({{1, std::nullopt, {}}})->control, view_id::setName);
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        const auto place = findPlace({{0, FieldId::channelFlag, {channel, 0}}});
        EXPECT_EQ(place->control, view_id::channelFlag(channel));
        EXPECT_FALSE(place->page);
    }
}

TEST_F(Places, AValueWithoutAControlIsPassedByAndAloneHasNoPlace) {
    EXPECT_FALSE(findPlace({{0, FieldId::recordSize, {}}}));
    EXPECT_FALSE(findPlace({{0, FieldId::delay, {3, 0}}})) << "its control is hidden";
    EXPECT_EQ(findPlace({{0, FieldId::recordSize, {}}, {0, FieldId::suppression, {}}})->page,
              Page::inputEqualizer);
    EXPECT_FALSE(findPlace({}));
}

TEST_F(Places, ShowGoesToTheControlOfAnotherSetPageAndChannel) {
    choose(setSelector(), 3);
    QTest::mouseClick(&on<QAbstractButton>(Page::outputEqualizer, selection_id::radios[5]), Qt::LeftButton);
    settleEvents();
    const int gain = output_eq_id::bands[6].sliders[1].slider;
    drag(on<CBitmapSlider>(Page::outputEqualizer, gain), -30);
    QTest::mouseClick(&on<QAbstractButton>(Page::outputEqualizer, selection_id::radios[1]), Qt::LeftButton);
    choose(setSelector(), 0);
    clickTab(static_cast<int>(Page::communication));
    settleEvents();
    const std::uint8_t mask = tuning.selectionMask();
    const auto stepsBefore = steps();
    ASSERT_TRUE(commands().undo());
    EXPECT_EQ(tuning.selectionMask(), mask);
    EXPECT_EQ(tabs().currentIndex(), static_cast<int>(Page::communication));
    choose(setSelector(), 1);
    view().showPlace(lastPlace());
    settleEvents();
    EXPECT_EQ(tuning.currentSet(), 3U);
    EXPECT_EQ(tuning.selectionMask(), selectionBit({5}));
    EXPECT_TRUE(isShown(Page::outputEqualizer, gain));
    EXPECT_TRUE(pagesShowTheSet());
    commands().settle();
    EXPECT_TRUE(history->canRedo()) << "to go there writes nothing";
    EXPECT_EQ(steps(), stepsBefore);
}

TEST_F(Places, ShowLeavesTickedChannelsAlone) {
    answers = {BoxAnswer::ok};
    click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::assign));
    click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::checks[2]));
    click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::checks[4]));
    const std::uint8_t mask = tuning.selectionMask();
    view().showPlace({0, Page::outputEqualizer, output_eq_id::volume.slider, recordChannelAt({2})});
    EXPECT_EQ(tuning.selectionMask(), mask);
    // One that is not ticked is chosen alone: a tick would make edits go to it as well.
    view().showPlace({0, Page::outputEqualizer, output_eq_id::volume.slider, recordChannelAt({7})});
    EXPECT_EQ(tuning.selectionMask(), selectionBit({7}));
    EXPECT_FALSE(on<SkinCheckBox>(Page::outputEqualizer, selection_id::assign).isChecked());
    EXPECT_TRUE(on<QAbstractButton>(Page::outputEqualizer, selection_id::radios[7]).isChecked());
}

TEST_F(Places, ShowWritesNothingWhereABandHasWordsOfAnotherMethod) {
    QTest::mouseClick(&on<QAbstractButton>(Page::outputEqualizer, selection_id::radios[3]), Qt::LeftButton);
    drag(on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::bands[6].sliders[1].slider), -30);
    QTest::mouseClick(&on<QAbstractButton>(Page::outputEqualizer, selection_id::radios[1]), Qt::LeftButton);
    tuning.setFilterMode(1);
    commands().settle();
    tuning.setLiveMode(true);
    ASSERT_TRUE(tuning.takeUpdate());
    const auto before = state();
    view().showPlace({0, Page::outputEqualizer, output_eq_id::volume.slider, recordChannelAt({3})});
    commands().settle();
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_FALSE(tuning.updatePending());
    tuning.selectSet(0);
    EXPECT_FALSE(same(*before, *state())) << "what the other method computes is different";
}

}  // namespace
}  // namespace tessavo::test
