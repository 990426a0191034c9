#include "app/status_line.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QPainter>
#include <QShortcut>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <utility>

#include "app/plain_tool_tip.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

// The key states stand at the right edge of the bar, however wide it is.
constexpr int keysWidth = 194;
constexpr int keyWidth = 58;
constexpr int lightCentre = 25;
constexpr int portLeft = 38;
constexpr int modeLeft = 96;
constexpr int stateLeft = 184;
constexpr qreal lightRadius = 5.5;

// Behind the target. Where the pane is narrower than usual a notice or what is muted begins further to the
// left, at one of the columns of the target: the light alone is never covered.
constexpr int middleColumn = 396;
constexpr int usualMiddle = 430;
constexpr int paneClearance = 4;
constexpr int columnClearance = 10;
constexpr int textInset = 6;   ///< of what is muted and of the document
constexpr int mutedText = 27;  ///< behind the mark
constexpr int mutedMark = 14;
constexpr int usualMuted = 160;  ///< what is muted takes so much, or more
constexpr int documentGap = 16;
constexpr int documentTextInset = 14;  ///< behind the dot
constexpr int longestName = 250;
constexpr int leastDocument = 150;  ///< where there is less room the target is worth more

class StatusBarInterface : public QAccessibleWidget {
 public:
    explicit StatusBarInterface(QWidget& widget) : QAccessibleWidget(&widget, QAccessible::StatusBar) {}
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* status = qobject_cast<StatusLine*>(object);
    return status != nullptr ? new StatusBarInterface(*status) : nullptr;
}

QFont plainFont() {
    return theme::font(11);
}

QFont strongFont() {
    return theme::font(11, QFont::Medium);
}

int widthOf(const QString& text, const QFont& font) {
    return QFontMetrics(font).horizontalAdvance(text);
}

QColor lightColor(TargetStatus::Light light) {
    switch (light) {
        case TargetStatus::Light::confirmed:
            return QColor::fromRgb(theme::live);
        case TargetStatus::Light::sending:
            return QColor::fromRgb(theme::sending);
        case TargetStatus::Light::trouble:
            return QColor::fromRgb(theme::clip);
        case TargetStatus::Light::off:
            break;
    }
    return QColor::fromRgb(theme::mark);
}

QString portText(const TargetStatus& target) {
    return target.port.isEmpty() ? QStringLiteral("no port") : target.port;
}

const QLatin1String modifiedText(", modified");

QString modeText(const TargetStatus& target) {
    return target.liveMode ? QStringLiteral("Live Mode on") : QStringLiteral("Live Mode off");
}

}  // namespace

StatusLine::StatusLine(QWidget* parent) : QWidget(parent), notice_(new NoticeLine(this)) {
    QAccessible::installFactory(makeInterface);
    setFixedHeight(barHeight);
    setAccessibleName(QStringLiteral("Status"));
    setAccessibleDescription(paneText(0));
    followNotices();
}

void StatusLine::followNotices() {
    connect(notice_, &NoticeLine::standingChanged, this, &StatusLine::changed);
    connect(notice_, &NoticeLine::noticeShown, this, &StatusLine::noticeShown);
    for (const QKeySequence& key : {QKeySequence(Qt::Key_F6), QKeySequence(Qt::SHIFT | Qt::Key_F6)}) {
        auto* shortcut = new QShortcut(key, this);
        shortcut->setEnabled(false);
        connect(notice_, &NoticeLine::standingChanged, shortcut,
                [this, shortcut] { shortcut->setEnabled(notice_->standing() != nullptr); });
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (notice_->holdsFocus()) {
                notice_->returnFocus();
            } else {
                notice_->takeFocus();
            }
        });
    }
}

void StatusLine::changed() {
    setAccessibleDescription(paneText(0));
    notice_->setGeometry(middle().notice);
    update();
}

void StatusLine::setTarget(const TargetStatus& status) {
    if (status == target_) {
        return;
    }
    target_ = status;
    changed();
}

void StatusLine::setDocument(const DocumentStatus& document) {
    if (document == document_) {
        return;
    }
    document_ = document;
    changed();
}

void StatusLine::setMuted(const QString& text) {
    if (text == muted_) {
        return;
    }
    muted_ = text;
    changed();
}

quint64 StatusLine::showNotice(Notice notice) {
    return notice_->showNotice(std::move(notice));
}

void StatusLine::withdrawNotice(quint64 identifier) {
    notice_->withdrawNotice(identifier);
}

void StatusLine::setKeyStates(const KeyStates& states) {
    if (states == keys_) {
        return;
    }
    keys_ = states;
    update(targetWidth(), 0, keysWidth, height());
}

int StatusLine::mutedRoom() const {
    return muted_.isEmpty() ? 0 : (mutedText + widthOf(muted_, strongFont()) + columnClearance + 1) / 2 * 2;
}

