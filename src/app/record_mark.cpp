#include "app/record_mark.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cstring>
#include <vector>

#include "controls/accessible.h"
#include "controls/control_id.h"
#include "controls/theme.h"
#include "params/settings_file.h"
#include "params/tuning_state.h"

namespace tessavo {

QString recordTrouble(const ParameterSet& set) {
    if (isValidRecord(set)) {
        return {};
    }
    std::vector<std::uint8_t> bytes(sizeof set);
    std::memcpy(bytes.data(), &set, bytes.size());
    if (std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; })) {
        return QStringLiteral("all zeros");
    }
    return QStringLiteral("starts with %1 instead of %2").arg(set.recordSize).arg(parameterSetSize);
}

RecordMark::RecordMark(int controlId, const TuningState& tuning, QWidget* parent)
    : QWidget(parent), tuning_(tuning) {
    installAccessibility();
    setControlId(*this, controlId);
    setFixedSize(markSize, markSize);
    setAccessibleName(QStringLiteral("Sets without a valid record"));
    hide();
}

void RecordMark::showState() {
    QStringList lines;
    for (std::size_t set = 0; set < setCount; ++set) {
        if (const QString trouble = recordTrouble(tuning_.store().sets[set]); !trouble.isEmpty()) {
            lines << QStringLiteral("Set %1 has no valid record: %2.").arg(set + 1).arg(trouble);
        }
    }
    if (!lines.isEmpty()) {
        lines << QStringLiteral("A saved file does not open again while such a set is chosen.");
    }
    current_ = !isValidRecord(tuning_.currentParameterSet());
    const QString text = lines.join(QLatin1Char('\n'));
    if (toolTip() != text) {
        setToolTip(text);
        setAccessibleDescription(text);
        announceText(*this);
    }
    setVisible(!text.isEmpty());
    update();
}

bool RecordMark::event(QEvent* event) {
    // An edit may have written into a record that was all zeros.
    if (event->type() == QEvent::ToolTip) {
        showState();
    }
    return QWidget::event(event);
}

void RecordMark::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath sign;
    sign.moveTo(8, 1.5);
    sign.lineTo(15, 14.5);
    sign.lineTo(1, 14.5);
    sign.closeSubpath();
    const QColor color = QColor::fromRgb(current_ ? theme::clip : theme::groups[3]);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(current_ ? QBrush(QColor::fromRgb(theme::stop)) : QBrush(QColor::fromRgb(theme::sunk)));
    painter.drawPath(sign);
    painter.setPen(Qt::NoPen);
    painter.setBrush(current_ ? QColor::fromRgb(theme::white) : color);
    painter.drawRoundedRect(QRectF(7.1, 5.5, 1.8, 4.8), 0.8, 0.8);
    painter.drawEllipse(QRectF(7.0, 11.3, 2, 2));
}

}  // namespace tessavo
