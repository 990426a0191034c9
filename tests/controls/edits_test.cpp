#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

#include "controls/control_id.h"
#include "controls/number_edit.h"
#include "controls/read_only_edit.h"
#include "controls/spin_edit.h"
#include "controls/text_edit_box.h"
#include "support/synthetic_events.h"

namespace tessavo::test {
namespace {

class NumberEditTest : public testing::Test {
 protected:
    NumberEditTest()
        : edit_(new NumberEdit(1081, &page_)),
          other_(new NumberEdit(1, &page_)),
          entered_(edit_, &NumberEdit::entered),
          left_(edit_, &NumberEdit::left),
          steps_(edit_, &NumberEdit::stepRequested) {
        edit_->setGeometry(10, 10, 58, 24);
        other_->setGeometry(100, 10, 58, 24);
        edit_->setValueText(QStringLiteral("2.5"));
        page_.resize(200, 60);
        page_.show();
        page_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&page_));
        edit_->setFocus();
    }

    void type(const QString& text) {
        edit_->selectAll();
        QTest::keyClicks(edit_, text);
    }

    QWidget page_;
    NumberEdit* edit_;
    NumberEdit* other_;
    QSignalSpy entered_;
    QSignalSpy left_;
    QSignalSpy steps_;
};

TEST_F(NumberEditTest, CarriesItsNumberAndStandsAtTheRight) {
    EXPECT_EQ(controlId(*edit_), 1081);
    EXPECT_TRUE((edit_->alignment() & Qt::AlignRight) != 0);
}

TEST(Edits, LeaveWhatIsDroppedToTheWindow) {
    EXPECT_FALSE(NumberEdit(1).acceptDrops());
    EXPECT_FALSE(CReadOnlyEdit(1).acceptDrops());
    EXPECT_FALSE(TextEditBox(1).acceptDrops());
    const SpinEdit spin(1);
    EXPECT_FALSE(spin.acceptDrops());
    EXPECT_FALSE(spin.findChild<QLineEdit*>()->acceptDrops());
}

TEST_F(NumberEditTest, EnterAppliesAndKeepsTheFocus) {
    type(QStringLiteral("7"));
    EXPECT_TRUE(edit_->isEdited());
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(entered_.size(), 1);
    EXPECT_TRUE(edit_->hasFocus());
    EXPECT_FALSE(edit_->isEdited());
    QTest::keyClick(edit_, Qt::Key_Enter);
    EXPECT_EQ(entered_.size(), 2);
    EXPECT_EQ(left_.size(), 0);
}

TEST_F(NumberEditTest, EscapeBringsBackTheLastAppliedText) {
    type(QStringLiteral("99"));
    QTest::keyClick(edit_, Qt::Key_Escape);
    EXPECT_EQ(edit_->text(), QStringLiteral("2.5"));
    type(QStringLiteral("7"));
    QTest::keyClick(edit_, Qt::Key_Return);
    type(QStringLiteral("88"));
    QTest::keyClick(edit_, Qt::Key_Escape);
    EXPECT_EQ(edit_->text(), QStringLiteral("7"));
    EXPECT_EQ(entered_.size(), 1);
    EXPECT_TRUE(edit_->hasFocus());
}

TEST_F(NumberEditTest, EscapeWithNothingToTakeBackIsLeftToTheDialog) {
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(edit_, &escape);
    EXPECT_FALSE(escape.isAccepted());
}

TEST_F(NumberEditTest, TheAnswerOfTheReceiverIsTheNewText) {
    QObject::connect(edit_, &NumberEdit::entered, edit_,
                     [this] { edit_->setValueText(QStringLiteral("18.0")); });
    type(QStringLiteral("99"));
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(edit_->text(), QStringLiteral("18.0"));
    type(QStringLiteral("1"));
    QTest::keyClick(edit_, Qt::Key_Escape);
    EXPECT_EQ(edit_->text(), QStringLiteral("18.0"));
}

TEST_F(NumberEditTest, ADoubleClickTakesTheWholeNumber) {
    for (const char* number : {"-12.5", "20000", "0.1", "-Inf."}) {
        edit_->setValueText(QLatin1String(number));
        for (const int x : {30, 44, 54}) {
            QTest::mouseClick(edit_, Qt::LeftButton, {}, QPoint(x, 12));
            QTest::mouseDClick(edit_, Qt::LeftButton, {}, QPoint(x, 12));
            EXPECT_EQ(edit_->selectedText(), QLatin1String(number)) << x;
        }
    }
    QTest::keyClicks(edit_, QStringLiteral("7"));
    EXPECT_EQ(edit_->text(), QStringLiteral("7"));
}

