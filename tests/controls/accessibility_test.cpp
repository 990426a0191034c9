#include <QAccessible>
#include <QApplication>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "controls/bitmap_slider.h"
#include "controls/clip_light.h"
#include "controls/number_edit.h"
#include "controls/read_only_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/skin_radio_button.h"
#include "controls/skin_tab_bar.h"
#include "controls/slider_host.h"
#include "controls/spin_edit.h"
#include "controls/state_lamp.h"
#include "controls/transfer_line.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QAccessibleInterface* interfaceOf(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget);
}

class SliderAccessibility : public testing::Test {
 protected:
    SliderAccessibility() : slider_(Qt::Vertical, 1112, &host_) {
        slider_.setRange(-180, 180);
        slider_.setPosition(-35);
        slider_.setValueScale(-0.1);
        slider_.setAccessibleName(QStringLiteral("Filter 1 gain"));
        slider_.setFormatter(
            [](int position) { return QStringLiteral("%1 dB").arg(-position / 10.0, 0, 'f', 1); });
    }

    QAccessibleValueInterface* value() { return interfaceOf(slider_)->valueInterface(); }

    SliderHost host_;
    CBitmapSlider slider_;
};

TEST_F(SliderAccessibility, HasRoleNameAndValueWithUnit) {
    QAccessibleInterface* interface = interfaceOf(slider_);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->role(), QAccessible::Slider);
    EXPECT_EQ(interface->text(QAccessible::Name), QStringLiteral("Filter 1 gain"));
    EXPECT_EQ(interface->text(QAccessible::Value), QStringLiteral("3.5 dB"));
    EXPECT_TRUE(interface->state().focusable);
    slider_.setEnabled(false);
    EXPECT_TRUE(interface->state().disabled);
}

TEST_F(SliderAccessibility, ValuesAreThoseShownNotTheNegatedPositions) {
    ASSERT_NE(value(), nullptr);
    EXPECT_NEAR(value()->currentValue().toDouble(), 3.5, 1e-9);
    EXPECT_NEAR(value()->minimumValue().toDouble(), -18, 1e-9);
    EXPECT_NEAR(value()->maximumValue().toDouble(), 18, 1e-9);
    EXPECT_NEAR(value()->minimumStepSize().toDouble(), 0.1, 1e-9);
}

TEST_F(SliderAccessibility, WithoutAFormatterTheNumberIsTheText) {
    slider_.setFormatter({});
    slider_.setValueScale(1);
    EXPECT_EQ(interfaceOf(slider_)->text(QAccessible::Value), QStringLiteral("-35"));
}

TEST_F(SliderAccessibility, SettingAValueIsAKeyStepOfAPerson) {
    value()->setCurrentValue(6.0);
    EXPECT_EQ(slider_.position(), -60);
    EXPECT_THAT(host_.take(), ElementsAre(Received{10449, 1112, -60}, Received{10450, 1112, -60}));
}

TEST_F(SliderAccessibility, SettingTheSameValuePostsNothing) {
    value()->setCurrentValue(3.5);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(SliderAccessibility, ValuesOutsideTheRangeBecomeItsEnds) {
    value()->setCurrentValue(1e12);
    EXPECT_EQ(slider_.position(), -180);
    value()->setCurrentValue(-1e12);
    EXPECT_EQ(slider_.position(), 180);
}

TEST_F(SliderAccessibility, NonsenseIsLeftAlone) {
    value()->setCurrentValue(std::nan(""));
    value()->setCurrentValue(std::numeric_limits<double>::infinity());
    value()->setCurrentValue(QStringLiteral("loud"));
    value()->setCurrentValue(QVariant());
    slider_.setValueScale(0);
    value()->setCurrentValue(1);
    EXPECT_EQ(slider_.position(), -35);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(SliderAccessibility, ADisabledSliderCannotBeSet) {
    slider_.setEnabled(false);
    value()->setCurrentValue(6.0);
    interfaceOf(slider_)->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(slider_.position(), -35);
    EXPECT_THAT(host_.take(), IsEmpty());
    EXPECT_FALSE(interfaceOf(slider_)->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::increaseAction()));
}

TEST_F(SliderAccessibility, IncreaseAndDecreaseFollowTheValue) {
    QAccessibleActionInterface* actions = interfaceOf(slider_)->actionInterface();
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::increaseAction()));
    actions->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(slider_.position(), -36);
    actions->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(slider_.position(), -35);
    EXPECT_THAT(host_.take(), ElementsAre(Received{10449, 1112, -36}, Received{10450, 1112, -36},
                                          Received{10449, 1112, -35}, Received{10450, 1112, -35}));
}