int StatusLine::leastMiddle() const {
    return mutedRoom() + (notice_->standing() != nullptr ? notice_->leastWidth() : 0);
}

int StatusLine::targetWidth() const {
    // Where both do not fit the target is worth more, and so is a notice.
    constexpr int longestState = 200;
    const int left = width() - keysWidth;
    const bool both = left - stateLeft >= longestState && left - paneClearance - stateLeft >= leastMiddle();
    return both ? left : width();
}

QString StatusLine::paneText(int pane) const {
    constexpr std::array<const char*, paneCount> keys{"", "CAP", "NUM", "SCRL"};
    if (pane < 0 || pane >= paneCount) {
        return {};
    }
    if (pane > 0) {
        return QLatin1String(keys[static_cast<std::size_t>(pane)]);
    }
    QString sentence = portText(target_) + QStringLiteral(", ") + modeText(target_);
    if (!target_.state.isEmpty()) {
        sentence += QStringLiteral(", ") + target_.state;
    }
    for (const QString& more : {muted_, documentText()}) {
        if (!more.isEmpty()) {
            sentence += QStringLiteral(", ") + more;
        }
    }
    if (const Notice* notice = notice_->standing(); notice != nullptr) {
        sentence += QStringLiteral(", ") + notice->text;
    }
    return sentence;
}

QString StatusLine::documentText() const {
    return document_.modified && !document_.name.isEmpty() ? document_.name + modifiedText : document_.name;
}

bool StatusLine::keyLit(int pane) const {
    const std::array<bool, paneCount> lit{false, keys_.capsLock, keys_.numLock, keys_.scrollLock};
    return pane > 0 && pane < paneCount && lit[static_cast<std::size_t>(pane)];
}

int StatusLine::middleLeft(int right) const {
    const bool standing = notice_->standing() != nullptr;
    const bool usual = right - middleColumn >= usualMiddle;
    if (usual || (!standing && muted_.isEmpty())) {
        return middleColumn;
    }
    const int whole = mutedRoom() + (standing ? notice_->neededWidth() : 0);
    for (const int left : {middleColumn, stateLeft}) {
        if (right - left >= whole) {
            return left;
        }
    }
    for (const int left : {stateLeft, modeLeft}) {
        if (right - left >= leastMiddle()) {
            return left;
        }
    }
    return portLeft;
}

StatusLine::Middle StatusLine::middle() const {
    const int right = targetWidth() - paneClearance;
    Middle middle;
    middle.left = middleLeft(right);
    middle.muted = QRect(middle.left, 0, mutedRoom(), height());
    int left = middle.left + mutedRoom();
    if (notice_->standing() != nullptr) {
        middle.notice = QRect(left, (height() - NoticeLine::lineHeight) / 2, std::max(0, right - left),
                              NoticeLine::lineHeight);
        return middle;
    }
    if (!muted_.isEmpty()) {
        left = std::max(middle.left + usualMuted, left - columnClearance + documentGap);
    } else {
        left += textInset;
    }
    if (!document_.name.isEmpty() && middle.left == middleColumn && right - left >= leastDocument) {
        middle.document = QRect(left, 0, right - left, height());
    }
    return middle;
}

int StatusLine::stateRight(const Middle& middle) const {
    const bool alone = middle.muted.isEmpty() && middle.document.isEmpty() && middle.notice.isEmpty();
    return alone ? targetWidth() : middle.left - columnClearance;
}

QString StatusLine::shownDocument() const {
    const QRect place = middle().document;
    if (place.isEmpty()) {
        return {};
    }
    const QFont font = document_.modified ? strongFont() : plainFont();
    const QString suffix = document_.modified ? QString(modifiedText) : QString();
    const int room = place.width() - documentTextInset - widthOf(suffix, font);
    return QFontMetrics(font).elidedText(document_.name, Qt::ElideMiddle, std::min(room, longestName)) +
           suffix;
}

QString StatusLine::toolTipAt(QPoint point) const {
    const Middle places = middle();
    const QFont font = document_.modified ? strongFont() : plainFont();
    const QRect name = places.document.adjusted(
        0, 0, documentTextInset + widthOf(shownDocument(), font) - places.document.width(), 0);
    if (!places.document.isEmpty() && name.contains(point)) {
        return document_.toolTip;
    }
    const int end = stateRight(places);
    const bool cut = widthOf(target_.state, plainFont()) > end - stateLeft;
    return cut && point.x() < end ? paneText(0) : QString();
}

bool StatusLine::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* asked = static_cast<QHelpEvent*>(event);
        // Without a text the one that is shown goes.
        QToolTip::showText(asked->globalPos(), plainToolTip(toolTipAt(asked->pos())), this);
        return true;
    }
    return QWidget::event(event);
}

