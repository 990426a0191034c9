#pragma once

#include <QAbstractButton>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

#include "plot/chart/chart_helpers.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {

inline void type(QLineEdit* edit, const QString& text) {
    ASSERT_NE(edit, nullptr);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

inline void click(QAbstractButton* clicked) {
    ASSERT_NE(clicked, nullptr);
    QTest::mouseClick(clicked, Qt::LeftButton);
}

/// A response chart and a host for its dialogs.
class SettingsDialogs : public testing::Test {
 protected:
    SettingsDialogs() { setUpResponseAxes(chart_); }

    void open(QDialog& dialog) {
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }

    /// A third axis beside the left and the bottom one.
    void showRightAxis() {
        CAxis right = chart_.axis(AxisSide::right);
        AxisLook look = right.look();
        look.majorTicks = 5;
        right.setLook(look);
        chart_.setAxis(right);
    }

    FakeHost host_;
    CXYChart chart_;
};

}  // namespace tessavo::test
