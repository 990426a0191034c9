#include "controls/skin_message_box.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "controls/skin_button.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int titleHeight = 34;
constexpr int footHeight = 52;
constexpr int lineHeight = 20;
constexpr int iconSize = 34;
constexpr int iconLeft = 20;
constexpr int edgeRoom = 16;
constexpr int textLeft = 70;
constexpr int buttonWidth = 84;
constexpr int buttonHeight = 28;
constexpr int buttonGap = 8;
constexpr int smallestWidth = 320;
constexpr int widestText = 640;
constexpr int smallestTextHeight = 64;
constexpr int closeSize = 34;

constexpr int boxIdentifier = -1;

QFont textFont() {
    return theme::font(13, QFont::Medium);
}

/// How many characters of a line fit into the widest box.
qsizetype fitting(const QFontMetrics& metrics, const QString& line) {
    qsizetype fits = 0;
    qsizetype tooMany = line.size() + 1;
    while (tooMany - fits > 1) {
        const qsizetype middle = fits + (tooMany - fits) / 2;
        (metrics.horizontalAdvance(line.left(middle)) <= widestText ? fits : tooMany) = middle;
    }
    return fits;
}

/// Breaks a line that is wider than the box may become, at spaces where it has some.
QStringList folded(const QString& line) {
    const QFontMetrics metrics(textFont());
    QStringList lines;
    QString rest = line;
    for (qsizetype fits = fitting(metrics, rest); fits < rest.size(); fits = fitting(metrics, rest)) {
        const qsizetype space = rest.lastIndexOf(QLatin1Char(' '), fits);
        const qsizetype end = space > 0 ? space : qMax<qsizetype>(1, fits);
        lines << rest.left(end);
        rest = rest.mid(end).trimmed();
    }
    return lines << rest;
}

}  // namespace

SkinMessageBox::SkinMessageBox(const QString& title, const QString& text, Icon icon, Buttons buttons,
                               QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), text_(text), icon_(icon) {
    setWindowTitle(title);
    setAttribute(Qt::WA_TranslucentBackground);
    setModal(true);
    setMouseTracking(true);
    setFont(textFont());
    setAccessibleName(title);
    setAccessibleDescription(text);

    QString plain = text;
    plain.remove(QLatin1Char('\r'));
    while (plain.endsWith(QLatin1Char('\n'))) {
        plain.chop(1);
    }
    for (const QString& line : plain.split(QLatin1Char('\n'))) {
        lines_ << folded(line);
    }
    switch (buttons) {
        case Buttons::ok:
            addButton(QStringLiteral("OK"), Answer::ok);
            break;
        case Buttons::okCancel:
            addButton(QStringLiteral("OK"), Answer::ok);
            addButton(QStringLiteral("Cancel"), Answer::cancel);
            break;
        case Buttons::yesNo:
            addButton(QStringLiteral("Yes"), Answer::yes);
            addButton(QStringLiteral("No"), Answer::no);
            break;
        case Buttons::yesNoCancel:
            addButton(QStringLiteral("Yes"), Answer::yes);
            addButton(QStringLiteral("No"), Answer::no);
            addButton(QStringLiteral("Cancel"), Answer::cancel);
            break;
    }
    answer_ = buttons == Buttons::ok ? Answer::ok : Answer::cancel;
    buttons_.front()->setAccented(true);
    buttons_.front()->setFocus(Qt::OtherFocusReason);
    layOutAll();
}

void SkinMessageBox::addButton(const QString& caption, Answer answer) {
    auto* button = new CxSkinButton(caption, boxIdentifier, this);
    button->setObjectName(caption);
    connect(button, &QPushButton::clicked, this, [this, answer] {
        answer_ = answer;
        accept();
    });
    buttons_ << button;
}

void SkinMessageBox::layOutAll() {
    int widest = fontMetrics().horizontalAdvance(windowTitle()) + closeSize;
    for (const QString& line : lines_) {
        widest = qMax(widest, fontMetrics().horizontalAdvance(line));
    }
    const int left = icon_ == Icon::none ? iconLeft : textLeft;
    const int foot = static_cast<int>(buttons_.size()) * (buttonWidth + buttonGap) - buttonGap + 2 * edgeRoom;
    const int wide = qMax(qMax(smallestWidth, foot), left + widest + edgeRoom);
    const int textHeight = qMax(smallestTextHeight, static_cast<int>(lines_.size()) * lineHeight + 24);
    setFixedSize(wide, 1 + titleHeight + textHeight + 1 + footHeight);
    int x = width() - edgeRoom - static_cast<int>(buttons_.size()) * (buttonWidth + buttonGap) + buttonGap;
    for (CxSkinButton* button : buttons_) {
        button->setGeometry(x, height() - footHeight + (footHeight - buttonHeight) / 2 - 1, buttonWidth,
                            buttonHeight);
        x += buttonWidth + buttonGap;
    }
}

