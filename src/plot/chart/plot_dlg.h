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

/// The plot window: the equalizer curve, a slider that scrolls the dB range, and "Max", "Min" and "SET" that
/// apply one. Its owner shows and hides it; closing it by its frame or with Escape is told.
class CPlotDlg : public CDialogSK, public ICurveDisplay {
    Q_OBJECT

 public:
    static constexpr QRgb curveColor = 0xFF1C86EE;
    static constexpr QSize pixelSize{954, 496};
    /// What it keeps on the smallest screen.
    static constexpr QSize leastSize{480, 320};

    /// \param host outlives the window
    explicit CPlotDlg(IChartHost& host, QWidget* parent = nullptr);

    /// Replaces the curve; its identifier stays, and its colour is curveColor again.
    void setCurve(const ResponseCurve& curve) override;
    /// Shows the axes without a curve. The curve keeps its place among the data sets.
    void clearCurve();
    /// Says below the chart what the curve includes that does not play, or leaves out; nothing when empty.
    void setCurveNotes(const QStringList& notes);
    /// Identifier of the curve in the chart; -1 before the first curve.
    [[nodiscard]] int curveIdentifier() const { return curveIdentifier_; }

    [[nodiscard]] CXYChart& chart() { return chart_; }
    /// Makes the chart give way where the screen has less room than pixelSize and the frame around it take.
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
