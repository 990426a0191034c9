#include "controls/application_style.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListView>
#include <QMenuBar>
#include <QSpinBox>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/number_edit.h"

namespace tessavo {
namespace {

class ApplicationStyleTest : public testing::Test {
 protected:
    bool underlines() {
        return style_.styleHint(QStyle::SH_UnderlineShortcut, nullptr, nullptr, nullptr) != 0;
    }
    void send(QEvent::Type type, int key) {
        QKeyEvent event(type, key, Qt::NoModifier);
        EXPECT_FALSE(style_.eventFilter(qApp, &event)) << "the key is not taken away";
    }
    bool dresses(QWidget& widget) {
        style_.polish(&widget);
        return !widget.styleSheet().isEmpty();
    }

    ApplicationStyle style_;
};

TEST_F(ApplicationStyleTest, UnderlinesLettersWhileAltIsHeld) {
    EXPECT_FALSE(underlines());
    send(QEvent::KeyPress, Qt::Key_Control);
    EXPECT_FALSE(underlines());
    send(QEvent::KeyPress, Qt::Key_Alt);
    EXPECT_TRUE(underlines());
    send(QEvent::KeyRelease, Qt::Key_Control);
    EXPECT_TRUE(underlines());
    send(QEvent::KeyRelease, Qt::Key_Alt);
    EXPECT_FALSE(underlines());
}

TEST_F(ApplicationStyleTest, ForgetsAltWhenAnotherProgramComesInFront) {
    send(QEvent::KeyPress, Qt::Key_Alt);
    QEvent change(QEvent::ApplicationStateChange);
    style_.eventFilter(qApp, &change);
    EXPECT_FALSE(underlines());
}

TEST_F(ApplicationStyleTest, MenusAreDrawnAgainWhenTheirLettersChange) {
    QMenuBar bar;
    bar.addMenu(QStringLiteral("&File"));
    bar.setStyle(&style_);
    bar.resize(100, 28);
    const QImage plain = bar.grab().toImage();
    send(QEvent::KeyPress, Qt::Key_Alt);
    EXPECT_NE(bar.grab().toImage(), plain);
    send(QEvent::KeyRelease, Qt::Key_Alt);
    EXPECT_EQ(bar.grab().toImage(), plain);
}

TEST_F(ApplicationStyleTest, DressesOnlyWhatTheSkinDoesNotPaint) {
    QMenuBar bar;
    QMenu menu;
    QListView list;
    QLineEdit edit;
    EXPECT_TRUE(dresses(bar));
    EXPECT_TRUE(dresses(menu));
    EXPECT_TRUE(dresses(list));
    EXPECT_TRUE(dresses(edit));
    QWidget page;
    NumberEdit number(1);
    QSpinBox spin;
    EXPECT_FALSE(dresses(page));
    EXPECT_FALSE(dresses(number));
    EXPECT_FALSE(dresses(*spin.findChild<QLineEdit*>()));
}

TEST_F(ApplicationStyleTest, DressesOnceAndKeepsTheWidgetsOwnRules) {
    QListView list;
    const QString own = QStringLiteral("QListView { padding: 7px; }");
    list.setStyleSheet(own);
    style_.polish(&list);
    const QString dressed = list.styleSheet();
    EXPECT_TRUE(dressed.endsWith(own));
    EXPECT_GT(dressed.size(), own.size());
    style_.polish(&list);
    EXPECT_EQ(list.styleSheet(), dressed);
}

}  // namespace
}  // namespace tessavo
