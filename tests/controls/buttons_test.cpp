#include <QAbstractItemView>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "controls/control_id.h"
#include "controls/pictures.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_radio_button.h"
#include "controls/skin_tab_bar.h"
#include "controls/theme.h"
#include "support/synthetic_events.h"

namespace tessavo::test {
namespace {

QImage imageOf(QWidget& widget) {
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

int countOf(const QImage& image, QRgb color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixel(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

TEST(SkinButton, AClickReachesWhoeverListens) {
    CxSkinButton button(QStringLiteral("Reset"), 5);
    button.resize(100, 28);
    QSignalSpy clicks(&button, &QPushButton::clicked);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(50, 14));
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(clicks.size(), 2);
    button.setEnabled(false);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(50, 14));
    EXPECT_EQ(clicks.size(), 2);
    EXPECT_EQ(controlId(button), 5);
    EXPECT_EQ(button.objectName(), QStringLiteral("id5"));
}

TEST(SkinButton, AToggleWaitsForItsPageToSwitchIt) {
    CxSkinButton button(QStringLiteral("EQ Mode Off"), 5);
    button.setToggle(true);
    button.resize(124, 28);
    QSignalSpy clicks(&button, &QPushButton::clicked);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(50, 14));
    EXPECT_EQ(clicks.size(), 1);
    EXPECT_FALSE(button.isOn());
    button.setOn(true);
    EXPECT_TRUE(button.isOn());
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(50, 14));
    EXPECT_TRUE(button.isOn());
}

TEST(SkinButton, EveryStateLooksDifferent) {
    CxSkinButton button(QStringLiteral("Reset"), 5);
    button.resize(100, 28);
    std::vector<QImage> looks{imageOf(button)};
    const auto look = [&] {
        const QImage now = imageOf(button);
        EXPECT_THAT(looks, testing::Not(testing::Contains(now)));
        looks.push_back(now);
    };
    sendHover(button);
    look();
    button.setDown(true);
    look();
    button.setDown(false);
    sendFocus(button);
    look();
    button.setToggle(true);
    look();
    button.setOn(true);
    look();
    button.setEnabled(false);
    look();
    button.setToggle(false);
    look();
    button.setAccented(true);
    button.setEnabled(true);
    look();
}

TEST(SkinButton, OnlyTheKeyboardBringsTheRing) {
    CxSkinButton button(QStringLiteral("Reset"), 5);
    button.resize(100, 28);
    const auto ringed = [&button] { return countOf(imageOf(button), theme::focus) > 100; };
    for (const auto reason : {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
        sendFocus(button, reason);
        EXPECT_TRUE(ringed()) << reason;
    }
    for (const auto reason : {Qt::MouseFocusReason, Qt::OtherFocusReason, Qt::MenuBarFocusReason}) {
        sendFocus(button, reason);
        EXPECT_FALSE(ringed()) << reason;
    }
}

TEST(SkinButton, TheRingComesBackWithItsWindow) {
    CxSkinButton button(QStringLiteral("Reset"), 5);
    button.resize(100, 28);
    const auto leave = [&button](Qt::FocusReason reason) {
        QFocusEvent event(QEvent::FocusOut, reason);
        QApplication::sendEvent(&button, &event);
    };
    sendFocus(button, Qt::TabFocusReason);
    leave(Qt::ActiveWindowFocusReason);
    EXPECT_EQ(countOf(imageOf(button), theme::focus), 0);
    sendFocus(button, Qt::ActiveWindowFocusReason);
    EXPECT_GT(countOf(imageOf(button), theme::focus), 100);
    leave(Qt::TabFocusReason);
    sendFocus(button, Qt::ActiveWindowFocusReason);
    EXPECT_EQ(countOf(imageOf(button), theme::focus), 0);
}

TEST(SkinMarks, TheWholeRowIsTheTarget) {
    SkinCheckBox check(QStringLiteral("Enabled"), 7);
    check.resize(86, 22);
    for (const QPoint point : {QPoint(1, 1), QPoint(11, 11), QPoint(84, 20)}) {
        const bool before = check.isChecked();
        QTest::mouseClick(&check, Qt::LeftButton, {}, point);
        EXPECT_NE(check.isChecked(), before);
    }
    SkinRadioButton radio(QStringLiteral("Channel 1"), 8);
    radio.resize(119, 25);
    QTest::mouseClick(&radio, Qt::LeftButton, {}, QPoint(117, 23));
    EXPECT_TRUE(radio.isChecked());
}

TEST(SkinMarks, EveryStateLooksDifferent) {
    for (const bool isRadio : {false, true}) {
        std::unique_ptr<QAbstractButton> mark;
        if (isRadio) {
            mark = std::make_unique<SkinRadioButton>(QString(), 7);
        } else {
            mark = std::make_unique<SkinCheckBox>(QString(), 7);
        }
        mark->setAutoExclusive(false);
        mark->resize(22, 22);
        std::vector<QImage> looks;
        for (const bool on : {false, true}) {
            mark->setChecked(on);
            for (int state = 0; state < 4; ++state) {
                QEvent leave(QEvent::Leave);
                QApplication::sendEvent(mark.get(), &leave);
                sendFocus(*mark, state == 2 ? Qt::TabFocusReason : Qt::MouseFocusReason);
                if (state == 1) {
                    sendHover(*mark);
                }
                mark->setEnabled(state != 3);
                const QImage now = imageOf(*mark);
                EXPECT_THAT(looks, testing::Not(testing::Contains(now))) << on << state;
                looks.push_back(now);
                mark->setEnabled(true);
            }
        }
    }
}

TEST(SkinCombo, IsCompactWhenNarrow) {
    SkinComboBox combo(3);
    combo.resize(82, 24);
    EXPECT_FALSE(combo.isCompact());
    EXPECT_EQ(combo.font().pixelSize(), 12);
    combo.resize(81, 24);
    EXPECT_TRUE(combo.isCompact());
    combo.grab();
    EXPECT_EQ(combo.font().pixelSize(), 11);
    EXPECT_EQ(combo.view()->font().pixelSize(), 12);
}

TEST(SkinCombo, ShowsADotInTheColourOfTheGroup) {
    SkinComboBox combo(3);
    combo.resize(52, 24);
    combo.addItems({QStringLiteral("A"), QStringLiteral("B")});
    EXPECT_EQ(countOf(imageOf(combo), theme::groups[1]), 0);
    combo.setItemDot(0, QColor::fromRgb(theme::groups[0]));
    combo.setItemDot(1, QColor::fromRgb(theme::groups[1]));
    combo.setCurrentIndex(1);
    EXPECT_GT(countOf(imageOf(combo), theme::groups[1]), 20);
    EXPECT_EQ(countOf(imageOf(combo), theme::groups[0]), 0);
    combo.setItemDot(1, QColor());
    EXPECT_EQ(countOf(imageOf(combo), theme::groups[1]), 0);
}

TEST(SkinCombo, TheWheelNeedsTheFocus) {
    QWidget page;
    SkinComboBox combo(3, &page);
    combo.addItems({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
    combo.resize(120, 24);
    page.show();
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    const auto wheel = [&combo] {
        QWheelEvent event(QPointF(5, 5), combo.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&combo, &event);
    };
    combo.clearFocus();
    wheel();
    EXPECT_EQ(combo.currentIndex(), 0);
    combo.setFocus();
    wheel();
    EXPECT_EQ(combo.currentIndex(), 1);
}

TEST(SkinCombo, TheListOpensAndAChoiceIsHeard) {
    QWidget page;
    page.resize(200, 60);
    SkinComboBox combo(3, &page);
    combo.addItems({QStringLiteral("Low Shelf"), QStringLiteral("Peak"), QStringLiteral("High Shelf")});
    combo.setGeometry(10, 10, 120, 24);
    page.show();
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    QSignalSpy chosen(&combo, &QComboBox::activated);
    combo.showPopup();
    ASSERT_TRUE(QTest::qWaitFor([&combo] { return combo.view()->isVisible(); }, 2000));
    EXPECT_FALSE(combo.view()->grab().isNull());
    EXPECT_GE(combo.view()->sizeHintForRow(0), 25);
    QTest::keyClick(combo.view(), Qt::Key_Down);
    QTest::keyClick(combo.view(), Qt::Key_Return);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(combo.currentText(), QStringLiteral("Peak"));
}

class SkinTabs : public testing::Test {
 protected:
    SkinTabs() : bar_(40) {
        const int widths[]{138, 124, 144, 112, 122, 126};
        for (const int width : widths) {
            bar_.addFixedTab(QStringLiteral("Tab %1").arg(width), width);
        }
        bar_.resize(776, 34);
    }

    SkinTabBar bar_;
};

TEST_F(SkinTabs, StandWhereTheyShallAndDoNotMove) {
    const int lefts[]{0, 140, 266, 412, 526, 650};
    const int widths[]{138, 124, 144, 112, 122, 126};
    for (const int chosen : {0, 3, 5}) {
        bar_.setCurrentIndex(chosen);
        for (int index = 0; index < 6; ++index) {
            EXPECT_EQ(bar_.tabBody(index), QRect(lefts[index], 0, widths[index], 34)) << index;
        }
    }
}

TEST_F(SkinTabs, AClickOrAnArrowChooses) {
    QSignalSpy changes(&bar_, &QTabBar::currentChanged);
    QTest::mouseClick(&bar_, Qt::LeftButton, {}, QPoint(300, 17));
    EXPECT_EQ(bar_.currentIndex(), 2);
    QTest::keyClick(&bar_, Qt::Key_Right);
    EXPECT_EQ(bar_.currentIndex(), 3);
    QTest::keyClick(&bar_, Qt::Key_Left);
    EXPECT_EQ(bar_.currentIndex(), 2);
    EXPECT_EQ(changes.size(), 3);
}

TEST_F(SkinTabs, TheChosenOneWearsABarAndHoverIsSeen) {
    bar_.setCurrentIndex(2);
    const QImage plain = imageOf(bar_);
    EXPECT_EQ(pixelAt(plain, 300, 0), theme::level);
    EXPECT_NE(pixelAt(plain, 50, 0), theme::level);
    QHoverEvent hover(QEvent::HoverMove, QPointF(150, 10), QPointF(150, 10), QPointF());
    QApplication::sendEvent(&bar_, &hover);
    EXPECT_NE(imageOf(bar_), plain);
    QHoverEvent gone(QEvent::HoverLeave, QPointF(-1, -1), QPointF(-1, -1), QPointF(150, 10));
    QApplication::sendEvent(&bar_, &gone);
    EXPECT_EQ(imageOf(bar_), plain);
}

TEST_F(SkinTabs, TheRingLiesInsideTheChosenTab) {
    bar_.setCurrentIndex(2);
    EXPECT_EQ(countOf(imageOf(bar_), theme::focus), 0);
    sendFocus(bar_);
    const QImage image = imageOf(bar_);
    EXPECT_GT(countOf(image, theme::focus), 200);
    EXPECT_EQ(countOf(partOf(image, {0, 0, 266, 34}), theme::focus), 0);
    EXPECT_EQ(countOf(partOf(image, {410, 0, 366, 34}), theme::focus), 0);
}

}  // namespace
}  // namespace tessavo::test
