#include "app/align_rows.h"

#include <algorithm>

#include "app/align_parts.h"
#include "app/plain_tool_tip.h"
#include "base/number_text.h"
#include "controls/number_edit.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "pages/form/channel_titles.h"
#include "pages/form/form.h"
#include "pages/form/source_names.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr int noControl = -1;
constexpr int firstRowTop = 27;
constexpr int rowHeight = 33;
constexpr int tagLeft = 12;
constexpr int tagSize = 14;
constexpr int nameLeft = 34;
constexpr int nameWidth = 92;
constexpr int boxLeft = 132;
constexpr int boxWidth = 62;
constexpr int boxHeight = 24;
constexpr int unitLeft = 199;
constexpr int unitWidth = 26;
constexpr int barLeft = 242;
constexpr int barWidth = 222;
constexpr int barTop = 12;
constexpr int barHeight = 9;
constexpr double barRadius = 1.5;
constexpr double farthestShare = 1 / 1.02;
constexpr double leastMissingPixels = 8;
constexpr int needsLeft = 472;
constexpr int needsWidth = 58;
constexpr int groupLeft = 536;
constexpr int groupWidth = 62;
constexpr int channelLeft = 604;
constexpr int channelWidth = 76;
constexpr int signLeft = 696;
constexpr int resultLeft = 717;
constexpr int resultWidth = 106;
constexpr int coarseSteps = 10;
constexpr int longestText = 12;
constexpr int nameInSentence = 120;

CColorControl* valueLabel(const QRect& place, QRgb color, QWidget* parent) {
    CColorControl* const label = makeLabel({}, parent);
    label->setFont(theme::font(12));
    label->setColors(QColor::fromRgb(color));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setGeometry(place);
    return label;
}

QString tenths(double value) {
    return textOf(fixedText(value, 1));
}

int rowTop(std::size_t position) {
    return firstRowTop + AlignRows::rowPitch * static_cast<int>(position);
}

}  // namespace

std::optional<double> numberWithin(const QString& text, double least, double most) {
    const auto number = typedNumber(text.toStdString());
    return number && *number >= least && *number <= most ? number : std::nullopt;
}

AlignRows::AlignRows(const TuningState& tuning, QWidget* parent) : QWidget(parent), tuning_(tuning) {
    makeHead();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        makeRow(position);
    }
    setFixedSize(usualSize);
}

void AlignRows::makeHead() {
    struct Title {
        const char* text;
        int left;
        int width;
        Qt::AlignmentFlag side;
    };
    constexpr std::array<Title, 7> titles{{{"Channel", tagLeft, 110, Qt::AlignLeft},
                                           {"Distance", boxLeft, 104, Qt::AlignLeft},
                                           {"Arrival at the seat", barLeft, 200, Qt::AlignLeft},
                                           {"Needs ms", needsLeft, needsWidth, Qt::AlignRight},
                                           {"Group ms", groupLeft, groupWidth, Qt::AlignRight},
                                           {"Channel ms", channelLeft, channelWidth, Qt::AlignRight},
                                           {"Result", signLeft, 116, Qt::AlignLeft}}};
    for (const Title& title : titles) {
        CColorControl* const label = makeLabel(QLatin1String(title.text), this);
        label->setFont(theme::font(11, QFont::Medium));
        label->setAlignment(title.side | Qt::AlignVCenter);
        label->setGeometry(title.left, 1, title.width, headHeight - 1);
        toldTitle_ = title.left == boxLeft ? label : toldTitle_;
    }
}

