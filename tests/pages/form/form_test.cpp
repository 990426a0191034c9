#include "pages/form/form.h"

#include <QLabel>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/slider_event.h"
#include "support/row_checks.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;

/// One row of every kind that a form makes.
const ControlRows& rowsOfEveryKind() {
    static const ControlRows rows{
        {.kind = ControlKind::group, .caption = "Card", .bounds = {0, 0, 500, 300}},
        {.kind = ControlKind::label, .caption = "Text", .bounds = {10, 10, 40, 14}},
        {.kind = ControlKind::line, .bounds = {10, 30, 480, 1}},
        {.kind = ControlKind::button, .identifier = 1, .caption = "Push", .bounds = {60, 10, 60, 18}},
        {.kind = ControlKind::toggle, .identifier = 2, .caption = "Stay", .bounds = {130, 10, 60, 18}},
        {.kind = ControlKind::check,
         .identifier = 3,
         .caption = "Off",
         .bounds = {200, 10, 60, 18},
         .field = FieldId::compressorDisabled,
         .inverted = true},
        {.kind = ControlKind::radio, .identifier = 4, .name = "One", .bounds = {270, 10, 60, 18}},
        {.kind = ControlKind::lamp, .identifier = 5, .name = "Lamp", .bounds = {340, 10, 18, 18}},
        {.kind = ControlKind::note, .identifier = 6, .bounds = {370, 10, 60, 18}},
        {.kind = ControlKind::readOnly, .identifier = 7, .name = "Version", .bounds = {440, 10, 50, 18}},
        {.kind = ControlKind::group, .caption = "Inset", .bounds = {10, 40, 480, 250}},
        {.kind = ControlKind::slider,
         .identifier = 10,
         .caption = "Head",
         .name = "Gain",
         .bounds = {20, 80, 28, 100},
         .field = FieldId::inputBandGain,
         .element = 2,
         .editIdentifier = 20,
         .edit = {20, 190, 50, 24},
         .editsLast = true,
         .captionBounds = {20, 60, 50, 14},
         .unit = "dB",
         .unitBounds = {72, 190, 20, 24}},
        {.kind = ControlKind::delay,
         .identifier = 11,
         .name = "Delay",
         .bounds = {100, 80, 28, 100},
         .field = FieldId::delay,
         .editIdentifier = 21,
         .edit = {100, 190, 50, 24},
         .editsLast = true,
         .distanceIdentifier = 31,
         .distance = {100, 220, 50, 24}},
        {.kind = ControlKind::number,
         .identifier = 12,
         .name = "Time",
         .bounds = {160, 80, 50, 24},
         .field = FieldId::delaySize2},
        {.kind = ControlKind::spin,
         .identifier = 13,
         .name = "Room",
         .bounds = {220, 80, 80, 26},
         .field = FieldId::roomSize},
        {.kind = ControlKind::combo,
         .identifier = 14,
         .name = "Type",
         .bounds = {310, 80, 80, 24},
         .field = FieldId::bandType,
         .codes = {1, 2, 0}},
        {.kind = ControlKind::slider,
         .identifier = 15,
         .name = "Page's own",
         .bounds = {400, 80, 28, 100},
         .field = FieldId::groupGain,
         .isBound = false,
         .editIdentifier = 25,
         .edit = {400, 190, 50, 24}},
    };
    return rows;
}

class FormTest : public ::testing::Test {
 protected:
    struct Written {
        FieldId field;
        std::size_t element;
        double value;
        bool final;

        bool operator==(const Written&) const = default;
    };

    std::vector<Written> written;
    QWidget page;
    Form form{page, [this](BoundField to) {
                  return [this, to](double value, bool final) {
                      written.push_back({to.field, to.element, value, final});
                  };
              }};
};

TEST_F(FormTest, MakesAControlOfEveryRow) {
    form.build(rowsOfEveryKind());
    expectControlsOfRows(page, rowsOfEveryKind());
    expectRowsApart(rowsOfEveryKind());
    auto& inset = form.group("Inset");
    EXPECT_EQ(inset.parentWidget(), &form.group("Card"));
    for (const int id : {10, 20, 11, 21, 31, 12, 13, 14, 15, 25}) {
        EXPECT_EQ(form.control<QWidget>(id).parentWidget(), &inset) << id;
    }
    EXPECT_EQ(form.labelAt({20, 60, 50, 14}).text(), QStringLiteral("Head"));
    EXPECT_EQ(form.labelAt({72, 190, 20, 24}).text(), QStringLiteral("dB"));
    EXPECT_EQ(form.control<SkinComboBox>(14).itemText(0), QStringLiteral("Low Shelf"));
}

