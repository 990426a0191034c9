#include <QTest>

#include "app/notice_fixture.h"

// The keyboard and notices: who has the focus, before, while and after one is answered.

namespace tessavo::test {
namespace {

using NoticeKeys = NoticeTest;

TEST_F(NoticeKeys, NeverTakeTheFocusWhenTheyCome) {
    QTest::keyClicks(&setName(), QStringLiteral("Fro"));
    status().showNotice(recovery());
    status().showNotice(undone());
    status().withdrawNotice(status().showNotice(undone()));
    EXPECT_EQ(frame->focusWidget(), &setName());
    QTest::keyClicks(frame->focusWidget(), QStringLiteral("nt"));
    EXPECT_TRUE(setName().text().endsWith(QStringLiteral("Front"))) << setName().text().toStdString();
}

TEST_F(NoticeKeys, F6GoesThereAndBack) {
    status().showNotice(recovery());
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ShiftModifier)}) {
        for (QWidget* from : {static_cast<QWidget*>(&setName()), static_cast<QWidget*>(&tabs())}) {
            from->setFocus(Qt::OtherFocusReason);
            press(Qt::Key_F6, modifiers);
            EXPECT_EQ(focused(), QStringLiteral("Restore"));
            press(Qt::Key_Tab);
            press(Qt::Key_F6, modifiers);
            EXPECT_EQ(frame->focusWidget(), from);
        }
    }
    EXPECT_EQ(text(), recovery().text);
    EXPECT_EQ(acts, QStringList());
}

TEST_F(NoticeKeys, WithoutOneF6DoesNothing) {
    const QString before = setName().text();
    press(Qt::Key_F6);
    EXPECT_EQ(frame->focusWidget(), &setName());
    status().withdrawNotice(status().showNotice(undone()));
    press(Qt::Key_F6);
    press(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(frame->focusWidget(), &setName());
    EXPECT_EQ(setName().text(), before);
}

TEST_F(NoticeKeys, F6ReachesOneWithoutButtonsToo) {
    Notice notice{.text = QStringLiteral("Undone"), .dismissible = false};
    status().showNotice(notice);
    press(Qt::Key_F6);
    EXPECT_EQ(frame->focusWidget(), &line());
    press(Qt::Key_Tab);
    EXPECT_EQ(frame->focusWidget(), &setName());
    press(Qt::Key_F6);
    press(Qt::Key_F6);
    EXPECT_EQ(frame->focusWidget(), &setName());
    notice.dismissible = true;
    status().showNotice(notice);
    press(Qt::Key_F6);
    EXPECT_EQ(focused(), QStringLiteral("Dismiss"));
}

TEST_F(NoticeKeys, TabGoesThroughItsButtonsOnly) {
    Notice notice = recovery();
    notice.dismissible = true;
    status().showNotice(notice);
    press(Qt::Key_F6);
    for (int round = 0; round < 2; ++round) {
        for (const char* each : {"Restore", "Discard", "Dismiss"}) {
            EXPECT_EQ(focused(), QLatin1String(each));
            press(Qt::Key_Tab);
        }
    }
    for (const char* each : {"Restore", "Dismiss", "Discard", "Restore"}) {
        EXPECT_EQ(focused(), QLatin1String(each));
        press(Qt::Key_Backtab, Qt::ShiftModifier);
    }
}

TEST_F(NoticeKeys, TabOnThePageGoesWhereItWentBefore) {
    makeFrame(realPages());
    const auto round = [this] {
        setSelector().setFocus(Qt::TabFocusReason);
        QStringList order;
        for (int i = 0; i < 200; ++i) {
            press(Qt::Key_Tab);
            order << frame->focusWidget()->objectName();
        }
        return order;
    };
    const QStringList before = round();
    status().showNotice(recovery());
    EXPECT_EQ(round(), before);
    EXPECT_FALSE(line().holdsFocus());
}

TEST_F(NoticeKeys, EscapeInsideDismissesAndGivesTheFocusBack) {
    status().showNotice(undone());
    press(Qt::Key_Escape);
    EXPECT_EQ(text(), undone().text) << "the focus is elsewhere";
    for (const int tabs : {0, 1}) {
        status().showNotice(undone());
        press(Qt::Key_F6);
        for (int i = 0; i < tabs; ++i) {
            press(Qt::Key_Tab);
        }
        press(Qt::Key_Escape);
        EXPECT_EQ(text(), QString());
        EXPECT_EQ(frame->focusWidget(), &setName());
    }
    EXPECT_EQ(acts, QStringList());
}

TEST_F(NoticeKeys, EscapeLeavesOneThatWantsAnAnswer) {
    status().showNotice(recovery());
    press(Qt::Key_F6);
    press(Qt::Key_Escape);
    EXPECT_EQ(text(), recovery().text);
    EXPECT_EQ(frame->focusWidget(), &setName());
}

TEST_F(NoticeKeys, EnterAndSpacePressTheButtonWithTheFocus) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        acts.clear();
        status().showNotice(recovery());
        press(Qt::Key_F6);
        press(Qt::Key_Tab);
        press(key);
        EXPECT_EQ(acts, QStringList{QStringLiteral("Discard")}) << key;
        EXPECT_EQ(text(), QString());
        EXPECT_EQ(frame->focusWidget(), &setName());
        status().showNotice(undone());
        press(Qt::Key_F6);
        press(Qt::Key_Tab);
        ASSERT_EQ(focused(), QStringLiteral("Dismiss"));
        press(key);
        EXPECT_EQ(text(), QString()) << key;
        EXPECT_EQ(frame->focusWidget(), &setName());
    }
    EXPECT_EQ(acts, QStringList{QStringLiteral("Discard")});
}

TEST_F(NoticeKeys, ANewOneUnderTheFocusIsNotAnsweredByAKeyForTheOld) {
    status().showNotice(undone());
    press(Qt::Key_F6);
    status().showNotice(recovery());
    EXPECT_EQ(frame->focusWidget(), &line());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        press(key);
        EXPECT_EQ(text(), recovery().text);
    }
    EXPECT_EQ(acts, QStringList());
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), QStringLiteral("Restore"));
    press(Qt::Key_F6);
    EXPECT_EQ(frame->focusWidget(), &setName());
}

TEST_F(NoticeKeys, OneThatIsWithdrawnGivesTheFocusBack) {
    const quint64 identifier = status().showNotice(recovery());
    press(Qt::Key_F6);
    status().withdrawNotice(identifier);
    EXPECT_EQ(frame->focusWidget(), &setName());
}

TEST_F(NoticeKeys, TheMouseAnswersAndTheFocusIsWhereItWas) {
    status().showNotice(undone());
    click(QStringLiteral("Show"));
    EXPECT_EQ(frame->focusWidget(), &setName());
    status().showNotice(undone());
    click(QStringLiteral("Dismiss"));
    EXPECT_EQ(frame->focusWidget(), &setName());
}

TEST_F(NoticeKeys, AFocusThatCannotGoBackGoesNowhere) {
    status().showNotice(undone());
    press(Qt::Key_F6);
    setName().hide();
    press(Qt::Key_Escape);
    EXPECT_EQ(text(), QString());
    EXPECT_FALSE(line().holdsFocus());
}

}  // namespace
}  // namespace tessavo::test
