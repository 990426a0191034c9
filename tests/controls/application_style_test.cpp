#include "controls/application_style.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QListView>
#include <QMenuBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QSpinBox>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_combo_box.h"
#include "controls/theme.h"

namespace tessavo::test {
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

/// Buttons and check boxes of the toolkit's dialogs, beside those of the skin.
TEST_F(ApplicationStyleTest, ButtonsAndCheckBoxesOfToolkitDialogsAreTheSkins) {
    QPushButton button;
    button.setStyle(&style_);
    button.resize(90, 28);
    CxSkinButton skinned(QString(), 1);
    skinned.resize(90, 28);
    EXPECT_EQ(button.grab().toImage(), skinned.grab().toImage());
    button.setEnabled(false);
    skinned.setEnabled(false);
    EXPECT_EQ(button.grab().toImage(), skinned.grab().toImage());

    QCheckBox box;
    box.setStyle(&style_);
    box.resize(40, 24);
    const QImage off = box.grab().toImage();
    box.setChecked(true);
    const QImage on = box.grab().toImage();
    const auto has = [](const QImage& picture, QRgb color) {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) == color) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(has(off, theme::mark)) << "an outline that can be seen";
    EXPECT_TRUE(has(on, theme::selected));
}

TEST_F(ApplicationStyleTest, ComboBoxesOfToolkitDialogsAreTheSkins) {
    QComboBox combo;
    combo.setStyle(&style_);
    combo.resize(120, 24);
    SkinComboBox skinned(1);
    skinned.resize(120, 24);
    EXPECT_EQ(combo.grab().toImage(), skinned.grab().toImage());
    combo.setEnabled(false);
    skinned.setEnabled(false);
    EXPECT_EQ(combo.grab().toImage(), skinned.grab().toImage());
}

/// As styles are on desktops whose buttons have pictures.
class StyleWithPictures : public QProxyStyle {
 public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

TEST_F(ApplicationStyleTest, ButtonsOfToolkitDialogsHaveNoPictures) {
    style_.setBaseStyle(new StyleWithPictures);
    QDialogButtonBox box;
    box.setStyle(&style_);
    box.setStandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    ASSERT_EQ(box.buttons().size(), 2);
    for (const QAbstractButton* const button : box.buttons()) {
        EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
    }
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
}  // namespace tessavo::test
