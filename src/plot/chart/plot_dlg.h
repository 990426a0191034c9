#pragma once

#include <QStringList>

#include "controls/dialog_sk.h"
#include "plot/chart/chart_view.h"
#include "plot/chart/xy_chart.h"
#include "plot/curve_display.h"

namespace tessavo {

class CBitmapSlider;
class CColorControl;
class CxSkinButton;
class NoteMark;
class NumberEdit;

/// The plot window: the equalizer's curve, a slider that scrolls the range of dB, and "Max", "Min" and "SET"
/// by which a person chooses the range. Its owner shows and hides it, and gets a signal when a person closes
/// it by its frame or with Escape.
class CPlotDlg : public CDialogSK, public ICurveDisplay {
    Q_OBJECT

 public:
    static constexpr QRgb curveColor = 0xFF1C86EE;
    static constexpr QSize pixelSize{954, 496};  ///< where the screen has room for it
    static constexpr QSize leastSize{480, 320};  ///< on the smallest screen

    /// \param host outlives the window
    explicit CPlotDlg(IChartHost& host, QWidget* parent = nullptr);

    /// Replaces the curve. Its identifier in the chart stays; its colour becomes curveColor, whatever a
    /// person chose.
    void setCurve(const ResponseCurve& curve) override;
    /// Shows the axes without a curve. The data set stays in the chart, without values.
    void clearCurve();
    /// Tells below the chart what the curve includes although it does not play, and what it leaves out.
    /// \param notes one sentence each; none hides the line
    void setCurveNotes(const QStringList& notes);
    /// Identifier of the curve in the chart; -1 before the first curve.
    [[nodiscard]] int curveIdentifier() const { return curveIdentifier_; }

    [[nodiscard]] CXYChart& chart() { return chart_; }
    /// Makes the window smaller than pixelSize where the screen has less room; the chart gives way.
    /// \param room for the window without its frame, in logical pixels
    void fitInto(QSize room);
    /// Shows the window in the middle of its screen, fitted into it.
    void showCentred();

 Q_SIGNALS:
    /// Another curve is shown.
    void curveShown();
    /// The person closed the window; it is hidden already.
    void closedByUser();

 protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

 private:
    void layOut(QSize size);
    void applyRange();
    void scrollTo(int position);
    void showRange();
    void placeSlider();

    IChartHost& host_;
    CXYChart chart_;
    CChartView* view_;
    CColorControl* maximumLabel_;
    NumberEdit* maximum_;
    CBitmapSlider* slider_;
    CColorControl* minimumLabel_;
    NumberEdit* minimum_;
    CxSkinButton* set_;
    NoteMark* curveNote_;
    int curveIdentifier_ = -1;
    AxisRange scrollRange_;  ///< the range that the slider shows at scrollPosition_
    int scrollPosition_ = 0;
    bool scrolling_ = false;  ///< the slider sets the range just now
};

}  // namespace tessavo
