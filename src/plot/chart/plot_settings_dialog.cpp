#include "plot/chart/plot_settings_dialog.h"

#include "plot/chart/axis_settings.h"
#include "plot/chart/data_settings_dialog.h"

namespace tessavo {

CPlotSettingsDialog::CPlotSettingsDialog(CChart& chart, IChartHost& host, QWidget* parent)
    : SettingsDialog(QStringLiteral("XY Plot Settings"), parent),
      chart_(chart),
      title_(new TitleGroup(host, this)),
      grids_(new GridsGroup(chart, this)) {
    title_->show(chart.title(), chart.titleFont());
    auto* const axesButton = makeButton(QStringLiteral("Axis Settings..."), this);
    auto* const dataButton = makeButton(QStringLiteral("Data Settings..."), this);
    connect(axesButton, &QPushButton::clicked, this, [this, &host] {
        auto* const dialog = new CAxisSettings(chart_, host, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    });
    connect(dataButton, &QPushButton::clicked, this, [this, &host] {
        auto* const dialog = new CDataSettingsDialog(chart_, host, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    });
    auto* const ways = new QHBoxLayout;
    ways->setSpacing(8);
    ways->addWidget(axesButton);
    ways->addWidget(dataButton);
    body().addWidget(title_);
    body().addWidget(grids_);
    body().addLayout(ways);
    addFoot(false);
}

bool CPlotSettingsDialog::apply() {
    chart_.setTitle(title_->titleText(), title_->titleFont());
    grids_->apply(chart_);
    return true;
}

}  // namespace tessavo