void AlignRows::makeRow(std::uint8_t position) {
    const RecordChannel channel = recordChannelAt({position});
    Row& row = rows_.at(position);
    const int top = rowTop(position);
    QString name = channelNameText(tuning_.notes(), channel);
    if (name.isEmpty()) {
        name = sourceName(
            static_cast<std::uint8_t>(tuning_.currentParameterSet().routerSource.at(channel.value)));
    }
    row.name = valueLabel({nameLeft, top, nameWidth, rowHeight}, theme::text, this);
    row.name->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    row.name->setText(row.name->fontMetrics().elidedText(name, Qt::ElideRight, nameWidth));
    row.name->setToolTip(plainToolTip(channelTitle(tuning_.notes(), channel)));
    row.told = new NumberEdit(noControl, this);
    row.told->setColor(theme::quality);
    row.told->setMaxLength(longestText);
    row.told->setAlignment(Qt::AlignRight);
    row.told->setGeometry(boxLeft, top + 4, boxWidth, boxHeight);
    row.unit = makeLabel({}, this);
    row.unit->setGeometry(unitLeft, top + 4, unitWidth, boxHeight);
    row.needs = valueLabel({needsLeft, top, needsWidth, rowHeight}, theme::text2, this);
    row.group = valueLabel({groupLeft, top, groupWidth, rowHeight}, theme::text, this);
    row.channel = valueLabel({channelLeft, top, channelWidth, rowHeight}, theme::text, this);
    row.result = valueLabel({resultLeft, top, resultWidth, rowHeight}, theme::text, this);
    row.result->setFont(theme::font(11));
    row.result->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    NumberEdit* const box = row.told;
    connect(box, &QLineEdit::textChanged, this, [this, box] {
        warnOf(*box);
        Q_EMIT changed();
    });
    connect(box, &NumberEdit::stepRequested, this,
            [this, box](int steps, bool coarse) { stepBox(*box, steps, coarse); });
}

void AlignRows::warnOf(NumberEdit& box) const {
    const bool isRight = box.text().trimmed().isEmpty() || numberWithin(box.text(), 0, mostToldOfPlace);
    box.setWarning(isRight ? QString() : QStringLiteral("Type a number from 0 to 100000, or nothing"));
}

void AlignRows::stepBox(NumberEdit& box, int steps, bool coarse) {
    if (const auto value = numberWithin(box.text(), 0, mostToldOfPlace)) {
        const double step = unit_ == AlignmentUnit::centimeters ? 1 : 0.1;
        const double next =
            std::clamp(*value + step * steps * (coarse ? coarseSteps : 1), 0.0, mostToldOfPlace);
        box.setValueText(textOf(shortNumber(next, 8)));
        box.selectAll();
    }
}

void AlignRows::showTexts(const AlignTexts& texts, AlignmentUnit unit) {
    const QSignalBlocker quiet(this);
    unit_ = unit;
    const bool isDistance = unit == AlignmentUnit::centimeters;
    const QString what = isDistance ? QStringLiteral("Distance") : QStringLiteral("Time");
    toldTitle_->setText(what);
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const Row& row = rows_.at(position);
        row.told->setValueText(texts.at(position));
        row.told->setAccessibleName(what + QStringLiteral(" of ") +
                                    channelTitle(tuning_.notes(), recordChannelAt({position})));
        row.unit->setText(isDistance ? QStringLiteral("cm") : QStringLiteral("ms"));
        row.told->setUnit(row.unit->text());
        warnOf(*row.told);
    }
}

AlignTexts AlignRows::texts() const {
    AlignTexts texts;
    std::ranges::transform(rows_, texts.begin(), [](const Row& row) { return row.told->text(); });
    return texts;
}

std::optional<PagePosition> AlignRows::firstWrong() const {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const QString text = rows_.at(position).told->text();
        if (!text.trimmed().isEmpty() && !numberWithin(text, 0, mostToldOfPlace)) {
            return PagePosition{position};
        }
    }
    return std::nullopt;
}

std::optional<ArrivalTimes> AlignRows::values() const {
    if (firstWrong()) {
        return std::nullopt;
    }
    ArrivalTimes values;
    std::ranges::transform(rows_, values.begin(),
                           [](const Row& row) { return numberWithin(row.told->text(), 0, mostToldOfPlace); });
    return values;
}

QString AlignRows::nameOf(PagePosition position) const {
    const RecordChannel channel = recordChannelAt(position);
    const QString name = channelNameText(tuning_.notes(), channel);
    // A sentence has room for so much of a name and no more.
    return name.isEmpty() ? channelNumber(channel)
                          : QFontMetrics(theme::font(11)).elidedText(name, Qt::ElideRight, nameInSentence);
}

