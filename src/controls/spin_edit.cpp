#include "controls/spin_edit.h"

#include <QLineEdit>
#include <QMouseEvent>

#include "controls/control_id.h"
#include "controls/edit_frame.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int columnWidth = 20;

struct WholeNumber {
    bool found = false;       ///< the text begins with digits, or with a sign and digits
    bool isComplete = false;  ///< but for a part behind the decimal point, and blanks around it
    int value = 0;
};

WholeNumber wholeNumber(const QString& text) {
    constexpr int enough = 100'000'000;
    const QString trimmed = text.trimmed();
    qsizetype index = trimmed.startsWith(QLatin1Char('-')) ? 1 : 0;
    const bool negative = index == 1;
    const auto isDigit = [&trimmed](qsizetype at) {
        return at < trimmed.size() && trimmed[at] >= QLatin1Char('0') && trimmed[at] <= QLatin1Char('9');
    };
    WholeNumber number;
    for (; isDigit(index); ++index) {
        number.found = true;
        number.value = qMin(number.value * 10 + trimmed[index].unicode() - u'0', enough);
    }
    if (index < trimmed.size() &&
        (trimmed[index] == QLatin1Char('.') || trimmed[index] == QLatin1Char(','))) {
        for (++index; isDigit(index); ++index) {
        }
    }
    number.isComplete = number.found && index == trimmed.size();
    number.value = negative ? -number.value : number.value;
    return number;
}

}  // namespace

SpinEdit::SpinEdit(int controlId, QWidget* parent) : SpinEditBase(parent) {
    setControlId(*this, controlId);
    setLocale(QLocale::c());
    setFont(theme::font(12));
    setFrame(false);
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setAlignment(Qt::AlignCenter);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    prepareEdit(*lineEdit());
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { typed_ = edited_ = true; });
    connect(lineEdit(), &QLineEdit::textChanged, this, &SpinEdit::warn);
    connect(this, &QSpinBox::valueChanged, this, [this] {
        typed_ = false;
        warn();
    });
    connect(this, &QSpinBox::editingFinished, this, &SpinEdit::noteApplied);
    connect(&repeat_, &QTimer::timeout, this, [this] {
        repeat_.setInterval(repeatIntervalMs_);
        stepBy(pressed_);
    });
}

void SpinEdit::setRepeat(int delayMs, int intervalMs) {
    repeatDelayMs_ = delayMs;
    repeatIntervalMs_ = intervalMs;
}

QRect SpinEdit::buttonRect(bool upper) const {
    const int middle = height() / 2;
    const int left = width() - columnWidth;
    return upper ? QRect(left, 0, columnWidth, middle) : QRect(left, middle, columnWidth, height() - middle);
}

void SpinEdit::showValue(int value) {
    const QSignalBlocker quiet(this);
    setValue(value);
    typed_ = false;
    noteApplied();
    warn();
}

void SpinEdit::stepBy(int steps) {
    QSpinBox::stepBy(steps);
    noteApplied();
    warn();
}

void SpinEdit::noteApplied() {
    applied_ = lineEdit()->text();
    edited_ = false;
}

void SpinEdit::undoTyping() {
    lineEdit()->undo();
    edited_ = edited_ && lineEdit()->text() != applied_;
}

void SpinEdit::redoTyping() {
    lineEdit()->redo();
}

QValidator::State SpinEdit::validate(QString& /*text*/, int& /*cursor*/) const {
    return QValidator::Acceptable;
}

int SpinEdit::valueFromText(const QString& text) const {
    const WholeNumber number = wholeNumber(text);
    return number.found ? qBound(minimum(), number.value, maximum()) : value();
}

// The base emits no signal where it puts another text in place of the typed one, so this is called there.
void SpinEdit::warn() {
    const WholeNumber number = wholeNumber(lineEdit()->text());
    const int counted = valueFromText(lineEdit()->text());
    QString warning;
    if (!number.found) {
        warning = QStringLiteral("Not a number: %1 stays").arg(counted);
    } else if (number.value != counted) {
        warning = QStringLiteral("Out of range: counts as %1").arg(counted);
    } else if (!number.isComplete) {
        warning = QStringLiteral("Not wholly a number: counts as %1").arg(counted);
    }
    notes_.setWarning(warning);
}

void SpinEdit::applyTypedText() {
    const bool again = typed_ && wholeNumber(lineEdit()->text()).found;
    typed_ = false;
    interpretText();
    warn();
    if (again) {
        Q_EMIT retyped(value());
    }
}

void SpinEdit::layOutField() {
    lineEdit()->setGeometry(1, 1, width() - columnWidth - 1, height() - 2);
}

void SpinEdit::hoverPoint(const QPoint& point) {
    const int half = buttonRect(true).contains(point) ? 1 : buttonRect(false).contains(point) ? -1 : 0;
    if (half != hoveredHalf_) {
        hoveredHalf_ = half;
        update();
    }
}

void SpinEdit::releaseButton() {
    repeat_.stop();
    if (pressed_ != 0) {
        pressed_ = 0;
        update();
    }
}

void SpinEdit::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    unsigned state = notes_.skinState();
    state |= isEnabled() ? 0U : skinDisabled;
    state |= hasFocus() ? skinRinged : 0U;
    state |= isHovered() ? skinHovered : 0U;
    state |= pressed_ != 0 ? skinPressed : 0U;
    const int half = pressed_ != 0 ? pressed_ : hoveredHalf_;
    state |= half > 0 ? skinUpper : half < 0 ? skinLower : 0U;
    painter.piece({}, {SkinPiece::Kind::upDown, state, size()});
}

void SpinEdit::mousePressEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    hoverPoint(point);
    if (event->button() != Qt::LeftButton || hoveredHalf_ == 0) {
        QSpinBox::mousePressEvent(event);
        return;
    }
    setFocus(Qt::MouseFocusReason);
    pressed_ = hoveredHalf_;
    update();
    repeat_.start(repeatDelayMs_);
    stepBy(pressed_);
}

void SpinEdit::mouseMoveEvent(QMouseEvent* event) {
    hoverPoint(event->position().toPoint());
    if (pressed_ != 0 && hoveredHalf_ != pressed_) {
        releaseButton();
    }
}

void SpinEdit::mouseReleaseEvent(QMouseEvent* /*event*/) {
    releaseButton();
}

void SpinEdit::resizeEvent(QResizeEvent* event) {
    QSpinBox::resizeEvent(event);
    layOutField();
}

void SpinEdit::showEvent(QShowEvent* event) {
    QSpinBox::showEvent(event);
    layOutField();
}

void SpinEdit::focusInEvent(QFocusEvent* event) {
    QSpinBox::focusInEvent(event);
    update();
}

void SpinEdit::keyPressEvent(QKeyEvent* event) {
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && !wholeNumber(lineEdit()->text()).found) {
        applyTypedText();
        selectAll();
        event->ignore();
        return;
    }
    QSpinBox::keyPressEvent(event);
}

void SpinEdit::focusOutEvent(QFocusEvent* event) {
    releaseButton();
    if (event->reason() != Qt::PopupFocusReason) {
        applyTypedText();
    }
    QSpinBox::focusOutEvent(event);
    update();
}

void SpinEdit::leaveEvent(QEvent* event) {
    hoveredHalf_ = 0;
    SpinEditBase::leaveEvent(event);
}

void SpinEdit::hideEvent(QHideEvent* event) {
    releaseButton();
    QSpinBox::hideEvent(event);
}

void SpinEdit::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        releaseButton();
    }
    QSpinBox::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        layOutField();
    }
}

}  // namespace tessavo
