#include "plot/chart/image_plot_settings_dialog.h"

#include <QPixmap>

#include "plot/chart/axis_settings.h"

namespace tessavo {
namespace {

constexpr QSize stripSize(120, 16);

QPixmap stripOf(const CImagePalette& palette) {
    QImage strip(static_cast<int>(CImagePalette::colorCount), 1, QImage::Format_RGB32);
    for (int index = 0; index < strip.width(); ++index) {
        strip.setPixel(index, 0, palette.color(index));
    }
    return QPixmap::fromImage(strip.scaled(stripSize));
}

}  // namespace

CImagePlotSettingsDialog::CImagePlotSettingsDialog(CImageChart& chart, IChartHost& host, QWidget* parent)
    : SettingsDialog(QStringLiteral("Image Plot Settings"), parent),
      chart_(chart),
      title_(new TitleGroup(host, this)),
      colorTable_(makeCombo(QStringLiteral("Color Table"), {}, this)),
      strip_(makeLabel({}, this)),
      grids_(new GridsGroup(chart, this)),
      aspectRatio_(makeCheck(QStringLiteral("Maintain aspect ratio"), this)),
      scale_(makeCheck(QStringLiteral("Scale to window"), this)) {
    title_->show(chart.title(), chart.titleFont());
    for (int identifier = CImagePalette::firstIdentifier; identifier <= CImagePalette::lastIdentifier;
         ++identifier) {
        colorTable_->addItem(CImagePalette::nameOf(identifier), identifier);
    }
    colorTable_->setCurrentIndex(colorTable_->findData(chart.palette().identifier()));
    colorTable_->setMinimumWidth(colorTable_->neededWidth());
    connect(colorTable_, &SkinComboBox::currentIndexChanged, this, &CImagePlotSettingsDialog::showStrip);
    showStrip();
    aspectRatio_->setChecked(chart.maintainsAspectRatio());
    scale_->setChecked(chart.scalesToWindow());

    auto* const colors = new QHBoxLayout;
    colors->addWidget(makeLabel(QStringLiteral("Color Table"), this));
    colors->addWidget(colorTable_, 1);
    colors->addWidget(strip_);
    auto* const fill = new QHBoxLayout;
    fill->addWidget(aspectRatio_);
    fill->addWidget(scale_);
    fill->addStretch();
    auto* const axes = makeButton(QStringLiteral("Axis Settings..."), this);
    connect(axes, &QPushButton::clicked, this, [this, &host] {
        auto* const dialog = new CAxisSettings(chart_, host, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    });
    body().addWidget(title_);
    body().addLayout(colors);
    body().addWidget(grids_);
    body().addLayout(fill);
    body().addWidget(axes);
    addFoot(false);
    setTabOrder(title_, colorTable_);
    setTabOrder(colorTable_, grids_);
}

void CImagePlotSettingsDialog::showStrip() {
    if (const auto palette = CImagePalette::load(colorTable_->currentData().toInt())) {
        strip_->setPixmap(stripOf(*palette));
    }
}

bool CImagePlotSettingsDialog::apply() {
    chart_.setTitle(title_->titleText(), title_->titleFont());
    chart_.setPalette(colorTable_->currentData().toInt());
    grids_->apply(chart_);
    chart_.setMaintainsAspectRatio(aspectRatio_->isChecked());
    chart_.setScalesToWindow(scale_->isChecked());
    return true;
}

}  // namespace tessavo
