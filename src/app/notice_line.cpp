#include "app/notice_line.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "app/plain_tool_tip.h"
#include "controls/skin_button.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int barWidth = 3;
constexpr int signLeft = 10;
constexpr int textLeft = 32;
constexpr int textClearance = 8;  ///< between the text and what stands right of it
constexpr int beginningOfText = 90;
constexpr int buttonHeight = 20;
constexpr int buttonGap = 6;
constexpr int leastButton = 56;
// What stands beside a caption, left and right together; the second where room is short.
constexpr int usualPadding = 26;
constexpr int tightPadding = 16;
constexpr int crossSize = 22;
constexpr int crossRoom = 30;
constexpr int endRoom = 4;

/// A screen reader reads it out when it comes.
class AlertInterface : public QAccessibleWidget {
 public:
    explicit AlertInterface(QWidget& widget) : QAccessibleWidget(&widget, QAccessible::AlertMessage) {}
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* line = qobject_cast<NoticeLine*>(object);
    return line != nullptr ? new AlertInterface(*line) : nullptr;
}

/// The cross at the end of the line.
class NoticeCross : public FocusTracked<HoverTracked<QAbstractButton>> {
 public:
    explicit NoticeCross(QWidget* parent) : FocusTracked(parent) {
        setAccessibleName(QStringLiteral("Dismiss"));
        setToolTip(QStringLiteral("Dismiss"));
    }

 protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        SkinPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isHovered() || isDown()) {
            painter.roundFrame(QRectF(rect()).adjusted(1, 1, -1, -1), 4,
                               QColor::fromRgb(isDown() ? theme::buttonPressed : theme::buttonTop));
        }
        painter.setPen(QPen(QColor::fromRgb(isHovered() ? theme::text : theme::text2), 1.4, Qt::SolidLine,
                            Qt::RoundCap));
        const QPointF middle = QRectF(rect()).center();
        painter.drawLine(middle + QPointF(-3.8, -3.8), middle + QPointF(3.8, 3.8));
        painter.drawLine(middle + QPointF(3.8, -3.8), middle + QPointF(-3.8, 3.8));
        if (isRingShown()) {
            painter.focusRing(QRectF(rect()).adjusted(1, 1, -1, -1), 4);
        }
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            click();
            return;
        }
        QAbstractButton::keyPressEvent(event);
    }
};

QFont textFont() {
    return theme::font(11);
}

int widthOf(const QString& text) {
    return QFontMetrics(textFont()).horizontalAdvance(text);
}

int buttonWidth(const CxSkinButton& button, int padding) {
    const int caption = button.fontMetrics().horizontalAdvance(button.text());
    const int whole = (caption + padding + 1) / 2 * 2;
    return padding == usualPadding ? std::max(whole, leastButton) : whole;
}

QRgb signColor(Notice::Kind kind) {
    return kind == Notice::Kind::warning ? NoticeLine::warningColour : NoticeLine::infoColour;
}

QRgb groundColor(Notice::Kind kind) {
    return kind == Notice::Kind::warning ? NoticeLine::warningGround : NoticeLine::infoGround;
}

// Shape and colour tell the kind: a triangle, or a ring with an i.
void paintSign(QPainter& painter, Notice::Kind kind, QPointF at) {
    painter.setPen(QPen(QColor::fromRgb(signColor(kind)), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const auto line = [&](double x, double top, double bottom) {
        painter.drawLine(at + QPointF(x, top), at + QPointF(x, bottom));
    };
    if (kind == Notice::Kind::warning) {
        const std::array<QPointF, 3> corners{at + QPointF(8, 2.4), at + QPointF(14.2, 13.4),
                                             at + QPointF(1.8, 13.4)};
        painter.drawPolygon(corners.data(), static_cast<int>(corners.size()));
        line(8, 6.4, 9.6);
        line(8, 11.4, 11.6);
    } else {
        painter.drawEllipse(at + QPointF(8, 8), 6.2, 6.2);
        line(8, 7.4, 11.0);
        line(8, 5.0, 5.2);
    }
}

}  // namespace

NoticeLine::NoticeLine(QWidget* parent) : QWidget(parent) {
    QAccessible::installFactory(makeInterface);
    setFixedHeight(lineHeight);
    setAccessibleName(QStringLiteral("Notice"));
    hide();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*old*/, QWidget* now) { followFocus(now); });
}

