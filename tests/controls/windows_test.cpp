#include <QApplication>
#include <QClipboard>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/clip_light.h"
#include "controls/color_control.h"
#include "controls/control_id.h"
#include "controls/dialog_sk.h"
#include "controls/mem_dc.h"
#include "controls/number_edit.h"
#include "controls/pictures.h"
#include "controls/skin_button.h"
#include "controls/skin_group_box.h"
#include "controls/skin_message_box.h"
#include "controls/theme.h"
#include "controls/transfer_line.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;
using Answer = SkinMessageBox::Answer;
using Buttons = SkinMessageBox::Buttons;
using Icon = SkinMessageBox::Icon;

// ---- message box

TEST(MessageBox, ShowsItsTextAsGiven) {
    const QString text = QStringLiteral("Incompatible .eqs file!\r\n");
    SkinMessageBox box(QStringLiteral("Tessavo Velmira"), text, Icon::stop, Buttons::ok);
    EXPECT_EQ(box.text(), text);
    EXPECT_EQ(box.windowTitle(), QStringLiteral("Tessavo Velmira"));
    EXPECT_EQ(box.accessibleDescription(), text);
    EXPECT_TRUE(box.isModal());
}

TEST(MessageBox, HasItsButtonsInOrderWithTheFirstAsDefault) {
    const std::pair<Buttons, QStringList> cases[]{
        {Buttons::ok, {QStringLiteral("OK")}},
        {Buttons::okCancel, {QStringLiteral("OK"), QStringLiteral("Cancel")}},
        {Buttons::yesNo, {QStringLiteral("Yes"), QStringLiteral("No")}},
        {Buttons::yesNoCancel, {QStringLiteral("Yes"), QStringLiteral("No"), QStringLiteral("Cancel")}}};
    for (const auto& [buttons, captions] : cases) {
        SkinMessageBox box(QStringLiteral("T"), QStringLiteral("x"), Icon::none, buttons);
        QStringList found;
        int right = 0;
        for (CxSkinButton* button : box.buttons()) {
            found << button->text();
            EXPECT_EQ(button->size(), QSize(84, 28));
            EXPECT_TRUE(box.rect().contains(button->geometry()));
            EXPECT_TRUE(right == 0 || button->x() - right == 8);
            right = button->x() + button->width();
        }
        EXPECT_EQ(found, captions);
        EXPECT_EQ(box.focusWidget(), box.buttons().front());
    }
}

TEST(MessageBox, EachButtonIsItsAnswer) {
    const Answer answers[]{Answer::yes, Answer::no, Answer::cancel};
    for (int i = 0; i < 3; ++i) {
        SkinMessageBox box(QStringLiteral("T"), QStringLiteral("x"), Icon::stop, Buttons::yesNoCancel);
        QTimer::singleShot(0, &box, [&box, i] { QTest::mouseClick(box.buttons()[i], Qt::LeftButton); });
        EXPECT_EQ(box.ask(), answers[i]);
    }
}

TEST(MessageBox, EnterPressesTheFocusedButton) {
    SkinMessageBox first(QStringLiteral("T"), QStringLiteral("x"), Icon::stop, Buttons::yesNoCancel);
    QTimer::singleShot(0, &first, [&first] { QTest::keyClick(&first, Qt::Key_Return); });
    EXPECT_EQ(first.ask(), Answer::yes);
    SkinMessageBox second(QStringLiteral("T"), QStringLiteral("x"), Icon::stop, Buttons::yesNoCancel);
    QTimer::singleShot(0, &second, [&second] {
        second.buttons()[1]->setFocus(Qt::TabFocusReason);
        QTest::keyClick(second.buttons()[1], Qt::Key_Return);
    });
    EXPECT_EQ(second.ask(), Answer::no);
}

