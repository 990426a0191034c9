#include "plot/chart/axis_settings.h"

#include <QGridLayout>
#include <algorithm>
#include <iterator>

#include "base/number_text.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

QString limitText(double value) {
    return QString::fromStdString(shortNumber(value, 15));
}

void addHead(QGridLayout& grid, QWidget* parent) {
    grid.addWidget(makeLabel(QStringLiteral("Min"), parent), 0, 1);
    grid.addWidget(makeLabel(QStringLiteral("Max"), parent), 0, 2);
}

}  // namespace

CAxisSettings::CAxisSettings(CChart& chart, IChartHost& host, QWidget* parent)
    : SettingsDialog(QStringLiteral("Axis Settings"), parent),
      chart_(chart),
      host_(host),
      axes_{chart.axis(AxisSide::left), chart.axis(AxisSide::bottom), chart.axis(AxisSide::right),
            chart.axis(AxisSide::top)},
      name_(makeLabel({}, this)),
      counter_(makeLabel({}, this)) {
    std::ranges::copy_if(allAxisSides, std::back_inserter(shown_), [&chart](AxisSide side) {
        const bool primary = side == AxisSide::left || side == AxisSide::bottom;
        return primary || chart.axis(side).wasShown();
    });
    name_->setFont(theme::font(13, QFont::Medium));
    name_->setColors(QColor(theme::text));

    auto* const head = new QHBoxLayout;
    head->addWidget(name_);
    head->addStretch();
    head->addWidget(counter_);
    body().addLayout(head);

    auto* const ranges = makeGroup(QStringLiteral("Plotting Ranges"), this);
    QGridLayout* const rows = makeGrid(ranges);
    addHead(*rows, ranges);
    xRange_ = makeRow(QStringLiteral("X Range"), ranges);
    yRange_ = makeRow(QStringLiteral("Y Range"), ranges);
    int line = 1;
    for (const auto& [name, row] :
         {std::pair(QStringLiteral("X Range"), xRange_), std::pair(QStringLiteral("Y Range"), yRange_)}) {
        rows->addWidget(makeLabel(name, ranges), line, 0);
        rows->addWidget(row.minimum, line, 1);
        rows->addWidget(row.maximum, line, 2);
        rows->addWidget(row.automatic, line, 3);
        ++line;
    }
    logarithmic_ = makeCheck(QStringLiteral("Logarithmic scale"), ranges);
    rows->addWidget(logarithmic_, line, 1, 1, 3);
    body().addWidget(ranges);

    auto* const ticks = makeGroup(QStringLiteral("Ticks"), this);
    QGridLayout* const tickGrid = makeGrid(ticks);
    majorTicks_ = makeSpin(QStringLiteral("Number of major ticks"), 0, AxisLook::mostMajorTicks, ticks);
    minorTicks_ = makeSpin(QStringLiteral("Number of minor ticks"), 0, AxisLook::mostMinorTicks, ticks);
    tickMarks_ = makeCheck(QStringLiteral("Tick marks"), ticks);
    tickLabels_ = makeCheck(QStringLiteral("Tick labels"), ticks);
    tickGrid->addWidget(makeLabel(QStringLiteral("Number of major ticks"), ticks), 0, 0);
    tickGrid->addWidget(majorTicks_, 0, 1);
    tickGrid->addWidget(tickMarks_, 0, 3);
    tickGrid->addWidget(makeLabel(QStringLiteral("Number of minor ticks"), ticks), 1, 0);
    tickGrid->addWidget(minorTicks_, 1, 1);
    tickGrid->addWidget(tickLabels_, 1, 3);
    tickGrid->setColumnStretch(2, 1);
    body().addWidget(ticks);

    title_ = new TitleGroup(host, this);
    body().addWidget(title_);
    addFoot(true);
    showCurrent();
}

CAxisSettings::RangeRow CAxisSettings::makeRow(const QString& name, QWidget* parent) {
    const RangeRow row{makeEdit(name + QStringLiteral(" Min"), parent),
                       makeEdit(name + QStringLiteral(" Max"), parent),
                       makeCheck(QStringLiteral("Auto range"), parent)};
    row.automatic->setAccessibleName(name + QStringLiteral(" Auto range"));
    for (TextEditBox* const edit : {row.minimum, row.maximum}) {
        edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        edit->setMinimumWidth(110);
        connect(row.automatic, &QCheckBox::toggled, edit, &QWidget::setDisabled);
    }
    return row;
}