NoticeLine::~NoticeLine() {
    // The focus leaves the buttons when they end, after the members here.
    disconnect(qApp, nullptr, this, nullptr);
}

quint64 NoticeLine::showNotice(Notice notice) {
    notice.text = notice.text.simplified();
    if (notice.buttons.size() > mostButtons) {
        notice.buttons.resize(mostButtons);
    }
    if (!entries_.empty() && !entries_.back().notice.stays) {
        entries_.pop_back();
    }
    const quint64 identifier = ++lastIdentifier_;
    const QString text = notice.text;
    entries_.push_back({identifier, std::move(notice)});
    if (holdsFocus()) {
        // A key that was meant for the other one's button must not answer this one.
        setFocus(Qt::OtherFocusReason);
    }
    present();
    Q_EMIT noticeShown(text);
    return identifier;
}

void NoticeLine::withdrawNotice(quint64 identifier) {
    const auto found = std::ranges::find(entries_, identifier, &Entry::identifier);
    if (found == entries_.end()) {
        return;
    }
    if (found + 1 == entries_.end()) {
        removeShown();
    } else {
        entries_.erase(found);
    }
}

const Notice* NoticeLine::standing() const {
    return entries_.empty() ? nullptr : &entries_.back().notice;
}

void NoticeLine::dismiss() {
    if (standing() != nullptr && standing()->dismissible) {
        removeShown();
    }
}

void NoticeLine::answer(std::size_t button) {
    const std::function<void()> act = standing()->buttons[button].act;
    removeShown();
    if (act) {
        act();
    }
}

void NoticeLine::removeShown() {
    returnFocus();
    entries_.pop_back();
    present();
}

void NoticeLine::present() {
    makeButtons();
    const Notice* notice = standing();
    if (notice == nullptr) {
        hide();
        setAccessibleName(QStringLiteral("Notice"));
        Q_EMIT standingChanged();
        return;
    }
    setAccessibleName(notice->text);
    Q_EMIT standingChanged();
    layOut();
    show();
    QAccessibleEvent event(this, QAccessible::Alert);
    tellScreenReaders(event);
}

void NoticeLine::tellScreenReaders(QAccessibleEvent& event) {
    QAccessible::updateAccessibility(&event);
}

// Every notice has buttons of its own, so that a press that began on another's goes nowhere.
void NoticeLine::makeButtons() {
    for (QAbstractButton* button : stops_) {
        button->disconnect(this);
        button->hide();
        button->deleteLater();
    }
    buttons_.clear();
    stops_.clear();
    const Notice* notice = standing();
    for (std::size_t i = 0; notice != nullptr && i < notice->buttons.size(); ++i) {
        auto* button = new CxSkinButton(notice->buttons[i].label, -1, this);
        button->setFont(theme::font(11, QFont::Medium));
        button->setAutoDefault(true);
        connect(button, &QAbstractButton::clicked, this, [this, i] { answer(i); });
        buttons_.push_back(button);
        stops_.push_back(button);
    }
    if (notice != nullptr && notice->dismissible) {
        auto* cross = new NoticeCross(this);
        connect(cross, &QAbstractButton::clicked, this, &NoticeLine::dismiss);
        stops_.push_back(cross);
    }
    for (QAbstractButton* button : stops_) {
        // The controls of the page keep their order: Tab does not come here from outside.
        button->setFocusPolicy(Qt::ClickFocus);
        button->show();
    }
}

int NoticeLine::endWidth() const {
    return standing() != nullptr && standing()->dismissible ? crossRoom : endRoom;
}

int NoticeLine::buttonsWidth(int padding) const {
    int all = 0;
    for (const CxSkinButton* button : buttons_) {
        all += buttonWidth(*button, padding) + buttonGap;
    }
    return std::max(0, all - buttonGap);
}

int NoticeLine::neededWidth() const {
    const int text = standing() != nullptr ? widthOf(standing()->text) : 0;
    return textLeft + text + textClearance + buttonsWidth(usualPadding) + endWidth();
}

