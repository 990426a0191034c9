#include "plot/chart/plot_dlg.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "base/number_text.h"
#include "base/saturate.h"
#include "controls/bitmap_slider.h"
#include "controls/note_mark.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/slider_event.h"
#include "controls/theme.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {
namespace {

// How far the middle of the range can be scrolled: enough to see the slope of a second-order crossover at 16
// kHz down to 20 Hz. A range that a person sets further away can be scrolled that far.
constexpr int scrollReachDb = 120;

constexpr int maximumId = 1;
constexpr int sliderId = 2;
constexpr int minimumId = 3;
constexpr int setId = 4;
constexpr int curveNoteId = 5;

// The longest text of a double that reads as the same double.
constexpr int longestLimit = 24;
constexpr int limitDigits = 15;
// A response of zero, or an infinite one, saturates at these values. They stay in the data, but are not
// drawn: a line to them would hide all others.
constexpr ValueLimits curveLimits{std::numeric_limits<std::int32_t>::min(),
                                  std::numeric_limits<std::int32_t>::max()};
// The farthest middle that the slider counts to. For a range beyond it the slider stands at its end and
// scrolls from there.
constexpr int farthestMiddle = 1'000'000'000;

// Levels have a decimal everywhere in the program.
QString withDecimal(QString number) {
    const bool whole =
        std::ranges::all_of(number, [](QChar letter) { return letter == u'-' || letter.isDigit(); });
    return whole ? number + QStringLiteral(".0") : number;
}

// As many digits as the box has room for.
QString limitText(double value, const NumberEdit& box) {
    for (int digits = limitDigits; digits > 1; --digits) {
        QString text = withDecimal(QString::fromStdString(shortNumber(value, digits)));
        if (box.neededWidth(text) <= box.width()) {
            return text;
        }
    }
    return QString::fromStdString(shortNumber(value, 1));
}

// A limit whose text nobody has changed keeps the digits that the text does not show.
std::optional<double> limitOf(const NumberEdit& box, double current) {
    return box.text() == limitText(current, box) ? current : typedNumber(box.text().trimmed().toStdString());
}

int wholeMiddle(const AxisRange& range) {
    return std::clamp(truncateTo<int>(std::round(range.minimum / 2 + range.maximum / 2)), -farthestMiddle,
                      farthestMiddle);
}

}  // namespace

CPlotDlg::CPlotDlg(IChartHost& host, QWidget* parent)
    : CDialogSK(parent),
      host_(host),
      view_(new CChartView(chart_, host, this)),
      maximumLabel_(makeLabel(QStringLiteral("Max"), this)),
      maximum_(new NumberEdit(maximumId, this)),
      slider_(new CBitmapSlider(Qt::Vertical, sliderId, this)),
      minimumLabel_(makeLabel(QStringLiteral("Min"), this)),
      minimum_(new NumberEdit(minimumId, this)),
      set_(new CxSkinButton(QStringLiteral("SET"), setId, this)),
      curveNote_(new NoteMark(curveNoteId, this)) {
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Plot"));
    setUpResponseAxes(chart_);
    view_->setAccessibleName(QStringLiteral("Frequency response"));
    for (CColorControl* const label : {maximumLabel_, minimumLabel_}) {
        label->setFont(theme::font(12));
    }
    layOut(pixelSize);
    maximum_->setAccessibleName(QStringLiteral("Max"));
    minimum_->setAccessibleName(QStringLiteral("Min"));
    slider_->setAccessibleName(QStringLiteral("Middle of the dB range"));
    slider_->setValueScale(-1);
    slider_->setFormatter([](int position) { return QStringLiteral("%1.0 dB").arg(-position); });
    set_->setDefault(true);
    const std::array<QWidget*, 5> order{view_, maximum_, slider_, minimum_, set_};
    for (std::size_t n = 1; n < order.size(); ++n) {
        setTabOrder(order[n - 1], order[n]);
    }
    connect(set_, &QPushButton::clicked, this, &CPlotDlg::applyRange);
    for (NumberEdit* const edit : {maximum_, minimum_}) {
        edit->setMaxLength(longestLimit);
        edit->setUnit(QStringLiteral("dB"));
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
            chart_.setDataSetLimits(curveIdentifier_, curveLimits);
        }
    }
    chart_.setDataSetColor(curveIdentifier_, curveColor);
    Q_EMIT curveShown();
}

