#include "plot/chart/data_settings_dialog.h"

#include <QGridLayout>

#include "controls/theme.h"

namespace tessavo {

CDataSettingsDialog::CDataSettingsDialog(CChart& chart, IChartHost& host, QWidget* parent)
    : SettingsDialog(QStringLiteral("Data Settings"), parent),
      chart_(chart),
      counter_(makeLabel({}, this)),
      type_(makeCombo(QStringLiteral("Chart type"),
                      {QStringLiteral("XY Line"), QStringLiteral("XY Scatter"), QStringLiteral("Histogram")},
                      this)),
      lineStyle_(makeCombo(QStringLiteral("Line style"),
                           {QStringLiteral("Solid ____________"), QStringLiteral("Dashed _ _ _ _ _ _"),
                            QStringLiteral("Dotted . . . . . ."), QStringLiteral("Dash-Dot _ . _ . _"),
                            QStringLiteral("Dash-Dot-Dot _ . .")},
                           this)),
      lineSize_(makeSpin(QStringLiteral("Line size"), 1, 20, this)),
      swatch_(makeLabel({}, this)),
      colorButton_(makeButton(QStringLiteral("Color..."), this)),
      marker_(makeCombo(
          QStringLiteral("Marker"),
          {QStringLiteral("No marker"), QStringLiteral("Circle marker"), QStringLiteral("Square marker"),
           QStringLiteral("Triangle marker"), QStringLiteral("X marker"), QStringLiteral("Filled marker")},
          this)),
      markerSize_(makeSpin(QStringLiteral("Marker size"), 3, 40, this)),
      frequency_(makeCombo(QStringLiteral("Marker frequency"), {{}, {}, {}}, this)),
      count_(makeSpin(QStringLiteral("Number of points"), 1, 10000, this)) {
    for (const CChartData& set : chart.dataSets()) {
        styles_.emplace_back(set.identifier, set.style);
    }
    connect(count_, &SpinEdit::valueChanged, this, &CDataSettingsDialog::nameFrequencies);
    connect(frequency_, &SkinComboBox::currentIndexChanged, this,
            [this](int index) { count_->setEnabled(index > 0); });
    connect(colorButton_, &QPushButton::clicked, this, [this, &host] {
        if (const auto chosen = host.askColor(this, color_)) {
            color_ = *chosen;
            showColor();
        }
    });
    layOut();
    showCurrent();
}

void CDataSettingsDialog::layOut() {
    auto* const head = new QHBoxLayout;
    head->addStretch();
    head->addWidget(counter_);
    body().addLayout(head);

    auto* const lines = makeGroup(QStringLiteral("Lines"), this);
    QGridLayout* const lineGrid = makeGrid(lines);
    lineGrid->addWidget(makeLabel(QStringLiteral("Chart type"), lines), 0, 0);
    lineGrid->addWidget(type_, 0, 1);
    lineGrid->addWidget(swatch_, 0, 2);
    lineGrid->addWidget(colorButton_, 0, 3);
    swatch_->setFixedSize(16, 16);
    swatch_->setAccessibleName(QStringLiteral("Color"));
    lineGrid->addWidget(makeLabel(QStringLiteral("Line style"), lines), 1, 0);
    lineGrid->addWidget(lineStyle_, 1, 1);
    lineGrid->addWidget(makeLabel(QStringLiteral("Line size"), lines), 2, 0);
    lineSize_->setAccessibleDescription(QStringLiteral("pixels"));
    markerSize_->setAccessibleDescription(QStringLiteral("pixels"));
    lineGrid->addWidget(lineSize_, 2, 1);
    lineGrid->setColumnStretch(1, 1);
    body().addWidget(lines);

    auto* const markers = makeGroup(QStringLiteral("Markers"), this);
    QGridLayout* const markerGrid = makeGrid(markers);
    markerGrid->addWidget(makeLabel(QStringLiteral("Marker"), markers), 0, 0);
    markerGrid->addWidget(marker_, 0, 1, 1, 2);
    markerGrid->addWidget(makeLabel(QStringLiteral("Marker size"), markers), 1, 0);
    markerGrid->addWidget(markerSize_, 1, 1);
    markerGrid->addWidget(makeLabel(QStringLiteral("Marker frequency"), markers), 2, 0);
    markerGrid->addWidget(frequency_, 2, 1);
    markerGrid->addWidget(count_, 2, 2);
    markerGrid->setColumnStretch(1, 1);
    // Wide enough for the largest number.
    frequency_->setMinimumWidth(180);
    body().addWidget(markers);

    addFoot(true);
    const std::initializer_list<QWidget*> order{type_,   colorButton_, lineStyle_, lineSize_,
                                                marker_, markerSize_,  frequency_, count_};
    for (auto widget = order.begin(); widget + 1 != order.end(); ++widget) {
        setTabOrder(*widget, *(widget + 1));
    }
}

void CDataSettingsDialog::nameFrequencies() {
    frequency_->setItemText(0, QStringLiteral("Mark every point"));
    frequency_->setItemText(1, QStringLiteral("Mark every %1 points").arg(count_->value()));
    frequency_->setItemText(2, QStringLiteral("Mark %1 points").arg(count_->value()));
}

void CDataSettingsDialog::showColor() {
    swatch_->setColors(QColor(theme::text), QColor(color_));
    swatch_->setAccessibleDescription(QColor(color_).name());
}

void CDataSettingsDialog::showCurrent() {
    const bool any = !styles_.empty();
    counter_->setText(QStringLiteral("Data set %1 of %2").arg(any ? index_ + 1 : 0).arg(styles_.size()));
    const DataStyle style = any ? styles_[index_].second : DataStyle{};
    type_->setCurrentIndex(static_cast<int>(style.type));
    lineStyle_->setCurrentIndex(static_cast<int>(style.lineStyle));
    lineSize_->setValue(style.lineSize);
    marker_->setCurrentIndex(static_cast<int>(style.marker));
    markerSize_->setValue(style.markerSize);
    count_->setValue(style.markerCount);
    nameFrequencies();
    frequency_->setCurrentIndex(static_cast<int>(style.markerFrequency));
    color_ = style.color;
    showColor();
    for (QWidget* const widget : std::initializer_list<QWidget*>{type_, colorButton_, lineStyle_, lineSize_,
                                                                 marker_, markerSize_, frequency_}) {
        widget->setEnabled(any);
    }
    count_->setEnabled(any && style.markerFrequency != MarkerFrequency::everyPoint);
    enableSteps(index_ > 0, index_ + 1 < styles_.size());
}

void CDataSettingsDialog::readControls() {
    if (styles_.empty()) {
        return;
    }
    DataStyle& style = styles_[index_].second;
    style.type = static_cast<ChartType>(type_->currentIndex());
    style.lineStyle = static_cast<LineStyle>(lineStyle_->currentIndex());
    style.lineSize = lineSize_->value();
    style.marker = static_cast<MarkerShape>(marker_->currentIndex());
    style.markerSize = markerSize_->value();
    style.markerFrequency = static_cast<MarkerFrequency>(frequency_->currentIndex());
    style.markerCount = count_->value();
    style.color = color_;
}

void CDataSettingsDialog::step(int direction) {
    const bool possible = direction < 0 ? index_ > 0 : index_ + 1 < styles_.size();
    if (possible) {
        readControls();
        index_ = direction < 0 ? index_ - 1 : index_ + 1;
        showCurrent();
    }
}

bool CDataSettingsDialog::apply() {
    readControls();
    for (const auto& [identifier, style] : styles_) {
        // The data set may have been removed while the dialog was open.
        chart_.setDataSetStyle(identifier, style);
    }
    return true;
}

}  // namespace tessavo
