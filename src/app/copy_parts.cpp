#include "app/copy_parts.h"

#include <QAccessible>

#include "controls/theme.h"
#include "copies/copy_text.h"

namespace tessavo {

namespace {

constexpr int noId = -1;
constexpr int grooveHeight = 6;

}  // namespace

CColorControl* makeMessage(QWidget* parent) {
    auto* const label = new CColorControl({}, noId, parent);
    label->setFont(theme::font(12));
    label->setWordWrap(true);
    return label;
}

void tell(CColorControl& label, const QString& text, bool isTrouble) {
    label.setText(text);
    label.setColors(QColor::fromRgb(isTrouble ? theme::trouble : theme::text2));
    if (QAccessible::isActive() && !text.isEmpty()) {
        QAccessibleEvent alert(&label, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

QProgressBar* makeProgressBar(QWidget* parent) {
    auto* const bar = new QProgressBar(parent);
    bar->setAccessibleName(QStringLiteral("Progress"));
    bar->setTextVisible(false);
    bar->setFixedHeight(grooveHeight);
    showBarState(*bar, BarState::running);
    bar->setRange(0, 1);
    bar->setValue(0);
    return bar;
}

void showBarState(QProgressBar& bar, BarState state) {
    const QRgb fill = state == BarState::running   ? theme::level
                      : state == BarState::stopped ? theme::clip
                                                   : theme::live;
    bar.setStyleSheet(
        QStringLiteral("QProgressBar { background: %1; border: 1px solid %2; border-radius: 3px; }"
                       "QProgressBar::chunk { background: %3; border-radius: 2px; }")
            .arg(QColor::fromRgb(theme::sunk).name(), QColor::fromRgb(theme::line).name(),
                 QColor::fromRgb(fill).name()));
}

void showProgress(const CopyProgress& progress, CColorControl& label, QProgressBar& bar) {
    bar.setRange(0, static_cast<int>(progress.all));
    bar.setValue(static_cast<int>(progress.done));
    label.setColors(QColor::fromRgb(theme::text2));
    label.setText(QStringLiteral("%1, exchange %2 of %3")
                      .arg(sentenceStart(copyActText(progress.act, progress.targetSet)))
                      .arg(progress.done + 1)
                      .arg(progress.all));
}

QString sentenceStart(std::string_view text) {
    QString sentence = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    if (!sentence.isEmpty()) {
        sentence[0] = sentence[0].toUpper();
    }
    return sentence;
}

}  // namespace tessavo