void CPlotDlg::clearCurve() {
    constexpr std::array<int, 2> dimensions{2, 0};
    chart_.replaceDataSet(curveIdentifier_, {}, dimensions);
}

void CPlotDlg::setCurveNotes(const QStringList& notes) {
    curveNote_->setNote(notes.join(QStringLiteral("; ")), notes.join(QLatin1Char('\n')));
}

void CPlotDlg::fitInto(QSize room) {
    // Room for caption and frame of usual desktops.
    constexpr QSize around(8, 32);
    layOut((room - around).boundedTo(pixelSize).expandedTo(leastSize));
}

void CPlotDlg::layOut(QSize size) {
    setFixedSize(size);
    view_->setGeometry(12, 12, size.width() - 120, size.height() - 24);
    // Left of the axis title, in the row that it stands in.
    curveNote_->setGeometry(24, size.height() - 38, size.width() - 190, NoteMark::markHeight);
    const int column = size.width() - 96;
    const int bottom = size.height();
    maximumLabel_->setGeometry(column, 12, 84, 16);
    maximum_->setGeometry(column, 32, 84, 26);
    slider_->setGeometry(column + 27, 74, 30, bottom - 222);
    minimumLabel_->setGeometry(column, bottom - 132, 84, 16);
    minimum_->setGeometry(column, bottom - 112, 84, 26);
    set_->setGeometry(column, bottom - 40, 84, 28);
}

void CPlotDlg::showCentred() {
    const QScreen* const onScreen = parentWidget() != nullptr ? parentWidget()->screen() : screen();
    const QRect available = onScreen->availableGeometry();
    fitInto(available.size());
    show();
    QRect frame = frameGeometry();
    frame.moveCenter(available.center());
    // On a screen that is too small the caption must stay visible, so that the window can be moved.
    frame.moveTop(std::max(frame.top(), available.top()));
    move(frame.topLeft());
    raise();
    activateWindow();
}

bool CPlotDlg::event(QEvent* event) {
    if (SliderEvent::isSliderEvent(*event)) {
        const auto& moved = static_cast<const SliderEvent&>(*event);
        scrollTo(moved.position());
        if (moved.isFinal()) {
            placeSlider();
        }
        return true;
    }
    return CDialogSK::event(event);
}

void CPlotDlg::closeEvent(QCloseEvent* event) {
    event->accept();
    // The system may ask twice; the signal is emitted once.
    if (isVisible()) {
        hide();
        Q_EMIT closedByUser();
    }
}

void CPlotDlg::reject() {
    close();
}

void CPlotDlg::applyRange() {
    const AxisRange current = chart_.axis(AxisSide::left).range();
    const auto maximum = limitOf(*maximum_, current.maximum);
    const auto minimum = limitOf(*minimum_, current.minimum);
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
    // The slider counts downwards, the axis upwards. Each position is counted from where the scrolling began,
    // so that rounding on the way does not add up.
    const double shift = static_cast<double>(scrollPosition_) - position;
    const AxisRange range{scrollRange_.minimum + shift, scrollRange_.maximum + shift};
    if (range != chart_.axis(AxisSide::left).range()) {
        const QScopedValueRollback scrolls(scrolling_, true);
        chart_.setRange(AxisSide::left, range);
    }
}

void CPlotDlg::showRange() {
    const AxisRange range = chart_.axis(AxisSide::left).range();
    maximum_->setValueText(limitText(range.maximum, *maximum_));
    minimum_->setValueText(limitText(range.minimum, *minimum_));
    if (!scrolling_) {
        placeSlider();
    }
}

void CPlotDlg::placeSlider() {
    scrollRange_ = chart_.axis(AxisSide::left).range();
    // While a person drags the slider, its range and position must not change.
    if (!slider_->isDragging()) {
        const int middle = wholeMiddle(scrollRange_);
        const int reach = std::max(scrollReachDb, std::abs(middle));
        slider_->setRange(-reach, reach);
        slider_->setPosition(-middle);
    }
    scrollPosition_ = slider_->position();
}

}  // namespace tessavo
