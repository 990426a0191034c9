#include "controls/spin_edit.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "controls/control_id.h"
#include "controls/theme.h"
#include "support/synthetic_events.h"

namespace tessavo::test {
namespace {

class SpinEditTest : public testing::Test {
 protected:
    SpinEditTest() : spin_(12), values_(&spin_, &QSpinBox::valueChanged) {
        spin_.setRange(0, 4);
        spin_.resize(84, 26);
    }

    SpinEdit spin_;
    QSignalSpy values_;
};

TEST_F(SpinEditTest, TheColumnStepsUpAndDownWithinTheRange) {
    for (int i = 0; i < 6; ++i) {
        QTest::mouseClick(&spin_, Qt::LeftButton, {}, spin_.buttonRect(true).center());
    }
    EXPECT_EQ(spin_.value(), 4);
    EXPECT_EQ(values_.size(), 4);
    QTest::mouseClick(&spin_, Qt::LeftButton, {}, spin_.buttonRect(false).center());
    EXPECT_EQ(spin_.value(), 3);
    QTest::mouseClick(&spin_, Qt::LeftButton, {}, QPoint(20, 13));
    EXPECT_EQ(spin_.value(), 3);
}

TEST_F(SpinEditTest, TheColumnIsTwentyPixelsAndCoversTheHeight) {
    EXPECT_EQ(spin_.buttonRect(true).united(spin_.buttonRect(false)), QRect(64, 0, 20, 26));
    EXPECT_FALSE(spin_.buttonRect(true).intersects(spin_.buttonRect(false)));
}

TEST_F(SpinEditTest, AHeldColumnRepeatsUntilLetGo) {
    spin_.setRepeat(1, 1);
    QTest::mousePress(&spin_, Qt::LeftButton, {}, spin_.buttonRect(true).center());
    EXPECT_TRUE(QTest::qWaitFor([this] { return spin_.value() >= 3; }, 2000));
    QTest::mouseRelease(&spin_, Qt::LeftButton, {}, spin_.buttonRect(true).center());
    spin_.setValue(0);
    ASSERT_TRUE(letLoopRun());
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(SpinEditTest, DisablingAHeldColumnStopsIt) {
    spin_.setRepeat(1, 1);
    QTest::mousePress(&spin_, Qt::LeftButton, {}, spin_.buttonRect(true).center());
    spin_.setEnabled(false);
    spin_.setValue(0);
    ASSERT_TRUE(letLoopRun());
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(SpinEditTest, KeysAndTypingStayInTheRange) {
    QTest::keyClick(&spin_, Qt::Key_Up);
    EXPECT_EQ(spin_.value(), 1);
    QTest::keyClick(&spin_, Qt::Key_Down);
    QTest::keyClick(&spin_, Qt::Key_Down);
    EXPECT_EQ(spin_.value(), 0);
    spin_.selectAll();
    QTest::keyClicks(&spin_, QStringLiteral("9x3"));
    QTest::keyClick(&spin_, Qt::Key_Return);
    EXPECT_EQ(spin_.value(), 4);
    EXPECT_EQ(spin_.text(), QStringLiteral("4"));
}

TEST_F(SpinEditTest, RefusesNothingAndSaysWhatATextCountsAs) {
    spin_.setValue(2);
    for (const auto& [text, value, warning] : {std::tuple{"9", 4, "Out of range: counts as 4"},
                                               {"-1", 0, "Out of range: counts as 0"},
                                               {"99999999999999999999", 4, "Out of range: counts as 4"},
                                               {"3", 3, ""},
                                               {" 3 ", 3, ""},
                                               {"3.9", 3, ""},
                                               {"3x", 3, "Not wholly a number: counts as 3"},
                                               {"x1", 3, "Not a number: 3 stays"},
                                               {"-", 3, "Not a number: 3 stays"}}) {
        spin_.selectAll();
        QTest::keyClicks(&spin_, QLatin1String(text));
        EXPECT_EQ(spin_.findChild<QLineEdit*>()->text(), QLatin1String(text));
        EXPECT_EQ(spin_.value(), value) << text;
        EXPECT_EQ(spin_.warning(), QLatin1String(warning)) << text;
        EXPECT_EQ(spin_.toolTip(), spin_.warning());
        EXPECT_EQ(spin_.accessibleDescription(), spin_.warning());
    }
    for (const auto code : {Qt::Key_Return, Qt::Key_Up, Qt::Key_Down}) {
        QTest::keyClicks(&spin_, QStringLiteral("x"));
        EXPECT_NE(spin_.warning(), QString());
        QTest::keyClick(&spin_, code);
        EXPECT_EQ(spin_.text(), QString::number(spin_.value()));
        EXPECT_EQ(spin_.warning(), QString());
    }
    QTest::keyClicks(&spin_, QStringLiteral("x"));
    spin_.showValue(4);
    EXPECT_EQ(spin_.warning(), QString());
}

TEST_F(SpinEditTest, ShowsItsValueOnceItIsLeftAndTellsOfANumberTypedAgain) {
    QWidget page;
    QLineEdit other(&page);
    spin_.setParent(&page);
    other.move(100, 0);
    page.show();
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    spin_.setValue(2);
    const QSignalSpy retyped(&spin_, &SpinEdit::retyped);
    const auto pass = [&](const char* text) {
        spin_.setFocus(Qt::TabFocusReason);
        spin_.selectAll();
        QTest::keyClicks(&spin_, QLatin1String(text));
        other.setFocus();
    };
    pass("");
    EXPECT_EQ(retyped.size(), 0) << "only passed through";
    pass("2");
    ASSERT_EQ(retyped.size(), 1);
    EXPECT_EQ(retyped[0][0].toInt(), 2);
    pass("3");
    EXPECT_EQ(retyped.size(), 1) << "told as a change";
    pass("word");
    EXPECT_EQ(retyped.size(), 1);
    EXPECT_EQ(spin_.text(), QStringLiteral("3"));
    pass("9");
    EXPECT_EQ(spin_.text(), QStringLiteral("4"));
    EXPECT_EQ(retyped.size(), 1);
    spin_.setParent(nullptr);
}

TEST_F(SpinEditTest, WearsItsMarkBesideTheColumn) {
    spin_.resize(84, 26);
    const auto corner = [this] {
        const QImage picture = spin_.grab().toImage();
        const double scale = picture.devicePixelRatio();
        return picture.pixel(static_cast<int>(62.5 * scale), static_cast<int>(2.5 * scale));
    };
    const QRgb bare = corner();
    spin_.setMark(QStringLiteral("Plays 77"));
    EXPECT_EQ(corner(), theme::lightBlue);
    EXPECT_EQ(spin_.toolTip(), QStringLiteral("Plays 77"));
    spin_.setMark({});
    EXPECT_EQ(corner(), bare);
}

TEST_F(SpinEditTest, TheTextStandsBesideTheColumn) {
    spin_.show();
    const QRect field = spin_.findChild<QLineEdit*>()->geometry();
    EXPECT_FALSE(field.intersects(spin_.buttonRect(true)));
    EXPECT_GE(field.width(), 60);
}

}  // namespace
}  // namespace tessavo::test