TEST(MessageBox, EscapeAndTheCrossCancel) {
    for (const bool cross : {false, true}) {
        for (const Buttons buttons : {Buttons::ok, Buttons::okCancel, Buttons::yesNo, Buttons::yesNoCancel}) {
            SkinMessageBox box(QStringLiteral("T"), QStringLiteral("x"), Icon::stop, buttons);
            QTimer::singleShot(0, &box, [&box, cross] {
                if (cross) {
                    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.width() - 17, 17));
                } else {
                    QTest::keyClick(&box, Qt::Key_Escape);
                }
            });
            EXPECT_EQ(box.ask(), buttons == Buttons::ok ? Answer::ok : Answer::cancel);
        }
    }
}

TEST(MessageBox, GrowsWithItsText) {
    const QString line = QStringLiteral("The current channel settings will be lost!");
    SkinMessageBox small(QStringLiteral("T"), QStringLiteral("x"), Icon::stop, Buttons::ok);
    SkinMessageBox wide(QStringLiteral("T"), line, Icon::stop, Buttons::ok);
    SkinMessageBox tall(QStringLiteral("T"), QStringLiteral("a\nb\r\nc\nd\ne"), Icon::stop, Buttons::ok);
    SkinMessageBox endless(QStringLiteral("T"), line.repeated(30), Icon::stop, Buttons::ok);
    SkinMessageBox unbroken(QStringLiteral("T"), QString(3000, QLatin1Char('w')), Icon::stop, Buttons::ok);
    EXPECT_GE(wide.width(), 86 + wide.fontMetrics().horizontalAdvance(line));
    EXPECT_GT(tall.height(), small.height());
    EXPECT_LT(endless.width(), 760);
    EXPECT_LT(unbroken.width(), 760);
    EXPECT_GT(unbroken.height(), endless.height() / 2);
    EXPECT_EQ(endless.text(), line.repeated(30));
}

TEST(MessageBox, ItsTextCanBeCopied) {
    SkinMessageBox box(QStringLiteral("T"), QStringLiteral("a\r\nb"), Icon::stop, Buttons::ok);
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("a\r\nb"));
}

// ---- dialog on a background

class Backdrop : public CDialogSK {
 public:
    using CDialogSK::backgroundChanged;
    using CDialogSK::CDialogSK;

    mutable int drawn = 0;
    QColor color = Qt::red;

 protected:
    void paintBackground(QPainter& painter, QSize size) const override {
        ++drawn;
        painter.fillRect(QRect(QPoint(), size), color);
    }
};

TEST(DialogSk, DrawsItsBackgroundOnceForEachSize) {
    Backdrop dialog;
    dialog.resize(60, 40);
    EXPECT_EQ(dialog.grab().toImage().pixelColor(30, 20), QColor(Qt::red));
    dialog.grab();
    dialog.grab();
    EXPECT_EQ(dialog.drawn, 1);
    dialog.resize(80, 40);
    EXPECT_EQ(dialog.grab().toImage().pixelColor(79, 39), QColor(Qt::red));
    EXPECT_EQ(dialog.drawn, 2);
    dialog.color = Qt::blue;
    dialog.backgroundChanged();
    EXPECT_EQ(dialog.grab().toImage().pixelColor(5, 5), QColor(Qt::blue));
    EXPECT_EQ(dialog.drawn, 3);
}