TEST_F(NumberEditTest, AClickThatBringsTheWindowToTheFrontTakesTheWholeNumberToo) {
    QWidget front;
    front.resize(50, 50);
    front.move(300, 300);
    front.show();
    front.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&front));
    ASSERT_FALSE(other_->hasFocus());
    other_->setValueText(QStringLiteral("1500"));
    // The press comes first, then the window, and the focus with it.
    QTest::mousePress(other_, Qt::LeftButton, {}, {20, 12});
    page_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page_));
    ASSERT_TRUE(other_->hasFocus());
    QTest::mouseRelease(other_, Qt::LeftButton, {}, {20, 12});
    QTest::keyClicks(other_, QStringLiteral("3k2"));
    EXPECT_EQ(other_->text(), "3k2");
}

TEST_F(NumberEditTest, RetypingTheShownNumberIsAnEdit) {
    EXPECT_FALSE(edit_->isEdited());
    type(QStringLiteral("2.5"));
    EXPECT_TRUE(edit_->isEdited());
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_FALSE(edit_->isEdited());
    QGuiApplication::clipboard()->setText(QStringLiteral("2.5"));
    edit_->selectAll();
    QTest::keyClick(edit_, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit_->text(), QStringLiteral("2.5"));
    EXPECT_TRUE(edit_->isEdited()) << "pasted";
    QTest::keyClick(edit_, Qt::Key_Escape);
    EXPECT_FALSE(edit_->isEdited());
    edit_->setText(QStringLiteral("3.5"));
    EXPECT_TRUE(edit_->isEdited()) << "set by a program";
    edit_->setValueText(QStringLiteral("4.5"));
    EXPECT_FALSE(edit_->isEdited()) << "shown by the page";
}

TEST_F(NumberEditTest, AMenuOfTheBoxEndsNoEditAndMovingTheCursorIsNone) {
    type(QStringLiteral("2.5"));
    for (const auto type : {QEvent::FocusOut, QEvent::FocusIn}) {
        QFocusEvent event(type, Qt::PopupFocusReason);
        QApplication::sendEvent(edit_, &event);
    }
    EXPECT_TRUE(edit_->isEdited());
    QTest::keyClick(edit_, Qt::Key_Escape);
    for (const auto code : {Qt::Key_Left, Qt::Key_Home, Qt::Key_End}) {
        QTest::keyClick(edit_, code);
    }
    QTest::keyClick(edit_, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit_, Qt::Key_C, Qt::ControlModifier);
    EXPECT_FALSE(edit_->isEdited());
}

TEST_F(NumberEditTest, ATextSetWithoutTheFocusIsNoEditWhenTheBoxIsPassed) {
    other_->setValueText(QStringLiteral("1.0"));
    other_->setText(QStringLiteral("9.9"));
    other_->setFocus();
    EXPECT_FALSE(other_->isEdited());
    edit_->setFocus();
    EXPECT_FALSE(other_->isEdited());
}

TEST_F(NumberEditTest, EveryTextCanBeTyped) {
    const QString text = QStringLiteral("-0123456789.0123456789 kHz, oder was?");
    type(text);
    EXPECT_EQ(edit_->text(), text);
}

TEST_F(NumberEditTest, EscapeTellsThatAnEditWasTakenBack) {
    const QSignalSpy cancelled(edit_, &NumberEdit::cancelled);
    QTest::keyClick(edit_, Qt::Key_Escape);
    EXPECT_EQ(cancelled.size(), 0);
    for (const char* text : {"7", "2.5"}) {
        type(QLatin1String(text));
        QTest::keyClick(edit_, Qt::Key_Escape);
    }
    EXPECT_EQ(cancelled.size(), 2);
    EXPECT_EQ(entered_.size() + left_.size(), 0);
}

