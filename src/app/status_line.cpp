#include "app/status_line.h"

#include <QPainter>
#include <array>

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

QString modeText(const TargetStatus& target) {
    return target.liveMode ? QStringLiteral("Live Mode on") : QStringLiteral("Live Mode off");
}

}  // namespace

StatusLine::StatusLine(QWidget* parent) : QWidget(parent) {
    setFixedHeight(barHeight);
    setAccessibleName(QStringLiteral("Status"));
    setAccessibleDescription(paneText(0));
}

void StatusLine::setTarget(const TargetStatus& status) {
    if (status == target_) {
        return;
    }
    target_ = status;
    setAccessibleDescription(paneText(0));
    update(0, 0, targetWidth(), height());
}

void StatusLine::setKeyStates(const KeyStates& states) {
    if (states == keys_) {
        return;
    }
    keys_ = states;
    update(targetWidth(), 0, keysWidth, height());
}

int StatusLine::targetWidth() const {
    // Where both do not fit the target is worth more.
    constexpr int longestState = 200;
    const int left = width() - keysWidth;
    return left < stateLeft + longestState ? width() : left;
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
    return sentence;
}

bool StatusLine::keyLit(int pane) const {
    const std::array<bool, paneCount> lit{false, keys_.capsLock, keys_.numLock, keys_.scrollLock};
    return pane > 0 && pane < paneCount && lit[static_cast<std::size_t>(pane)];
}

void StatusLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(theme::bars));
    painter.fillRect(0, 0, width(), 1, QColor::fromRgb(theme::line));
    painter.setRenderHint(QPainter::Antialiasing);
    paintTarget(painter);
    paintKeys(painter);
}

void StatusLine::paintTarget(QPainter& painter) const {
    paintLight(painter, {lightCentre, height() / 2.0});
    painter.setFont(theme::font(11));
    const auto column = [&](int left, int right, const QString& text, QRgb color) {
        painter.setPen(QColor::fromRgb(color));
        // Whole in the pane's description where it does not fit.
        const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, right - left);
        painter.drawText(QRect(left, 0, right - left, height()), Qt::AlignVCenter | Qt::AlignLeft, shown);
    };
    column(portLeft, modeLeft, portText(target_), theme::text2);
    column(modeLeft, stateLeft, modeText(target_), theme::text2);
    const bool trouble = target_.light == TargetStatus::Light::trouble;
    column(stateLeft, targetWidth(), target_.state, trouble ? theme::trouble : theme::text);
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