SkinMessageBox::Answer SkinMessageBox::ask() {
    exec();
    return answer_;
}

QRect SkinMessageBox::closeRect() const {
    return {width() - closeSize - 1, 1, closeSize, titleHeight};
}

QRect SkinMessageBox::body() const {
    return {1, 1 + titleHeight, width() - 2, height() - titleHeight - footHeight - 2};
}

void SkinMessageBox::setCloseHovered(bool hovered) {
    if (hovered != closeHovered_) {
        closeHovered_ = hovered;
        update(closeRect());
    }
}

void SkinMessageBox::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    const QColor line = QColor::fromRgb(theme::line);
    painter.roundFrame(rect(), 8, QColor::fromRgb(theme::card), {});
    painter.save();
    painter.setClipRect(QRect(0, 0, width(), body().top()));
    painter.roundFrame(rect(), 8, QColor::fromRgb(theme::bars), {});
    painter.setClipRect(QRect(0, body().bottom() + 1, width(), height()));
    painter.roundFrame(rect(), 8, QColor::fromRgb(theme::inset), {});
    painter.restore();
    painter.fillRect(painter.snapped(QRectF(1, body().top() - 1, width() - 2, 1)), line);
    painter.fillRect(painter.snapped(QRectF(1, body().bottom() + 1, width() - 2, 1)), line);
    painter.roundFrame(rect(), 8, Qt::NoBrush, QColor::fromRgb(theme::edge));

    painter.setFont(theme::font(12, QFont::Medium));
    painter.text(QRectF(edgeRoom, 1, width() - edgeRoom - closeSize, titleHeight),
                 Qt::AlignLeft | Qt::AlignVCenter, theme::text, windowTitle());
    const QPointF cross = QRectF(closeRect()).center();
    painter.setPen(
        QPen(QColor::fromRgb(closeHovered_ ? theme::white : theme::text2), 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(cross + QPointF(-4, -4), cross + QPointF(4, 4));
    painter.drawLine(cross + QPointF(4, -4), cross + QPointF(-4, 4));

    const QRect middle = body();
    if (icon_ != Icon::none) {
        const auto kind = icon_ == Icon::stop ? SkinPiece::Kind::stopIcon : SkinPiece::Kind::infoIcon;
        painter.piece({iconLeft, middle.top() + (middle.height() - iconSize) / 2.0},
                      {kind, 0, QSize(iconSize, iconSize)});
    }
    painter.setFont(font());
    const int left = icon_ == Icon::none ? iconLeft : textLeft;
    const int block = static_cast<int>(lines_.size()) * lineHeight;
    double y = middle.top() + (middle.height() - block) / 2.0;
    for (const QString& text : lines_) {
        painter.text(QRectF(left, y, width() - left, lineHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     theme::text, text);
        y += lineHeight;
    }
}

void SkinMessageBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        auto* focused = qobject_cast<CxSkinButton*>(focusWidget());
        (focused != nullptr ? focused : buttons_.front())->click();
        return;
    }
    if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(text_);
        return;
    }
    QDialog::keyPressEvent(event);
}

void SkinMessageBox::mousePressEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (event->button() != Qt::LeftButton || closeRect().contains(point)) {
        return;
    }
    moving_ = point.y() <= titleHeight;
    grabbedAt_ = event->globalPosition().toPoint() - pos();
}

void SkinMessageBox::mouseMoveEvent(QMouseEvent* event) {
    setCloseHovered(closeRect().contains(event->position().toPoint()));
    if (moving_) {
        move(event->globalPosition().toPoint() - grabbedAt_);
    }
}

void SkinMessageBox::mouseReleaseEvent(QMouseEvent* event) {
    const bool wasMoving = moving_;
    moving_ = false;
    if (!wasMoving && event->button() == Qt::LeftButton &&
        closeRect().contains(event->position().toPoint())) {
        reject();
    }
}

void SkinMessageBox::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

}  // namespace tessavo
