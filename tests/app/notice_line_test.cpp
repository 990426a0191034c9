#include "app/notice_line.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <set>

#include "app/notice_fixture.h"

// Notices in the status bar: which one stands, what answers it, what is seen and told of it.

namespace tessavo::test {
namespace {

using Kind = Notice::Kind;

using Notices = NoticeTest;

// ---- which one stands

TEST_F(Notices, ThereIsNoneAtTheStart) {
    EXPECT_FALSE(line().isVisible());
    EXPECT_EQ(line().standing(), nullptr);
    EXPECT_EQ(line().shownText(), QString());
}

TEST_F(Notices, TheNewestWinsAndTheOlderDoesNotComeBack) {
    for (const bool withdrawn : {false, true}) {
        status().showNotice(undone(QStringLiteral("first")));
        const quint64 second = status().showNotice(undone(QStringLiteral("second")));
        EXPECT_EQ(text(), QStringLiteral("second"));
        if (withdrawn) {
            status().withdrawNotice(second);
        } else {
            click(QStringLiteral("Dismiss"));
        }
        EXPECT_FALSE(line().isVisible()) << withdrawn;
        EXPECT_EQ(line().standing(), nullptr);
    }
    EXPECT_EQ(acts, QStringList());
}

TEST_F(Notices, WithdrawingTakesOnlyTheOneThatIsMeant) {
    const quint64 first = status().showNotice(undone(QStringLiteral("first")));
    const quint64 second = status().showNotice(undone(QStringLiteral("second")));
    EXPECT_NE(first, second);
    EXPECT_NE(first, 0U);
    for (const quint64 other : {first, quint64{0}, second + 1}) {
        status().withdrawNotice(other);
        EXPECT_EQ(text(), QStringLiteral("second")) << other;
    }
    status().withdrawNotice(second);
    EXPECT_EQ(text(), QString());
    status().withdrawNotice(second);
    EXPECT_EQ(text(), QString());
}

TEST_F(Notices, OneThatStaysComesBackWhateverTakesANewerOneAway) {
    const QString stays = recovery().text;
    status().showNotice(recovery());
    const quint64 newer = status().showNotice(undone());
    EXPECT_NE(text(), stays);
    status().withdrawNotice(newer);
    EXPECT_EQ(text(), stays) << "withdrawn";
    status().showNotice(undone());
    click(QStringLiteral("Dismiss"));
    EXPECT_EQ(text(), stays) << "dismissed";
    status().showNotice(undone());
    click(QStringLiteral("Show"));
    EXPECT_EQ(text(), stays) << "answered";
    status().showNotice(undone(QStringLiteral("first")));
    status().showNotice(undone(QStringLiteral("second")));
    click(QStringLiteral("Dismiss"));
    EXPECT_EQ(text(), stays) << "two newer ones";
    acts.clear();
    click(QStringLiteral("Discard"));
    EXPECT_EQ(acts, QStringList{QStringLiteral("Discard")});
    EXPECT_EQ(text(), QString());
    status().showNotice(undone());
    click(QStringLiteral("Dismiss"));
    EXPECT_EQ(text(), QString()) << "it was answered";
}

TEST_F(Notices, OneThatStaysIsGoneOnceItIsWithdrawnOrDismissed) {
    const quint64 below = status().showNotice(recovery());
    status().showNotice(undone());
    status().withdrawNotice(below);
    EXPECT_EQ(text(), undone().text);
    click(QStringLiteral("Dismiss"));
    EXPECT_EQ(text(), QString());
    Notice dismissible = recovery();
    dismissible.dismissible = true;
    status().showNotice(dismissible);
    click(QStringLiteral("Dismiss"));
    status().showNotice(undone());
    click(QStringLiteral("Dismiss"));
    EXPECT_EQ(text(), QString());
}

TEST_F(Notices, SeveralThatStayComeBackTheNewestFirst) {
    for (const char* each : {"one", "two", "three"}) {
        Notice notice = undone(QLatin1String(each));
        notice.stays = true;
        status().showNotice(notice);
    }
    for (const char* each : {"three", "two", "one"}) {
        EXPECT_EQ(text(), QLatin1String(each));
        click(QStringLiteral("Show"));
    }
    EXPECT_EQ(text(), QString());
    EXPECT_EQ(acts.size(), 3);
}

TEST_F(Notices, EachIsToldOnceForTheHistory) {
    QSignalSpy told(&status(), &StatusLine::noticeShown);
    status().showNotice(recovery());
    status().showNotice(undone(QStringLiteral("two\n words ")));
    click(QStringLiteral("Dismiss"));
    ASSERT_EQ(told.size(), 2) << "coming back is nothing new";
    EXPECT_EQ(told[0][0].toString(), recovery().text);
    EXPECT_EQ(told[1][0].toString(), QStringLiteral("two words"));
}

// ---- answers

TEST_F(Notices, AButtonRemovesItAndThenActs) {
    bool gone = false;
    QWidget* holder = nullptr;
    Notice notice = undone();
    notice.buttons = {{QStringLiteral("Undo"), [&] {
                           gone = line().standing() == nullptr && !line().isVisible();
                           holder = frame->focusWidget();
                           status().showNotice(undone(QStringLiteral("from the act")));
                       }}};
    status().showNotice(notice);
    click(QStringLiteral("Undo"));
    EXPECT_TRUE(gone);
    EXPECT_EQ(holder, &setName()) << "the focus was back before";
    EXPECT_EQ(text(), QStringLiteral("from the act"));
    click(QStringLiteral("Show"));
    EXPECT_EQ(acts, QStringList{QStringLiteral("Show")});
}

TEST_F(Notices, AButtonThatDoesNothingRemovesIt) {
    Notice notice = undone();
    notice.buttons = {{QStringLiteral("Good"), {}}};
    status().showNotice(notice);
    click(QStringLiteral("Good"));
    EXPECT_EQ(text(), QString());
}

TEST_F(Notices, EachButtonDoesItsOwn) {
    for (const QString& label : {QStringLiteral("Restore"), QStringLiteral("Discard")}) {
        acts.clear();
        status().showNotice(recovery());
        click(label);
        EXPECT_EQ(acts, QStringList{label});
    }
}

TEST_F(Notices, HaveTwoButtonsAtMost) {
    Notice notice = undone();
    notice.buttons = {writing(QStringLiteral("A")), writing(QStringLiteral("B")),
                      writing(QStringLiteral("C"))};
    status().showNotice(notice);
    EXPECT_NE(buttonOf(QStringLiteral("A")), nullptr);
    EXPECT_NE(buttonOf(QStringLiteral("B")), nullptr);
    EXPECT_EQ(buttonOf(QStringLiteral("C")), nullptr);
}

TEST_F(Notices, OnlyOneThatMayBeDismissedHasACross) {
    status().showNotice(undone());
    EXPECT_NE(buttonOf(QStringLiteral("Dismiss")), nullptr);
    status().showNotice(recovery());
    EXPECT_EQ(buttonOf(QStringLiteral("Dismiss")), nullptr);
}

TEST_F(Notices, APressThatBeganOnAnotherOneDoesNothing) {
    for (const QString& label : {QStringLiteral("Show"), QStringLiteral("Dismiss")}) {
        status().showNotice(undone(QStringLiteral("first")));
        QPointer<QAbstractButton> pressed = buttonOf(label);
        ASSERT_NE(pressed, nullptr);
        const QPoint middle = pressed->rect().center();
        QTest::mousePress(pressed, Qt::LeftButton, {}, middle);
        status().showNotice(undone(QStringLiteral("second")));
        for (QAbstractButton* button : {pressed.data(), buttonOf(label)}) {
            ASSERT_NE(button, nullptr);
            QTest::mouseMove(button, middle + QPoint(1, 0));
            QTest::mouseRelease(button, Qt::LeftButton, {}, middle);
        }
        EXPECT_EQ(text(), QStringLiteral("second"));
        EXPECT_EQ(acts, QStringList());
    }
}

// ---- screen readers

/// Writes down what screen readers are told.
class HeardLine : public NoticeLine {
 public:
    QStringList alerts;

