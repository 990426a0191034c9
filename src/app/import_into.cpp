#include "app/import_into.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "controls/color_control.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/theme.h"
#include "pages/form/channel_titles.h"
#include "pages/form/form.h"
#include "pages/form/source_names.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr int noControl = -1;
constexpr int labelLeft = 12;
constexpr int labelWidth = 86;
constexpr int controlLeft = 102;
constexpr int preampTop = 4;
constexpr int channelTop = 30;
constexpr int bandsTop = 60;
constexpr int numbersTop = 81;
constexpr int othersTop = 98;
constexpr int comboWidth = 200;
constexpr int comboHeight = 24;
constexpr int markSize = 22;
constexpr int bandPitch = 24;
constexpr int numberHeight = 13;
constexpr int sideLeft = 308;
constexpr int edge = 8;

QString countOf(std::size_t count, const QString& noun) {
    return QStringLiteral("%1 %2%3").arg(count).arg(noun, count == 1 ? QString() : QStringLiteral("s"));
}

}  // namespace

QString signedDecibels(double decibels) {
    const double rounded = std::round(decibels * 100.0) / 100.0;
    const QString number = textOf(shortNumber(rounded));
    return (rounded > 0 ? QStringLiteral("+") : QString()) + number + QStringLiteral(" dB");
}

ImportInto::ImportInto(const TuningState& tuning, QWidget* parent)
    : SkinGroupBox(QStringLiteral("Into"), noControl, parent, Kind::inset),
      preamp_(makeCheck({}, this)),
      channels_(makeCombo(QStringLiteral("Channel"), {}, this)),
      textChannels_(makeCombo(QStringLiteral("Channel of the text"), {}, this)),
      count_(makeLabel({}, this)),
      others_(makeCombo(QStringLiteral("Other bands"),
                        {QStringLiteral("stay as they are"), QStringLiteral("are switched off")}, this)) {
    setFont(theme::font(12, QFont::DemiBold));
    setTitlePosition({labelLeft, 7});
    const std::array<const char*, 3> names{"Channel", "Bands", "Other bands"};
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        labels_[i] = makeLabel(QLatin1String(names[i]), this);
    }
    for (SkinComboBox* const combo : {channels_, textChannels_, others_}) {
        combo->setFixedHeight(comboHeight);
    }
    count_->setColors(QColor::fromRgb(theme::text));
    preamp_->setChecked(true);
    preamp_->hide();
    textChannels_->hide();
    makeChannels(tuning);
    makeBands();
    connect(preamp_, &QAbstractButton::toggled, this, &ImportInto::changed);
    connect(channels_, &QComboBox::currentIndexChanged, this, &ImportInto::changed);
    connect(others_, &QComboBox::currentIndexChanged, this, &ImportInto::changed);
    connect(textChannels_, &QComboBox::currentIndexChanged, this, &ImportInto::textChannelChanged);
    showCount();
}

void ImportInto::makeChannels(const TuningState& tuning) {
    const RecordChannel first = lastSelected(tuning.selectionMask()).value_or(recordChannelAt({0}));
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        const QString name = channelNameText(tuning.notes(), channel);
        const std::uint32_t source = tuning.currentParameterSet().routerSource.at(channel.value);
        channels_->addItem(name.isEmpty() ? sourceName(static_cast<std::uint8_t>(source)) : name);
        channels_->setItemDot(position, QColor::fromRgb(theme::channels.at(position)));
        channels_->setItemNumber(position, position + 1);
        if (channel == first) {
            channels_->setCurrentIndex(position);
        }
    }
    channels_->setToolTip(QStringLiteral("The numbers are those of \"Equalizing Output\""));
}

void ImportInto::makeBands() {
    for (std::size_t band = 0; band < bandCount; ++band) {
        const QString number = QString::number(band + 1);
        bands_[band] = makeCheck({}, this);
        bands_[band]->setAccessibleName(QStringLiteral("Band ") + number);
        bands_[band]->setToolTip(bands_[band]->accessibleName());
        bands_[band]->setChecked(true);
        numbers_[band] = makeLabel(number, this);
        numbers_[band]->setAlignment(Qt::AlignCenter);
        connect(bands_[band], &QAbstractButton::toggled, this, [this] {
            showCount();
            Q_EMIT changed();
        });
    }
}

void ImportInto::showText(const FilterText& text, std::size_t filters) {
    const QSignalBlocker quiet(this);
    filters_ = filters;
    for (std::size_t band = 0; band < bandCount; ++band) {
        bands_[band]->setChecked(band < filters);
    }
    preamp_->setText(QStringLiteral("Preamp %1 into the volume").arg(signedDecibels(text.preampDb)));
    preamp_->setVisible(text.hasPreamp);
    textChannels_->clear();
    for (const std::string& name : text.channels) {
        textChannels_->addItem(QStringLiteral("the text\u2019s ") + textOf(name), textOf(name));
    }
    textChannels_->setCurrentIndex(
        std::max(0, textChannels_->findData(textOf(text.channel), Qt::UserRole, Qt::MatchExactly)));
    textChannels_->setVisible(text.channels.size() > 1);
    showCount();
}

RecordChannel ImportInto::channel() const {
    return recordChannelAt({static_cast<std::uint8_t>(std::max(0, channels_->currentIndex()))});
}

std::string ImportInto::textChannel() const {
    return textChannels_->count() > 1 ? textChannels_->currentData().toString().toStdString() : std::string();
}

ImportChoice ImportInto::choice() const {
    ImportChoice choice;
    for (std::size_t band = 0; band < bandCount; ++band) {
        choice.bands[band] = bands_[band]->isChecked();
    }
    choice.keepOthers = others_->currentIndex() == 0;
    choice.withPreamp = preamp_->isChecked();
    return choice;
}

std::vector<QWidget*> ImportInto::controls() const {
    std::vector<QWidget*> all{preamp_, channels_, textChannels_};
    all.insert(all.end(), bands_.begin(), bands_.end());
    all.push_back(others_);
    return all;
}

void ImportInto::showCount() {
    const auto bands = static_cast<std::size_t>(std::ranges::count_if(bands_, &QAbstractButton::isChecked));
    count_->setText(countOf(filters_, QStringLiteral("filter")) + QStringLiteral(", ") +
                    countOf(bands, QStringLiteral("band")));
    count_->setColors(QColor::fromRgb(filters_ > bands ? theme::target : theme::text));
}

void ImportInto::resizeEvent(QResizeEvent* event) {
    SkinGroupBox::resizeEvent(event);
    const std::array<int, 3> rows{channelTop, bandsTop, othersTop};
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        labels_[i]->setGeometry(labelLeft, rows[i], labelWidth, comboHeight);
    }
    const int sideWidth = width() - sideLeft - edge;
    preamp_->setGeometry(controlLeft - 3, preampTop, width() - controlLeft - edge, markSize);
    channels_->setGeometry(controlLeft, channelTop, comboWidth, comboHeight);
    textChannels_->setGeometry(sideLeft, channelTop, sideWidth, comboHeight);
    for (std::size_t band = 0; band < bandCount; ++band) {
        const int left = controlLeft + bandPitch * static_cast<int>(band);
        bands_[band]->setGeometry(left, bandsTop, markSize, markSize);
        numbers_[band]->setGeometry(left, numbersTop, markSize, numberHeight);
    }
    count_->setGeometry(sideLeft, bandsTop + 2, sideWidth, 20);
    others_->setGeometry(controlLeft, othersTop, comboWidth, comboHeight);
}

}  // namespace tessavo
