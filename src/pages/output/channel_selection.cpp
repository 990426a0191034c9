#include "pages/output/channel_selection.h"

#include <QLabel>
#include <QPainter>

#include "controls/control_id.h"
#include "controls/skin_check_box.h"
#include "controls/skin_radio_button.h"
#include "controls/theme.h"
#include "pages/form/source_names.h"

namespace tessavo {

namespace {

// Numbers of the controls of a page position.
struct PositionIds {
    int radio;
    int check;
    int name;
};

constexpr std::array<PositionIds, channelCount> ids{{{1097, 1053, 1267},
                                                     {1083, 1054, 1268},
                                                     {1084, 1055, 1265},
                                                     {1085, 1056, 1264},
                                                     {1086, 1057, 1263},
                                                     {1087, 1058, 1262},
                                                     {1078, 1072, 1261},
                                                     {1079, 1073, 1260}}};
constexpr int assignId = 1077;

// Page position that stands in each row, from top to bottom.
constexpr std::array<std::uint8_t, channelCount> rowPositions{6, 3, 7, 2, 1, 5, 0, 4};

constexpr QRect rowPlace(int row) {
    return {6, 32 + 27 * row, 172, 25};
}

void setTextColor(QLabel& label, QRgb color) {
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgb(color));
    label.setPalette(palette);
}

const QString& noChannelText() {
    static const auto text = QStringLiteral("No channel is ticked: edits go nowhere");
    return text;
}

QLabel* makeLabel(const QString& text, const QRect& place, int pixelSize, QRgb color, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setGeometry(place);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label->setFont(theme::font(pixelSize));
    // A click on the name is meant for its button.
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextColor(*label, color);
    return label;
}

}  // namespace

ChannelSelection::ChannelSelection(QWidget* parent)
    : SkinGroupBox(QStringLiteral("Channel Selection"), -1, parent) {
    for (int row = 0; row < static_cast<int>(channelCount); ++row) {
        makeRow(row);
    }
    assign_ = new SkinCheckBox(QStringLiteral("Assign to multiple Ch."), assignId, this);
    assign_->setGeometry(11, 265, 167, 22);
    connect(assign_, &QAbstractButton::clicked, this, &ChannelSelection::assignClicked);
    nowhere_ = makeLabel(QStringLiteral("No channel: edits go nowhere"), {8, 247, 168, 17}, 11,
                         theme::trouble, this);
    nowhere_->setAlignment(Qt::AlignCenter);
    nowhere_->setAccessibleName(noChannelText());
    nowhere_->hide();
    radios_[0]->setChecked(true);
    showChoice();
}

void ChannelSelection::makeRow(int row) {
    const std::size_t position = rowPositions[static_cast<std::size_t>(row)];
    const QRect place = rowPlace(row);
    heads_[position] =
        makeLabel(QStringLiteral("Ch %1").arg(row + 1), {14, place.y(), 36, 25}, 12, theme::text2, this);
    const QRect buttonPlace(55, place.y(), 119, 25);
    const QString name = nameOf({static_cast<std::uint8_t>(position)});

    radios_[position] = new SkinRadioButton(QString(), ids[position].radio, this);
    radios_[position]->setGeometry(buttonPlace);
    radios_[position]->setAccessibleName(name);
    connect(radios_[position], &QAbstractButton::clicked, this, [this, position] {
        for (std::size_t other = 0; other < channelCount; ++other) {
            radios_[other]->setChecked(other == position);
        }
        showChoice();
        Q_EMIT chosen();
    });

    checks_[position] = new SkinCheckBox(QString(), ids[position].check, this);
    checks_[position]->setGeometry(buttonPlace);
    checks_[position]->setAccessibleName(name);
    checks_[position]->setEnabled(false);
    checks_[position]->hide();
    connect(checks_[position], &QAbstractButton::clicked, this, [this] {
        showChoice();
        Q_EMIT chosen();
    });

    QLabel* nameLabel = makeLabel(name, {80, place.y(), 62, 25}, 12, theme::text, this);
    setControlId(*nameLabel, ids[position].name);
    sources_[position] = makeLabel(QString(), {142, place.y(), 32, 25}, 11, theme::text2, this);
    sources_[position]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

QString ChannelSelection::nameOf(PagePosition position) {
    return QStringLiteral("Channel %1").arg(position.value + 1);
}

std::uint8_t ChannelSelection::mask() const {
    unsigned mask = 0;
    for (std::size_t position = 0; position < channelCount; ++position) {
        mask <<= 1U;
        const QAbstractButton* button = multiChannelMode_
                                            ? static_cast<const QAbstractButton*>(checks_[position])
                                            : static_cast<const QAbstractButton*>(radios_[position]);
        mask += button->isChecked() ? 1U : 0U;
    }
    return static_cast<std::uint8_t>(mask);
}

PagePosition ChannelSelection::position() const {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if (radios_[position]->isChecked()) {
            return {position};
        }
    }
    return {};
}

void ChannelSelection::setMultiChannelMode(bool on) {
    multiChannelMode_ = on;
    for (std::size_t position = 0; position < channelCount; ++position) {
        checks_[position]->setChecked(false);
        // The one that comes is there before the other goes, so that the focus finds a place.
        checks_[position]->setEnabled(on);
        radios_[position]->setEnabled(!on);
        checks_[position]->setVisible(on);
        radios_[position]->setVisible(!on);
    }
    showChoice();
}

void ChannelSelection::setSource(PagePosition position, std::uint8_t source) {
    const QString full = sourceName(source);
    sources_[position.value]->setText(shortSourceName(source));
    radios_[position.value]->setToolTip(full);
    checks_[position.value]->setToolTip(full);
    radios_[position.value]->setAccessibleDescription(full);
    checks_[position.value]->setAccessibleDescription(full);
}

void ChannelSelection::showChoice() {
    const unsigned chosenOnes = mask();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const bool isChosen = (chosenOnes & selectionBit({position})) != 0;
        heads_[position]->setFont(theme::font(12, isChosen ? QFont::Medium : QFont::Normal));
        setTextColor(*heads_[position], isChosen ? theme::text : theme::text2);
        // Tab stops at the chosen one, wherever it stands; the arrow keys lead to the others.
        radios_[position]->setFocusPolicy(radios_[position]->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
    }
    const bool nowhere = chosenOnes == 0;
    nowhere_->setVisible(nowhere);
    assign_->setToolTip(nowhere ? noChannelText() : QString());
    assign_->setAccessibleDescription(assign_->toolTip());
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
        if ((chosenOnes & selectionBit({rowPositions[static_cast<std::size_t>(row)]})) != 0) {
            painter.drawRoundedRect(rowPlace(row), 3, 3);
        }
    }
    if (chosenOnes != 0) {
        // Otherwise the words about it stand here.
        painter.fillRect(QRectF(12, 256, width() - 24, 1), QColor::fromRgb(theme::line));
    }
}

}  // namespace tessavo