 protected:
    void tellScreenReaders(QAccessibleEvent& event) override {
        ASSERT_EQ(event.type(), QAccessible::Alert);
        ASSERT_EQ(event.object(), this);
        // A reader looks at the line as soon as it is told.
        ASSERT_TRUE(isVisible());
        alerts << accessibleName();
        NoticeLine::tellScreenReaders(event);
    }
};

TEST_F(Notices, AreToldToScreenReadersWhenTheyCome) {
    HeardLine heard;
    const quint64 identifier = heard.showNotice(recovery());
    const quint64 newer = heard.showNotice(undone());
    EXPECT_EQ(heard.alerts, (QStringList{recovery().text, undone().text}));
    heard.withdrawNotice(newer);
    EXPECT_EQ(heard.alerts, (QStringList{recovery().text, undone().text, recovery().text}))
        << "the one that stays has come back";
    heard.withdrawNotice(identifier);
    EXPECT_EQ(heard.alerts.size(), 3) << "nothing is nothing to tell";
}

TEST_F(Notices, ScreenReadersSeeWhatTheyAreAndTheirButtons) {
    Notice notice = recovery();
    notice.dismissible = true;
    status().showNotice(notice);
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&line());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::AlertMessage);
    EXPECT_EQ(seen->text(QAccessible::Name), recovery().text);
    EXPECT_FALSE(seen->state().invisible);
    std::multiset<QString> names;
    for (int i = 0; i < seen->childCount(); ++i) {
        EXPECT_EQ(seen->child(i)->role(), QAccessible::Button);
        EXPECT_TRUE(seen->child(i)->state().focusable);
        names.insert(seen->child(i)->text(QAccessible::Name));
    }
    EXPECT_EQ(names, (std::multiset<QString>{QStringLiteral("Discard"), QStringLiteral("Dismiss"),
                                             QStringLiteral("Restore")}));
    ASSERT_NE(seen->parent(), nullptr);
    EXPECT_EQ(seen->parent()->role(), QAccessible::StatusBar);
    EXPECT_EQ(seen->parent()->object(), &status());
    QAbstractButton* restore = buttonOf(QStringLiteral("Restore"));
    QAccessible::queryAccessibleInterface(restore)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !acts.isEmpty(); }));
    EXPECT_EQ(acts, QStringList{QStringLiteral("Restore")});
    EXPECT_EQ(frame->focusWidget(), &setName());
}

