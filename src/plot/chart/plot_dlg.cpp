#include "plot/chart/plot_dlg.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/slider_event.h"
#include "controls/theme.h"
#include "dsp/saturate.h"
#include "plot/chart/dialog_parts.h"
#include "plot/chart/number_text.h"

namespace tessavo {
namespace {

// The middle of the range may be scrolled so far; further when a range is set there.
constexpr int scrollReachDb = 60;

constexpr int maximumId = 1;
constexpr int sliderId = 2;
constexpr int minimumId = 3;
constexpr int setId = 4;

QString limitText(double value) {
    return QString::fromStdString(shortNumber(value, 15));
}

int wholeMiddle(const AxisRange& range) {
    return truncateTo<int>(std::round(range.minimum / 2 + range.maximum / 2));
}

}  // namespace

CPlotDlg::CPlotDlg(IChartHost& host, QWidget* parent)
    : CDialogSK(parent),
      host_(host),
      view_(new CChartView(chart_, host, this)),
      maximum_(new NumberEdit(maximumId, this)),
      slider_(new CBitmapSlider(Qt::Vertical, sliderId, this)),
      minimum_(new NumberEdit(minimumId, this)),
      set_(new CxSkinButton(QStringLiteral("SET"), setId, this)) {
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Plot"));
    setFixedSize(pixelSize);
    setUpResponseAxes(chart_);
    view_->setGeometry(12, 12, 834, 472);
    view_->setAccessibleName(QStringLiteral("Frequency response"));
    CColorControl* const maximumLabel = makeLabel(QStringLiteral("Max"), this);
    CColorControl* const minimumLabel = makeLabel(QStringLiteral("Min"), this);
    maximumLabel->setFont(theme::font(12));
    minimumLabel->setFont(theme::font(12));
    maximumLabel->setGeometry(858, 12, 84, 16);
    maximum_->setGeometry(858, 32, 84, 26);
    slider_->setGeometry(885, 74, 30, 274);
    minimumLabel->setGeometry(858, 364, 84, 16);
    minimum_->setGeometry(858, 384, 84, 26);
    set_->setGeometry(858, 456, 84, 28);
    maximum_->setAccessibleName(QStringLiteral("Max"));
    minimum_->setAccessibleName(QStringLiteral("Min"));
    slider_->setAccessibleName(QStringLiteral("Middle of the dB range"));
    slider_->setValueScale(-1);
    slider_->setFormatter([](int position) { return QStringLiteral("%1 dB").arg(-position); });
    set_->setDefault(true);
    const std::array<QWidget*, 5> order{view_, maximum_, slider_, minimum_, set_};
    for (std::size_t n = 1; n < order.size(); ++n) {
        setTabOrder(order[n - 1], order[n]);
    }
    connect(set_, &QPushButton::clicked, this, &CPlotDlg::applyRange);
    for (NumberEdit* const edit : {maximum_, minimum_}) {
        connect(edit, &NumberEdit::entered, this, &CPlotDlg::applyRange);
    }
    connect(&chart_, &CChart::layoutChanged, this, &CPlotDlg::showRange);
    showRange();
}

void CPlotDlg::setCurve(const ResponseCurve& curve) {
    std::array<double, 2 * curvePointCount> values{};
    std::ranges::copy(curve.frequencyHz, values.begin());
    std::ranges::copy(curve.magnitudeDb, values.begin() + curvePointCount);
    constexpr std::array<int, 2> dimensions{2, static_cast<int>(curvePointCount)};
    if (!chart_.replaceDataSet(curveIdentifier_, values, dimensions)) {
        curveIdentifier_ = chart_.addDataSet(values, dimensions);
        if (const CChartData* const added = chart_.dataSet(curveIdentifier_)) {
            DataStyle style = added->style;
            style.fillOpacity = 0.13;
            chart_.setDataSetStyle(curveIdentifier_, style);
        }
    }
    chart_.setDataSetColor(curveIdentifier_, curveColor);
}

void CPlotDlg::clearCurve() {
    constexpr std::array<int, 2> dimensions{2, 0};
    chart_.replaceDataSet(curveIdentifier_, {}, dimensions);
}

void CPlotDlg::showCentred() {
    const QScreen* const onScreen = parentWidget() != nullptr ? parentWidget()->screen() : screen();
    show();
    const QRect available = onScreen->availableGeometry();
    QRect frame = frameGeometry();
    frame.moveCenter(available.center());
    // On a screen that is too small the caption has to stay within reach.
    frame.moveTop(std::max(frame.top(), available.top()));
    move(frame.topLeft());
    raise();
    activateWindow();
}

bool CPlotDlg::event(QEvent* event) {
    if (SliderEvent::isSliderEvent(*event)) {
        scrollTo(static_cast<const SliderEvent*>(event)->position());
        return true;
    }
    return CDialogSK::event(event);
}

void CPlotDlg::closeEvent(QCloseEvent* event) {
    event->accept();
    // A close that the system asks for twice is told once.
    if (isVisible()) {
        hide();
        emit closedByUser();
    }
}

void CPlotDlg::reject() {
    close();
}

void CPlotDlg::applyRange() {
    const auto maximum = parseNumber(maximum_->text());
    const auto minimum = parseNumber(minimum_->text());
    const RangeFault fault =
        minimum && maximum ? chart_.setRange(AxisSide::left, {*minimum, *maximum}) : RangeFault::notANumber;
    if (fault == RangeFault::none) {
        showRange();
        return;
    }
    host_.showMessage(this, rangeFaultText(fault));
    NumberEdit* const wrong = maximum && !minimum ? minimum_ : maximum_;
    wrong->setFocus();
    wrong->selectAll();
}

void CPlotDlg::scrollTo(int position) {
    const AxisRange range = chart_.axis(AxisSide::left).range();
    // The slider counts downwards, the axis upwards.
    const double shift = -position - wholeMiddle(range);
    if (shift != 0) {
        chart_.setRange(AxisSide::left, {range.minimum + shift, range.maximum + shift});
    }
}

void CPlotDlg::showRange() {
    const AxisRange range = chart_.axis(AxisSide::left).range();
    maximum_->setValueText(limitText(range.maximum));
    minimum_->setValueText(limitText(range.minimum));
    const int middle = wholeMiddle(range);
    const int reach = std::max(scrollReachDb, std::abs(std::clamp(middle, -1'000'000'000, 1'000'000'000)));
    slider_->setRange(-reach, reach);
    slider_->setPosition(-middle);
}

}  // namespace tessavo