void StatusLine::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    notice_->setGeometry(middle().notice);
}

void StatusLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(theme::bars));
    painter.fillRect(0, 0, width(), 1, QColor::fromRgb(theme::line));
    painter.setRenderHint(QPainter::Antialiasing);
    const Middle places = middle();
    paintTarget(painter, places);
    paintMuted(painter, places.muted);
    paintDocument(painter, places.document);
    paintKeys(painter);
}

void StatusLine::paintTarget(QPainter& painter, const Middle& middle) const {
    paintLight(painter, {lightCentre, height() / 2.0});
    painter.setFont(plainFont());
    const int end = stateRight(middle);
    const auto column = [&](int left, int right, const QString& text, QRgb color) {
        if (left >= end) {
            return;
        }
        painter.setPen(QColor::fromRgb(color));
        // Whole in the pane's description and tooltip where it does not fit.
        const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, right - left);
        painter.drawText(QRect(left, 0, right - left, height()), Qt::AlignVCenter | Qt::AlignLeft, shown);
    };
    column(portLeft, modeLeft, portText(target_), theme::text2);
    column(modeLeft, stateLeft, modeText(target_), theme::text2);
    const bool trouble = target_.light == TargetStatus::Light::trouble;
    column(stateLeft, end, target_.state, trouble ? theme::trouble : theme::text);
}

void StatusLine::paintMuted(QPainter& painter, const QRect& place) const {
    if (place.isEmpty()) {
        return;
    }
    const QRect mark(place.left() + textInset, (height() - mutedMark) / 2, mutedMark, mutedMark);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(theme::stop));
    painter.drawRoundedRect(mark, 3, 3);
    painter.setPen(QColor::fromRgb(theme::white));
    painter.setFont(theme::font(11, QFont::Bold));
    painter.drawText(mark, Qt::AlignCenter, QStringLiteral("M"));
    painter.setPen(QColor::fromRgb(theme::text));
    painter.setFont(strongFont());
    painter.drawText(place.adjusted(mutedText, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, muted_);
}

// Dot, words and weight tell a change, not a colour alone.
void StatusLine::paintDocument(QPainter& painter, const QRect& place) const {
    if (place.isEmpty()) {
        return;
    }
    const QColor color = QColor::fromRgb(document_.modified ? theme::text : theme::text2);
    if (document_.modified) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(QPointF(place.left() + 3.5, height() / 2.0), 3, 3);
    }
    painter.setPen(color);
    painter.setFont(document_.modified ? strongFont() : plainFont());
    painter.drawText(place.adjusted(documentTextInset, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     shownDocument());
}

// Colour and shape tell the state: tick, dot, bar, empty ring.
void StatusLine::paintLight(QPainter& painter, QPointF centre) const {
    const QColor color = lightColor(target_.light);
    const bool filled =
        target_.light == TargetStatus::Light::confirmed || target_.light == TargetStatus::Light::trouble;
    painter.setPen(QPen(color, 1.5));
    painter.setBrush(filled ? QBrush(color) : QBrush(Qt::NoBrush));
    painter.drawEllipse(centre, lightRadius, lightRadius);
    const QPen sign(QColor::fromRgb(theme::sunk), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    switch (target_.light) {
        case TargetStatus::Light::confirmed: {
            painter.setPen(sign);
            const std::array<QPointF, 3> tick{centre + QPointF(-2.6, 0.2), centre + QPointF(-0.6, 2.2),
                                              centre + QPointF(2.8, -2.0)};
            painter.drawPolyline(tick.data(), static_cast<int>(tick.size()));
            break;
        }
        case TargetStatus::Light::sending:
            painter.setPen(Qt::NoPen);
            painter.setBrush(color);
            painter.drawEllipse(centre, 2.2, 2.2);
            break;
        case TargetStatus::Light::trouble:
            painter.setPen(sign);
            painter.drawLine(centre + QPointF(-2.6, 0), centre + QPointF(2.6, 0));
            break;
        case TargetStatus::Light::off:
            break;
    }
}

void StatusLine::paintKeys(QPainter& painter) const {
    for (int pane = 1; pane < paneCount && targetWidth() < width(); ++pane) {
        const int left = targetWidth() + (pane - 1) * keyWidth;
        painter.fillRect(left, 7, 1, height() - 14, QColor::fromRgb(theme::line));
        const bool lit = keyLit(pane);
        painter.setFont(theme::font(11, lit ? QFont::Medium : QFont::Normal));
        painter.setPen(QColor::fromRgb(lit ? theme::white : theme::text3));
        painter.drawText(QRect(left, 0, keyWidth, height()), Qt::AlignCenter, paneText(pane));
    }
}

}  // namespace tessavo