TEST_F(NumberEditTest, AWarningIsRedToldAndEndsWithTheEdit) {
    edit_->setUnit(QStringLiteral("dB"));
    const auto edge = [this] { return edit_->grab().toImage().pixel(29, 0); };
    EXPECT_EQ(edge(), theme::focus);
    const auto warn = [this] {
        type(QStringLiteral("99"));
        edit_->setWarning(QStringLiteral("Out of range: counts as 18.0 dB"));
    };
    for (const auto code : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab}) {
        warn();
        EXPECT_EQ(edge(), theme::clip);
        EXPECT_EQ(edit_->toolTip(), QStringLiteral("Out of range: counts as 18.0 dB"));
        EXPECT_EQ(edit_->accessibleDescription(), QStringLiteral("dB. Out of range: counts as 18.0 dB"));
        QTest::keyClick(edit_, code);
        EXPECT_NE(edge(), theme::clip);
        EXPECT_EQ(edit_->toolTip(), QString());
        EXPECT_EQ(edit_->accessibleDescription(), QStringLiteral("dB"));
    }
}

TEST_F(NumberEditTest, AMarkIsACornerAtEveryScaleAndMovesNothing) {
    edit_->setUnit(QStringLiteral("dB"));
    other_->setFocus();
    const QRect bounds = edit_->geometry();
    for (const double scale : {1.0, 2.0}) {
        const auto picture = [this, scale] {
            QImage image(edit_->size() * scale, QImage::Format_RGB32);
            image.setDevicePixelRatio(scale);
            image.fill(theme::card);
            edit_->render(&image);
            return image;
        };
        edit_->setMark({});
        const QImage bare = picture();
        edit_->setMark(QStringLiteral("Plays 3.0 dB"));
        const QImage marked = picture();
        int changed = 0;
        for (int y = 0; y < bare.height(); ++y) {
            for (int x = 0; x < bare.width(); ++x) {
                if (bare.pixel(x, y) != marked.pixel(x, y)) {
                    ++changed;
                    EXPECT_GE(x, bare.width() - 9 * scale) << y;
                    EXPECT_LE(y, 9 * scale) << x;
                }
            }
        }
        EXPECT_GE(changed, 20 * scale * scale) << scale;
        EXPECT_EQ(marked.pixel(bare.width() - qRound(3 * scale), qRound(2 * scale)), theme::lightBlue);
    }
    EXPECT_EQ(edit_->geometry(), bounds);
    EXPECT_EQ(edit_->toolTip(), QStringLiteral("Plays 3.0 dB"));
    EXPECT_EQ(edit_->accessibleDescription(), QStringLiteral("dB. Plays 3.0 dB"));
    edit_->setWarning(QStringLiteral("Not a number: counts as 0.0 dB"));
    EXPECT_EQ(edit_->toolTip(), QStringLiteral("Not a number: counts as 0.0 dB\nPlays 3.0 dB"));
    type(QStringLiteral("7"));
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(edit_->mark(), QStringLiteral("Plays 3.0 dB")) << "whoever applies the text sets it anew";
}

TEST_F(NumberEditTest, LeavingTellsOnce) {
    type(QStringLiteral("7"));
    other_->setFocus();
    EXPECT_EQ(left_.size(), 1);
    EXPECT_EQ(entered_.size(), 0);
    edit_->setFocus();
    EXPECT_EQ(left_.size(), 1);
}

TEST_F(NumberEditTest, TabLeaves) {
    QTest::keyClick(edit_, Qt::Key_Tab);
    EXPECT_EQ(left_.size(), 1);
    EXPECT_TRUE(other_->hasFocus());
}

TEST_F(NumberEditTest, ADialogOpenedByTheReceiverDoesNotTellAgain) {
    int boxes = 0;
    const auto openBox = [this, &boxes] {
        ++boxes;
        QDialog box(&page_);
        QTimer::singleShot(0, &box, &QDialog::accept);
        box.exec();
    };
    QObject::connect(edit_, &NumberEdit::entered, edit_, openBox);
    QObject::connect(edit_, &NumberEdit::left, edit_, openBox);
    type(QStringLiteral("7"));
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(left_.size(), 0);
    page_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page_));
    ASSERT_TRUE(edit_->hasFocus());
    other_->setFocus();
    EXPECT_EQ(left_.size(), 1);
    EXPECT_EQ(boxes, 2);
}

