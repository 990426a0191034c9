#include <QMouseEvent>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "app/tessavo_app.h"
#include "app/tessavo_view.h"
#include "controls/bitmap_slider.h"
#include "controls/skin_group_box.h"
#include "plot/chart/plot_dlg.h"

// How long a person waits from a slider's step to the painted curve: the whole program, the page of the
// output equalizer with all eight channels selected, the plot beside it, and a mouse that drags sliders of
// the page. Fails when more than one step in a hundred takes too long, or when steps that nobody had time to
// paint pile up. Nothing is waited for on the way, so processor time is what a step takes on a machine that
// has a processor to spare; the time on the clock stands beside it. The best of some rounds counts.

namespace tessavo::bench {
namespace {

constexpr int stepCount = 1000;
constexpr int roundCount = 5;
constexpr double limitMs = 4;

class PaintCounter final : public QObject {
 public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int paints = 0;
};

/// The page with every band and both crossovers in use, and the plot that shows their curve.
class TunedPlot {
 public:
    explicit TunedPlot(CTessavoApp& app) : page_(openPage(app)) {
        TuningState& tuning = app.tuning();
        tuning.setSelectionMask(0xFF);
        for (std::size_t band = 0; band < bandCount; ++band) {
            tuning.setBandFrequency(band, static_cast<std::uint16_t>(40U << band), true);
            tuning.setBandGainOrQ(band, BandValue::gain, band % 2 == 0 ? -8.5F : 7.5F, true);
            tuning.setBandGainOrQ(band, BandValue::q, 4.0F, true);
        }
        tuning.setCrossover(0, 1, 4, 1);
        tuning.setCrossoverFrequency(0, 80, true);
        page_.refresh();
        for (auto* slider : page_.findChildren<CBitmapSlider*>()) {
            if (slider->isVisible() && slider->isVertical() && isOfBand(*slider)) {
                sliders_.push_back(slider);
            }
        }
        app.frame().view().plot().findChild<CChartView*>()->installEventFilter(&counter);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] std::size_t sliderCount() const { return sliders_.size(); }

    /// Presses the mouse on the thumb of the slider that this step belongs to.
    void press(int step) {
        slider_ = sliders_[static_cast<std::size_t>(step / stepsOfDrag) % sliders_.size()];
        const SliderTrack track = slider_->track();
        send(QEvent::MouseButtonPress,
             track.pixelOf(slider_->position(), slider_->minimum(), slider_->maximum()));
        // Far from both ends, whatever the slider showed.
        place_ = slider_->height() / 2.0;
    }
    /// Drags the thumb to another place.
    /// \return whether the slider went along
    bool drag(int step) {
        constexpr int reach = 23;
        const int position = slider_->position();
        send(QEvent::MouseMove, place_ + (step * 7) % reach - reach / 2);
        return slider_->position() != position;
    }
    void release(int step) {
        constexpr int reach = 23;
        send(QEvent::MouseButtonRelease, place_ + (step * 7) % reach - reach / 2);
    }
    static constexpr int stepsOfDrag = 20;

    PaintCounter counter;

 private:
    static CTabDialog& openPage(CTessavoApp& app) {
        CTessavoView& view = app.frame().view();
        view.showPage(Page::outputEqualizer);
        view.plot().show();
        return *view.pages()[static_cast<std::size_t>(Page::outputEqualizer)];
    }
    static bool isOfBand(const CBitmapSlider& slider) {
        const auto* group = qobject_cast<const SkinGroupBox*>(slider.parentWidget());
        return group != nullptr && group->title().startsWith(QStringLiteral("Filter"));
    }
    void send(QEvent::Type type, double pixel) {
        const QPointF place(slider_->width() / 2.0, pixel);
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, place, slider_->mapToGlobal(place), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(slider_, &event);
    }

    CTabDialog& page_;
    std::vector<CBitmapSlider*> sliders_;
    CBitmapSlider* slider_ = nullptr;
    double place_ = 0;
};

/// \return within how many milliseconds 99 of 100 steps were painted
double lateStep(TunedPlot& plot, int round) {
    std::vector<double> times;
    std::vector<double> clockTimes;
    for (int step = 0; step < stepCount; ++step) {
        if (step % TunedPlot::stepsOfDrag == 0) {
            plot.press(step);
            QCoreApplication::processEvents();
        }
        const int before = plot.counter.paints;
        const auto clockStart = std::chrono::steady_clock::now();
        const std::clock_t start = std::clock();
        if (!plot.drag(step)) {
            std::fprintf(stderr, "chart_bench: step %d moved no slider\n", step);
            std::exit(1);
        }
        while (plot.counter.paints == before) {
            QCoreApplication::processEvents();
        }
        times.push_back(1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
        clockTimes.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - clockStart).count());
        if (step % TunedPlot::stepsOfDrag == TunedPlot::stepsOfDrag - 1) {
            plot.release(step);
            QCoreApplication::processEvents();
        }
    }
    std::ranges::sort(times);
    std::ranges::sort(clockTimes);
    const double late = clockTimes[stepCount * 99 / 100];
    std::printf(
        "  round %d: half within %.2f ms, 99 of 100 within %.2f ms; processor time %.2f and %.2f ms\n", round,
        clockTimes[stepCount / 2], late, times[stepCount / 2], times[stepCount * 99 / 100]);
    return late;
}

bool stepsArePaintedInTime(TunedPlot& plot) {
    std::printf("mouse step on one of %zu sliders to painted chart, eight channels, %d steps a round\n",
                plot.sliderCount(), stepCount);
    double best = lateStep(plot, 1);
    for (int round = 2; round <= roundCount; ++round) {
        best = std::min(best, lateStep(plot, round));
    }
    const bool holds = best < limitMs;
    std::printf("99 of 100 steps painted, best round: %.2f ms %s %.0f ms%s\n", best,
                holds ? "<" : ">=", limitMs, holds ? "" : "  MISSED");
    return holds;
}

bool stepsDoNotPileUp(TunedPlot& plot) {
    plot.press(0);
    QCoreApplication::processEvents();
    const int before = plot.counter.paints;
    for (int step = 0; step < 1000; ++step) {
        plot.drag(step);
    }
    for (int n = 0; n < 20; ++n) {
        QCoreApplication::processEvents();
    }
    const int paints = plot.counter.paints - before;
    plot.release(999);
    std::printf("paints after 1000 mouse steps in a row: %d (must be 1)%s\n", paints,
                paints == 1 ? "" : "  MISSED");
    return paints == 1;
}

}  // namespace
}  // namespace tessavo::bench

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir folder;
    tessavo::CTessavoApp app(
        argc, argv, std::make_unique<tessavo::Profile>(folder.filePath(QStringLiteral("profile.ini"))));
    if (!app.InitInstance({})) {
        return 1;
    }
    tessavo::bench::TunedPlot plot(app);
    if (plot.sliderCount() != 3 * tessavo::bandCount) {
        std::fprintf(stderr, "chart_bench: the page has %zu sliders of bands\n", plot.sliderCount());
        return 1;
    }
    const bool inTime = tessavo::bench::stepsArePaintedInTime(plot);
    const bool noBacklog = tessavo::bench::stepsDoNotPileUp(plot);
    return inTime && noBacklog ? 0 : 1;
}
