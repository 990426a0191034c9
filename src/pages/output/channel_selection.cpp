#include "pages/output/channel_selection.h"

#include <QLabel>
#include <QPainter>

#include "controls/skin_check_box.h"
#include "controls/skin_radio_button.h"
#include "controls/theme.h"
#include "pages/form/source_names.h"
#include "pages/rows/output_eq_rows.h"

namespace tessavo {

using namespace selection_id;

namespace {

const QString& noChannelText() {
    static const auto text = QStringLiteral("No channel is ticked: edits go nowhere");
    return text;
}

}  // namespace

ChannelSelection::ChannelSelection(QWidget* parent)
    : SkinGroupBox(QStringLiteral("Channel Selection"), -1, parent), form_(*this) {
    form_.build(channelSelectionRows());
    for (auto* label : findChildren<QLabel*>()) {
        // A click on the name is meant for its button.
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    for (std::size_t position = 0; position < channelCount; ++position) {
        form_.onClick(radios[position], [this, position] {
            for (std::size_t other = 0; other < channelCount; ++other) {
                form_.control<SkinRadioButton>(radios[other]).setChecked(other == position);
            }
            choose();
        });
        form_.onClick(checks[position], [this] { choose(); });
    }
    form_.labelAt(selectionNowherePlace).setAccessibleName(noChannelText());
    form_.control<SkinRadioButton>(radios[0]).setChecked(true);
    setMultiChannelMode(false);
}

void ChannelSelection::choose() {
    showChoice();
    Q_EMIT chosen();
}

std::uint8_t ChannelSelection::mask() const {
    unsigned mask = 0;
    for (const int button : multiChannelMode_ ? checks : radios) {
        mask <<= 1U;
        mask += form_.control<QAbstractButton>(button).isChecked() ? 1U : 0U;
    }
    return static_cast<std::uint8_t>(mask);
}

void ChannelSelection::setMultiChannelMode(bool on) {
    multiChannelMode_ = on;
    for (std::size_t position = 0; position < channelCount; ++position) {
        auto& radio = form_.control<SkinRadioButton>(radios[position]);
        auto& check = form_.control<SkinCheckBox>(checks[position]);
        check.setChecked(false);
        // The one that comes is there before the other goes, so that the focus finds a place.
        check.setEnabled(on);
        radio.setEnabled(!on);
        check.setVisible(on);
        radio.setVisible(!on);
    }
    showChoice();
}

void ChannelSelection::chooseOnly(PagePosition position) {
    if (multiChannelMode_) {
        form_.control<SkinCheckBox>(assign).setChecked(false);
        setMultiChannelMode(false);
    }
    for (std::size_t other = 0; other < channelCount; ++other) {
        form_.control<SkinRadioButton>(radios[other]).setChecked(other == position.value);
    }
    showChoice();
}

void ChannelSelection::setSource(PagePosition position, std::uint8_t source, const QString& name) {
    const QString full = sourceName(source);
    const QString gap = name.isEmpty() ? QString() : QStringLiteral(". ");
    form_.labelAt(selectionSourcePlace(selectionRowOf(position))).setText(shortSourceName(source));
    for (const int button : {radios[position.value], checks[position.value]}) {
        // A name that looks like mark-up stands as it is behind the first line.
        form_.control<QAbstractButton>(button).setToolTip(name.isEmpty() ? full
                                                                         : full + QLatin1Char('\n') + name);
        form_.control<QAbstractButton>(button).setAccessibleDescription(full + gap + name);
    }
}

void ChannelSelection::showChoice() {
    const unsigned chosenOnes = mask();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const bool isChosen = (chosenOnes & selectionBit({position})) != 0;
        QLabel& head = form_.labelAt(selectionHeadPlace(selectionRowOf({position})));
        head.setFont(theme::font(12, isChosen ? QFont::Medium : QFont::Normal));
        setTextColour(head, isChosen ? theme::text : theme::text2);
        // Tab stops at the chosen one, wherever it stands; the arrow keys lead to the others.
        auto& radio = form_.control<SkinRadioButton>(radios[position]);
        radio.setFocusPolicy(radio.isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
    }
    const bool nowhere = chosenOnes == 0;
    form_.labelAt(selectionNowherePlace).setVisible(nowhere);
    auto& several = form_.control<SkinCheckBox>(assign);
    several.setToolTip(nowhere ? noChannelText() : QString());
    several.setAccessibleDescription(several.toolTip());
    update();
}

void ChannelSelection::paintEvent(QPaintEvent* event) {
    SkinGroupBox::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor tint = QColor::fromRgb(theme::level);
    tint.setAlphaF(0.2F);
    painter.setBrush(tint);
    const unsigned chosenOnes = mask();
    for (int row = 0; row < static_cast<int>(channelCount); ++row) {
        if ((chosenOnes & selectionBit({selectionRows[static_cast<std::size_t>(row)]})) != 0) {
            painter.drawRoundedRect(rectOf(selectionRowPlace(row)), 3, 3);
        }
    }
    if (chosenOnes != 0) {
        // Otherwise the words about it stand here.
        painter.fillRect(QRectF(12, 256, width() - 24, 1), QColor::fromRgb(theme::line));
    }
}

}  // namespace tessavo