// ---- texts and looks

TEST_F(Notices, LongTextsAreCutAndToldWholeElsewhere) {
    const QString longText = QStringLiteral("The recovery file cannot be written: ").repeated(8).trimmed();
    Notice notice = recovery();
    notice.text = longText;
    notice.dismissible = true;
    status().showNotice(notice);
    const QString seen = line().shownText();
    EXPECT_TRUE(seen.endsWith(QChar(0x2026)));
    EXPECT_TRUE(longText.startsWith(seen.chopped(1)));
    EXPECT_GT(seen.size(), 20);
    EXPECT_EQ(line().toolTip(), longText);
    EXPECT_EQ(line().accessibleName(), longText);
    status().showNotice(undone());
    EXPECT_EQ(line().toolTip(), QString()) << "nothing is cut";
}

TEST_F(Notices, NamesThatLookLikeMarkUpAreShownAsTheyStand) {
    Notice notice = undone(QStringLiteral("<b>car</b>.eqs has changed on the disk ").repeated(5).trimmed());
    status().showNotice(notice);
    EXPECT_FALSE(line().toolTip().contains(QStringLiteral("<b>")));
    EXPECT_TRUE(line().toolTip().contains(QStringLiteral("&lt;b&gt;car")));
}

TEST_F(Notices, TheUsualOnesFitWholeWithTheirButtons) {
    struct Case {
        const char* text;
        std::vector<const char*> buttons;
        bool dismissible;
    };
    for (const Case& each :
         {Case{"Tessavo ended without saving at 10:21", {"Restore", "Discard"}, false},
          Case{"Tessavo ended without saving at 10:21", {"Restore", "Discard"}, true},
          Case{"car.eqs: 300 of 10600 bytes, the rest reads as zero", {"Undo"}, true},
          Case{"car.eqs has changed on the disk", {"Overwrite"}, true},
          Case{"Undone: Channel 7, Filter 3 gain -4.5 dB", {"Show"}, true},
          Case{"The recovery file cannot be written: No space left on device", {}, true}}) {
        Notice notice{.text = QLatin1String(each.text), .dismissible = each.dismissible};
        for (const char* label : each.buttons) {
            notice.buttons.push_back({QLatin1String(label), {}});
        }
        status().showNotice(notice);
        EXPECT_EQ(line().shownText(), QLatin1String(each.text));
        for (const char* label : each.buttons) {
            QAbstractButton* button = buttonOf(QLatin1String(label));
            ASSERT_NE(button, nullptr);
            EXPECT_EQ(button->visibleRegion().boundingRect(), button->rect()) << label;
            EXPECT_GE(button->width(), static_cast<CxSkinButton*>(button)->neededWidth() + 4) << label;
        }
    }
}

TEST_F(Notices, TheirKindsDifferInColourAndShape) {
    const auto grab = [this](Kind kind) {
        status().showNotice({.text = QStringLiteral("Text"), .kind = kind});
        return line().grab().toImage();
    };
    const QImage warning = grab(Kind::warning);
    const QImage info = grab(Kind::info);
    const qreal scale = warning.devicePixelRatio();
    const auto at = [scale](const QImage& image, QPointF point) {
        return image.pixelColor((point * scale).toPoint()).rgb();
    };
    EXPECT_EQ(at(warning, {1, 11}), NoticeLine::warningColour);
    EXPECT_EQ(at(info, {1, 11}), NoticeLine::infoColour);
    EXPECT_EQ(at(warning, {6, 11}), NoticeLine::warningGround);
    EXPECT_EQ(at(info, {6, 11}), NoticeLine::infoGround);
    // The foot of the triangle lies where the ring has nothing.
    EXPECT_NE(at(warning, {13, 16.4}), NoticeLine::warningGround);
    EXPECT_EQ(at(info, {13, 17}), NoticeLine::infoGround);
}

}  // namespace
}  // namespace tessavo::test