TEST_F(SliderAccessibility, SettingAValueEndsADragFirst) {
    slider_.resize(28, 182);
    host_.showActive();
    QTest::mousePress(&slider_, Qt::LeftButton, {}, QPoint(14, 40));
    const int dragged = slider_.position();
    value()->setCurrentValue(0);
    EXPECT_THAT(host_.take(), ElementsAre(Received{10449, 1112, dragged}, Received{10450, 1112, dragged},
                                          Received{10449, 1112, 0}, Received{10450, 1112, 0}));
}

TEST(Accessibility, EveryControlHasItsRole) {
    QWidget page;
    CxSkinButton push(QStringLiteral("Reset"), 1, &page);
    CxSkinButton toggle(QStringLiteral("EQ Mode Off"), 2, &page);
    toggle.setToggle(true);
    SkinCheckBox check(QStringLiteral("Enabled"), 3, &page);
    SkinRadioButton radio(QStringLiteral("Channel 1"), 4, &page);
    SkinComboBox combo(5, &page);
    SkinGroupBox group(QStringLiteral("Filter 1"), 6, &page);
    NumberEdit edit(7, &page);
    SpinEdit spin(8, &page);
    SkinTabBar tabs(9, &page);
    tabs.addFixedTab(QStringLiteral("Equalizing Input"), 138);
    ClipLight light(ClipLight::Picture::clipping, 22, 10, &page);
    TransferLine line(11, &page);
    StateLamp lamp(12, 12, &page);

    EXPECT_EQ(interfaceOf(push)->role(), QAccessible::Button);
    EXPECT_EQ(interfaceOf(push)->text(QAccessible::Name), QStringLiteral("Reset"));
    EXPECT_TRUE(interfaceOf(toggle)->state().checkable);
    EXPECT_FALSE(interfaceOf(toggle)->state().checked);
    toggle.setOn(true);
    EXPECT_TRUE(interfaceOf(toggle)->state().checked);
    EXPECT_EQ(interfaceOf(check)->role(), QAccessible::CheckBox);
    EXPECT_EQ(interfaceOf(radio)->role(), QAccessible::RadioButton);
    EXPECT_EQ(interfaceOf(combo)->role(), QAccessible::ComboBox);
    EXPECT_EQ(interfaceOf(group)->role(), QAccessible::Grouping);
    EXPECT_EQ(interfaceOf(group)->text(QAccessible::Name), QStringLiteral("Filter 1"));
    EXPECT_EQ(interfaceOf(edit)->role(), QAccessible::EditableText);
    EXPECT_EQ(interfaceOf(spin)->role(), QAccessible::SpinBox);
    EXPECT_EQ(interfaceOf(tabs)->role(), QAccessible::PageTabList);
    EXPECT_EQ(interfaceOf(light)->role(), QAccessible::Indicator);
    EXPECT_EQ(interfaceOf(light)->text(QAccessible::Name), QStringLiteral("clipping"));
    EXPECT_EQ(interfaceOf(line)->role(), QAccessible::ProgressBar);
    EXPECT_EQ(interfaceOf(lamp)->role(), QAccessible::Indicator);
}

TEST(Accessibility, AGroupTellsWhetherItIsInCircuit) {
    SkinGroupBox group(QStringLiteral("Filter 1"), 6);
    EXPECT_TRUE(interfaceOf(group)->text(QAccessible::Description).isEmpty());
    group.setInCircuit(true);
    EXPECT_EQ(interfaceOf(group)->text(QAccessible::Description), QStringLiteral("in circuit"));
    group.setInCircuit(false);
    EXPECT_EQ(interfaceOf(group)->text(QAccessible::Description), QStringLiteral("bypassed"));
}

TEST(Accessibility, ATransferTellsItsShareAndItsWords) {
    TransferLine line(11);
    line.showProgress(37, 512, std::chrono::milliseconds(0));
    QAccessibleValueInterface* value = interfaceOf(line)->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->currentValue().toInt(), 37);
    EXPECT_EQ(value->maximumValue().toInt(), 512);
    value->setCurrentValue(5);
    EXPECT_EQ(line.blocksSent(), 37);
    EXPECT_EQ(interfaceOf(line)->text(QAccessible::Value), line.text());
}

}  // namespace
}  // namespace tessavo::test
