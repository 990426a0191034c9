#include "app/align_dialog.h"

#include <QScrollArea>
#include <algorithm>
#include <vector>

#include "app/align_parts.h"
#include "app/plain_tool_tip.h"
#include "base/number_text.h"
#include "controls/color_control.h"
#include "controls/number_edit.h"
#include "controls/screen_room.h"
#include "controls/scroll_body.h"
#include "controls/skin_button.h"
#include "controls/skin_radio_button.h"
#include "controls/theme.h"
#include "measure/alignment_text.h"
#include "pages/form/form.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr int noControl = -1;
constexpr int margin = 16;
constexpr int gap = 8;
constexpr int headTop = 14;
constexpr int controlHeight = 28;
constexpr int tableTop = 54;
constexpr int verdictTop = 364;
constexpr int verdictHeight = 54;
constexpr int footHeight = 52;
constexpr int buttonWidth = 84;
constexpr int coarseSteps = 10;

QString quoted(const QString& text) {
    return QLatin1Char('"') + text + QLatin1Char('"');
}

}  // namespace

AlignDialog::AlignDialog(const TuningState& tuning, const AlignInputs& inputs, QWidget* parent)
    : CDialogSK(parent), tuning_(tuning), body_(new QWidget), inputs_(inputs) {
    setObjectName(QStringLiteral("align"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Align"));
    body_->setFixedSize(usualSize - QSize(0, footHeight));
    area_ = makeScrollBody(body_, this);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    makeHead();
    rows_ = new AlignRows(tuning, body_);
    rows_->move(margin, tableTop);
    verdict_ = new AlignVerdict(body_);
    verdict_->setGeometry(margin, verdictTop, body_->width() - 2 * margin, verdictHeight);
    makeFoot();
    setTabOrders();
    connect(rows_, &AlignRows::changed, this, &AlignDialog::alignAnew);
    const bool isDistance = inputs_.unit == AlignmentUnit::centimeters;
    (isDistance ? byDistance_ : byTime_)->setChecked(true);
    rows_->showTexts(isDistance ? inputs_.distances : inputs_.times, inputs_.unit);
    connect(byDistance_, &QAbstractButton::toggled, this, [this](bool isChecked) {
        showUnit(isChecked ? AlignmentUnit::centimeters : AlignmentUnit::milliseconds);
    });
    setFixedSize(usualSize.boundedTo(roomOnScreen(parent)));
    alignAnew();
    rows_->box({0}).setFocus();
}

void AlignDialog::makeHead() {
    byDistance_ = new SkinRadioButton(QStringLiteral("Distances"), noControl, body_);
    byDistance_->setGeometry(13, headTop, 95, controlHeight);
    byDistance_->setToolTip(QStringLiteral("From each loudspeaker to the seat, in cm"));
    byTime_ = new SkinRadioButton(QStringLiteral("Times"), noControl, body_);
    byTime_->setGeometry(121, headTop, 73, controlHeight);
    byTime_->setToolTip(
        QStringLiteral("When the sound of each loudspeaker arrives at the seat, in ms, as measured"));
    CColorControl* const air = makeLabel(QStringLiteral("Air temperature"), body_);
    air->setFont(theme::font(12));
    air->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    air->setGeometry(206, headTop, 104, controlHeight);
    celsius_ = new NumberEdit(noControl, body_);
    celsius_->setAccessibleName(air->text());
    celsius_->setUnit(QStringLiteral("\u00b0C"));
    celsius_->setColor(theme::quality);
    celsius_->setMaxLength(6);
    celsius_->setAlignment(Qt::AlignRight);
    celsius_->setGeometry(318, headTop + 2, 52, 24);
    celsius_->setValueText(inputs_.celsius);
    CColorControl* const unit = makeLabel(celsius_->unit(), body_);
    unit->setGeometry(374, headTop, 24, controlHeight);
    speed_ = makeLabel({}, body_);
    speed_->setFont(theme::font(12));
    speed_->setColors(QColor::fromRgb(theme::text));
    speed_->setGeometry(404, headTop, 80, controlHeight);
    auto* const legend = new AlignLegend(body_);
    legend->move(body_->width() - margin - legend->width(), headTop + (controlHeight - legend->height()) / 2);
    connect(celsius_, &QLineEdit::textChanged, this, &AlignDialog::alignAnew);
    connect(celsius_, &NumberEdit::stepRequested, this, [this](int steps, bool coarse) {
        if (const auto celsius = numberWithin(celsius_->text(), lowestAirCelsius, highestAirCelsius)) {
            const double next = *celsius + steps * (coarse ? coarseSteps : 1);
            celsius_->setValueText(
                textOf(shortNumber(std::clamp(next, lowestAirCelsius, highestAirCelsius), 5)));
            celsius_->selectAll();
        }
    });
}

void AlignDialog::makeFoot() {
    note_ = makeLabel(
        QStringLiteral("One step of undo. Group delays of \"Output Group\" first, the rest in the channel."),
        this);
    apply_ = makeButton(QStringLiteral("Apply"), this);
    apply_->setAccented(true);
    cancel_ = makeButton(QStringLiteral("Cancel"), this);
    for (CxSkinButton* const button : {apply_, cancel_}) {
        button->setAutoDefault(true);
    }
    apply_->setDefault(true);
    connect(apply_, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(cancel_, &QAbstractButton::clicked, this, &QDialog::reject);
}

void AlignDialog::setTabOrders() {
    std::vector<QWidget*> order{byDistance_, byTime_, celsius_};
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        order.push_back(&rows_->box({position}));
    }
    order.insert(order.end(), {apply_, cancel_});
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

AlignInputs AlignDialog::inputs() const {
    AlignInputs inputs = inputs_;
    (inputs.unit == AlignmentUnit::centimeters ? inputs.distances : inputs.times) = rows_->texts();
    inputs.celsius = celsius_->text();
    return inputs;
}

void AlignDialog::showUnit(AlignmentUnit unit) {
    inputs_ = inputs();
    inputs_.unit = unit;
    rows_->showTexts(unit == AlignmentUnit::centimeters ? inputs_.distances : inputs_.times, unit);
    alignAnew();
}

ParameterSet AlignDialog::record() const {
    ParameterSet set = tuning_.currentParameterSet();
    if (alignment_) {
        applyAlignment(*alignment_, set);
    }
    return set;
}

void AlignDialog::alignAnew() {
    const auto celsius = numberWithin(celsius_->text(), lowestAirCelsius, highestAirCelsius);
    const auto told = rows_->values();
    celsius_->setWarning(celsius ? QString() : QStringLiteral("Type a temperature from -40 to 60"));
    speed_->setText(celsius ? textOf(fixedText(speedOfSound(*celsius), 1)) + QStringLiteral(" m/s")
                            : QString());
    alignment_.reset();
    ArrivalTimes times{};
    if (celsius && told) {
        times = inputs_.unit == AlignmentUnit::centimeters ? arrivalTimes(*told, *celsius) : *told;
        alignment_ = align(times, *celsius);
    }
    rows_->showAlignment(alignment_.value_or(Alignment{}), times, celsius.value_or(lowestAirCelsius));
    showVerdict();
    const bool isOfUse = alignment_ && alignment_->farthest;
    apply_->setEnabled(isOfUse);
    apply_->setToolTip(isOfUse ? QString() : plainToolTip(verdict_->text()));
}

void AlignDialog::showVerdict() {
    if (const auto wrong = rows_->firstWrong()) {
        showWrong(*wrong);
    } else if (!alignment_) {
        verdict_->showText(quoted(celsius_->text()) + QStringLiteral(" is no temperature."),
                           QStringLiteral("Air has -40 to 60 \u00b0C here."), false);
    } else if (!alignment_->farthest) {
        const bool isDistance = inputs_.unit == AlignmentUnit::centimeters;
        verdict_->showText(
            isDistance ? QStringLiteral("Type how far each loudspeaker is from the seat.")
                       : QStringLiteral("Type when the sound of each loudspeaker arrives at the seat."),
            QStringLiteral("A channel without a number stays as it is."), false);
    } else if (!alignment_->isReachable) {
        showShortfall();
    } else {
        const auto told =
            std::ranges::count_if(alignment_->channels, [](const auto& each) { return each.has_value(); });
        const bool isAlone = told == 1;
        verdict_->showText(isAlone ? QStringLiteral("One channel alone gets no delay.")
                                   : textOf(allTold(*alignment_)) + QStringLiteral(" are in line."),
                           static_cast<std::size_t>(told) == channelCount
                               ? QString()
                               : QStringLiteral("A channel without a number stays as it is."),
                           false);
    }
}

void AlignDialog::showWrong(PagePosition position) {
    const bool isDistance = inputs_.unit == AlignmentUnit::centimeters;
    verdict_->showText(rows_->nameOf(position) + QStringLiteral(": ") + quoted(rows_->box(position).text()) +
                           (isDistance ? QStringLiteral(" is no distance.") : QStringLiteral(" is no time.")),
                       isDistance ? QStringLiteral("Distances are 0 to 100000 cm.")
                                  : QStringLiteral("Times are 0 to 100000 ms."),
                       false);
}

void AlignDialog::showShortfall() {
    const PagePosition worst = worstOf(*alignment_);
    const PagePosition farthest = alignment_->farthest.value_or(PagePosition{});
    const bool isDistance = inputs_.unit == AlignmentUnit::centimeters;
    const QString first =
        rows_->nameOf(worst) + QStringLiteral(": ") +
        textOf(shortfallText(alignment_->channels.at(worst.value).value_or(ChannelAlignment{})));
    const double told = numberWithin(rows_->box(farthest).text(), 0, mostToldOfPlace).value_or(0);
    QString second = textOf(possibleText(*alignment_, inputs_.unit)) + QStringLiteral(": ") +
                     rows_->nameOf(farthest) + QStringLiteral(" now ") + textOf(plainText(told)) +
                     (isDistance ? QStringLiteral(" cm.") : QStringLiteral(" ms."));
    if (const int more = countMissing(*alignment_) - 1; more != 0) {
        second += more == 1 ? QStringLiteral(" 1 more comes too early.")
                            : QStringLiteral(" %1 more come too early.").arg(more);
    }
    verdict_->showText(first, second, true);
}

void AlignDialog::paintBackground(QPainter& painter, QSize size) const {
    CDialogSK::paintBackground(painter, size);
    paintFoot(painter, size, footHeight);
}

void AlignDialog::resizeEvent(QResizeEvent* event) {
    CDialogSK::resizeEvent(event);
    area_->setGeometry(0, 0, width(), height() - footHeight);
    const int top = height() - footHeight + (footHeight - controlHeight) / 2;
    cancel_->setGeometry(width() - margin - buttonWidth, top, buttonWidth, controlHeight);
    apply_->setGeometry(cancel_->x() - gap - buttonWidth, top, buttonWidth, controlHeight);
    note_->setGeometry(margin, top, apply_->x() - margin - gap, controlHeight);
}

}  // namespace tessavo