TEST_F(FormTest, BindsEachControlToItsFieldButWhatThePageKeeps) {
    form.build(rowsOfEveryKind());
    std::vector<int> bound;
    for (const Form::Bound& each : form.bindings()) {
        bound.push_back(each.identifier);
    }
    EXPECT_THAT(bound, ElementsAre(3, 10, 11, 12, 13, 14));
    form.control<SkinCheckBox>(3).click();
    EXPECT_EQ(written.back(), (Written{FieldId::compressorDisabled, 0, 0, true})) << "checked where it is 0";
    QTest::keyClicks(&form.control<NumberEdit>(12), QStringLiteral("7"));
    QTest::keyClick(&form.control<NumberEdit>(12), Qt::Key_Return);
    EXPECT_EQ(written.back(), (Written{FieldId::delaySize2, 0, 7, true}));
    EXPECT_TRUE(form.takeSliderEvent(SliderEvent(SliderEvent::moved, 10, -35)));
    EXPECT_EQ(written.back(), (Written{FieldId::inputBandGain, 2, 3.5, false}));
    EXPECT_EQ(form.control<NumberEdit>(20).text(), QStringLiteral("3.5"));
    const std::size_t before = written.size();
    EXPECT_TRUE(form.takeSliderEvent(SliderEvent(SliderEvent::released, 15, -35))) << "the page's own slider";
    EXPECT_FALSE(form.takeSliderEvent(QEvent(QEvent::Show)));
    EXPECT_EQ(written.size(), before);
}

TEST_F(FormTest, WithoutAWriterNothingIsBound) {
    QWidget other;
    Form plain(other);
    plain.build(rowsOfEveryKind());
    expectControlsOfRows(other, rowsOfEveryKind());
    EXPECT_TRUE(plain.bindings().empty());
}

TEST_F(FormTest, TabLeadsToTheBoxesBehindTheirSliders) {
    form.build(rowsOfEveryKind());
    std::vector<const QWidget*> chain;
    for (const QWidget* at = page.nextInFocusChain(); at != &page; at = at->nextInFocusChain()) {
        chain.push_back(at);
    }
    const auto placeOf = [&](int id) {
        return std::ranges::find(chain, &form.control<QWidget>(id)) - chain.begin();
    };
    const std::vector<int> order{1, 2, 3, 4, 7, 10, 11, 20, 21, 12, 13, 14, 15, 25};
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        EXPECT_LT(placeOf(order[i]), placeOf(order[i + 1])) << order[i];
    }
}

TEST_F(FormTest, AGroupOutOfCircuitTakesTheColoursOfAllThatIsBoundInIt) {
    form.build(rowsOfEveryKind());
    page.resize(500, 300);
    const auto picture = [&](int id) { return form.control<QWidget>(id).grab().toImage(); };
    form.binding<SliderBinding>(10).show(12);
    const QImage coloured = picture(10);
    form.setInCircuit("Card", false);
    EXPECT_NE(picture(10), coloured) << "also in the inset";
    form.setInCircuit("Inset", true);
    EXPECT_EQ(picture(10), coloured);
}

TEST_F(FormTest, HiddenGroupsHoldWhatHasNoPlace) {
    form.build(ControlRows{
        {.kind = ControlKind::group, .caption = "Seen", .bounds = {0, 0, 100, 100}},
        {.kind = ControlKind::group, .caption = "Unseen", .bounds = {0, 0, 100, 100}, .isHidden = true},
        {.kind = ControlKind::check, .identifier = 1, .caption = "Never"},
        {.kind = ControlKind::check, .identifier = 2, .caption = "Here", .bounds = {10, 10, 50, 20}},
        {.kind = ControlKind::check, .identifier = 3, .bounds = {10, 40, 50, 20}, .isHidden = true}});
    EXPECT_TRUE(form.group("Unseen").isHidden());
    EXPECT_FALSE(form.group("Unseen").isEnabled());
    EXPECT_EQ(form.control<QWidget>(1).parentWidget(), &form.group("Unseen"));
    EXPECT_EQ(form.control<QWidget>(2).parentWidget(), &form.group("Seen"));
    EXPECT_EQ(form.control<QWidget>(3).parentWidget(), &form.group("Unseen"));
    EXPECT_EQ(form.control<QWidget>(3).geometry(), QRect(10, 40, 50, 20));
}

TEST_F(FormTest, TakesInWhatThePageHasMadeItself) {
    const ControlRows rows{
        {.kind = ControlKind::group, .caption = "Card", .bounds = {10, 20, 200, 100}},
        {.kind = ControlKind::own, .identifier = 9, .name = "Log", .bounds = {20, 40, 50, 30}}};
    QWidget* own = nullptr;
    form.build(rows, [&](const ControlRow& row, QWidget& parent) {
        EXPECT_EQ(&row, &rows[1]);
        return own = new QWidget(&parent);
    });
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->parentWidget(), &form.group("Card"));
    EXPECT_EQ(own->geometry(), QRect(10, 20, 50, 30));
    EXPECT_EQ(own->accessibleName(), QStringLiteral("Log"));
    EXPECT_EQ(&form.control<QWidget>(9), own);
}

}  // namespace
}  // namespace tessavo::test