TEST(DialogSk, APageInAWindowDoesNotCloseOnEscape) {
    QWidget window;
    CDialogSK page(&window);
    page.setWindowFlags(Qt::Widget);
    window.show();
    page.show();
    QTest::keyClick(&page, Qt::Key_Escape);
    QTest::keyClick(&page, Qt::Key_Return);
    EXPECT_TRUE(page.isVisible());
    CDialogSK dialog;
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

// ---- off-screen painter

TEST(MemDc, CopiesWhenItEnds) {
    QImage screen(40, 40, QImage::Format_RGB32);
    screen.fill(Qt::black);
    QPixmap store;
    QPainter target(&screen);
    {
        CMemDC memory(target, QRect(10, 10, 20, 20), store);
        memory->fillRect(QRect(10, 10, 10, 10), Qt::red);
        EXPECT_EQ(screen.pixelColor(12, 12), QColor(Qt::black));
    }
    EXPECT_EQ(screen.pixelColor(12, 12), QColor(Qt::red));
    EXPECT_EQ(screen.pixelColor(25, 25), QColor(Qt::black));
    EXPECT_EQ(screen.pixelColor(9, 9), QColor(Qt::black));
}

TEST(MemDc, StartsFromItsGroundAndKeepsItsStore) {
    QImage screen(40, 40, QImage::Format_RGB32);
    screen.fill(Qt::black);
    QPixmap store;
    QPainter target(&screen);
    {
        CMemDC memory(target, QRect(0, 0, 20, 20), store, Qt::green);
        memory->fillRect(QRect(0, 0, 5, 5), Qt::red);
    }
    const qint64 before = store.cacheKey();
    EXPECT_EQ(store.size(), QSize(20, 20));
    { const CMemDC memory(target, QRect(0, 0, 20, 20), store, Qt::blue); }
    EXPECT_NE(before, 0);
    EXPECT_EQ(screen.pixelColor(2, 2), QColor(Qt::blue));
    EXPECT_EQ(screen.pixelColor(15, 15), QColor(Qt::blue));
}

TEST(MemDc, DrawsAtTheScaleOfItsTarget) {
    QImage screen(80, 80, QImage::Format_RGB32);
    screen.setDevicePixelRatio(2);
    screen.fill(Qt::black);
    QPixmap store;
    QPainter target(&screen);
    {
        CMemDC memory(target, QRect(10, 10, 20, 20), store, Qt::white);
        memory->fillRect(QRectF(10, 10, 0.5, 20), Qt::red);
    }
    EXPECT_EQ(store.size(), QSize(40, 40));
    EXPECT_EQ(screen.pixelColor(20, 30), QColor(Qt::red));
    EXPECT_EQ(screen.pixelColor(21, 30), QColor(Qt::white));
}

// ---- coloured line of text, groups, lights

TEST(ColorControl, HasItsOwnColours) {
    CColorControl label(QStringLiteral("Surround is ON"), 4);
    label.resize(100, 20);
    label.setColors(Qt::yellow, Qt::blue);
    EXPECT_EQ(label.grab().toImage().pixelColor(99, 0), QColor(Qt::blue));
    EXPECT_EQ(label.textColor(), QColor(Qt::yellow));
    EXPECT_EQ(controlId(label), 4);
    CColorControl markup(QStringLiteral("<b>x</b>"), 5);
    EXPECT_EQ(markup.textFormat(), Qt::PlainText);
}

TEST(GroupBox, ABarSaysThatItIsInCircuitAndTheTitleDims) {
    SkinGroupBox group(QStringLiteral("Filter 1"), 4);
    group.resize(94, 100);
    const auto barAt = [&group] { return group.grab().toImage().pixel(47, 0); };
    EXPECT_EQ(barAt(), theme::line);
    group.setInCircuit(true);
    EXPECT_EQ(barAt(), theme::level);
    const QImage on = group.grab().toImage();
    group.setInCircuit(false);
    EXPECT_EQ(barAt(), theme::line);
    EXPECT_NE(group.grab().toImage().copy(8, 4, 60, 22), on.copy(8, 4, 60, 22));
    group.setBar(QColor::fromRgb(theme::groups[3]));
    EXPECT_EQ(barAt(), theme::groups[3]);
}

TEST(GroupBox, ASmallRepaintLooksLikeAWholeOne) {
    SkinGroupBox group(QStringLiteral("Filter 1"), 4);
    group.resize(94, 200);
    const QImage whole = group.grab().toImage();
    EXPECT_EQ(group.grab(QRect(20, 60, 30, 40)).toImage(), partOf(whole, {20, 60, 30, 40}));
    EXPECT_EQ(group.grab(QRect(0, 0, 94, 12)).toImage(), partOf(whole, {0, 0, 94, 12}));
}

TEST(ClipLights, DifferInMoreThanTheirColour) {
    ClipLight clipping(ClipLight::Picture::clipping, 22, 1);
    ClipLight clear(ClipLight::Picture::notClipping, 22, 1);
    ClipLight socket(ClipLight::Picture::socket, 22, 1);
    ClipLight large(ClipLight::Picture::clipping, 28, 1);
    EXPECT_EQ(clipping.size(), QSize(34, 34));
    EXPECT_EQ(large.size(), QSize(44, 44));
    EXPECT_EQ(static_cast<int>(clipping.picture()), 12002);
    EXPECT_EQ(static_cast<int>(clear.picture()), 12003);
    // Brightness half way to the rim: a filled disc against dark glass.
    const QImage red = clipping.grab().toImage();
    const QImage green = clear.grab().toImage();
    EXPECT_GT(qGray(red.pixel(17 + 7, 17)), qGray(green.pixel(17 + 7, 17)) + 60);
    EXPECT_NE(socket.grab().toImage(), green);
    EXPECT_TRUE(clipping.testAttribute(Qt::WA_TransparentForMouseEvents));
}

// ---- transfer line

TEST(Transfer, TellsBlocksShareAndTimeLeft) {
    TransferLine line(1);
    EXPECT_EQ(line.phase(), TransferLine::Phase::idle);
    EXPECT_EQ(line.text(), QStringLiteral("No transfer"));
    line.showProgress(3, 512, 750ms);
    EXPECT_EQ(line.text(), QStringLiteral("Block 3 of 512, 0 %"));
    line.showProgress(4, 512, 1000ms);
    EXPECT_EQ(line.text(), QStringLiteral("Block 4 of 512, 0 %, 2:07 left"));
    line.showProgress(37, 512, 9200ms);
    EXPECT_EQ(line.text(), QStringLiteral("Block 37 of 512, 7 %, 1:59 left"));
    line.showProgress(512, 512, 130s);
    EXPECT_EQ(line.text(), QStringLiteral("Block 512 of 512, 100 %, 0:00 left"));
    line.showDone();
    EXPECT_EQ(line.text(), QStringLiteral("Done, 512 blocks"));
    line.showIdle();
    EXPECT_EQ(line.blocksSent(), 0);
}

TEST(Transfer, AStopKeepsItsBlock) {
    TransferLine line(1);
    line.showProgress(37, 512, 9200ms);
    line.showStopped();
    EXPECT_EQ(line.phase(), TransferLine::Phase::stopped);
    EXPECT_EQ(line.text(), QStringLiteral("Stopped at block 37 of 512"));
    EXPECT_EQ(line.blocksSent(), 37);
}

TEST(Transfer, OddCountsDoNoHarm) {
    TransferLine line(1);
    line.showProgress(5, 0, 1s);
    EXPECT_EQ(line.text(), QStringLiteral("Block 0 of 0, 0 %"));
    line.showProgress(-5, 10, 1s);
    EXPECT_EQ(line.blocksSent(), 0);
    line.showProgress(50, 10, 1s);
    EXPECT_EQ(line.blocksSent(), 10);
    line.showProgress(4, 1000000, 3600s);
    EXPECT_TRUE(line.text().endsWith(QStringLiteral(" left")));
}

TEST(Transfer, TheLineFillsAndChangesItsColour) {
    TransferLine line(1);
    line.resize(400, 16);
    line.setLineLength(200);
    const auto at = [&line](int x) { return pixelAt(line.grab().toImage(), x, 8); };
    EXPECT_EQ(at(20), theme::sunk);
    line.showProgress(50, 100, 0ms);
    EXPECT_EQ(at(20), theme::level);
    EXPECT_EQ(at(150), theme::sunk);
    line.showStopped();
    EXPECT_EQ(at(20), theme::clip);
    line.showDone();
    EXPECT_EQ(at(190), theme::live);
}

}  // namespace
}  // namespace tessavo::test
