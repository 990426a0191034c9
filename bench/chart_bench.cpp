#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "controls/application_theme.h"
#include "params/tuning_state.h"
#include "plot/chart/plot_dlg.h"

// How long a person waits from a slider's step to the painted curve, all eight channels selected. Fails when
// more than one step in a hundred takes too long, or when steps that nobody had time to paint pile up.

namespace tessavo::bench {
namespace {

constexpr int stepCount = 2000;
constexpr double limitMs = 4;

class NoBoxes final : public IMessageBox {
 public:
    BoxAnswer show(std::string_view /*text*/, BoxIcon /*icon*/, BoxButtons /*buttons*/) override {
        return BoxAnswer::ok;
    }
};

class SilentHost final : public DialogChartHost {
 public:
    void showMessage(QWidget* /*parent*/, const QString& /*text*/) override {}
};

class PaintCounter final : public QObject {
 public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int paints = 0;
};

/// A tuning with every band and both crossovers in use, and the plot that shows it.
class TunedPlot {
 public:
    TunedPlot() : tuning_(boxes_), plot_(host_) {
        tuning_.start();
        tuning_.setSelectionMask(0xFF);
        for (std::size_t band = 0; band < bandCount; ++band) {
            tuning_.setBandFrequency(band, static_cast<std::uint16_t>(40U << band), true);
            tuning_.setBandGainOrQ(band, BandValue::gain, band % 2 == 0 ? -8.5F : 7.5F, true);
            tuning_.setBandGainOrQ(band, BandValue::q, 4.0F, true);
        }
        tuning_.setCrossover(0, 1, 4, 1);
        tuning_.setCrossoverFrequency(0, 80, true);
        tuning_.setCurveDisplay(&plot_);
        plot_.show();
        QCoreApplication::processEvents();
        plot_.findChild<CChartView*>()->installEventFilter(&counter);
    }

    void dragStep(int step) {
        const auto frequencyHz = static_cast<std::uint16_t>(60 + 17 * (step % 1000));
        tuning_.setBandFrequency(static_cast<std::size_t>(step) % bandCount, frequencyHz, false);
    }

    PaintCounter counter;

 private:
    NoBoxes boxes_;
    SilentHost host_;
    TuningState tuning_;
    CPlotDlg plot_;
};

bool stepsArePaintedInTime() {
    TunedPlot plot;
    std::vector<double> times;
    for (int step = 0; step < stepCount; ++step) {
        const int before = plot.counter.paints;
        const auto start = std::chrono::steady_clock::now();
        plot.dragStep(step);
        while (plot.counter.paints == before) {
            QCoreApplication::processEvents();
        }
        times.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::ranges::sort(times);
    const double late = times[stepCount * 99 / 100];
    std::printf("step to painted chart: half within %.2f ms, 99 of 100 within %.2f ms (limit %.0f ms)\n",
                times[stepCount / 2], late, limitMs);
    return late < limitMs;
}

bool stepsDoNotPileUp() {
    TunedPlot plot;
    const int before = plot.counter.paints;
    for (int step = 0; step < 1000; ++step) {
        plot.dragStep(step);
    }
    for (int n = 0; n < 20; ++n) {
        QCoreApplication::processEvents();
    }
    const int paints = plot.counter.paints - before;
    std::printf("paints after 1000 steps in a row: %d (limit 1)\n", paints);
    return paints == 1;
}

}  // namespace
}  // namespace tessavo::bench

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    tessavo::applyTheme(application);
    const bool inTime = tessavo::bench::stepsArePaintedInTime();
    const bool noBacklog = tessavo::bench::stepsDoNotPileUp();
    return inTime && noBacklog ? 0 : 1;
}
