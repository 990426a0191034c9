#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

#include "controls/palette.h"

class QAbstractButton;
class QAccessibleEvent;

namespace tessavo {

class CxSkinButton;

struct NoticeButton {
    QString label;
    std::function<void()> act;  ///< runs once the notice has gone; may be empty
};

/// One line for the user that waits for nothing: it stands until it is answered, dismissed or replaced.
struct Notice {
    enum class Kind { info, warning };

    QString text;  ///< shown in one line, whatever white space it has
    Kind kind = Kind::info;
    std::vector<NoticeButton> buttons = {};  ///< from the left; those behind the second are ignored
    bool dismissible = true;                 ///< has a cross, and Escape takes it away
    bool stays = false;  ///< comes back when a newer one has gone, until it was answered or dismissed
};

/// Shows the newest notice: a bar and a sign in the colour of its kind, its text, its buttons, a cross. Hidden
/// while there is none. It takes the focus only when it is asked to; inside, Tab goes from button to button.
/// User-interface thread.
class NoticeLine : public QWidget {
    Q_OBJECT

 public:
    static constexpr int lineHeight = 22;
    static constexpr std::size_t mostButtons = 2;

    // Bar and sign in the colour of the kind, and the ground below.
    static constexpr Colour warningColour = 0xFFF2B53C;
    static constexpr Colour warningGround = 0xFF2A2620;
    static constexpr Colour infoColour = theme::lightBlue;
    static constexpr Colour infoGround = 0xFF1D2732;

    explicit NoticeLine(QWidget* parent = nullptr);
    ~NoticeLine() override;

    /// Shows a notice in place of the one that stands.
    /// \return what withdrawNotice() knows it by; never 0
    quint64 showNotice(Notice notice);
    /// Takes a notice away without an answer; does nothing for one that has gone.
    void withdrawNotice(quint64 identifier);

    /// The notice that is shown; null when there is none.
    [[nodiscard]] const Notice* standing() const;
    /// Its text as it is drawn: cut at the end where it does not fit.
    [[nodiscard]] QString shownText() const;
    /// Pixels that it needs for its whole text.
    [[nodiscard]] int neededWidth() const;
    /// Pixels that it needs for its buttons and the beginning of its text.
    [[nodiscard]] int leastWidth() const;

    /// Whether one of its buttons, or the line itself, has the window's focus.
    [[nodiscard]] bool holdsFocus() const;
    /// Gives its first button the focus, or the line itself where there is none; nothing without a notice.
    void takeFocus();
    /// Gives the focus back to the control that had it before; nothing when it is not here.
    void returnFocus();

 Q_SIGNALS:
    /// Another notice stands, or none.
    void standingChanged();
    /// A notice was shown for the first time.
    void noticeShown(const QString& text);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    /// Hands an event to the toolkit, which passes it on only while a screen reader runs.
    virtual void tellScreenReaders(QAccessibleEvent& event);

 private:
    struct Entry {
        quint64 identifier;
        Notice notice;
    };

    void dismiss();
    void answer(std::size_t button);
    void removeShown();
    void present();
    void makeButtons();
    void layOut();
    void followFocus(QWidget* now);
    [[nodiscard]] int buttonsWidth(int padding) const;
    [[nodiscard]] int endWidth() const;

    std::vector<Entry> entries_;  ///< the last one is shown, the others come back
    quint64 lastIdentifier_ = 0;
    std::vector<CxSkinButton*> buttons_;
    std::vector<QAbstractButton*> stops_;  ///< the buttons and behind them the cross, if there is one
    int textRight_ = 0;
    QPointer<QWidget> before_;    ///< had the focus last, outside
    bool enteredByKeys_ = false;  ///< the focus has come by the keyboard
};

}  // namespace tessavo