void AlignRows::showAlignment(const Alignment& alignment, const ArrivalTimes& times, double celsius) {
    alignment_ = alignment;
    times_ = times;
    for (std::size_t position = 0; position < channelCount; ++position) {
        const Row& row = rows_.at(position);
        const auto& channel = alignment.channels.at(position);
        row.needs->setText(channel ? tenths(channel->neededMs) : QString());
        row.group->setText(channel ? tenths(channel->groupTenthMs / 10.0) : QString());
        row.channel->setText(channel ? tenths(channel->channelTenthMs / 10.0) : QString());
        const bool isLeftOut = row.told->text().trimmed().isEmpty();
        const QString result = channel     ? textOf(alignmentResult(*channel, celsius))
                               : isLeftOut ? QStringLiteral("stays as it is")
                                           : QString();
        row.result->setText(row.result->fontMetrics().elidedText(result, Qt::ElideRight, resultWidth));
        row.result->setToolTip(row.result->text() == result ? QString() : plainToolTip(result));
        row.result->setColors(QColor::fromRgb(!channel                 ? theme::text2
                                              : channel->missingMs > 0 ? theme::trouble
                                                                       : theme::text));
    }
    update();
}

void AlignRows::paintBar(QPainter& painter, std::uint8_t position, double top) const {
    const auto& channel = alignment_.channels.at(position);
    const double latestMs = times_.at(alignment_.farthest.value_or(PagePosition{}).value).value_or(0);
    if (!channel || latestMs <= 0) {
        return;
    }
    const double pixelsPerMs = barWidth * farthestShare / latestMs;
    double left = barLeft;
    const auto paintPart = [&](double milliseconds, QRgb color) {
        const double pixels = milliseconds * pixelsPerMs;
        if (pixels > 1) {
            // What a short way is rounded up by would reach into the next column.
            const double right = std::min(left + pixels - 1, static_cast<double>(barLeft + barWidth + 4));
            painter.setBrush(QColor::fromRgb(color));
            painter.drawRoundedRect(QRectF(left, top, right - left, barHeight), barRadius, barRadius);
        }
        left += pixels;
    };
    painter.setPen(Qt::NoPen);
    paintPart(times_.at(position).value_or(0), align_color::path);
    paintPart(channel->groupTenthMs / 10.0, align_color::group);
    paintPart(channel->channelTenthMs / 10.0, theme::quality);
    if (channel->missingMs > 0) {
        const double right = left + channel->missingMs * pixelsPerMs;
        const double seen = std::min(left, right - leastMissingPixels);
        paintMissing(painter, QRectF(seen, top, right - seen, barHeight));
    }
}

void AlignRows::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    painter.roundFrame(rect(), 5, QColor::fromRgb(theme::inset), QColor::fromRgb(theme::line));
    painter.roundFrame(QRectF(1, 1, width() - 2, headHeight), 4, QColor::fromRgb(theme::bars));
    painter.fillRect(painter.snapped(QRectF(1, headHeight, width() - 2, 1)), QColor::fromRgb(theme::line));
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const int top = rowTop(position);
        painter.setRenderHint(QPainter::Antialiasing, false);
        if (position != 0) {
            painter.fillRect(painter.snapped(QRectF(4, top - 1, width() - 8, 1)),
                             QColor::fromRgb(theme::rowDivider));
        }
        for (int y = top - 1; alignment_.farthest && y < top + rowHeight; y += 4) {
            painter.fillRect(painter.snapped(QRectF(seatLeft, y, 1, 2)), QColor::fromRgb(theme::text2));
        }
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF tag(tagLeft, top + 9, tagSize, tagSize);
        painter.roundFrame(tag, 3, QColor::fromRgb(theme::channels.at(position)));
        painter.setFont(theme::font(11, QFont::DemiBold));
        painter.text(tag.adjusted(-3, -1, 3, 1), Qt::AlignCenter, theme::sunk, QString::number(position + 1));
        paintBar(painter, position, top + barTop);
        if (const auto& channel = alignment_.channels.at(position)) {
            paintAlignSign(painter, QPointF(signLeft, top + 8), channel->missingMs == 0);
        }
    }
}

}  // namespace tessavo