CAxis& CAxisSettings::axisOf(bool vertical) {
    const AxisSide partner = vertical ? AxisSide::left : AxisSide::bottom;
    const AxisSide side = current().isVertical() == vertical ? current().side() : partner;
    return axes_[static_cast<std::size_t>(chart_.leaderOf(side))];
}

void CAxisSettings::showRange(const RangeRow& row, const CAxis& axis) {
    row.minimum->setText(limitText(axis.range().minimum));
    row.maximum->setText(limitText(axis.range().maximum));
    row.minimum->setAccessibleDescription(axis.unit());
    row.maximum->setAccessibleDescription(axis.unit());
    row.automatic->setChecked(axis.isAutomatic());
    row.minimum->setDisabled(axis.isAutomatic());
    row.maximum->setDisabled(axis.isAutomatic());
}

void CAxisSettings::showCurrent() {
    const CAxis& axis = current();
    const AxisLook& look = axis.look();
    name_->setText(axis.name());
    counter_->setText(QStringLiteral("Axis %1 of %2").arg(index_ + 1).arg(shown_.size()));
    showRange(xRange_, axisOf(false));
    showRange(yRange_, axisOf(true));
    const CAxis& ranged = axisOf(axis.isVertical());
    logarithmic_->setText(QStringLiteral("Logarithmic scale (%1)").arg(ranged.name()));
    logarithmic_->setChecked(ranged.scale() == AxisScale::logarithmic);
    majorTicks_->setValue(look.majorTicks);
    minorTicks_->setValue(look.minorTicks);
    tickMarks_->setChecked(look.tickMarks);
    tickLabels_->setChecked(look.tickLabels);
    title_->show(look.title, look.titleFont);
    enableSteps(index_ > 0, index_ + 1 < shown_.size());
}

bool CAxisSettings::readRange(const RangeRow& row, CAxis& axis, AxisScale scale) {
    CAxis changed = axis;
    changed.setAutomatic(true);
    changed.setScale(scale);
    if (!row.automatic->isChecked()) {
        const auto minimum = typedNumber(row.minimum->text().trimmed().toStdString());
        const auto maximum = typedNumber(row.maximum->text().trimmed().toStdString());
        const RangeFault fault =
            minimum && maximum ? changed.setRange({*minimum, *maximum}) : RangeFault::notANumber;
        if (fault != RangeFault::none) {
            host_.showMessage(this, rangeFaultText(fault));
            TextEditBox* const wrong = minimum && !maximum ? row.maximum : row.minimum;
            wrong->setFocus();
            wrong->selectAll();
            return false;
        }
    }
    axis = changed;
    return true;
}

bool CAxisSettings::readControls() {
    CAxis& axis = current();
    CAxis& ranged = axisOf(axis.isVertical());
    CAxis& partner = axisOf(!axis.isVertical());
    const RangeRow& row = axis.isVertical() ? yRange_ : xRange_;
    const RangeRow& partnerRow = axis.isVertical() ? xRange_ : yRange_;
    const AxisScale scale = logarithmic_->isChecked() ? AxisScale::logarithmic : AxisScale::linear;
    const CAxis before = ranged;
    if (!readRange(row, ranged, scale)) {
        return false;
    }
    if (!readRange(partnerRow, partner, partner.scale())) {
        ranged = before;
        return false;
    }
    AxisLook look = axis.look();
    look.majorTicks = majorTicks_->value();
    look.minorTicks = minorTicks_->value();
    look.tickMarks = tickMarks_->isChecked();
    look.tickLabels = tickLabels_->isChecked();
    look.title = title_->titleText();
    look.titleFont = title_->titleFont();
    axis.setLook(look);
    return true;
}

void CAxisSettings::step(int direction) {
    const bool possible = direction < 0 ? index_ > 0 : index_ + 1 < shown_.size();
    if (possible && readControls()) {
        index_ = direction < 0 ? index_ - 1 : index_ + 1;
        showCurrent();
    }
}

bool CAxisSettings::apply() {
    if (!readControls()) {
        return false;
    }
    for (const CAxis& axis : axes_) {
        chart_.setAxis(axis);
    }
    return true;
}

}  // namespace tessavo
