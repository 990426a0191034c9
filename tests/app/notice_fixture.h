#pragma once

#include <QAbstractButton>
#include <QTest>

#include "app/notice_line.h"
#include "app/status_line.h"
#include "support/frame_fixture.h"

namespace tessavo::test {

/// The frame with the focus in the name of the set, and what it takes to show notices and to answer them.
class NoticeTest : public FrameTest {
 protected:
    NoticeTest() { setName().setFocus(Qt::OtherFocusReason); }

    StatusLine& status() { return frame->statusLine(); }
    NoticeLine& line() { return status().noticeLine(); }
    /// Text of the notice that stands; "" without one.
    QString text() { return line().isVisible() ? line().standing()->text : QString(); }
    QAbstractButton* buttonOf(const QString& label) {
        for (auto* button : line().findChildren<QAbstractButton*>()) {
            const bool named = button->text() == label || button->accessibleName() == label;
            if (button->isVisible() && named) {
                return button;
            }
        }
        return nullptr;
    }
    void click(const QString& label) {
        QAbstractButton* button = buttonOf(label);
        ASSERT_NE(button, nullptr) << label.toStdString();
        QTest::mouseClick(button, Qt::LeftButton);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        ASSERT_NE(frame->focusWidget(), nullptr);
        QTest::keyClick(frame->focusWidget(), key, modifiers);
    }
    QString focused() {
        auto* button = qobject_cast<QAbstractButton*>(frame->focusWidget());
        return button == nullptr          ? QString()
               : button->text().isEmpty() ? button->accessibleName()
                                          : button->text();
    }
    NoticeButton writing(const QString& label) {
        return {label, [this, label] { acts << label; }};
    }
    Notice recovery() {
        return {.text = QStringLiteral("Tessavo ended without saving at 10:21"),
                .kind = Notice::Kind::warning,
                .buttons = {writing(QStringLiteral("Restore")), writing(QStringLiteral("Discard"))},
                .dismissible = false,
                .stays = true};
    }
    Notice undone(const QString& what = QStringLiteral("Undone: Channel 7, Filter 3 gain")) {
        return {.text = what, .buttons = {writing(QStringLiteral("Show"))}};
    }

    QStringList acts;
};

}  // namespace tessavo::test