TEST_F(NumberEditTest, ItsOwnMenuIsNotLeaving) {
    QFocusEvent out(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(edit_, &out);
    EXPECT_EQ(left_.size(), 0);
}

TEST_F(NumberEditTest, HidingAFocusedBoxTellsOnce) {
    edit_->hide();
    EXPECT_EQ(left_.size(), 1);
}

TEST_F(NumberEditTest, AProgramsTextTellsNothing) {
    edit_->setValueText(QStringLiteral("1.0"));
    edit_->setColor(theme::level);
    edit_->setBypassed(true);
    EXPECT_EQ(entered_.size() + left_.size() + steps_.size(), 0);
    EXPECT_FALSE(edit_->isEdited());
}

TEST_F(NumberEditTest, UpAndDownAskForASteps) {
    QTest::keyClick(edit_, Qt::Key_Up);
    QTest::keyClick(edit_, Qt::Key_Down);
    QTest::keyClick(edit_, Qt::Key_Up, Qt::ShiftModifier);
    QTest::keyClick(edit_, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(edit_, Qt::Key_Up, Qt::ControlModifier);
    ASSERT_EQ(steps_.size(), 4);
    EXPECT_EQ(steps_[0], QList<QVariant>({1, false}));
    EXPECT_EQ(steps_[1], QList<QVariant>({-1, false}));
    EXPECT_EQ(steps_[2], QList<QVariant>({1, true}));
    EXPECT_EQ(steps_[3], QList<QVariant>({-1, true}));
    EXPECT_EQ(edit_->text(), QStringLiteral("2.5"));
}

TEST_F(NumberEditTest, AReceiverMayDeleteTheBox) {
    auto* doomed = new NumberEdit(2, &page_);
    doomed->show();
    doomed->setFocus();
    QObject::connect(doomed, &NumberEdit::entered, &page_, [doomed] { delete doomed; });
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(doomed, &enter);
    EXPECT_EQ(page_.findChild<NumberEdit*>(QStringLiteral("id2")), nullptr);
}

TEST_F(NumberEditTest, TheStripeShowsColourBypassAndNothing) {
    other_->setFocus();
    const auto stripe = [this] { return edit_->grab().toImage().pixel(2, 12); };
    const QRgb bare = stripe();
    edit_->setColor(theme::frequency);
    EXPECT_EQ(stripe(), theme::frequency);
    edit_->setBypassed(true);
    EXPECT_EQ(stripe(), theme::off);
    edit_->setBypassed(false);
    edit_->setEnabled(false);
    EXPECT_EQ(stripe(), theme::off);
    edit_->setEnabled(true);
    edit_->setColor(0);
    EXPECT_EQ(stripe(), bare);
}

TEST_F(NumberEditTest, AnEditAlwaysShowsItsFocus) {
    for (const auto reason : {Qt::MouseFocusReason, Qt::TabFocusReason, Qt::OtherFocusReason}) {
        other_->setFocus();
        EXPECT_NE(edit_->grab().toImage().pixel(29, 0), theme::focus);
        edit_->setFocus(reason);
        EXPECT_EQ(edit_->grab().toImage().pixel(29, 0), theme::focus);
        EXPECT_EQ(edit_->grab().toImage().pixel(29, 1), theme::focus);
    }
}

TEST(ReadOnlyEdit, APersonCannotChangeIt) {
    CReadOnlyEdit edit(9);
    edit.resize(120, 26);
    edit.setText(QStringLiteral("0x00010002"));
    // Even when somebody lifts the toolkit's own flag.
    for (const bool flag : {true, false}) {
        edit.setReadOnly(flag);
        edit.selectAll();
        QTest::keyClicks(&edit, QStringLiteral("abc"));
        for (const int key : {Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Return, Qt::Key_Escape}) {
            QTest::keyClick(&edit, static_cast<Qt::Key>(key));
        }
        QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
        QTest::keyClick(&edit, Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(&edit, Qt::Key_X, Qt::ControlModifier);
        QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(edit.text(), QStringLiteral("0x00010002"));
    }
    EXPECT_EQ(controlId(edit), 9);
}

TEST(ReadOnlyEdit, ItsTextCanBeCopied) {
    CReadOnlyEdit edit(9);
    edit.setText(QStringLiteral("0x00010002"));
    QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("0x00010002"));
    QTest::keyClick(&edit, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("0x00010002"));
}

TEST(TextEditBox, TakesText) {
    TextEditBox edit(3);
    edit.resize(188, 28);
    QTest::keyClicks(&edit, QStringLiteral("Type 1"));
    EXPECT_EQ(edit.text(), QStringLiteral("Type 1"));
    const QImage plain = edit.grab().toImage();
    sendHover(edit);
    EXPECT_NE(edit.grab().toImage(), plain);
}

}  // namespace
}  // namespace tessavo::test