int NoticeLine::leastWidth() const {
    const int text = standing() != nullptr ? widthOf(standing()->text) : 0;
    return textLeft + std::min(text, beginningOfText) + textClearance + buttonsWidth(tightPadding) +
           endWidth();
}

void NoticeLine::layOut() {
    if (stops_.size() > buttons_.size()) {
        stops_.back()->setGeometry(width() - crossSize - 2, 0, crossSize, crossSize);
    }
    const int padding = neededWidth() <= width() ? usualPadding : tightPadding;
    int left = width() - endWidth() - buttonsWidth(padding);
    textRight_ = left - textClearance;
    for (CxSkinButton* button : buttons_) {
        button->setGeometry(left, (lineHeight - buttonHeight) / 2, buttonWidth(*button, padding),
                            buttonHeight);
        left = button->geometry().right() + 1 + buttonGap;
    }
    const bool whole = standing() == nullptr || shownText() == standing()->text;
    setToolTip(whole ? QString() : plainToolTip(standing()->text));
    update();
}

QString NoticeLine::shownText() const {
    if (standing() == nullptr) {
        return {};
    }
    return QFontMetrics(textFont())
        .elidedText(standing()->text, Qt::ElideRight, std::max(0, textRight_ - textLeft));
}

bool NoticeLine::holdsFocus() const {
    const QWidget* holder = window()->focusWidget();
    return holder != nullptr && (holder == this || isAncestorOf(holder));
}

void NoticeLine::takeFocus() {
    if (standing() == nullptr) {
        return;
    }
    QWidget* const first = stops_.empty() ? static_cast<QWidget*>(this) : stops_.front();
    first->setFocus(Qt::ShortcutFocusReason);
    enteredByKeys_ = true;
}

void NoticeLine::returnFocus() {
    if (!holdsFocus()) {
        return;
    }
    if (before_ != nullptr && before_->isVisible() && before_->isEnabled()) {
        // The ring shows the keyboard where it is again, and does not distract the mouse.
        before_->setFocus(enteredByKeys_ ? Qt::ShortcutFocusReason : Qt::OtherFocusReason);
    } else {
        window()->focusWidget()->clearFocus();
    }
}

void NoticeLine::followFocus(QWidget* now) {
    if (now == nullptr || now->window() != window() || now == this || isAncestorOf(now)) {
        return;
    }
    before_ = now;
    enteredByKeys_ = false;
}

bool NoticeLine::focusNextPrevChild(bool next) {
    if (stops_.empty()) {
        returnFocus();
        return true;
    }
    const std::size_t count = stops_.size();
    const auto here = std::ranges::find(stops_, window()->focusWidget());
    std::size_t to = next ? 0 : count - 1;
    if (here != stops_.end()) {
        const auto index = static_cast<std::size_t>(here - stops_.begin());
        to = (index + (next ? 1 : count - 1)) % count;
    }
    enteredByKeys_ = true;
    stops_[to]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void NoticeLine::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (standing() != nullptr && standing()->dismissible) {
        dismiss();
    } else {
        returnFocus();
    }
}

void NoticeLine::resizeEvent(QResizeEvent* /*event*/) {
    layOut();
}

void NoticeLine::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void NoticeLine::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void NoticeLine::paintEvent(QPaintEvent* /*event*/) {
    const Notice* notice = standing();
    if (notice == nullptr) {
        return;
    }
    SkinPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bounds(rect());
    painter.roundFrame(bounds, 4, QColor::fromRgb(groundColor(notice->kind)));
    painter.save();
    painter.setClipRect(QRectF(0, 0, barWidth, height()));
    painter.roundFrame(bounds, 3, QColor::fromRgb(signColor(notice->kind)));
    painter.restore();
    paintSign(painter, notice->kind, {signLeft, 3});
    painter.setFont(textFont());
    painter.text(QRectF(textLeft, 0, std::max(0, textRight_ - textLeft), height()),
                 Qt::AlignVCenter | Qt::AlignLeft, theme::text, shownText());
    if (hasFocus()) {
        painter.focusRing(bounds, 4);
    }
}

}  // namespace tessavo
